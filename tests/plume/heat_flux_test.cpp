#include "plume/heat_flux.h"

#include <cmath>
#include <gtest/gtest.h>

#include "plume/effect_model.h"

namespace orv::testing {
namespace {

const std::string kThruster = "T thr size 0.01 0.01 cells 1 1";

// A plate 1 m above the thruster, facing it.
EffectModel FacingPlate(const std::string& cells = "1 1", const std::string& placement = "R X 180 T 0 0 1") {
  return EffectModel({{"HT", kThruster}, {"silver", "Plate rect size 0.2 0.1 cells " + cells + " " + placement}});
}

// The numbers of the flow on the axis of the test thruster, by hand: one charge state of 300 eV, N = 1 / pi.
struct AxisFlow {
  double mass, speed, density, pressure, thermalSpeed, S2;
  explicit AxisFlow(double distance, const PhysicalConstants& c, double Twall = 300) {
    const double pi = 3.14159265358979;
    mass = 131.29 / 1000 / c.AvogadroNumber;
    speed = std::sqrt(2 * c.ElementaryCharge * 300 / mass);
    density = 1 / pi * 1.0 / c.ElementaryCharge / (distance * distance) / speed;
    pressure = 0.5 * mass * density * speed * speed;
    thermalSpeed = std::sqrt(2 * c.BoltzmannConstant * Twall / mass);
    S2 = speed < thermalSpeed ? 1 : std::pow(speed / thermalSpeed, 2);
  }
};

TEST(HeatFlux, NormalIncidenceByHand) {
  EffectModel model = FacingPlate();
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);

  const AxisFlow flow(1, model.constants);
  const double area = 0.02;
  const double heat = (2 * flow.pressure * flow.speed * 0.95 * (1 - 2 / flow.S2)) / 2;
  EXPECT_NEAR(model.Q(2, 1, 1, 22), heat, heat * 1e-9);

  // Along the flow, which goes to +Z: fn = (2 - sn) + sn / 2 sqrt(pi / S2).
  const auto force = [&](double sn) {
    return area * 2 * flow.pressure * ((2 - sn) + sn / 2 * std::sqrt(3.14159265358979 / flow.S2));
  };
  EXPECT_NEAR(model.Q(2, 1, 1, 23), 0, 1e-15);
  EXPECT_NEAR(model.Q(2, 1, 1, 24), 0, 1e-15);
  EXPECT_NEAR(model.Q(2, 1, 1, 25), force(0.85), force(0.85) * 1e-9);
  EXPECT_NEAR(model.Q(2, 1, 1, 41), force(1), force(1) * 1e-9);
  EXPECT_NEAR(model.Q(2, 1, 1, 50), force(0), force(0) * 1e-9);
  EXPECT_DOUBLE_EQ(model.Q(2, 1, 1, 66), std::min(model.Q(2, 1, 1, 41), model.Q(2, 1, 1, 50)));
  EXPECT_DOUBLE_EQ(model.Q(2, 1, 1, 69), std::max(model.Q(2, 1, 1, 41), model.Q(2, 1, 1, 50)));
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(HeatFlux, ObliqueIncidenceByHand) {
  // Turned by 40 degrees about X: the normal leans towards -Y, the flow still comes along +Z.
  EffectModel model = FacingPlate("1 1", "R X 140 T 0 0 1");
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);

