#include <algorithm>
#include <cstdlib>
#include <pugixml.hpp>
#include <set>

#include "system/program_run.h"

namespace orv::testing {
namespace {

namespace fs = std::filesystem;

class RunTest : public ProgramTest {};

// --- the examples ----------------------------------------------------------------------------------------------------

TEST_F(RunTest, TheExampleSatelliteIsComputed) {
  EXPECT_EQ(Run(Example("telecom_satellite.xlsx"), {"--out", File("out")}), 0);
  EXPECT_TRUE(OutHas("Model       Telecom satellite"));
  EXPECT_TRUE(OutHas("Plot        13  Density (m-3)"));
  EXPECT_TRUE(OutHas("Primitives  18"));
  EXPECT_TRUE(OutHas("Thruster    primitive 11, HT1350-measured"));
  EXPECT_TRUE(OutHas("Anti_earth_panel"));
  EXPECT_TRUE(OutHas("Trace file  " + File("set") + "/OrvTraceResults.txt"));
  EXPECT_FALSE(ErrHas("Error"));
  const std::string trace = ReadWhole(File("set/OrvTraceResults.txt"));
  EXPECT_NE(trace.find("OrvValis  M1 "), std::string::npos);
  EXPECT_NE(trace.find("  Case .... Model:Telecom satellite"), std::string::npos);
  EXPECT_EQ(trace.substr(trace.size() - 2), "\r\n");
}

TEST_F(RunTest, BothFormatsGiveTheSameNumbers) {
  for (const std::string name : {"telecom_satellite", "primitive_gallery"}) {
    EXPECT_EQ(Run(Example(name + ".xlsx"), {"--export", File("x.csv"), "--plot", "20"}), 0) << err;
    EXPECT_EQ(Run(Example(name + ".ods"), {"--export", File("o.csv"), "--plot", "20"}), 0) << err;
    const std::string csv = ReadWhole(File("x.csv"));
    EXPECT_GT(csv.size(), 100000U);
    EXPECT_TRUE(csv == ReadWhole(File("o.csv"))) << name;
  }
}

TEST_F(RunTest, TwoRunsGiveTheSameNumbers) {
  for (const char* name : {"a.csv", "b.csv"}) Run(Example("telecom_satellite.ods"), {"--export", File(name)});
  EXPECT_TRUE(ReadWhole(File("a.csv")) == ReadWhole(File("b.csv")));
}

TEST_F(RunTest, EveryPlotOfTheExampleEndsWell) {
  for (const char* plot : {"1", "9", "16", "19", "20", "22", "23", "36", "64", "81", "90", "95", "104"}) {
    EXPECT_EQ(Run(Example("telecom_satellite.xlsx"), {"--plot", plot, "--quiet"}), 0) << plot << err;
    EXPECT_EQ(out, "");
    EXPECT_FALSE(ErrHas("Error")) << plot << err;
  }
}

// --- exports ---------------------------------------------------------------------------------------------------------

TEST_F(RunTest, ExportsAgree) {
  const std::vector<std::string> exports = {"--export",         File("e/cells.csv"), "--export",
                                            File("e/run.json"), "--export",          File("e/cells.vtp")};
  ASSERT_EQ(Run(Example("telecom_satellite.xlsx"), exports), 0) << err;
  for (std::size_t k = 1; k < exports.size(); k += 2) EXPECT_TRUE(OutHas("Export      " + exports[k]));
  const auto rows = ReadCsv(ReadWhole(File("e/cells.csv")));
  const auto json = Json("e/run.json");
  pugi::xml_document vtp;
  ASSERT_TRUE(vtp.load_file(File("e/cells.vtp").c_str()));

  // Cells, extremes and sums of the density, primitive by primitive.
  std::map<int, std::vector<double>> density;
  for (std::size_t k = 2; k < rows.size(); ++k) {
    ASSERT_EQ(rows[k].size(), 129U);
    density[std::stoi(rows[k][0])].push_back(std::strtod(rows[k][17].c_str(), nullptr));
  }
  ASSERT_EQ(json["primitives"].size(), density.size());
  std::size_t cells = 0;
  for (const auto& primitive : json["primitives"]) {
    const std::vector<double>& values = density[primitive["number"].get<int>()];
    cells += values.size();
    for (const auto& summary : primitive["summaries"]) {
      if (summary["quantity"] != 13) continue;
      EXPECT_EQ(summary["min"].get<double>(), *std::min_element(values.begin(), values.end()));
      EXPECT_EQ(summary["max"].get<double>(), *std::max_element(values.begin(), values.end()));
    }
  }
  const auto piece = vtp.child("VTKFile").child("PolyData").child("Piece");
  const std::size_t polys = piece.attribute("NumberOfPolys").as_uint();
  EXPECT_EQ(polys, cells - 1);  // the thruster's cell is left out
  int arrays = 0;
  for (const auto& array : vtp.select_nodes("//DataArray")) {
    ++arrays;
    const std::string type = array.node().attribute("type").value();
    const std::string name = array.node().attribute("Name").value();
    const std::size_t size = type == "Int32" ? 4 : 8;
    const std::size_t count = name == "Points" ? 12 : name == "connectivity" ? 4 : 1;
    EXPECT_EQ(ReadBase64(array.node().text().get()).size(), 8 + polys * count * size) << name;
  }
  EXPECT_GT(arrays, 15);
}

TEST_F(RunTest, CsvNumbersReadBackExactly) {
  ASSERT_EQ(Run(Write(text), {"--export", File("a.csv"), "--export", File("a.json")}), 0) << err;
  const auto rows = ReadCsv(ReadWhole(File("a.csv")));
  int long17 = 0;
  for (std::size_t k = 2; k < rows.size(); ++k) {
    for (std::size_t field = 5; field < rows[k].size(); ++field) {
      const std::string& number = rows[k][field];
      char* end = nullptr;
      const double value = std::strtod(number.c_str(), &end);
      EXPECT_EQ(*end, '\0') << number;
      char again[40];
      std::snprintf(again, sizeof again, "%.17g", value);
      EXPECT_EQ(std::strtod(again, nullptr), value);
      const std::string mantissa = number.substr(0, number.find_first_of("eE"));
      const auto digits = std::count_if(mantissa.begin(), mantissa.end(), [](char c) { return c >= '0' && c <= '9'; });
      long17 += digits >= 16 ? 1 : 0;
    }
  }
  EXPECT_GT(long17, 100);
}

TEST_F(RunTest, AnExportThatCannotBeWrittenIsExitCode4) {
  folder.Write("file", "x");
  EXPECT_EQ(
      Run(Write(text), {"--export", File("file/a.csv"), "--export", File("b.csv"), "--export", "/dev/null/c.json"}), 4);
  EXPECT_TRUE(ErrHas("\"" + File("file/a.csv") + "\" could not be written"));
  EXPECT_TRUE(ErrHas("\"/dev/null/c.json\" could not be written"));
  EXPECT_EQ(ReadWhole(File("file")), "x");
  EXPECT_GT(ReadWhole(File("b.csv")).size(), 1000U);
  fs::create_directory(folder.path() / "taken.vtp");
  EXPECT_EQ(Run(Write(text), {"--export", File("taken.vtp"), "--quiet"}), 4);
  EXPECT_TRUE(ErrHas("taken.vtp\" could not be written"));
  for (const auto& entry : fs::directory_iterator(folder.path())) EXPECT_NE(entry.path().extension(), ".part");
}

// --- questions -------------------------------------------------------------------------------------------------------

TEST_F(RunTest, QuestionsAreAnsweredAsAsked) {
  text.primitives.erase(text.primitives.begin());  // no thruster
  const std::string model = Write(text);
  EXPECT_EQ(Run(model, {"--on-question", "abort"}), 1);
  EXPECT_TRUE(ErrHas("The model do not have any thrusters"));
  EXPECT_TRUE(ErrHas("-> Abort"));
  EXPECT_EQ(out, "");
  EXPECT_EQ(ReadWhole(File("set/OrvTraceResults.txt")), "");
  EXPECT_EQ(Run(model, {"--on-question", "ignore"}), 0);
  EXPECT_TRUE(ErrHas("-> Ignore"));
  EXPECT_EQ(Run(model), 0);  // no terminal: ignore
  EXPECT_EQ(Run(model, {"--on-question", "ask"}, "Abort\n"), 1);
  EXPECT_EQ(Run(model, {"--on-question", "ask"}, "x\na\n"), 1);
  EXPECT_EQ(Run(model, {"--on-question", "ask"}, "Ignore\nignore\nMy case\n"), 0);
  EXPECT_NE(ReadWhole(File("set/OrvTraceResults.txt")).find(" My case Model:Test model"), std::string::npos);
  EXPECT_EQ(Run(model, {"--on-question", "ask"}, ""), 0);  // the input ends: no one is there
}

TEST_F(RunTest, AMissingKeywordIsCancelled) {
  std::string sheet = text.Sheet();
  sheet.replace(sheet.find("Orvdata"), 7, "Orv data");
  const std::string model = folder.Write("nokey.txt", sheet).string();
  for (const char* policy : {"ignore", "abort"}) {
    EXPECT_EQ(Run(model, {"--on-question", policy}), 3);
    EXPECT_TRUE(ErrHas("-> Cancel"));
    EXPECT_TRUE(ErrHas("The keyword Orvdata is not on the sheet \"nokey\" of the workbook \"nokey.txt\"."));
  }
  // Retry reads the file again.
  EXPECT_EQ(Run(model, {"--on-question", "ask"}, "retry\nr\nCancel\n"), 3);
}

TEST_F(RunTest, AnswersAreKeptWithTheResults) {
  text.primitives.erase(text.primitives.begin());
  ASSERT_EQ(Run(Write(text), {"--export", File("a.json")}), 0);
  const auto json = Json("a.json");
  std::vector<std::string> answers;
  for (const auto& message : json["messages"]) {
    if (message["kind"] == "question" || message["kind"] == "input") answers.push_back(message["answer"]);
  }
  ASSERT_GE(answers.size(), 3U);
  EXPECT_EQ(answers[0], "OK");
  EXPECT_EQ(answers[1], "Ignore");
  EXPECT_EQ(answers.back(), "Case ....");
}

TEST_F(RunTest, SpectraAreAskedAboutAtTheStart) {
  text.directives = "Spectrum 1";
  EXPECT_EQ(Run(Write(text), {"--plot", "19"}), 0);
  EXPECT_TRUE(ErrHas("Warning for special case:  Spectrum computations only Do you want to continue?"));
  EXPECT_TRUE(ErrHas("-> OK"));
  EXPECT_TRUE(ErrHas("The Spectrum feature works only for a rotating primitive, click on OK."));
  EXPECT_EQ(Run(Write(text), {"--plot", "19", "--on-question", "abort"}), 1);
}

TEST_F(RunTest, TheSettingAnswersWhenTheCommandDoesNot) {
  text.primitives.erase(text.primitives.begin());
  fs::create_directories(folder.path() / "set");
  folder.Write("set/settings.json", R"({"UseOrv": {"OnQuestion": "abort"}})");
  EXPECT_EQ(Run(Write(text)), 1);
  EXPECT_EQ(Run(Write(text), {"--on-question", "ignore"}), 0);
}

// --- where the model stands ------------------------------------------------------------------------------------------

TestSheet SheetOf(const ModelText& model, const std::string& name, const std::string& active) {
  TestSheet sheet;
  sheet.name = name;
  sheet.active = *ParseA1Cell(active);
  int row = 0;
  std::istringstream lines(model.Sheet());
  for (std::string line; std::getline(lines, line);) {
    ++row;
    int column = 0;
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, '\t');) {
      ++column;
      if (!cell.empty()) sheet.cells.push_back({{row, column}, CellKind::Text, cell, "", ""});
    }
  }
  return sheet;
}

