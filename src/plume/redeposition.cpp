#include "plume/redeposition.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "geometry/quantities.h"
#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "plume/sputter_stores.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kPairsAtOnce = 4e6;  // some milliseconds of work
constexpr double kLeastTargetsAtOnce = 512;
constexpr auto kMostSourcesAtOnce = static_cast<std::size_t>(kPairsAtOnce / kLeastTargetsAtOnce);
constexpr int kMinimum = 1;
constexpr int kMaximum = 2;

bool IsConcave(double typeCode) {
  return typeCode == 4 || typeCode == 5;
}

}  // namespace

Redeposition::Redeposition(EffectContext& context, FailureBlock& block, ProgressPace& progress, int turning)
    : context_(context), block_(block), progress_(progress), turning_(turning) {}

void Redeposition::CheckLimits() {
  const Cells& cells = context_.cells;
  const auto truncation = [&](int limit, const char* what, const std::string& wanted) {
    context_.dialogs().Tell("Truncation of redeposition live memory to" + std::to_string(limit) + what + wanted +
                                " required by the current model",
                            "Wish good luck to see if any");
  };
  if (cells.numberPrimWithVolumic > kStorePrimitives) {
    truncation(kStorePrimitives, " primitives  instead of ", std::to_string(cells.numberPrimWithVolumic));
  }
  int mostI = 0;
  int mostJ = 0;
  for (int p = 1; p <= cells.numberPrimWithVolumic; ++p) {
    if (p == context_.thruster.ThrusterPrimitive) continue;
    mostI = std::max(mostI, cells.CountI(p));
    mostJ = std::max(mostJ, cells.CountJ(p));
  }
  if (mostI > kStoreCells || mostJ > kStoreCells) {
    truncation(kStoreCells, " elements  instead of ", std::to_string(mostI) + " or " + std::to_string(mostJ));
  }
  if (context_.materials.NumberOfMaterialsUsed > kStoreMaterials) {
    context_.dialogs().Tell("too many material for the redeposition, update needed, see Hallam", "Can be critical",
                            Icon::Critical);
    context_.prompt().AbortQuestion();
  }
}

void Redeposition::FromPrimitive(int source, int step, const ErosionSpeeds& erosion,
                                 const SurfaceMaterials& materials) {
  FindSlot(materials.firstName, "Problem in ImRedep1  see hallam", firstSlot_);
  if (materials.two()) FindSlot(materials.secondName, "Problem in ImRedep2  see hallam", secondSlot_);
  const std::vector<Emission> emissions = EmissionsOf(source, erosion, materials);
  if (emissions.empty()) return;
  const std::string phase = "redeposition from " + context_.PrimitiveNames[static_cast<std::size_t>(source)];
  progress_(phase, 0);
  CollectParts(source, step);
  for (const Emission& emission : emissions) Receive(emission, phase);
}

// The place of a material in the list of those used; names are compared as they are written.
void Redeposition::FindSlot(const std::string& material, const char* message, int& slot) {
  const std::vector<std::string>& used = context_.materials.MaterialsUsed;
  const auto found = used.empty() ? used.end() : std::find(used.begin() + 1, used.end(), material);
  if (found == used.end()) {
    context_.dialogs().Tell(message, "Error", Icon::Critical);
    context_.prompt().AbortQuestion();
    return;
  }
  slot = static_cast<int>(found - used.begin());
}

