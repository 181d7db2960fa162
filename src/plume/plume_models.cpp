#include "plume/plume_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "model/cell_table.h"
#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "numerics/progress_pace.h"

namespace orv {
namespace {

constexpr double kRadiansOf = kPi15 / 180;

class Plume {
 public:
  Plume(Cells& cells, const ThrusterVector& data, const PhysicalConstants& constants, ErrorPrompt& prompt)
      : data_(cells.CellData),
        thruster_(data),
        e_(constants.ElementaryCharge),
        prompt_(prompt),
        block_(prompt, {"faute x16 ", "Error fautea_SpaceApplicationThrusterPLUME", true}) {
    for (int column = 3; column <= 17; ++column) {
      C_[static_cast<std::size_t>(column)] = data(slot::FirstParameter + column - 3).number();
    }
    model_ = C(17);
    limit12_ = model_ == 100 ? C(8) : C(12);
    f1_ = data(slot::CurrentFraction1).number();
    f2_ = data(slot::CurrentFraction2).number();
    q1_ = e_ * data(slot::Charge1).number();
    q2_ = e_ * data(slot::Charge2).number();
    Ih_ = C(3) / 2;
    mass_ = data(slot::MolarMass).number() / 1000 / constants.AvogadroNumber;
    E_ = C(4);
    block_([&] { v0_ = Root(Divide(2 * e_ * E_, mass_)); });
    VelocitiesFromEnergy();
  }

  double LimitAngle() const { return model_ == 1 ? C(12) : C(8); }

  void ReadTables() {
    if (model_ != kThrusterModelTables) return;
    const double ends[4] = {
        thruster_(slot::indexfinThruster).number(), thruster_(slot::indexfinThrusterDensity).number(),
        thruster_(slot::indexfinThrusterEnergy).number(), thruster_(slot::indexfinThrusterXepDens).number()};
    const char* const messages[3] = {"error table density thruster Model 1000 ",
                                     "error table energy thruster Model 1000 ",
                                     "error table IonPlus density ratio  thruster Model 1000 "};
    XYTable* const tables[3] = {&density_, &energy_, &ratio_};
    bool odd = false;
    for (int t = 0; t < 3; ++t) {
      const double points = ends[t + 1] - ends[t];
      if (Mod(points, 2) != 0) {
        prompt_.dialogs().Tell(messages[t], "", Icon::Critical);
        odd = true;
      }
      const int count = static_cast<int>(Int(points / 2));
      for (int row = 0; row < count; ++row) {
        block_([&] {
          const int x = static_cast<int>(ends[t]) + 1 + 2 * row;
          tables[t]->Add(thruster_(x).number(), thruster_(x + 1).number());
        });
      }
    }
    if (odd) prompt_.AbortQuestion();
  }

  void CheckSpectrum() {
    if (model_ != kThrusterModelTables) {
      prompt_.dialogs().Tell(
          "Spectrum limit: the thruster model shall be 1000. Please modify the input with a thruster MODEL 1000. The "
          "program will abort",
          "", Icon::Critical);
      prompt_.AbortQuestion();
    }
    const double slots = thruster_(slot::indexfinThrusterDensity).number() - thruster_(slot::indexfinThruster).number();
    if (Int(slots / 2) <= 1) {
      prompt_.dialogs().Tell(
          "Spectrum limit: the thruster model shall use \"table-in-cell\" tables for density, energy, ratioXe+. Please "
          "modify the input with a thruster defined by tables. The program will abort",
          "", Icon::Critical);
      prompt_.AbortQuestion();
    }
  }

  // Keeps the band between two rows of the density table and lets the rest emit nothing; returns the band's angle.
  double IsolateBand(int band) {
    double angle = -1;
    if (model_ != kThrusterModelTables) return angle;
    constexpr double edge = 0.001;
    const int b = density_.count() - band;
    for (int row = 1; row <= density_.count(); ++row) {
      if (row == b) {
        angle = density_.x(row);
      } else if (row == b - 1) {
        density_.set(row, density_.x(b) - edge, 0);
      } else if (row == b + 2) {
        density_.set(row, density_.x(b + 1) + edge, 0);
      } else if (row != b + 1) {
        density_.set(row, density_.x(row), 0);
      }
    }
    return angle;
  }

  // Calls told(share) before each row of cells.
  template <class Told>
  void OfPrimitive(int p, Told&& told) {
    const int n = static_cast<int>(Cells::LoopCount(data_(p, 0, 0, 1)));
    const int m = static_cast<int>(Cells::LoopCount(data_(p, 0, 0, 2)));
    for (int i = 1; i <= n; ++i) {
      told(static_cast<double>(i - 1) / n);
      for (int j = 1; j <= m; ++j) OfCell(p, i, j);
    }
  }

