#include "analysis/result_labels.h"

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

struct Labels : ::testing::Test {
  std::vector<std::string> Fill(const std::vector<std::string>& materials) {
    std::vector<std::string> labels = {"old"};
    FillResultLabels(materials, labels, prompt);
    return labels;
  }
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

TEST_F(Labels, HaveTheirOneSpelling) {
  const std::map<int, std::string> expected = {{1, "X (m)"},
                                               {2, "Y (m)"},
                                               {3, "Z (m)"},
                                               {4, "Area (m²)"},
                                               {5, "Nx (m)"},
                                               {6, "Ny (m)"},
                                               {7, "Nz (m)"},
                                               {8, "DistanceThrToElem (m)"},
                                               {9, "IncidenceOnElem (deg)"},
                                               {10, "IndicatrixFromThr (deg)"},
                                               {11, "DeclinationElem (deg)"},
                                               {12, "AzimuthElem (deg)"},
                                               {13, "Density (m-3)"},
                                               {14, "NormalizedIonCurrentDensity (A.m-²/A)"},
                                               {15, "JcurrentDensity(R) ( A/m² )"},
                                               {16, "EnergyIon+ (eV)"},
                                               {17, "Velocity1 (m/s)"},
                                               {18, "Zbuffer (m)"},
                                               {19, "Sputtering (m/s)"},
                                               {20, "Hidden ()"},
                                               {21, "notUsed ()"},
                                               {22, "Heatflux (W/m2)"},
                                               {23, "Fx (N)"},
                                               {24, "Fy (N)"},
                                               {25, "Fz (N)"},
                                               {26, "Mx (N.m)"},
                                               {27, "My (N.m)"},
                                               {28, "Mz (N.m)"},
                                               {29, "MAJORIndex"},
                                               {30, "MinorIndex"},
                                               {31, "Incidence used"},
                                               {33, "Density1 (m-3)"},
                                               {34, "Density2 (m-3)"},
                                               {35, "SolidAngle (sr)"},
                                               {36, "MxT_translated (N.m)"},
                                               {37, "MyT_translated (N.m)"},
                                               {38, "MzT_translated (N.m)"},
                                               {39, "Fx_WC1 (N)"},
                                               {40, "Fy_WC1 (N)"},
                                               {41, "Fz_WC1 (N)"},
                                               {42, "Mx_WC1 (N.m)"},
                                               {43, "My_WC1 (N.m)"},
                                               {44, "Mz_WC1 (N.m)"},
                                               {45, "MxT_WC1 (N.m)"},
                                               {46, "MyT_WC1 (N.m)"},
                                               {47, "MzT_WC1 (N.m)"},
                                               {48, "Fx_WC2 (N)"},
                                               {49, "Fy_WC2 (N)"},
                                               {50, "Fz_WC2 (N)"},
                                               {51, "Mx_WC2 (N.m)"},
                                               {52, "My_WC2 (N.m)"},
                                               {53, "Mz_WC2 (N.m)"},
                                               {54, "MxT_WC2 (N.m)"},
                                               {55, "MyT_WC2 (N.m)"},
                                               {56, "MzT_WC2 (N.m)"},
                                               {57, "HeatFlowMaxCellCorner(W/m²)"},
                                               {59, "SputYield (at/ion)"},
                                               {60, "IncidenceOnElemOld (deg)"},
                                               {61, "RelCurrent (-)"},
                                               {62, "BettaEmission(-)"},
                                               {63, "Potential(V)"},
                                               {64, "Fx_min (N)"},
                                               {65, "Fy_min (N)"},
                                               {66, "Fz_min (N)"},
                                               {67, "Fx_max (N)"},
                                               {68, "Fy_max (N)"},
                                               {69, "Fz_max (N)"},
                                               {70, "MxTmin (N.m)"},
                                               {71, "MyTmin (N.m)"},
                                               {72, "MzTmin (N.m)"},
                                               {73, "MxTmax (N.m)"},
                                               {74, "MyTmax (N.m)"},
                                               {75, "MzTmax (N.m)"},
                                               {76, "MxTneg (N.m)"},
                                               {77, "MyTneg (N.m)"},
                                               {78, "MzTneg (N.m)"},
                                               {79, "MxTpos (N.m)"},
                                               {80, "MyTpos (N.m)"},
                                               {81, "MzTpos (N.m)"}};
  const std::vector<std::string> labels = Fill({"0"});
  ASSERT_EQ(labels.size(), 121U);
  for (int index = 0; index <= 120; ++index) {
    if (index >= 90 && index <= 104) continue;
    SCOPED_TRACE(index);
    const auto found = expected.find(index);
    EXPECT_EQ(LabelOf(labels, index), found == expected.end() ? "" : found->second);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Labels, OfRedepositionWithoutMaterials) {
  for (const std::vector<std::string>& materials :
       {std::vector<std::string>{}, std::vector<std::string>{"0"}, std::vector<std::string>{""},
        std::vector<std::string>{"-1", "a"}, std::vector<std::string>{"many", "a"}}) {
    const std::vector<std::string> labels = Fill(materials);
    for (int k = 0; k < 5; ++k) {
      SCOPED_TRACE(k);
      EXPECT_EQ(LabelOf(labels, 90 + k), "Redeposition (m/s)");
      EXPECT_EQ(LabelOf(labels, 95 + k), "SputteringCleaning (m/s)");
      EXPECT_EQ(LabelOf(labels, 100 + k), "NetRedeposition (m/s)");
    }
    EXPECT_EQ(LabelOf(labels, 105), "");
  }
}

TEST_F(Labels, OfRedepositionNameTheMaterials) {
  const std::vector<std::string> labels = Fill({"3", "KaptonTbl", "Glass", "TblTblAg TblCu"});
  EXPECT_EQ(LabelOf(labels, 90), "Redeposition Kapton(m/s)");
  EXPECT_EQ(LabelOf(labels, 91), "Redeposition Glass(m/s)");
  EXPECT_EQ(LabelOf(labels, 92), "Redeposition Ag Cu(m/s)");
  EXPECT_EQ(LabelOf(labels, 93), "");
  EXPECT_EQ(LabelOf(labels, 95), "SputtClean. Kapton(m/s)");
  EXPECT_EQ(LabelOf(labels, 97), "SputtClean. Ag Cu(m/s)");
  EXPECT_EQ(LabelOf(labels, 98), "");
  EXPECT_EQ(LabelOf(labels, 100), "NetRedep. Kapton(m/s)");
  EXPECT_EQ(LabelOf(labels, 101), "NetRedep. Glass(m/s)");
  EXPECT_EQ(LabelOf(labels, 103), "");
}

TEST_F(Labels, OfASixthMaterialRunIntoTheNextBlock) {
  const std::vector<std::string> labels = Fill({"6", "a", "b", "c", "d", "e", "f"});
  EXPECT_EQ(LabelOf(labels, 94), "Redeposition e(m/s)");
  EXPECT_EQ(LabelOf(labels, 95), "Redeposition f(m/s)");
  EXPECT_EQ(LabelOf(labels, 96), "SputtClean. b(m/s)");
  EXPECT_EQ(LabelOf(labels, 100), "SputtClean. f(m/s)");
  EXPECT_EQ(LabelOf(labels, 105), "NetRedep. f(m/s)");
}

TEST_F(Labels, SurviveAnyListOfMaterials) {
  std::vector<std::string> many = {"99999999999"};
  for (int k = 0; k < 300; ++k) many.push_back("m" + std::to_string(k));
  EXPECT_EQ(Fill(many).size(), 121U);
  EXPECT_EQ(Fill({"5", "a"}).size(), 121U);
  EXPECT_EQ(LabelOf(Fill({"5", "a"}), 90), "Redeposition a(m/s)");
}

TEST_F(Labels, AreEmptyOutsideTheTable) {
  const std::vector<std::string> labels = Fill({"0"});
  for (const int index : {-1, 0, 32, 58, 82, 89, 105, 120, 121, 100000}) {
    SCOPED_TRACE(index);
    EXPECT_EQ(LabelOf(labels, index), "");
  }
  EXPECT_EQ(LabelOf({}, 1), "");
}

TEST(PlotClasses, AreRangesOfNumbers) {
  for (int plot = 1; plot <= 104; ++plot) {
    SCOPED_TRACE(plot);
    EXPECT_EQ(IsGeometryPlot(plot), plot <= 10);
    EXPECT_EQ(IsAutoRotationPlot(plot),
              (plot >= 22 && plot <= 28) || (plot >= 36 && plot <= 56) || (plot >= 64 && plot <= 81));
    EXPECT_EQ(IsSputterRotationPlot(plot), plot == 19 || plot >= 90);
  }
}

}  // namespace
}  // namespace orv