  const AxisFlow flow(1, model.constants);
  const double a = 40 * 3.14159265358979 / 180;
  const double area = 0.02;
  const double sn = 0.85;
  const double st = 0.9;
  const double fn = (2 - sn) * std::pow(std::cos(a), 2) + sn / 2 * std::sqrt(3.14159265358979 / flow.S2) * std::cos(a);
  const double ft = st * std::sin(a) * std::cos(a);
  // nv lies 40 degrees off +Z, the tangent 50 degrees off +Z on the other side.
  const double side = model.Q(2, 1, 1, 6) > 0 ? -1 : 1;  // nv = -N
  const double nvY = side * std::sin(a);
  const double nvZ = std::cos(a);
  const double tvY = -side * std::cos(a);
  const double tvZ = std::sin(a);
  const double scale = area * 2 * flow.pressure;
  EXPECT_NEAR(model.Q(2, 1, 1, 24), scale * (fn * nvY + ft * tvY), scale * 1e-9);
  EXPECT_NEAR(model.Q(2, 1, 1, 25), scale * (fn * nvZ + ft * tvZ), scale * 1e-9);
  EXPECT_NEAR(model.Q(2, 1, 1, 22), flow.pressure * flow.speed * 0.95 * std::cos(a) * (1 - 2 / flow.S2),
              flow.pressure * flow.speed * 1e-9);
}

TEST(HeatFlux, MomentsAboutOriginAndAboutThePointOfTheDirective) {
  EffectModel model = FacingPlate("2 2", "R X 180 T 0.4 0.1 1");
  model.directives.MomentOrigin = {2, 0.3, -0.2, 0.5};
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 2; ++j) {
      SCOPED_TRACE(::testing::Message() << "cell " << i << ", " << j);
      const auto vector = [&](int q) {
        return Vector3(model.Q(2, i, j, q), model.Q(2, i, j, q + 1), model.Q(2, i, j, q + 2));
      };
      const Vector3 centre = vector(1);
      const Vector3 arm(centre(1) - 0.3, centre(2) + 0.2, centre(3) - 0.5);
      struct Row {
        int force, moment;
        Vector3 lever;
      };
      for (const Row& row : {Row{23, 26, centre}, Row{23, 36, arm}, Row{39, 42, centre}, Row{39, 45, arm},
                             Row{48, 51, centre}, Row{48, 54, arm}}) {
        Vector3 expected;
        vcross(row.lever, vector(row.force), expected);
        for (std::size_t axis = 1; axis <= 3; ++axis) {
          EXPECT_NEAR(vector(row.moment)(axis), expected(axis), 1e-12 * vNorm(expected)) << row.moment << " " << axis;
        }
      }
      // The extreme terms bracket every mixture of the two worst cases.
      for (int axis = 0; axis < 3; ++axis) {
        const double low = model.Q(2, i, j, 76 + axis);
        const double high = model.Q(2, i, j, 79 + axis);
        EXPECT_LE(low, 0);
        EXPECT_GE(high, 0);
        EXPECT_LE(low, model.Q(2, i, j, 70 + axis) + 1e-18);
        EXPECT_GE(high, model.Q(2, i, j, 73 + axis) - 1e-18);
      }
    }
  }
}

TEST(HeatFlux, TheTwoHalvesOfAMomentAddUp) {
  EffectModel model = FacingPlate("3 2", "R X 150 R Z 20 T 0.2 0.3 1");
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const Vector3 force(model.Q(2, 2, 1, 39), model.Q(2, 2, 1, 40), model.Q(2, 2, 1, 41));
  const Vector3 centre(model.Q(2, 2, 1, 1), model.Q(2, 2, 1, 2), model.Q(2, 2, 1, 3));
  Vector3 plus;
  Vector3 minus;
  vCrossPlus(centre, force, plus);
  vCrossMinus(centre, force, minus);
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    EXPECT_NEAR(plus(axis) + minus(axis), model.Q(2, 2, 1, 44 + static_cast<int>(axis)), 1e-15);
  }
}

TEST(HeatFlux, TheMirroredNormalGivesTheSameMagnitudes) {
  EffectModel front = FacingPlate();
  EffectModel back = FacingPlate("1 1", "T 0 0 1");
  for (EffectModel* model : {&front, &back}) {
    model->Build();
    EffectContext context = model->Context();
    SizeHeatFluxStores(context);
    aSpaceApplicationEffectHEATFLUX(context);
  }
  EXPECT_GT(front.Q(2, 1, 1, 22), 0);
  for (const int q : {22, 25, 41, 50})
    EXPECT_NEAR(front.Q(2, 1, 1, q), back.Q(2, 1, 1, q), 1e-12 * front.Q(2, 1, 1, q));
}

