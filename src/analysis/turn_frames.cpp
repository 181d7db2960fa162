#include "analysis/turn_frames.h"

#include <algorithm>

#include "geometry/quantities.h"
#include "geometry/rigid_motion.h"
#include "plume/sputter_stores.h"

namespace orv {
namespace {

constexpr double kSputterPlot = 19;
constexpr double kRedepositionPlots = 90;

template <class Store>
int LastOf(const Store& store, std::size_t dimension) {
  return static_cast<int>(store.bounds(dimension).upper);
}

// The places of one primitive along the turn, whichever store holds them.
struct StoredPlaces {
  int lastI = 0;  // cells that the store has
  int lastJ = 0;
  bool fromHeatFlux = false;
  int entry = 0;  // of AutoRotatedList
};

// Places of cells that a turn keeps for its playback; a finer turn is not played.
constexpr double kMostTurnPlaces = 1e7;

class TurnFrames {
 public:
  TurnFrames(const RunContext& run, const CellWalk& walk, const Vector3& ViewOffset, PointLists& lists)
      : run_(run), walk_(walk), offset_(ViewOffset), lists_(lists), rotation_(lists.rotation) {}

  void Fill() {
    const int rotating = run_.rotation.RotatingPrimitive;
    const bool sputter = run_.plot.SputterRotationActive != 0;
    rotation_.frames = sputter ? SputterSteps() : HeatFluxSteps();
    const CellStretch* const stretch = StretchOf(rotating);
    if (rotation_.frames < 1 || stretch == nullptr) return;
    if (static_cast<double>(rotation_.frames) * stretch->cells > kMostTurnPlaces) return;
    StoredPlaces places = sputter ? SputterPlaces(rotating) : HeatFluxPlaces();
    if (places.lastI < 1 || places.lastJ < 1) return;
    rotation_.AutoRotPrimitive = rotating;
    std::vector<TurnQuaternion> turns;
    FillPrimitive(*stretch, places, rotation_.main, turns, true);
    for (int entry = 1; sputter && entry <= run_.geometry.RotatedCount(); ++entry) {
      const int p = run_.geometry.AutoRotatedList[static_cast<std::size_t>(entry)];
      const CellStretch* const extra = StretchOf(p);
      if (p == rotating || extra == nullptr) continue;
      places = SputterPlaces(p);
      if (places.lastI < 1 || places.lastJ < 1) continue;
      FillPrimitive(*extra, places, rotation_.extra.emplace_back(), turns, false);
    }
    FillValues(*stretch);
    rotation_.present = true;
  }

 private:
  int SputterSteps() const {
    const auto& store = run_.stores.RotationCellStore;
    if (run_.rotation.RotatingPrimitive == 0 || LastOf(store, 0) < 1) return 0;
    const int steps = static_cast<int>(ToIndex(store(0, 0, 0, 3)));
    return std::min({steps, LastOf(store, 0), LastOf(run_.stores.AutoRotatedStore, 0)});
  }
  int HeatFluxSteps() const {
    const auto& sums = run_.stores.RotationSums;
    if (run_.plot.AutomaticRotationActive == 0 || LastOf(sums, 0) < 0 || LastOf(sums, 1) < 0) return 0;
    return std::min(static_cast<int>(ToIndex(sums(0, 0))), LastOf(run_.stores.StepCellPositions, 0));
  }

  StoredPlaces SputterPlaces(int p) const {
    const auto& list = run_.geometry.AutoRotatedList;
    const auto& store = run_.stores.AutoRotatedStore;
    const auto found = std::find(list.begin() + 1, list.begin() + 1 + run_.geometry.RotatedCount(), p);
    const int entry = static_cast<int>(found - list.begin());
    if (entry > run_.geometry.RotatedCount() || entry > LastOf(store, 4)) return {};
    return {LastOf(store, 1), LastOf(store, 2), false, entry};
  }
  StoredPlaces HeatFluxPlaces() const {
    const auto& store = run_.stores.StepCellPositions;
    return {LastOf(store, 1), LastOf(store, 2), true, 0};
  }