TEST_F(RunTest, TheSheetIsChosen) {
  ModelText one = text;
  one.title = "First model";
  ModelText two = text;
  two.title = "Second model";
  TestBook book;
  book.sheets = {SheetOf(one, "One", "A1"), SheetOf(two, "Two", "B3"), {}};
  book.sheets[2].name = "Empty";
  book.active = 0;
  const std::string model = folder.Write("book.xlsx", Zip(XlsxParts(book))).string();
  EXPECT_EQ(Run(model), 0);
  EXPECT_TRUE(OutHas("Model       First model"));
  EXPECT_TRUE(OutHas("Workbook    book.xlsx, sheet One"));
  for (const char* name : {"Two", "two", "TWO"}) {
    EXPECT_EQ(Run(model, {"--sheet", name}), 0);
    EXPECT_TRUE(OutHas("Model       Second model"));
    EXPECT_TRUE(OutHas("sheet Two"));
  }
  EXPECT_EQ(Run(model, {"--sheet", "Empty"}), 3);
  EXPECT_TRUE(ErrHas("The keyword Orvdata is not on the sheet \"Empty\" of the workbook \"book.xlsx\"."));
  EXPECT_EQ(Run(model, {"--sheet", "Three"}), 3);
  EXPECT_TRUE(ErrHas("Three"));
}