std::vector<Redeposition::Emission> Redeposition::EmissionsOf(int source, const ErosionSpeeds& erosion,
                                                              const SurfaceMaterials& materials) {
  CellBlock& data = context_.cells.CellData;
  const EffectRange range = RangeOf(context_.cells, source);
  const double typeCode = data(source, 0, 0, 10);
  const int countJ = context_.cells.CountJ(source);
  const auto plane = [&](Quantity q) { return data.plane(Number(q), source).data(); };
  const std::array<const double*, 9> planes = {nullptr,
                                               plane(Quantity::X),
                                               plane(Quantity::Y),
                                               plane(Quantity::Z),
                                               plane(Quantity::Area),
                                               plane(Quantity::NormalX),
                                               plane(Quantity::NormalY),
                                               plane(Quantity::NormalZ),
                                               plane(Quantity::BettaEmission)};
  std::vector<Emission> emissions;
  for (int i = 1; i <= erosion.countI; ++i) {
    for (int j = 1; j <= erosion.countJ; ++j) {
      const double speed = erosion.at(i, j);
      if (!(speed > 0)) continue;
      const bool secondFace = materials.two() && OnSecondFace(typeCode, j, countJ);
      const int slot = secondFace ? secondSlot_ : firstSlot_;
      if (slot == 0) continue;
      auto emission =
          std::find_if(emissions.begin(), emissions.end(), [&](const Emission& e) { return e.slot == slot; });
      if (emission == emissions.end()) emission = emissions.insert(emissions.end(), Emission{slot, {}});
      emission->sources.push_back(SourceCell(planes, range.at(i, j), speed, materials.of(secondFace)));
    }
  }
  return emissions;
}

RedepositionSource Redeposition::SourceCell(const std::array<const double*, 9>& planes, std::size_t cell, double speed,
                                            const SputterMaterial& material) {
  const double beta = planes[8][cell];
  const double c = (beta + 1) / (2 * kPi15);
  const double area = std::abs(planes[4][cell]);
  block_([&] {
    atomicVolume_ = Divide(Divide(material.molarMass / 1000, context_.constants.AvogadroNumber), material.density);
  });
  block_([&] { atomsPerSecond_ = Divide(area * speed, atomicVolume_); });
  block_([&] { strength_ = Finite(atomsPerSecond_ * c * atomicVolume_); });
  return {planes[1][cell], planes[2][cell], planes[3][cell], planes[5][cell],
          planes[6][cell], planes[7][cell], strength_,       beta};
}

// As the model counts them, but the rotating primitive comes last.
std::vector<int> Redeposition::TargetOrder() const {
  std::vector<int> order;
  for (int p = 1; p <= context_.cells.numberPrimWithVolumic; ++p) order.push_back(p);
  const auto turning = std::find(order.begin(), order.end(), turning_);
  if (turning != order.end()) std::iter_swap(turning, order.end() - 1);
  return order;
}

bool Redeposition::IsTarget(int target, int source) {
  if (target == context_.thruster.ThrusterPrimitive) return false;
  if (target != source) return true;
  if (!IsConcave(context_.cells.CellData(source, 0, 0, 10))) return false;
  if (target != turning_) return true;
  if (!convexTold_) {
    convexTold_ = true;
    context_.dialogs().Tell("The rotating primitive is not convexe: Case not processed, see hallam", "",
                            Icon::Critical);
    context_.prompt().AbortQuestion();
  }
  return false;
}

void Redeposition::CollectParts(int source, int step) {
  parts_.clear();
  const auto add = [&](int primitive, int partStep, int countI, int countJ, bool stored) {
    const std::size_t begin = parts_.empty() ? 0 : parts_.back().cell(parts_.back().countI, parts_.back().countJ) + 1;
    if (countI > 0 && countJ > 0) parts_.push_back({primitive, partStep, countI, countJ, stored, begin});
  };
  for (const int target : TargetOrder()) {
    if (!IsTarget(target, source)) continue;
    if (target != turning_) {
      const EffectRange range = RangeOf(context_.cells, target);
      add(target, step, range.countI, range.countJ, false);
      continue;
    }
    block_([&] {
      const auto& store = context_.stores.RotationCellStore;
      const auto header = [&](int n) { return static_cast<int>(ToIndex(store(0, 0, 0, n))); };
      for (int stored = 1; stored <= header(3); ++stored) add(target, stored, header(1), header(2), true);
    });
  }
  FillPlaces();
}