  // The primitive's cells in the lists; nullptr when they hold none.
  const CellStretch* StretchOf(int primitive) const {
    const auto found = std::find_if(walk_.stretches.begin(), walk_.stretches.end(), [&](const CellStretch& stretch) {
      return stretch.primitive == primitive && stretch.cells > 0;
    });
    return found == walk_.stretches.end() ? nullptr : &*found;
  }

  Point3 PlaceAt(const StoredPlaces& places, int frame, int i, int j) const {
    Point3 place{};
    for (int axis = 1; axis <= 3; ++axis) {
      const double x = places.fromHeatFlux
                           ? run_.stores.StepCellPositions(frame, i, j, axis)
                           : static_cast<double>(run_.stores.AutoRotatedStore(frame, i, j, axis, places.entry));
      place[static_cast<std::size_t>(axis - 1)] = SingleOrZero(x - offset_(static_cast<std::size_t>(axis)));
    }
    return place;
  }

  // `turns`: the rotation of the rotating primitive by frame, filled for the main one, taken by the others where their
  // cells do not tell their own.
  void FillPrimitive(const CellStretch& stretch, const StoredPlaces& places, TurningPrimitive& primitive,
                     std::vector<TurnQuaternion>& turns, bool main) {
    primitive.start = stretch.first;
    primitive.count = stretch.cells;
    const std::vector<Point3> shown = ShownPlaces(stretch);
    std::vector<Point3> before;
    std::vector<Point3> normalsBefore;
    const bool normals = main && !places.fromHeatFlux;
    OnStoredCells(stretch, places, [&](int i, int j, std::size_t c) {
      before.push_back(shown[c]);
      if (normals) normalsBefore.push_back(NormalShown(stretch.primitive, i, j));
    });
    primitive.positions = {shown};
    primitive.motions = {RigidMotion{}};
    if (main) turns = {TurnQuaternion{1, 0, 0, 0}};
    TurnQuaternion previous{1, 0, 0, 0};
    for (int frame = 1; frame <= rotation_.frames; ++frame) {
      std::vector<Point3> behind;
      std::vector<Point3> normalsBehind;
      behind.reserve(before.size());
      OnStoredCells(stretch, places, [&](int i, int j, std::size_t) {
        behind.push_back(PlaceAt(places, frame, i, j));
        if (normals) normalsBehind.push_back(NormalStored(frame, i, j));
      });
      const MotionPairs pairs{before, behind, normalsBefore, normalsBehind};
      FittedMotion fitted = FitMotion(pairs, previous);
      const auto f = static_cast<std::size_t>(frame);
      if (!main && !fitted.unique && f < turns.size()) {
        fitted.quaternion = turns[f];
        fitted.motion = MotionAboutCentres(pairs, fitted.quaternion);
      }
      previous = fitted.quaternion;
      if (main) turns.push_back(fitted.quaternion);
      primitive.positions.push_back(PlacesOfFrame(stretch, places, shown, behind, fitted.motion));
      primitive.motions.push_back(fitted.motion);
    }
  }

  std::vector<Point3> ShownPlaces(const CellStretch& stretch) const {
    std::vector<Point3> places(static_cast<std::size_t>(stretch.cells));
    for (int axis = 1; axis <= 3; ++axis) {
      const auto row = lists_.PointList.row(axis).subspan(static_cast<std::size_t>(stretch.first));
      for (std::size_t c = 0; c < places.size(); ++c) places[c][static_cast<std::size_t>(axis - 1)] = row[c];
    }
    return places;
  }

  // The stored places in their cells, the others moved like them.
  std::vector<Point3> PlacesOfFrame(const CellStretch& stretch, const StoredPlaces& stored,
                                    const std::vector<Point3>& shown, std::vector<Point3>& behind,
                                    const RigidMotion& motion) const {
    if (behind.size() == shown.size()) return std::move(behind);
    std::vector<Point3> places;
    places.reserve(shown.size());
    for (const Point3& place : shown) places.push_back(Moved(motion, place));
    std::size_t n = 0;
    OnStoredCells(stretch, stored, [&](int, int, std::size_t c) { places[c] = behind[n++]; });
    return places;
  }