TEST_F(RunTest, TheCellIsChosen) {
  ModelText below = text;
  below.title = "Lower model";
  below.primitives.pop_back();
  text.title = "Upper model";
  std::string sheet = text.Sheet();
  const long rows = std::count(sheet.begin(), sheet.end(), '\n');
  sheet += below.Sheet();
  const std::string model = folder.Write("two.txt", sheet).string();
  EXPECT_EQ(Run(model), 0);
  EXPECT_TRUE(OutHas("Model       Upper model"));
  EXPECT_EQ(Run(model, {"--cell", "B" + std::to_string(rows + 3)}), 0);
  EXPECT_TRUE(OutHas("Model       Lower model"));
  EXPECT_TRUE(OutHas("Primitives  2"));
  EXPECT_EQ(Run(model, {"--cell", "B" + std::to_string(rows + 5)}), 0);  // walks up
  EXPECT_TRUE(OutHas("Model       Lower model"));
  for (const char* cell : {"7", "B", "B0", "ZZZZ1", "x y"}) {
    EXPECT_EQ(Run(model, {"--cell", cell}), 3) << cell;
    EXPECT_TRUE(ErrHas(cell));
  }
}

TEST_F(RunTest, ResultsGoToTheChosenFolder) {
  const std::string model = Write(text);
  EXPECT_EQ(Run(model, {"--export", File("a.json")}), 0);
  EXPECT_EQ(Json("a.json")["workbook"]["folder"], folder.path().string() + "/");
  EXPECT_EQ(Run(model, {"--out", File("deep/er"), "--export", File("a.json")}), 0);
  EXPECT_EQ(Json("a.json")["workbook"]["folder"], File("deep/er") + "/");
  EXPECT_TRUE(fs::is_directory(File("deep/er")));
  EXPECT_NE(Json("a.json")["case"]["line"].get<std::string>().find(" OutputFiles: " + File("deep/er") + "/Orv"),
            std::string::npos);
}