TEST(HeatFlux, TheInsideOfACylinderIsIgnored) {
  // The thruster stands on the axis of the cylinder and sees its inside only.
  EffectModel model({{"HT", kThruster}, {"silver", "Tube cyl size 0.5 1 1 cells 8 4 T 0 0 0.2"}});
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_EQ(model.Sum(2, 22), 0);
  EXPECT_EQ(model.stores.HeatFluxMaxTable(2), 0);
  EXPECT_TRUE(model.stores.HeatFluxList.empty());
}

TEST(HeatFlux, ShadowedCellsGetNothing) {
  EffectModel model({{"HT", kThruster},
                     {"silver", "Near rect size 1 1 cells 2 2 R X 180 T 0 0 1"},
                     {"silver", "Far rect size 0.2 0.2 cells 2 2 R X 180 T 0 0 2"}});
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_GT(model.Sum(2, 22), 0);
  EXPECT_EQ(model.Sum(3, 22), 0);
}

TEST(HeatFlux, SlowIonsTakeThePlainForm) {
  SurfaceFlow flow;
  flow.dynamicPressure = 2;
  flow.speed = 3;
  flow.speedRatio2 = 1;
  EXPECT_DOUBLE_EQ(HeatFluxOf(flow, 0.5), 2 * 2 * 3 * 0.5 / 2);
  flow.speedRatio2 = 2;
  EXPECT_DOUBLE_EQ(HeatFluxOf(flow, 0.5), 2 * 2 * 3 * 0.5 / 2);
  flow.speedRatio2 = 4;
  EXPECT_DOUBLE_EQ(HeatFluxOf(flow, 0.5), 2 * 2 * 3 * 0.25 / 2);
}

// Heat and axial force per area of a flow at an incidence of a, by hand.
double HeatByHand(const AxisFlow& flow, double at, double a = 0) {
  return flow.pressure * flow.speed * at * std::cos(a) * (flow.S2 > 2 ? 1 - 2 / flow.S2 : 1);
}
double PressureByHand(const AxisFlow& flow, double sn) {
  return 2 * flow.pressure * ((2 - sn) + sn / 2 * std::sqrt(3.14159265358979 / flow.S2));
}