  // op(i, j, c) on the cells that a store has, c the place among all cells of the primitive.
  template <class Op>
  void OnStoredCells(const CellStretch& stretch, const StoredPlaces& places, Op op) const {
    OnCells(stretch, [&](int i, int j, int n) {
      if (i <= places.lastI && j <= places.lastJ) op(i, j, static_cast<std::size_t>(n - stretch.first));
    });
  }

  Point3 NormalShown(int p, int i, int j) const {
    const auto part = [&](int q) { return SingleOrZero(run_.cells.CellData(p, i, j, q)); };
    return {part(Number(Quantity::NormalX)), part(Number(Quantity::NormalY)), part(Number(Quantity::NormalZ))};
  }
  Point3 NormalStored(int frame, int i, int j) const {
    const auto& store = run_.stores.RotationCellStore;
    return {store(frame, i, j, Number(Quantity::NormalX)), store(frame, i, j, Number(Quantity::NormalY)),
            store(frame, i, j, Number(Quantity::NormalZ))};
  }

  // The slot of RedepositionStore that a plot shows; 0 when the run did not compute it.
  int RedepositionSlot() const {
    const double plot = run_.plot.IndexPlot;
    if (!(plot >= kRedepositionPlots) || run_.plot.RedepositionOn == 0) return 0;
    const std::ptrdiff_t slot = ToIndex(plot) - Number(Quantity::Redeposition) + 1;
    if (slot > kStoreSlots || rotation_.AutoRotPrimitive > kStorePrimitives) return 0;
    if (slot > kCleaningSlots && run_.plot.CleaningOn == 0) return 0;
    return static_cast<int>(slot);
  }

  void FillValues(const CellStretch& stretch) {
    const int slot = RedepositionSlot();
    if (run_.plot.SputterRotationActive == 0 || (slot == 0 && run_.plot.IndexPlot != kSputterPlot)) return;
    rotation_.hasValues = true;
    const int quantity = slot == 0 ? Number(Quantity::Sputtering) : Number(Quantity::Redeposition) + slot - 1;
    const int last = slot == 0 ? kRotatingCells : kStoreCells;
    const StoredPlaces stored{last, last};
    std::vector<float> mean(static_cast<std::size_t>(stretch.cells));
    OnCells(stretch, [&](int i, int j, int n) {
      mean[static_cast<std::size_t>(n - stretch.first)] =
          SingleOrZero(run_.cells.CellData(stretch.primitive, i, j, quantity));
    });
    rotation_.values.assign(static_cast<std::size_t>(rotation_.frames) + 1, mean);
    for (int frame = 1; frame <= rotation_.frames; ++frame) {
      std::vector<float>& values = rotation_.values[static_cast<std::size_t>(frame)];
      OnStoredCells(stretch, stored, [&](int i, int j, std::size_t c) {
        values[c] = slot == 0 ? run_.stores.RotationCellStore(frame, i, j, 0)
                              : run_.stores.RedepositionStore(frame, i, j, slot, stretch.primitive);
      });
    }
  }

  const RunContext& run_;
  const CellWalk& walk_;
  const Vector3& offset_;
  PointLists& lists_;
  AutoRotation& rotation_;
};

}  // namespace

void FillTurnFrames(const RunContext& run, const CellWalk& walk, const Vector3& ViewOffset, PointLists& lists) {
  if (run.rotation.RotatingPrimitive == 0) return;
  TurnFrames(run, walk, ViewOffset, lists).Fill();
}

void SetTurnOutlines(const CellWalk& walk, const CellBordersOutput& borders, AutoRotation& rotation) {
  if (!rotation.present) return;
  const auto set = [&](TurningPrimitive& primitive) {
    for (const CellStretch& stretch : walk.stretches) {
      const auto p = static_cast<std::size_t>(stretch.primitive);
      if (stretch.cells == 0 || stretch.first != primitive.start || p >= borders.primitives.size()) continue;
      primitive.outlineStart = borders.primitives[p].first;
      primitive.outlineEntries = borders.primitives[p].entries;
    }
  };
  set(rotation.main);
  std::for_each(rotation.extra.begin(), rotation.extra.end(), set);
}

}  // namespace orv