TEST_F(RunTest, OtherFilesAreRefused) {
  folder.Write("empty.xlsx", "");
  folder.Write("noise.xlsx", std::string("\x00\x01\x02\x03\xFF\xFE garbage", 14));
  folder.Write("page.html", "<html><body>Orvdata</body></html>");
  folder.Write("words.txt", "no model in here");
  for (const char* name : {"missing.xlsx", "empty.xlsx", "noise.xlsx", "page.html", "words.txt", ""}) {
    EXPECT_EQ(Run(File(name)), 3) << name;
    EXPECT_TRUE(ErrHas("orvvalis: ")) << name;
    EXPECT_EQ(out, "") << name;
  }
}

// --- options ---------------------------------------------------------------------------------------------------------

TEST_F(RunTest, QuietPrintsProblemsOnly) {
  text.AddAllYields();
  EXPECT_EQ(Run(Write(text), {"--quiet", "--case", "named", "--export", File("a.csv")}), 0);
  EXPECT_EQ(out, "");
  EXPECT_EQ(err, "");
  text.primitives.erase(text.primitives.begin());
  EXPECT_EQ(Run(Write(text), {"--quiet"}), 0);
  EXPECT_TRUE(ErrHas("The model do not have any thrusters"));
}

TEST_F(RunTest, TheCaseIsNamed) {
  EXPECT_EQ(Run(Write(text), {"--case", "Night 7", "--export", File("a.json")}), 0);
  EXPECT_FALSE(ErrHas("LAST CHANCE"));
  EXPECT_EQ(Json("a.json")["case"]["name"], "Night 7");
  EXPECT_NE(ReadWhole(File("set/OrvTraceResults.txt")).find("  Night 7 Model:"), std::string::npos);
}