TEST(HeatFlux, AWallThatIsFasterThanTheIonsHasARatioOfOne) {
  EffectModel model = FacingPlate("1 1", "R X 140 T 0 0 1");
  model.directives.Twall = 1e12;
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const AxisFlow flow(1, model.constants, 1e12);
  ASSERT_LT(flow.speed, flow.thermalSpeed);
  ASSERT_EQ(flow.S2, 1);
  const double a = 40 * 3.14159265358979 / 180;
  EXPECT_NEAR(model.Q(2, 1, 1, 22), HeatByHand(flow, 0.95, a), 1e-9 * flow.pressure * flow.speed);
  // Worst case 1 has no tangential part: it goes along the normal, by cos(a) of it along the axis.
  const double cosine = std::cos(a);
  const double normal = cosine * cosine + 0.5 * std::sqrt(3.14159265358979) * cosine;
  const double force = 0.02 * 2 * flow.pressure * normal * cosine;
  EXPECT_NEAR(model.Q(2, 1, 1, 41), force, 1e-9 * force);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(HeatFlux, AWallAtZeroKelvinTakesNoHeatAway) {
  EffectModel model = FacingPlate();
  model.directives.Twall = 0;
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const AxisFlow flow(1, model.constants, 1e-30);
  const double heat = flow.pressure * flow.speed * 0.95;
  EXPECT_NEAR(model.Q(2, 1, 1, 22), heat, 1e-9 * heat);
  const double force = 0.02 * 2 * flow.pressure * (2 - 0.85);
  EXPECT_NEAR(model.Q(2, 1, 1, 25), force, 1e-9 * force);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

bool IsEffectOfHeatFlux(int q) {
  return (q >= 22 && q <= 28) || (q >= 36 && q <= 56) || (q >= 64 && q <= 81);
}

TEST(HeatFlux, AFaceOfASheetCountsFromOutsideAndWithItsOwnMaterial) {
  struct Case {
    const char* material;
    const char* gap;
    const char* placement;
    double code;
    int facing;  // the j that looks at the thruster
    double z;    // where it stands
    bool gold;
  };
  const Case cases[] = {
      {"silver | gold", "-0.02", "T 0 0 1", 15, 2, 0.98, true},
      {"silver | gold", "-0.02", "R X 180 T 0 0 1", 15, 1, 1, false},
      {"silver | gold", "0.02", "T 0 0 1", 15.5, 1, 1, false},
      {"silver | gold", "0.02", "R X 180 T 0 0 1", 15.5, 2, 0.98, true},
      {"silver", "-0.02", "T 0 0 1", 15, 2, 0.98, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.material) + ", gap " + c.gap + " " + c.placement);
    const std::string specification = "Sheet rect2sides size -0.1 0.1 -0.05 0.05 1 1 ";
    EffectModel model({{"HT", kThruster}, {c.material, specification + c.gap + " cells 1 2 " + c.placement}});
    model.SetThruster({1, 3}, {0.5, 0.5});
    model.AddMaterial("gold", 0.5, 0.4, 0.3);
    model.Build();
    ASSERT_EQ(model.Q(2, 0, 0, 10), c.code);
    for (int j = 1; j <= 2; ++j) model.cells.CellData(2, 1, j, 20) = 0;  // so that the shadow does not decide
    EffectContext context = model.Context();
    SizeHeatFluxStores(context);
    aSpaceApplicationEffectHEATFLUX(context);

    ASSERT_NEAR(model.Q(2, 1, c.facing, 3), c.z, 1e-12);
    AxisFlow flow(c.z, model.constants);
    const double ions = model.Q(2, 1, c.facing, 33) + model.Q(2, 1, c.facing, 34);
    EXPECT_GT(model.Q(2, 1, c.facing, 34), 0);
    flow.pressure *= ions / flow.density;  // a charge of 3 has the speed of 1
    const double heat = HeatByHand(flow, c.gold ? 0.3 : 0.95);
    EXPECT_NEAR(model.Q(2, 1, c.facing, 22), heat, 1e-9 * heat);
    const double force = 0.02 * PressureByHand(flow, c.gold ? 0.5 : 0.85);
    EXPECT_NEAR(model.Q(2, 1, c.facing, 25), force, 1e-9 * force);
    const double worst1 = 0.02 * PressureByHand(flow, 1);
    EXPECT_NEAR(model.Q(2, 1, c.facing, 41), worst1, 1e-9 * worst1);

    const int away = 3 - c.facing;
    EXPECT_GT(model.Q(2, 1, away, 33), 0) << "the plume is there too";
    for (int q = 22; q <= 81; ++q) {
      if (!IsEffectOfHeatFlux(q)) continue;
      EXPECT_EQ(model.Q(2, 1, away, q), 0) << q;
    }
  }
}

TEST(HeatFlux, ASheetWithoutAGapCountsFromBothSidesWithItsFirstMaterial) {
  for (const char* const placement : {"T 0 0 1", "R X 180 T 0 0 1"}) {
    SCOPED_TRACE(placement);
    const std::string specification = "Sheet rect2sides size -0.1 0.1 -0.05 0.05 1 1 0 cells 1 1 ";
    EffectModel model({{"HT", kThruster}, {"silver | gold", specification + placement}});
    model.AddMaterial("gold", 0.5, 0.4, 0.3);
    model.Build();
    ASSERT_EQ(model.Q(2, 0, 0, 10), 16);
    EffectContext context = model.Context();
    SizeHeatFluxStores(context);
    aSpaceApplicationEffectHEATFLUX(context);
    const double heat = HeatByHand(AxisFlow(1, model.constants), 0.95);
    EXPECT_NEAR(model.Q(2, 1, 1, 22), heat, 1e-9 * heat);
  }
}

TEST(HeatFlux, OnlyADoubleChargeScalesTheSpeed) {
  for (const double charge2 : {2.0, 3.0}) {
    SCOPED_TRACE(charge2);
    EffectModel model = FacingPlate();
    model.SetThruster({1, charge2}, {0.5, 0.5});
    model.Build();
    EffectContext context = model.Context();
    SizeHeatFluxStores(context);
    aSpaceApplicationEffectHEATFLUX(context);
    const AxisFlow flow(1, model.constants);
    const double speed = model.Q(2, 1, 1, 17);
    const auto heatOf = [&](double density, double v) {
      return 0.5 * flow.mass * density * v * v * v * 0.95 * (1 - 2 / std::pow(v / flow.thermalSpeed, 2));
    };
    const double second = charge2 == 2 ? speed * std::sqrt(2.0) : speed;
    const double expected = heatOf(model.Q(2, 1, 1, 33), speed) + heatOf(model.Q(2, 1, 1, 34), second);
    EXPECT_GT(model.Q(2, 1, 1, 34), 0);
    EXPECT_NEAR(model.Q(2, 1, 1, 22), expected, 1e-9 * expected);
  }
}

TEST(HeatFlux, TheHottestCornerIsFound) {
  EffectModel model = FacingPlate("1 1", "R X 180 T 0.5 0 1");
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  const std::array<double, 3> before = {model.Q(2, 1, 1, 1), model.Q(2, 1, 1, 8), model.Q(2, 1, 1, 13)};
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_GT(model.stores.HeatFluxMaxTable(2), model.Q(2, 1, 1, 22));
  EXPECT_EQ(model.Q(2, 1, 1, 1), before[0]);
  EXPECT_EQ(model.Q(2, 1, 1, 8), before[1]);
  EXPECT_EQ(model.Q(2, 1, 1, 13), before[2]);
  EXPECT_EQ(model.stores.HeatFluxList.size(), 6U) << "incident vector and tangent, each two points and a break";
  EXPECT_EQ(model.stores.HeatFluxList[2][3], -1);
  // A tenth of the model's radius, and a quarter of that.
  const double radius = std::hypot(0.5, 1);
  const auto length = [&](std::size_t from) {
    double squares = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double part = static_cast<double>(model.stores.HeatFluxList[from + 1][axis]) -
                          static_cast<double>(model.stores.HeatFluxList[from][axis]);
      squares += part * part;
    }
    return std::sqrt(squares);
  };
  EXPECT_NEAR(length(0), 0.1 * radius, 1e-6);
  EXPECT_NEAR(length(3), 0.025 * radius, 1e-6);
}

