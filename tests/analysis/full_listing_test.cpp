#include "analysis/full_listing.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/report_fixture.h"
#include "analysis/result_labels.h"
#include "numerics/number_format.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

class FullListing : public ReportFixture {
 protected:
  std::string Name() const { return Folder() + "OrvfullTest model_tmp_.xls"; }
  std::vector<std::string> Listing(double plot = 13, const std::string& options = "") {
    Compute(plot, options);
    return Write();
  }
  std::vector<std::string> Write() {
    EXPECT_TRUE(WriteFullListing(run));
    return LinesOf(Name());
  }
  // Rows of cells: lines whose first two columns are whole numbers.
  static std::vector<std::vector<std::string>> Cells(const std::vector<std::string>& lines) {
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : lines) {
      const std::vector<std::string> columns = ColumnsOf(line);
      const auto whole = [](const std::string& text) {
        return text.find_first_not_of("0123456789") == std::string::npos;
      };
      if (columns.size() > 2 && whole(columns[0]) && whole(columns[1])) rows.push_back(columns);
    }
    return rows;
  }
};

TEST_F(FullListing, IsWantedByOptionAndByGeometryPlots) {
  for (const auto& [plot, option, wanted] :
       {std::tuple{1, 0, true}, {10, 0, true}, {11, 0, false}, {13, 0, false}, {13, 1, true}, {100, 1, true}}) {
    run.plot.IndexPlot = plot;
    run.plot.FullListing = option;
    EXPECT_EQ(WantsFullListing(run), wanted) << plot << ' ' << option;
  }
}

TEST_F(FullListing, HeadLinesGridsAndHeads) {
  const std::vector<std::string> lines = Listing();
  EXPECT_THAT(lines[0], StartsWith(Hard("OrvValis  M1  Density (m-3) Scale ")));
  EXPECT_THAT(lines[0], EndsWith(Hard(" Test model")));
  EXPECT_EQ(lines[1], Hard("Density (m-3)"));
  EXPECT_THAT(ColumnsOf(lines[2]),
              ElementsAre("1", "Thruster", "thr", "n=1", "m=1", "start1=0.m", "step1=0.m", "start2=0.m", "step2=0.m"));
  const std::string head =
      "    I   J   Xloc   Yloc   Zloc   Nxloc  Nyloc  Nzloc  X   Y   Z   Nx  Ny  Nz  Square  Density_(m-3)  "
      "IncidenceOnElem(°) DistToElem(m)  IndicatrixFromThr(°) JcurrentDensity(A/m²) EnergySimpleCharge(eV)";
  EXPECT_EQ(lines[3], head);
  EXPECT_EQ(lines[5], " Source Point of the Thruster's Exit plane");
  EXPECT_THAT(ColumnsOf(lines[6]), ElementsAre("2", "Plate_1", "rect", "n=4", "m=4", "start1=0.375(m)",
                                               "step1=-0.25(m)", "start2=-0.375(m)", "step2=0.25(m)"));
  EXPECT_EQ(lines[7], head);
  EXPECT_EQ(lines.size(), 2U + 4U + 2U * (2U + 16U));
  EXPECT_EQ(ColumnsOf(head).size(), 21U);
}

TEST_F(FullListing, ARowHasAValueUnderEachHead) {
  Compute();
  for (int q = 1; q <= 16; ++q) run.cells.CellData(2, 3, 4, q) = -1000 - q;
  const std::vector<std::string> lines = Write();
  const std::vector<std::vector<std::string>> cells = Cells(lines);
  ASSERT_THAT(cells, SizeIs(1 + 16 + 16));
  for (const std::vector<std::string>& row : cells) EXPECT_THAT(row, SizeIs(21));
  const std::vector<std::string>& row = cells[1 + 2 * 4 + 3];
  EXPECT_EQ(row[0], "3");
  EXPECT_EQ(row[1], "4");
  // Before placement the third column of cells stands at x = -0.125, y = 0.375.
  EXPECT_THAT(std::vector<std::string>(row.begin() + 2, row.begin() + 8),
              ElementsAre("-0.125", "0.375", "0.", "0.", "0.", "1."));
  const std::vector<int> quantities = {1, 2, 3, 5, 6, 7, 4, 13, 9, 8, 10, 15, 16};
  for (std::size_t k = 0; k < quantities.size(); ++k) {
    EXPECT_DOUBLE_EQ(std::atof(row[k + 8].c_str()), -1000 - quantities[k]) << k;
  }
}

TEST_F(FullListing, FourSignificantDigits) {
  Compute();
  run.cells.CellData(2, 1, 1, 1) = 0.123456;
  run.cells.CellData(2, 1, 1, 13) = 1.23456e15;
  const std::vector<std::string> row = Cells(Write())[1];
  EXPECT_EQ(row[8], "0.1235");
  EXPECT_EQ(row[15], "1.235E+15");
}