TEST_F(RunTest, PlotOptionsReachTheRun) {
  const auto incidence = [&] {
    const auto rows = ReadCsv(ReadWhole(File("a.csv")));
    return std::strtod(rows[3][5 + 8].c_str(), nullptr);
  };
  EXPECT_EQ(Run(Write(text), {"--export", File("a.csv")}), 0);
  const double plain = incidence();
  EXPECT_LT(plain, 30);
  EXPECT_EQ(Run(Write(text), {"--export", File("a.csv"), "--options", "C 15"}), 0);
  EXPECT_NEAR(incidence(), 180 - plain, 1e-9);
  EXPECT_EQ(Run(Write(text), {"--options", "F 2"}), 0);
  EXPECT_TRUE(OutHas("MAIORIGINE= 2 "));
  EXPECT_EQ(Run(Write(text), {"--log", "2", "--export", File("a.json")}), 0);
  EXPECT_EQ(Json("a.json")["directives"]["LogScale"], 2);
  text.directives = "Log 1";
  EXPECT_EQ(Run(Write(text), {"--export", File("a.json")}), 0);
  EXPECT_EQ(Json("a.json")["directives"]["LogScale"], 1);
}

TEST_F(RunTest, SeparatorsAreChosen) {
  text.database[2] = "T5\t\t3,5\t1.250\t7.85\t7.34\t0.125\t60\t\t\t\t\t\t\t\t\t0";
  const auto value = [&](const std::vector<std::string>& options, const char* slot) {
    std::vector<std::string> words = {"--export", File("a.json")};
    words.insert(words.end(), options.begin(), options.end());
    EXPECT_EQ(Run(Write(text), words), 0) << err;
    return Json("a.json")["thruster"]["ThrusterData"][slot].get<double>();
  };
  EXPECT_EQ(value({"--decimal", ".", "--thousands", "none"}, "10"), 3.5);
  EXPECT_EQ(value({"--decimal", ".", "--thousands", "none"}, "11"), 1.25);
  EXPECT_EQ(value({"--decimal", ",", "--thousands", "."}, "11"), 1250);
  text.database[2] = "T5\t\t3,500\t1\t7.85\t7.34\t0.125\t60\t\t\t\t\t\t\t\t\t0";
  EXPECT_EQ(value({"--decimal", ".", "--thousands", "none"}, "10"), 3500);
  EXPECT_EQ(value({"--decimal", ",", "--thousands", "none"}, "10"), 3.5);
}

TEST_F(RunTest, SettingsAreKept) {
  EXPECT_EQ(Run(Write(text), {"--plot", "20"}), 0);
  const auto settings = nlohmann::json::parse(ReadWhole(File("set/settings.json")));
  EXPECT_EQ(settings["UseOrv"]["LastRun"], "20");
  folder.Write("set/settings.json", "{ not json");
  EXPECT_EQ(Run(Write(text)), 0);
  EXPECT_TRUE(ErrHas("is damaged"));
  EXPECT_EQ(ReadWhole(File("set/settings.json.damaged")), "{ not json");
}

TEST_F(RunTest, RedepositionTellsAboutTheRectoSides) {
  EXPECT_EQ(Run(Write(text), {"--plot", "90"}), 0);
  EXPECT_TRUE(ErrHas("Only the recto sides are considered when redeposition computations are performed."));
  text.directives = "recto 1";
  EXPECT_EQ(Run(Write(text), {"--plot", "95"}), 0);
  EXPECT_FALSE(ErrHas("Only the recto sides"));
}

TEST_F(RunTest, TheListOfPlots) {
  EXPECT_EQ(Program({"plots"}), 0);
  EXPECT_EQ(err, "");
  std::istringstream lines(out);
  std::set<int> numbers;
  for (std::string line; std::getline(lines, line);) numbers.insert(std::atoi(line.c_str()));
  for (int plot = 1; plot <= 81; ++plot) EXPECT_EQ(numbers.count(plot), plot == 32 || plot == 58 ? 0U : 1U) << plot;
  EXPECT_TRUE(OutHas("13\tDensity (m-3)\n"));
}

TEST_F(RunTest, WrongUsage) {
  EXPECT_EQ(Program({}), 2);
  EXPECT_EQ(Program({"run"}), 2);
  EXPECT_EQ(Program({"run", "m.xlsx", "--plot", "0"}), 2);
  EXPECT_EQ(Program({"run", "m.xlsx", "--plot", "13", "--export", "a.doc"}), 2);
  EXPECT_EQ(out, "");
  EXPECT_FALSE(fs::exists(folder.path() / "set"));
  EXPECT_EQ(Program({"--help"}), 0);
  EXPECT_TRUE(OutHas("Exit codes"));
}

}  // namespace
}  // namespace orv::testing
