#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "plume/redeposition.h"
#include "plume/sputter_model.h"
#include "reference/plain_redeposition.h"

namespace orv::testing {

using reference::PlainEmitter;
using reference::PlainReceiver;

// A plate that the beam erodes, one that sees it, and a ball.
inline std::vector<std::array<std::string, 2>> ThreePrimitives() {
  return {{"HT", kTestThruster},
          {"silver", "Plate rect size 0.6 0.4 cells 4 3 R X 180 T 0 0 1"},
          {"gold", "Side rect size 0.5 0.5 cells 3 5 R Y 90 T -0.6 0 0.6"},
          {"silver", "Ball cyl size 0.1 0.4 1 cells 8 3 T 0.5 0.3 0.2"}};
}

struct ThreeModel : SputterModel {
  explicit ThreeModel(double plot = 90) : SputterModel(ThreePrimitives(), plot) { directives.RectoOnly = 1; }
};

// One redeposition step on its own, without the sweep.
class SingleStep {
 public:
  explicit SingleStep(SputterModel& sputterModel, int turning = 0)
      : model(sputterModel),
        context(model.Context()),
        block(model.prompt, {"sub", "title"}),
        progress(model.dialogs),
        redeposition(context, block, progress, turning) {
    SizeSputterStores(context);
    OpenExtrema(context.stores);
  }
  // All cells of the primitive erode at one speed, or as given.
  ErosionSpeeds Speeds(int p, double speed) const {
    ErosionSpeeds speeds{model.cells.CountI(p), model.cells.CountJ(p), {}};
    speeds.speed.assign(static_cast<std::size_t>(speeds.countI) * static_cast<std::size_t>(speeds.countJ), speed);
    return speeds;
  }
  void From(int p, int step, const ErosionSpeeds& speeds) {
    LoadSurfaceMaterials(context, p, block, materials);
    redeposition.FromPrimitive(p, step, speeds, materials);
  }
  void From(int p, double speed = 1e-10) { From(p, 0, Speeds(p, speed)); }

  SputterModel& model;
  EffectContext context;
  FailureBlock block;
  ProgressPace progress;
  Redeposition redeposition;
  SurfaceMaterials materials;
};

// What a primitive emits and receives, for the plain form; G from quantity 19.
inline std::vector<PlainEmitter> Emitters(const SputterModel& model, int p, const std::string& material) {
  const auto& names = model.materials.MaterialNames;
  const int m = static_cast<int>(std::find(names.begin(), names.end(), material) - names.begin());
  const double volume = model.materials.MaterialTable(m, 3).number() / 1000 / model.constants.AvogadroNumber /
                        model.materials.MaterialTable(m, 2).number();
  std::vector<PlainEmitter> emitters;
  for (int i = 1; i <= model.cells.CountI(p); ++i) {
    for (int j = 1; j <= model.cells.CountJ(p); ++j) {
      const auto q = [&](int quantity) { return model.Q(p, i, j, quantity); };
      if (!(q(19) > 0)) continue;
      emitters.push_back({q(1), q(2), q(3), q(5), q(6), q(7), std::abs(q(4)) * q(19) / volume, q(62), volume});
    }
  }
  return emitters;
}
inline std::vector<PlainReceiver> Receivers(const SputterModel& model, int p) {
  std::vector<PlainReceiver> receivers;
  for (int i = 1; i <= model.cells.CountI(p); ++i) {
    for (int j = 1; j <= model.cells.CountJ(p); ++j) {
      const auto q = [&](int quantity) { return model.Q(p, i, j, quantity); };
      receivers.push_back({q(1), q(2), q(3), q(5), q(6), q(7), 1});
    }
  }
  return receivers;
}

inline void ExpectNear(const std::vector<double>& values, const std::vector<double>& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t n = 0; n < values.size(); ++n) {
    ASSERT_EQ(values[n] == 0, expected[n] == 0) << n;
    ASSERT_NEAR(values[n], expected[n], 1e-12 * expected[n]) << n;
  }
}

// A wing that turns above a plate which the beam erodes.
struct TurningModel : SputterModel {
  explicit TurningModel(double plot = 90)
      : SputterModel({{"HT", kTestThruster},
                      {"gold", "Plate rect size 0.3 0.3 cells 2 2 R X 180 T 0 0 1"},
                      {"silver", "Wing rect size 0.6 0.4 cells 3 2 Automatic X T 0.8 0 1"},
                      {"carbon", "Floor rect size 0.4 0.4 cells 2 3 T 0.5 0 0.3"}},
                     plot) {
    directives.RectoOnly = 1;
    Turn(0, 45, {0.1, 0.1, 0.2, 0.1, 0.15, 0.15, 0.1, 0.1});
  }
};

}  // namespace orv::testing