void Redeposition::FillPlaces() {
  targets_.Resize(parts_.empty() ? 0 : parts_.back().cell(parts_.back().countI, parts_.back().countJ) + 1);
  irregular_.clear();
  const auto& store = context_.stores.RotationCellStore;
  CellBlock& data = context_.cells.CellData;
  for (const Part& part : parts_) {
    double weight = 1;
    if (part.stored) block_([&] { weight = context_.rotation.RotPercentTable(part.step, 2); });
    const auto fill = [&](auto&& quantity) {
      for (int i = 1; i <= part.countI; ++i) {
        for (int j = 1; j <= part.countJ; ++j) {
          SetPlace(part.cell(i, j), {quantity(i, j, 1), quantity(i, j, 2), quantity(i, j, 3), quantity(i, j, 5),
                                     quantity(i, j, 6), quantity(i, j, 7), weight});
        }
      }
    };
    if (part.stored) {
      block_([&] { fill([&](int i, int j, int q) { return static_cast<double>(store(part.step, i, j, q)); }); });
    } else {
      fill([&](int i, int j, int q) { return data(part.primitive, i, j, q); });
    }
  }
}

// A target that the fast form does not take gets no normal there, so nothing reaches it.
void Redeposition::SetPlace(std::size_t cell, const Receiver& r) {
  targets_.weight[cell] = r.weight;
  if (!IsRegularCell(r.x, r.y, r.z, r.nx, r.ny, r.nz)) {
    irregular_.push_back({cell, r});
    return;
  }
  targets_.x[cell] = r.x;
  targets_.y[cell] = r.y;
  targets_.z[cell] = r.z;
  targets_.nx[cell] = r.nx;
  targets_.ny[cell] = r.ny;
  targets_.nz[cell] = r.nz;
}

void Redeposition::Receive(const Emission& emission, const std::string& phase) {
  LoadSums(emission.slot);
  AddUp(emission.sources, phase);
  progress_(phase, 1);
  StoreSums(emission.slot);
  UpdateExtrema(emission.slot);
}

void Redeposition::AddUp(const std::vector<RedepositionSource>& sources, const std::string& phase) {
  const auto isIrregular = [](const RedepositionSource& source) { return !IsRegularSource(source); };
  const double all = static_cast<double>(sources.size());
  for (auto begin = sources.begin(); begin != sources.end();) {
    const auto end = std::find_if(begin, sources.end(), isIrregular);
    const double done = static_cast<double>(begin - sources.begin()) / all;
    const double share = static_cast<double>(end - begin) / all;
    AddRegular({begin, end}, done, share, phase);
    if (end == sources.end()) break;
    progress_(phase, done + share);
    for (std::size_t cell = 0; cell < targets_.size(); ++cell) {
      AddByStatement(*end,
                     {targets_.x[cell], targets_.y[cell], targets_.z[cell], targets_.nx[cell], targets_.ny[cell],
                      targets_.nz[cell], targets_.weight[cell]},
                     cell);
    }
    begin = end + 1;
  }
  for (const IrregularTarget& target : irregular_) {
    progress_(phase, 1);
    for (const RedepositionSource& source : sources) AddByStatement(source, target.receiver, target.cell);
  }
}

void Redeposition::AddRegular(std::span<const RedepositionSource> sources, double done, double share,
                              const std::string& phase) {
  if (sources.empty()) return;
  const auto atOnce =
      static_cast<std::size_t>(std::max(kLeastTargetsAtOnce, kPairsAtOnce / static_cast<double>(sources.size()))) / 8 *
      8;
  for (std::size_t first = 0; first < targets_.size(); first += atOnce) {
    const std::size_t last = std::min(first + atOnce, targets_.size());
    for (std::size_t from = 0; from < sources.size(); from += kMostSourcesAtOnce) {
      progress_(phase, done + share * static_cast<double>(first) / static_cast<double>(targets_.size()));
      const std::size_t count = std::min(kMostSourcesAtOnce, sources.size() - from);
      AddRedeposition(sources.subspan(from, count), targets_, first, last);
    }
  }
}