TEST(HeatFlux, AMissingMaterialIsToldAndKeepsTheValuesBefore) {
  EffectModel model({{"HT", kThruster},
                     {"silver", "A rect size 0.1 0.1 cells 1 1 R X 180 T 0 0 1"},
                     {"gold", "B rect size 0.1 0.1 cells 1 1 R X 180 T 0 0.5 1"}});
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_EQ(
      model.dialogs.Count("Database wrong: material not found. Note in case of 2 materials, please separate with a "
                          "pipe | gold"),
      1);
  EXPECT_GT(model.Q(3, 1, 1, 22), 0);
}

const char* const kDriver = "Error fautea_SpaceApplicationEffectHEATFLUX";
const char* const kDriverSubscript = "Error fautea_SpaceApplicationEffectHEATFLUX ";
const char* const kOnePrimitive = "Error aSpaceApplicationEffectHEATFLUXonePrimitive";
const char* const kOnePrimitiveSubscript = "Error fautea_SpaceApplicationEffectHEATFLUXonePrimitive ";

// Texts and titles of the boxes, in order.
std::vector<std::array<std::string, 2>> BoxesOf(const EffectModel& model) {
  std::vector<std::array<std::string, 2>> boxes;
  for (const ScriptedDialogs::Box& box : model.dialogs.boxes) boxes.push_back({box.text, box.title});
  return boxes;
}

// Ions without a mass have no thermal speed: the first cell of each plate fails.
TEST(HeatFlux, IgnoredFailuresComeAgainWithTheNextPrimitive) {
  EffectModel model({{"HT", kThruster},
                     {"silver", "A rect size 0.1 0.1 cells 3 2 R X 180 T 0 0 1"},
                     {"silver", "Aside rect size 0.1 0.1 cells 2 2 R X 180 T 0 0 -1"},
                     {"silver", "B rect size 0.1 0.1 cells 2 2 R X 180 T 0 0.5 1"}});
  model.Build();
  model.thruster.ThrusterData(slot::MolarMass) = 0.0;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const std::array<std::string, 2> box = {"Division by zero", kOnePrimitive};
  EXPECT_EQ(BoxesOf(model), (std::vector<std::array<std::string, 2>>{box, box}))
      << "none for the plate that the plume does not reach";

  // Without Ignore every failing statement is told: thermal speed and ratio of each of the ten cells in the plume.
  model.dialogs.boxes.clear();
  model.dialogs.answers.assign(100, Answer::Retry);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_EQ(model.dialogs.boxes.size(), 20U);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(aSpaceApplicationEffectHEATFLUX(context), ProgramEnd);
}