  void OfCell(int p, int i, int j) {
    double theta = theta_;
    double r = r_;
    block_([&] { theta = data_(p, i, j, 10); });
    block_([&] { r = data_(p, i, j, 8); });
    theta_ = theta;
    r_ = r;
    const bool inside = (theta <= C(8) && model_ != 1) || (theta <= limit12_ && model_ > 0);
    if (!inside) {
      for (int q = 13; q <= 17; ++q) {
        block_([&] { data_(p, i, j, q) = 0; });
      }
      return;
    }
    n_ = 0;
    N_ = 0;
    J_ = 0;
    ApplyModel(p, i, j);
    block_([&] { data_(p, i, j, 13) = n_; });
    block_([&] { data_(p, i, j, 14) = N_; });
    block_([&] { data_(p, i, j, 15) = J_; });
    block_([&] { data_(p, i, j, 16) = E_; });
    CorrectForPotential(p, i, j);
  }

 private:
  double C(int column) const { return C_[static_cast<std::size_t>(column)]; }

  void VelocitiesFromEnergy() {
    block_([&] { v1_ = Root(Divide(2 * q1_ * E_, mass_)); });
    block_([&] { v2_ = Root(Divide(2 * q2_ * E_, mass_)); });
  }

  // The cell's surface may lie at a potential, which slows the ions before they arrive.
  void CorrectForPotential(int p, int i, int j) {
    const bool corrected = block_.Condition([&] { return data_(p, 0, 0, 63) == 1; });
    if (corrected) {
      double V = 0;
      block_([&] { V = data_(p, i, j, 63); });
      if (V == 0) E_ = 0;
      block_([&] { data_(p, i, j, 16) = std::max(E_ - V, 0.0); });
    }
    block_([&] { data_(p, i, j, 17) = v1_; });
    if (corrected && E_ != 0) {
      block_([&] { data_(p, i, j, 17) = v1_ * Power(Divide(data_(p, i, j, 16), E_), 0.5); });
    }
  }

  void ApplyModel(int p, int i, int j) {
    if (model_ == 1) {
      Model1(p, i, j);
    } else if (model_ <= 3) {
      if (model_ == 0 || model_ == 2) {
        CosineLaw();
        if (model_ == 2) {
          InverseSquareEnergy();
          VelocitiesFromEnergy();
        }
        if (model_ == 0 || theta_ <= C(8)) TwoChargeStates(p, i, j);
      } else if (model_ == 3) {
        CosineLaw();
        if (theta_ <= C(8)) OneChargeState();
      } else {
        UnknownModel("faute x14 ");
      }
    } else if (model_ == 100) {
      ExponentialLaws();
      TwoChargeStates(p, i, j);
    } else if (model_ == kThrusterModelTables) {
      TableLaws(p, i, j);
    } else {
      UnknownModel("faute x15 ");
    }
  }

  void UnknownModel(const char* label) {
    prompt_.dialogs().Tell("Model type not existing. If you need a new Model please contact Maravo.", kContactTitle);
    prompt_(label);
    E_ = 0;
    v1_ = 0;
  }

  // Ion current of one charge state as a fit in mA/cm2 at one metre.
  void Model1(int p, int i, int j) {
    if (theta_ < C(12)) {
      block_([&] { J1_ = C(9) + Divide(C(10), theta_ * theta_ + C(11)); });
      InverseSquareEnergy();
    } else {
      J1_ = 0;
      E_ = 0;
    }
    block_([&] { N_ = Divide((J1_ / 1000) * 10000, Ih_); });
    block_([&] { J_ = Divide((J1_ / 1000) * 10000, r_ * r_); });
    block_([&] { v_ = Root(Divide(2 * e_ * E_, mass_)); });
    block_([&] { n_ = Divide(Divide(Divide(N_ * Ih_, e_), r_ * r_), v_ + 1e-05); });
    block_([&] { data_(p, i, j, 33) = n_; });
    block_([&] { data_(p, i, j, 34) = 0; });
  }

  void CosineLaw() {
    if (!(theta_ <= C(8))) return;
    block_([&] { N_ = (1 / kPi15) * (C(5) * Power(std::cos(theta_ * kRadiansOf), C(6)) + C(7)); });
  }

  // The ion energy falls with the square of the angle and stays at its value beyond the saturation angle.
  void InverseSquareEnergy() {
    if (model_ == 2 && theta_ > C(8)) return;  // between the two limits the energy of the cell before stays
    if (model_ == 2) E_ = 0;
    if (!(theta_ < C(12))) return;
    const double a = theta_ < C(16) ? theta_ : C(16);
    block_([&] { E_ = C(13) + Divide(C(14), a * a + C(15)); });
  }