void Redeposition::AddByStatement(const RedepositionSource& source, const Receiver& r, std::size_t cell) {
  block_([&] { growth_ = RedepositionOfPair(source, r.x, r.y, r.z, r.nx, r.ny, r.nz); });
  const double arrives = growth_ * r.weight;
  targets_.rate[cell] += arrives;
  targets_.stored[cell] = static_cast<float>(static_cast<double>(targets_.stored[cell]) + arrives);
}

void Redeposition::LoadSums(int slot) {
  std::fill(targets_.rate.begin(), targets_.rate.end(), 0.0);
  std::fill(targets_.stored.begin(), targets_.stored.end(), 0.0F);
  for (const Part& part : parts_) {
    if (!part.stored) {
      block_([&] {
        const auto plane = context_.cells.CellData.plane(QuantityOf(slot), part.primitive);
        const EffectRange range = RangeOf(context_.cells, part.primitive);
        for (int i = 1; i <= part.countI; ++i) {
          for (int j = 1; j <= part.countJ; ++j) targets_.rate[part.cell(i, j)] = plane[range.at(i, j)];
        }
      });
    }
    OnStoredCells(part, slot, [&](int i, int j) {
      targets_.stored[part.cell(i, j)] = context_.stores.RedepositionStore(part.step, i, j, slot, part.primitive);
    });
  }
}

// What arrived goes to the quantities and the stores; the steps of the rotating primitive add up.
void Redeposition::StoreSums(int slot) {
  auto& store = context_.stores.RedepositionStore;
  for (const Part& part : parts_) {
    block_([&] {
      const auto plane = context_.cells.CellData.plane(QuantityOf(slot), part.primitive);
      const EffectRange range = RangeOf(context_.cells, part.primitive);
      for (int i = 1; i <= part.countI; ++i) {
        for (int j = 1; j <= part.countJ; ++j) {
          double& quantity = plane[range.at(i, j)];
          const double sum = targets_.rate[part.cell(i, j)];
          quantity = part.stored ? quantity + sum : sum;
        }
      }
    });
    OnStoredCells(part, slot, [&](int i, int j) {
      float& kept = store(part.step, i, j, slot, part.primitive);
      const float sum = targets_.stored[part.cell(i, j)];
      if (part.step != 0) {
        float& total = store(0, i, j, slot, part.primitive);
        const double arrived = static_cast<double>(sum) - static_cast<double>(kept);
        total = static_cast<float>(static_cast<double>(total) + arrived);
      }
      kept = sum;
    });
  }
}

// The extrema run over what the targets hold behind each source.
void Redeposition::UpdateExtrema(int slot) {
  for (const Part& part : parts_) {
    bool landed = false;
    const auto update = [&](int step) {
      auto& extrema = context_.stores.RedepositionExtrema;
      OnStoredCells(part, slot, [&](int i, int j) {
        const float value = context_.stores.RedepositionStore(step, i, j, slot, part.primitive);
        float& least = extrema(step, kMinimum, slot, part.primitive);
        float& most = extrema(step, kMaximum, slot, part.primitive);
        least = std::min(least, value);
        most = std::max(most, value);
        landed = landed || most != 0;
      });
    };
    update(part.step);
    const bool lastOfPrimitive = &part == &parts_.back() || (&part + 1)->primitive != part.primitive;
    if (part.step != 0 && lastOfPrimitive) update(0);
    if (landed) {
      block_([&] {
        NoteLanding(context_.stores, part.primitive, context_.materials.MaterialsUsed[static_cast<std::size_t>(slot)]);
      });
    }
  }
}

int Redeposition::QuantityOf(int slot) {
  return Number(Quantity::Redeposition) + slot - 1;
}

// Runs a statement on the cells of a part that the stores have room for; a step beyond them is one failure.
template <class Statement>
void Redeposition::OnStoredCells(const Part& part, int slot, Statement&& statement) {
  if (part.primitive > kStorePrimitives || slot > kStoreMaterials) return;
  block_([&] {
    for (int i = 1; i <= std::min(part.countI, kStoreCells); ++i) {
      for (int j = 1; j <= std::min(part.countJ, kStoreCells); ++j) statement(i, j);
    }
  });
}

}  // namespace orv