TEST(HeatFlux, IgnoredFailuresComeAgainWithTheNextStepOfATurn) {
  EffectModel model({{"HT", kThruster}, {"gold", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationStep = 180;
  model.Build();
  model.AutomaticRotationActive = 2;
  model.rotation.RotPercentTable(1, 1) = 0;
  model.rotation.RotPercentTable(2, 1) = 180;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  int failures = 0;
  for (const auto& [text, title] : BoxesOf(model)) failures += text == kOnePrimitiveSubscript ? 1 : 0;
  EXPECT_EQ(failures, 3) << "two steps, and the way back";
}

TEST(HeatFlux, ASubscriptThatFailsIsToldInTwoBoxes) {
  EffectModel model({{"HT", kThruster}, {"gold", "A rect size 0.1 0.1 cells 1 1 R X 180 T 0 0 1"}});
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const std::vector<std::array<std::string, 2>> expected = {
      {"Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | gold", ""},
      {"Do you want to abort? See Hallam if the error cannot be solved ", ""},
      {kOnePrimitiveSubscript, kOnePrimitive},
      {"Subscript out of range", kOnePrimitive}};
  EXPECT_EQ(BoxesOf(model), expected);
}

TEST(HeatFlux, TheTableOfHottestCornersHoldsAHundredPrimitives) {
  std::vector<std::array<std::string, 2>> rows = {{"HT", kThruster}};
  while (rows.size() < 102) {
    std::string specification = "P" + std::to_string(rows.size());
    specification += " rect size 0.01 0.01 cells 1 1 R X 180 T 0." + std::to_string(100 + rows.size()) + " 0 1";
    rows.push_back({"silver", specification});
  }
  EffectModel model(rows);
  model.Build();
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_GT(model.stores.HeatFluxMaxTable(100), 0);
  EXPECT_GT(model.Q(101, 1, 1, 22), 0);
  const std::array<std::string, 2> subscript = {kOnePrimitiveSubscript, kOnePrimitive};
  const std::array<std::string, 2> failure = {"Subscript out of range", kOnePrimitive};
  EXPECT_EQ(BoxesOf(model), (std::vector<std::array<std::string, 2>>{subscript, failure, subscript, failure}));
}

// Of 340 degrees by steps of 100 the stores hold three steps; the turn makes four.
TEST(HeatFlux, AStepBeyondTheStoresIsToldByTheDriver) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationTo = 340;
  model.directives.RotationStep = 100;
  model.Build();
  model.AutomaticRotationActive = 2;
  for (int s = 1; s <= 4; ++s) model.rotation.RotPercentTable(s, 1) = (s - 1) * 100;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  const std::vector<std::array<std::string, 2>> expected = {{kDriverSubscript, kDriver},
                                                            {"Subscript out of range", kDriver}};
  EXPECT_EQ(BoxesOf(model), expected) << "the other statements of the step are ignored";
  EXPECT_EQ(model.stores.RotationSums(0, 0), 4);
  EXPECT_EQ(model.stores.RotationSums(3, 0), 200);
}

// A turn: the sums of each step equal those of a fixed model placed at that angle.
TEST(HeatFlux, EachStepOfATurnEqualsAFixedRun) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationStep = 90;
  model.IndexPlot = 25;
  model.Build();
  ASSERT_EQ(model.geometry.rotation.RotatingPrimitive, 2);
  model.AutomaticRotationActive = 2;
  for (int s = 1; s <= 4; ++s) model.rotation.RotPercentTable(s, 1) = (s - 1) * 90;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  ASSERT_TRUE(model.dialogs.boxes.empty()) << model.dialogs.boxes.front().text;
  EXPECT_EQ(model.stores.RotationSums(0, 0), 4);
  for (int s = 1; s <= 4; ++s) {
    EffectModel fixed(
        {{"HT", kThruster},
         {"silver", "Wing rect size 0.4 0.2 cells 3 2 R X " + std::to_string((s - 1) * 90) + " T 0 0.3 1"}});
    fixed.Build();
    EffectContext fixedContext = fixed.Context();
    SizeHeatFluxStores(fixedContext);
    aSpaceApplicationEffectHEATFLUX(fixedContext);
    EXPECT_EQ(model.stores.RotationSums(s, 0), (s - 1) * 90);
    for (const int q : {23, 24, 25, 39, 50, 64, 69, 79}) {
      EXPECT_DOUBLE_EQ(model.stores.RotationSums(s, q), fixed.Sum(2, q)) << "step " << s << " quantity " << q;
    }
    double hottest = 0;
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) hottest = std::max(hottest, fixed.Q(2, i, j, 22));
    }
    EXPECT_DOUBLE_EQ(model.stores.RotationSums(s, 22), hottest);
    EXPECT_DOUBLE_EQ(model.stores.RotationSums(s, 57), fixed.stores.HeatFluxMaxTable(2));
  }
  EXPECT_DOUBLE_EQ(model.Sum(2, 25), model.stores.RotationSums(1, 25)) << "left at the angle of the first step";
}