  void ExponentialLaws() {
    const double angle = theta_ * kRadiansOf;
    block_([&] { N_ = C(5) * Exponential(angle * C(6)) + C(7) * Power(angle, C(9)) + C(10); });
    const double x = theta_ < C(16) ? angle : C(16) * kRadiansOf;
    block_([&] {
      const double sine = std::sin(x);
      const double ratio = Divide(x, C(14));
      E_ = C(11) * Exponential(-Divide(sine * sine, C(12))) - C(13) * Exponential(-(ratio * ratio)) + C(15);
    });
    VelocitiesFromEnergy();
  }

  void TableLaws(int p, int i, int j) {
    block_([&] { N_ = Interpolate(density_, theta_, prompt_); });
    block_([&] { E_ = Interpolate(energy_, std::min(theta_, C(16)), prompt_); });
    VelocitiesFromEnergy();
    if (ratio_.count() > 0) {
      block_([&] {
        const double share = Interpolate(ratio_, theta_, prompt_);
        const double weight1 = share * Power(q1_, 1.5);
        f1_ = Divide(weight1, weight1 + (1 - share) * Power(q2_, 1.5));
      });
      f2_ = 1 - f1_;
    }
    block_([&] { data_(p, i, j, 61) = f1_; });
    if (v2_ == 0 && f2_ == 0) v2_ = 1e-06;
    TwoChargeStates(p, i, j);
  }

  void TwoChargeStates(int p, int i, int j) {
    block_([&] { J_ = Divide(N_ * Ih_, r_ * r_); });
    if (model_ == kThrusterModelTables && v1_ == 0) {
      n1_ = 0;
    } else {
      block_([&] { n1_ = Divide(Divide(Divide(N_ * Ih_, q1_), r_ * r_), v1_) * f1_; });
    }
    block_([&] { n_ = n1_ + Divide(Divide(Divide(N_ * Ih_, q2_), r_ * r_), v2_) * f2_; });
    block_([&] { data_(p, i, j, 33) = n1_; });
    block_([&] { data_(p, i, j, 34) = n_ - n1_; });
  }

  void OneChargeState() {
    block_([&] { J_ = Divide(N_ * Ih_, r_ * r_); });
    block_([&] { n_ = Divide(Divide(Divide(N_ * Ih_, e_), r_ * r_), v0_); });
  }

  CellBlock& data_;
  const ThrusterVector& thruster_;
  double e_;
  ErrorPrompt& prompt_;
  FailureBlock block_;
  std::array<double, 18> C_{};
  double model_ = 0;
  double limit12_ = 0;
  double Ih_ = 0, mass_ = 0, q1_ = 0, q2_ = 0, f1_ = 0, f2_ = 0;
  double E_ = 0, v_ = 0, v0_ = 0, v1_ = 0, v2_ = 0;
  double n_ = 0, n1_ = 0, N_ = 0, J_ = 0, J1_ = 0, theta_ = 0, r_ = 0;
  XYTable density_, energy_, ratio_;
};

}  // namespace

void aSpaceApplicationThrusterPLUME(Cells& cells, const ThrusterVector& ThrusterData,
                                    const PhysicalConstants& constants, const PlumeInput& input, PlumeResult& result,
                                    ErrorPrompt& prompt) {
  Plume plume(cells, ThrusterData, constants, prompt);
  result.PlumeLimitAngle = plume.LimitAngle();
  result.SpectrumAngle = -1;
  if (input.SpectrumBand != -1) plume.CheckSpectrum();
  plume.ReadTables();
  if (input.SpectrumBand != -1) {
    result.SpectrumAngle = plume.IsolateBand(input.SpectrumBand);
  }
  if (input.cell != nullptr) {
    plume.OfCell(input.cell->CellPrimitive, input.cell->CellI, input.cell->CellJ);
    return;
  }
  const int first = input.OnePrimitive != 0 ? input.OnePrimitive : 1;
  const int last = input.OnePrimitive != 0 ? input.OnePrimitive : input.numberPrimWithVolumic;
  ProgressPace progress(prompt.dialogs());
  for (int p = first; p <= last; ++p) {
    if (p == input.ThrusterPrimitive) continue;
    plume.OfPrimitive(p, [&](double share) {
      // A step of a turn tells of its turn.
      if (input.OnePrimitive == 0) progress("plume", (p - first + share) / (last - first + 1));
    });
  }
}

}  // namespace orv
