#include "analysis/cell_export.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>

#include "analysis/run_fixture.h"
#include "geometry/quantities.h"
#include "support/export_readers.h"

namespace orv::testing {
namespace {

constexpr std::size_t kColumns = 5 + 104 + 20;

class ExportTest : public RunFixture {
 protected:
  std::vector<std::vector<std::string>> Csv() {
    std::ostringstream out;
    WriteCsv(run, out);
    return ReadCsv(out.str());
  }
  nlohmann::json Json(const std::vector<TerminalDialogs::Message>& messages = {}) {
    std::ostringstream out;
    WriteJson(run, messages, out);
    return nlohmann::json::parse(out.str());
  }
  pugi::xml_parse_result Vtp() {
    std::ostringstream out;
    WriteVtp(run, out);
    return vtp.load_string(out.str().c_str());
  }
  std::string Array(const pugi::xml_node& parent, const std::string& name) {
    return parent.find_child_by_attribute("DataArray", "Name", name.c_str()).text().get();
  }
  std::string File(const std::string& name) const { return (folder.path() / name).string(); }
  std::vector<std::string> FilesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  static std::string ReadAll(const std::string& name) {
    std::ifstream in(name, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
  }
  pugi::xml_document vtp;
};

// --- csv -------------------------------------------------------------------------------------------------------------

TEST_F(ExportTest, CsvHasOneRowACell) {
  LoadAndRun();
  const auto rows = Csv();
  ASSERT_EQ(rows.size(), 2U + 1 + 16 + 16);
  for (const auto& row : rows) EXPECT_EQ(row.size(), kColumns);
  EXPECT_EQ(rows[0][0], "primitive");
  EXPECT_EQ(rows[0][1], "name");
  EXPECT_EQ(rows[0][2], "material");
  EXPECT_EQ(rows[0][3], "i");
  EXPECT_EQ(rows[0][4], "j");
  EXPECT_EQ(rows[0][5], "q1");
  EXPECT_EQ(rows[0][108], "q104");
  EXPECT_EQ(rows[0][109], "c1x");
  EXPECT_EQ(rows[0][120], "c4z");
  EXPECT_EQ(rows[0][121], "c1indicatrix");
  EXPECT_EQ(rows[0][128], "c4azimuth");
  EXPECT_EQ(rows[1][5 + 12], "Density (m-3)");
  EXPECT_EQ(rows[1][5 + 89], "Redeposition silver(m/s)");
  std::size_t line = 2;
  for (int p = 1; p <= 3; ++p) {
    for (int i = 1; i <= (p == 1 ? 1 : 4); ++i) {
      for (int j = 1; j <= (p == 1 ? 1 : 4); ++j, ++line) {
        EXPECT_EQ(rows[line][0], std::to_string(p));
        EXPECT_EQ(rows[line][1], p == 1 ? "Thruster" : "Plate_" + std::to_string(p - 1));
        EXPECT_EQ(rows[line][2], p == 1 ? "T5" : p == 2 ? "silver" : "gold");
        EXPECT_EQ(rows[line][3], std::to_string(i));
        EXPECT_EQ(rows[line][4], std::to_string(j));
      }
    }
  }
}

TEST_F(ExportTest, CsvGivesEveryBit) {
  LoadAndRun();
  const double odd[5] = {0.1, 1.0 / 3, 5e-324, 1.7976931348623157e308, -2.5e-17};
  for (int k = 0; k < 5; ++k) run.cells.CellData(2, 1, 1, 82 + k) = odd[k];
  const auto rows = Csv();
  for (std::size_t line = 2; line < rows.size(); ++line) {
    const int p = std::stoi(rows[line][0]);
    const int i = std::stoi(rows[line][3]);
    const int j = std::stoi(rows[line][4]);
    for (int q = 1; q <= 104; ++q) {
      ASSERT_EQ(std::strtod(rows[line][static_cast<std::size_t>(4 + q)].c_str(), nullptr), Data(p, i, j, q));
    }
    for (int slot = 1; slot <= 20; ++slot) {
      ASSERT_EQ(std::strtod(rows[line][static_cast<std::size_t>(108 + slot)].c_str(), nullptr),
                run.cells.CellCorners(p, i, j, slot));
    }
  }
}

TEST_F(ExportTest, CsvQuotesWhatNeedsIt) {
  text.primitives[1] = "silver\tA,\"b\" rect size 1 1 cells 1 1 R X 180 T 0 0 2";
  text.primitives[2] = "go,ld\tC rect size 1 1 cells 1 1 R X 180 T 0 0 3";
  LoadAndRun();
  const auto rows = Csv();
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[3][1], "A,\"b\"");
  EXPECT_EQ(rows[4][2], "go,ld");
  for (const auto& row : rows) EXPECT_EQ(row.size(), kColumns);
}

TEST_F(ExportTest, ShellsOfAVolumeAreOfItsMaterial) {
  text.primitives.push_back("gold\tPlume cyl size 0.5 2 3 cells 8 4 T 5 0 0");
  LoadAndRun();
  const auto rows = Csv();
  EXPECT_EQ(rows.back()[0], std::to_string(run.cells.numberPrimWithVolumic));
  EXPECT_GT(run.cells.numberPrimWithVolumic, 4);
  EXPECT_EQ(rows.back()[2], "gold");
  const auto json = Json();
  EXPECT_EQ(json["primitives"].size(), static_cast<std::size_t>(run.cells.numberPrimWithVolumic));
  EXPECT_EQ(json["primitives"].back()["material"], "gold");
}

// --- json ------------------------------------------------------------------------------------------------------------

TEST_F(ExportTest, JsonTellsTheRun) {
  text.directives = "T 1 2.5 -3 Twall 400 MomentWC 1 TA 2 3 re";
  LoadAndRun(13, "L 2");
  const auto json = Json({{"question", "A title", "A text", "Ignore"}, {"log", "", "_x", ""}});
  EXPECT_EQ(json["program"]["name"], "OrvValis");
  EXPECT_EQ(json["case"]["line"], run.record.CaseLine);
  EXPECT_EQ(json["case"]["name"], "Case ....");
  EXPECT_EQ(json["workbook"]["sheet"], "Sheet1");
  EXPECT_EQ(json["plot"]["number"], 13);
  EXPECT_EQ(json["plot"]["label"], "Density (m-3)");
  EXPECT_EQ(json["plot"]["options"], "L 2");
  const auto& d = json["directives"];
  EXPECT_EQ(d["MomentOrigin"], (std::vector<double>{2, 1, 2.5, -3}));
  EXPECT_EQ(d["Twall"], 400);
  EXPECT_EQ(d["MomentWC"], 1);
  EXPECT_EQ(d["RectoOnly"], 1);
  EXPECT_EQ(d["SpectrumMode"], -1);
  EXPECT_EQ(d["RotationTo"], 360);
  EXPECT_EQ(json["thruster"]["primitive"], 1);
  EXPECT_EQ(json["thruster"]["name"], "T5");
  EXPECT_EQ(json["thruster"]["PlumeLimitAngle"], 60);
  EXPECT_EQ(json["thruster"]["axiT"].size(), 3U);
  EXPECT_EQ(json["thruster"]["ThrusterData"]["10"], 3.79);
  EXPECT_EQ(json["thruster"]["ThrusterData"]["-1"], "Xe+");
  EXPECT_EQ(json["materials"]["used"], (std::vector<std::string>{"silver", "gold"}));
  EXPECT_EQ(json["materials"]["table"][0]["name"], "silver");
  EXPECT_EQ(json["materials"]["table"][0]["slots"]["2"], 10490);
  EXPECT_EQ(json["materials"]["databaseRowsUsed"].size(), 21U);
  ASSERT_EQ(json["primitives"].size(), 3U);
  const auto& plate = json["primitives"][1];
  EXPECT_EQ(plate["number"], 2);
  EXPECT_EQ(plate["name"], "Plate_1");
  EXPECT_EQ(plate["material"], "silver");
  EXPECT_NEAR(plate["area"], 1, 1e-12);
  ASSERT_EQ(json["messages"].size(), 2U);
  EXPECT_EQ(json["messages"][0]["kind"], "question");
  EXPECT_EQ(json["messages"][0]["title"], "A title");
  EXPECT_EQ(json["messages"][0]["text"], "A text");
  EXPECT_EQ(json["messages"][0]["answer"], "Ignore");
  EXPECT_TRUE(json["seconds"].contains("ray tracing"));
}

TEST_F(ExportTest, JsonSummariesGiveEveryBit) {
  LoadAndRun();
  const auto json = Json();
  int found = 0;
  for (const auto& entry : json["primitives"][1]["summaries"]) {
    if (entry["quantity"] != 13) continue;
    ++found;
    EXPECT_EQ(entry["label"], "Density (m-3)");
    double lo = Data(2, 1, 1, 13);
    double hi = lo;
    double sum = 0;
    for (int i = 1; i <= 4; ++i) {
      for (int j = 1; j <= 4; ++j) {
        lo = std::min(lo, Data(2, i, j, 13));
        hi = std::max(hi, Data(2, i, j, 13));
        sum += Data(2, i, j, 13);
      }
    }
    EXPECT_EQ(entry["min"].get<double>(), lo);
    EXPECT_EQ(entry["max"].get<double>(), hi);
    EXPECT_EQ(entry["sum"].get<double>(), sum);
  }
  EXPECT_EQ(found, 1);
}

TEST_F(ExportTest, OddTextsAndNumbersStayValid) {
  LoadAndRun();
  run.cells.CellData(2, 1, 1, 13) = std::numeric_limits<double>::quiet_NaN();
  run.cells.CellData(2, 1, 2, 13) = std::numeric_limits<double>::infinity();
  run.ResultLabels[13] = "a <b> & \"c\"";
  run.PrimitiveNames[2] = "bad \xFF bytes \x01 \n";
  EXPECT_NO_THROW(Json({{"log", "\xFF", "\xC3", ""}}));
  EXPECT_TRUE(Vtp());
  const auto rows = Csv();
  for (const auto& row : rows) EXPECT_EQ(row.size(), kColumns);
}

TEST_F(ExportTest, ARunWithoutPrimitivesIsExported) {
  text.primitives.clear();
  LoadAndRun();
  EXPECT_EQ(Csv().size(), 2U);
  EXPECT_TRUE(Json()["primitives"].empty());
  EXPECT_TRUE(Vtp());
}

// --- vtp -------------------------------------------------------------------------------------------------------------

TEST_F(ExportTest, VtpHoldsTheCellsButTheThruster) {
  LoadAndRun();
  ASSERT_TRUE(Vtp());
  const auto file = vtp.child("VTKFile");
  EXPECT_STREQ(file.attribute("type").value(), "PolyData");
  EXPECT_STREQ(file.attribute("byte_order").value(), "LittleEndian");
  EXPECT_STREQ(file.attribute("header_type").value(), "UInt64");
  const auto piece = file.child("PolyData").child("Piece");
  constexpr std::size_t cells = 32;
  EXPECT_EQ(piece.attribute("NumberOfPolys").as_uint(), cells);
  EXPECT_EQ(piece.attribute("NumberOfPoints").as_uint(), 4 * cells);
  bool whole = false;
  const auto points = ReadVtkArray<double>(Array(piece.child("Points"), "Points"), whole);
  EXPECT_TRUE(whole);
  ASSERT_EQ(points.size(), 12 * cells);
  for (int slot = 1; slot <= 12; ++slot) {
    EXPECT_EQ(points[static_cast<std::size_t>(slot - 1)], run.cells.CellCorners(2, 1, 1, slot));
    EXPECT_EQ(points[12 * (cells - 1) + static_cast<std::size_t>(slot - 1)], run.cells.CellCorners(3, 4, 4, slot));
  }
  const auto connectivity = ReadVtkArray<std::int64_t>(Array(piece.child("Polys"), "connectivity"), whole);
  EXPECT_TRUE(whole);
  ASSERT_EQ(connectivity.size(), 4 * cells);
  for (std::size_t k = 0; k < connectivity.size(); ++k) EXPECT_EQ(connectivity[k], static_cast<std::int64_t>(k));
  const auto offsets = ReadVtkArray<std::int64_t>(Array(piece.child("Polys"), "offsets"), whole);
  EXPECT_TRUE(whole);
  ASSERT_EQ(offsets.size(), cells);
  EXPECT_EQ(offsets.back(), 128);
  const auto primitive = ReadVtkArray<std::int32_t>(Array(piece.child("CellData"), "primitive"), whole);
  EXPECT_TRUE(whole);
  ASSERT_EQ(primitive.size(), cells);
  EXPECT_EQ(primitive.front(), 2);
  EXPECT_EQ(primitive.back(), 3);
}

TEST_F(ExportTest, VtpHasAnArrayForEachQuantityInUse) {
  LoadAndRun();
  ASSERT_TRUE(Vtp());
  const auto data = vtp.child("VTKFile").child("PolyData").child("Piece").child("CellData");
  bool whole = false;
  const auto density = ReadVtkArray<double>(Array(data, "Density (m-3)"), whole);
  EXPECT_TRUE(whole);
  ASSERT_EQ(density.size(), 32U);
  EXPECT_EQ(density[0], Data(2, 1, 1, 13));
  EXPECT_EQ(density[5], Data(2, 2, 2, 13));
  EXPECT_EQ(density[31], Data(3, 4, 4, 13));
  int arrays = 0;
  for (const auto& array : data.children("DataArray")) {
    ++arrays;
    if (std::string(array.attribute("type").value()) != "Float64") continue;
    EXPECT_EQ(ReadVtkArray<double>(array.text().get(), whole).size(), 32U) << array.attribute("Name").value();
    EXPECT_TRUE(whole);
  }
  EXPECT_GT(arrays, 15);
  EXPECT_TRUE(Array(data, "Sputtering (m/s)").empty());  // nothing but zeros
}

// --- files -----------------------------------------------------------------------------------------------------------

TEST_F(ExportTest, TheEndingDecides) {
  LoadAndRun();
  for (const char* name : {"a.csv", "b.JSON", "c.d.vtp", "e.Csv"}) {
    EXPECT_TRUE(IsExportName(name)) << name;
    ExportRun(run, {}, File(name));
    EXPECT_GT(ReadAll(File(name)).size(), 1000U) << name;
  }
  EXPECT_EQ(ReadAll(File("a.csv")), ReadAll(File("e.Csv")));
  EXPECT_EQ(FilesInFolder().size(), 5U);  // with the trace file; nothing temporary is left
  for (const char* name : {"a.txt", "csv", "a.csv.zip", "", "json", "a.csv "}) {
    EXPECT_FALSE(IsExportName(name)) << name;
    try {
      ExportRun(run, {}, File(std::string("x") + name));
      FAIL() << name;
    } catch (const RuntimeFailure& failure) {
      EXPECT_EQ(failure.number(), FailureNumber::BadFileName);
    }
  }
  EXPECT_EQ(FilesInFolder().size(), 5U);
}

TEST_F(ExportTest, AFailureLeavesTheOldFile) {
  LoadAndRun();
  try {
    ExportRun(run, {}, File("missing/a.csv"));
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::PathNotFound);
  }
  std::filesystem::create_directory(folder.path() / "taken.csv");
  EXPECT_THROW(ExportRun(run, {}, File("taken.csv")), RuntimeFailure);
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "taken.csv"));
  EXPECT_EQ(FilesInFolder().size(), 2U);
  folder.Write("old.csv", "old");
  ExportRun(run, {}, File("old.csv"));
  EXPECT_GT(ReadAll(File("old.csv")).size(), 1000U);
}

}  // namespace
}  // namespace orv::testing