TEST(HeatFlux, ATurnMayRunBackwards) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationFrom = 270;
  model.directives.RotationTo = 1;
  model.directives.RotationStep = -90;
  model.IndexPlot = 25;
  model.Build();
  model.AutomaticRotationActive = 2;
  for (int s = 1; s <= 4; ++s) model.rotation.RotPercentTable(s, 1) = 270 - (s - 1) * 90;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_TRUE(model.dialogs.boxes.empty());
  EXPECT_EQ(model.stores.RotationSums(0, 0), 3);
  EXPECT_EQ(model.stores.RotationSums(3, 0), 90);
  EXPECT_GT(model.Sum(2, 22), 0);
}

TEST(HeatFlux, AStepOfZeroIsToldAndComputesTheFixedPosition) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationStep = 0;
  model.Build();
  model.AutomaticRotationActive = 2;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  ASSERT_EQ(model.dialogs.log.size(), 1U);
  EXPECT_EQ(model.dialogs.log[0], "_The rotation step of the directive line is 0: Wing is not turned");
  EXPECT_GT(model.Sum(2, 22), 0);
  EXPECT_EQ(model.stores.RotationSums(0, 0), 0);
}

TEST(HeatFlux, PlotsOfTheExtremesDoNotTurn) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.IndexPlot = 66;
  model.Build();
  model.AutomaticRotationActive = 2;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_EQ(model.stores.RotationSums(0, 0), 0);
  EXPECT_GT(model.Sum(2, 22), 0);
}

TEST(HeatFlux, ATableThatDisagreesWithTheDirectiveIsToldAtEachStep) {
  EffectModel model({{"HT", kThruster}, {"silver", "Wing rect size 0.4 0.2 cells 3 2 Automatic X T 0 0.3 1"}});
  model.directives.RotationStep = 180;
  model.IndexPlot = 22;
  model.Build();
  model.AutomaticRotationActive = 2;
  model.rotation.RotPercentTable(1, 1) = 5;
  model.rotation.RotPercentTable(2, 1) = 180;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  EXPECT_EQ(model.dialogs.Count("Error Rot% in Heat Flux"), 2) << "the box and the small error of one step";
}

TEST(HeatFlux, AnUnknownTypeIsTold) {
  EffectModel model = FacingPlate();
  model.Build();
  model.cells.CellData(2, 0, 0, 10) = 17;
  EffectContext context = model.Context();
  SizeHeatFluxStores(context);
  aSpaceApplicationEffectHEATFLUX(context);
  ASSERT_FALSE(model.dialogs.boxes.empty());
  EXPECT_EQ(model.dialogs.boxes[0].text, "Type not identified in Heat Flux");
  EXPECT_EQ(model.dialogs.boxes[0].title, " Memo Information");
}

}  // namespace
}  // namespace orv::testing