TEST_F(FullListing, TheThrusterGivesItsFirstCellOnly) {
  text.primitives[0] = "T5\tThruster thr size 0.05 0.1 cells 3 3";
  const std::vector<std::string> lines = Listing();
  EXPECT_THAT(ColumnsOf(lines[2]), ::testing::Contains("thr"));
  EXPECT_EQ(ColumnsOf(lines[4])[0], "1");
  EXPECT_EQ(lines[5], " Source Point of the Thruster's Exit plane");
}

TEST_F(FullListing, OnePrimitiveAlone) {
  std::vector<std::string> lines = Listing(1, "L 3");
  ASSERT_EQ(lines.size(), 2U + 2U + 16U);
  EXPECT_THAT(ColumnsOf(lines[2])[1], "Plate_2");
  EXPECT_TRUE(dialogs.log.empty());
  for (const char* option : {"L 4", "L -1"}) {
    lines = Listing(1, option);
    EXPECT_EQ(lines.size(), 42U) << option;
    ASSERT_FALSE(dialogs.log.empty());
    EXPECT_THAT(dialogs.log[0], HasSubstr("there is no primitive"));
  }
}

TEST_F(FullListing, UnitsOfTheGrid) {
  Compute();
  const std::vector<std::pair<double, std::string>> units = {{1, "(m)"},        {2, "(deg)"}, {3, "Ray(m)"},
                                                             {4, "RayProj(m)"}, {0, "m"},     {7, "m"}};
  for (const auto& [code, unit] : units) {
    run.cells.CellData(2, 0, 0, 8) = code;
    run.cells.CellData(2, 0, 0, 9) = 2;
    const std::vector<std::string> grid = ColumnsOf(Write()[6]);
    EXPECT_EQ(grid[5], "start1=0.375" + unit);
    EXPECT_EQ(grid[6], "step1=-0.25" + unit);
    EXPECT_EQ(grid[7], "start2=-0.375(deg)");
    EXPECT_EQ(grid[8], "step2=0.25(deg)");
  }
}

TEST_F(FullListing, CellsThatTheCopyDoesNotReachAreZero) {
  text.primitives[1] = "silver\tPlate_1 rect size 1 1 cells 70 1 R X 180 T 0 0 2";
  const std::vector<std::vector<std::string>> cells = Cells(Listing());
  ASSERT_THAT(cells, SizeIs(1 + 70 + 16));
  for (const std::vector<std::string>& row : cells) ASSERT_THAT(row, SizeIs(21));
  EXPECT_EQ(cells[1][2], "0.4929");
  EXPECT_EQ(cells[1][7], "1.");
  EXPECT_NE(cells[70][8], "0.");  // the place after placement is there all the same
}

TEST_F(FullListing, ShellsOfAVolumeAreListed) {
  text.primitives.push_back("gold\tPlume cyl size 0.5 2 3 cells 8 4 T 5 0 0");
  const std::vector<std::string> lines = Listing();
  ASSERT_EQ(run.cells.numberPrimWithVolumic, 6);
  EXPECT_THAT(Cells(lines), SizeIs(1 + 16 + 16 + 3 * 32));
  const std::vector<std::string> grid = ColumnsOf(lines[lines.size() - 32 - 2]);
  EXPECT_EQ(grid[0], "6");
  EXPECT_EQ(grid[2], "cyl");
}

TEST_F(FullListing, ItsNameIsCutAndCleaned) {
  text.title = "a/b\\c:d@e|f*g?h\"i<j>k " + std::string(60, 'x');
  Compute();
  ASSERT_TRUE(WriteFullListing(run));
  ASSERT_THAT(run.record.files, SizeIs(1));
  EXPECT_EQ(run.record.files[0], Folder() + "Orvfullabcdefghijk " + std::string(22, 'x') + "_tmp_.xls");
}

TEST_F(FullListing, ANameBeyondTheCodePageMakesTheFileUtf8) {
  text.primitives[2] = "gold\tPłyta rect size 2 2 cells 4 4 R X 180 T 0 0 2.9";
  const std::vector<std::string> lines = Listing();
  EXPECT_THAT(Bytes(Name()), StartsWith("\xEF\xBB\xBF"));
  EXPECT_LT(LineWith(lines, "Płyta"), lines.size());
  EXPECT_THAT(lines[3], HasSubstr("IncidenceOnElem(°)"));
}

TEST_F(FullListing, OtherwiseItIsWindows1252) {
  Listing();
  EXPECT_THAT(Bytes(Name()), HasSubstr("IncidenceOnElem(\xB0)"));
  EXPECT_THAT(Bytes(Name()), HasSubstr("JcurrentDensity(A/m\xB2)"));
}

}  // namespace
}  // namespace orv::testing
