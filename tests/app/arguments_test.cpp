#include "app/arguments.h"

#include <gtest/gtest.h>
#include <sstream>

namespace orv {
namespace {

class ArgumentsTest : public ::testing::Test {
 protected:
  std::optional<Arguments> Parse(const std::vector<std::string>& words) {
    std::vector<const char*> argv = {"orvvalis"};
    for (const std::string& word : words) argv.push_back(word.c_str());
    out.str("");
    err.str("");
    exitCode = -1;
    return ParseArguments(static_cast<int>(argv.size()), argv.data(), out, err, exitCode);
  }
  void ExpectRefused(const std::vector<std::string>& words, const std::string& part = "") {
    std::string line;
    for (const std::string& word : words) line += word + " ";
    EXPECT_FALSE(Parse(words)) << line;
    EXPECT_EQ(exitCode, kExitUsage) << line;
    EXPECT_EQ(err.str().substr(0, 10), "orvvalis: ") << line;
    EXPECT_NE(err.str().find(part), std::string::npos) << line << err.str();
    EXPECT_EQ(out.str(), "") << line;
  }

  std::ostringstream out, err;
  int exitCode = -1;
};

TEST_F(ArgumentsTest, ExitCodes) {
  EXPECT_EQ(kExitDone, 0);
  EXPECT_EQ(kExitAborted, 1);
  EXPECT_EQ(kExitUsage, 2);
  EXPECT_EQ(kExitWorkbook, 3);
  EXPECT_EQ(kExitOutput, 4);
}

TEST_F(ArgumentsTest, ARunNeedsAWorkbookAndAPlot) {
  const auto a = Parse({"run", "model.xlsx", "--plot", "13"});
  ASSERT_TRUE(a);
  EXPECT_EQ(exitCode, 0);
  EXPECT_EQ(a->command, Arguments::Command::Run);
  EXPECT_EQ(a->workbook, "model.xlsx");
  EXPECT_EQ(a->plot, 13);
  EXPECT_EQ(a->sheet, "");
  EXPECT_EQ(a->cell, "");
  EXPECT_EQ(a->options, "");
  EXPECT_FALSE(a->log);
  EXPECT_FALSE(a->onQuestion);
  EXPECT_FALSE(a->decimal);
  EXPECT_FALSE(a->thousands);
  EXPECT_TRUE(a->exports.empty());
  EXPECT_FALSE(a->quiet);
  ExpectRefused({"run", "model.xlsx"}, "--plot");
  ExpectRefused({"run", "--plot", "13"}, "WORKBOOK");
  ExpectRefused({"fly"}, "neither a command nor a file");
  ExpectRefused({"run", "model.xlsx", "--plot", "13", "second.xlsx"}, "second.xlsx");
  ExpectRefused({"run", "model.xlsx", "--plot", "13", "--unknown"}, "--unknown");
}

TEST_F(ArgumentsTest, AllOptions) {
  const auto a =
      Parse({"run",           "--plot", "20",         "m.ods", "--sheet",   "My sheet", "--cell",      "B4",
             "--options",     "L 3",    "--log",      "2",     "--case",    "A case",   "--out",       "there",
             "--on-question", "abort",  "--settings", "set",   "--decimal", ",",        "--thousands", ".",
             "--quiet"});
  ASSERT_TRUE(a) << err.str();
  EXPECT_EQ(a->workbook, "m.ods");
  EXPECT_EQ(a->plot, 20);
  EXPECT_EQ(a->sheet, "My sheet");
  EXPECT_EQ(a->cell, "B4");
  EXPECT_EQ(a->options, "L 3");
  EXPECT_EQ(a->log, 2);
  EXPECT_EQ(a->caseName, "A case");
  EXPECT_EQ(a->outFolder, "there");
  EXPECT_EQ(a->onQuestion, "abort");
  EXPECT_EQ(a->settingsFolder, "set");
  EXPECT_EQ(a->decimal, ",");
  EXPECT_EQ(a->thousands, ".");
  EXPECT_TRUE(a->quiet);
}

TEST_F(ArgumentsTest, ExportsMayBeRepeated) {
  const auto a =
      Parse({"run", "--export", "a.csv", "--export", "b.json", "m.xlsx", "--plot", "1", "--export", "c.VTP"});
  ASSERT_TRUE(a) << err.str();
  EXPECT_EQ(a->exports, (std::vector<std::string>{"a.csv", "b.json", "c.VTP"}));
  EXPECT_EQ(a->workbook, "m.xlsx");
  for (const char* name : {"a.txt", "csv", "a.xlsx", "a.csv.gz"}) {
    ExpectRefused({"run", "m.xlsx", "--plot", "1", "--export", name}, name);
  }
}

TEST_F(ArgumentsTest, PlotsAreThoseWithALabel) {
  for (const char* plot : {"1", "13", "20", "31", "33", "57", "59", "63", "81", "90", "94", "95", "104"}) {
    EXPECT_TRUE(Parse({"run", "m.xlsx", "--plot", plot})) << plot << err.str();
  }
  for (const char* plot : {"0", "-1", "32", "58", "82", "89", "105", "120", "1e1", "13.5", "abc", "", "99999999999"}) {
    ExpectRefused({"run", "m.xlsx", "--plot", plot});
  }
}

TEST_F(ArgumentsTest, ValuesAreChecked) {
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--log", "3"});
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--log", "-1"});
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--log", "x"});
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--on-question", "retry"});
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--decimal", ";"});
  ExpectRefused({"run", "m.xlsx", "--plot", "1", "--decimal", ""});
  ExpectRefused({"run", "m.xlsx", "--plot"});
  for (const char* log : {"0", "1", "2"}) EXPECT_TRUE(Parse({"run", "m.xlsx", "--plot", "1", "--log", log}));
  for (const char* answer : {"ask", "ignore", "abort"}) {
    EXPECT_TRUE(Parse({"run", "m.xlsx", "--plot", "1", "--on-question", answer}));
  }
}

TEST_F(ArgumentsTest, ThePlotsCommand) {
  const auto a = Parse({"plots"});
  ASSERT_TRUE(a);
  EXPECT_EQ(a->command, Arguments::Command::Plots);
  ExpectRefused({"plots", "--plot", "1"});
}

TEST_F(ArgumentsTest, HelpAndVersionEndWell) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--help"}, {"-h"}, {"run", "--help"}, {"plots", "--help"}, {"--version"}}) {
    EXPECT_FALSE(Parse(words)) << words.back();
    EXPECT_EQ(exitCode, kExitDone);
    EXPECT_EQ(err.str(), "");
    EXPECT_FALSE(out.str().empty());
  }
  Parse({"--version"});
  EXPECT_EQ(out.str(), "OrvValis " ORV_VERSION "\n");
  Parse({"--help"});
  EXPECT_NE(out.str().find("Exit codes: 0 done, 1"), std::string::npos);
  Parse({"run", "--help"});
  for (const char* option : {"--sheet", "--cell", "--plot", "--options", "--log", "--case", "--out", "--export",
                             "--on-question", "--settings", "--decimal", "--thousands", "--quiet"}) {
    EXPECT_NE(out.str().find(option), std::string::npos) << option;
  }
}

TEST_F(ArgumentsTest, APictureHasItsDefaults) {
  const auto a = Parse({"run", "model.xlsx", "--plot", "13", "--image", "a.png", "--image", "b.BMP"});
  ASSERT_TRUE(a);
  EXPECT_EQ(a->picture.images, (std::vector<std::string>{"a.png", "b.BMP"}));
  EXPECT_EQ(a->picture.width, 1280);
  EXPECT_EQ(a->picture.height, 960);
  EXPECT_EQ(a->picture.pixelRatio, 1);
  EXPECT_EQ(a->picture.view, "");
  EXPECT_FALSE(a->picture.sides);
  EXPECT_EQ(a->picture.colorStyle, 0);
  EXPECT_EQ(a->picture.scaleMode, 0);
  EXPECT_EQ(a->picture.frameFraction, 1000);
  EXPECT_EQ(a->picture.startFraction, 0);
  EXPECT_FALSE(a->picture.vectors);
}

TEST_F(ArgumentsTest, APictureTakesItsOptions) {
  const auto a = Parse({"run",           "m.xlsx",  "--plot",        "19",       "--image",          "a.png",
                        "--size",        "640x480", "--view",        "isonew:3", "--sides",          "4",
                        "--color-style", "6",       "--scale-mode",  "5",        "--frame-fraction", "300",
                        "--background",  "white",   "--pixel-ratio", "2",        "--vectors"});
  ASSERT_TRUE(a) << err.str();
  EXPECT_EQ(a->picture.width, 640);
  EXPECT_EQ(a->picture.height, 480);
  EXPECT_EQ(a->picture.view, "isonew:3");
  EXPECT_EQ(a->picture.sides, 4);
  EXPECT_EQ(a->picture.colorStyle, 6);
  EXPECT_EQ(a->picture.scaleMode, 5);
  EXPECT_EQ(a->picture.frameFraction, 300);
  EXPECT_EQ(a->picture.pixelRatio, 2);
  EXPECT_TRUE(a->picture.vectors);
}

TEST_F(ArgumentsTest, PictureOptionsAreChecked) {
  const std::vector<std::pair<std::string, std::string>> bad = {
      {"--image", "a.gif"},      {"--image", "png"},          {"--size", "640"},      {"--size", "0x100"},
      {"--size", "-5x100"},      {"--size", "99999x100"},     {"--size", "100x100x"}, {"--view", "top"},
      {"--view", "isonew:4"},    {"--view", "isonew:"},       {"--view", "proj:12"},  {"--view", "iso:1"},
      {"--sides", "5"},          {"--color-style", "7"},      {"--scale-mode", "-1"}, {"--frame-fraction", "1001"},
      {"--background", "green"}, {"--background", "1,2,256"}, {"--pixel-ratio", "9"}, {"--background", "1,2"}};
  for (const auto& [option, value] : bad) ExpectRefused({"run", "m.xlsx", "--plot", "13", option, value}, value);
}

TEST_F(ArgumentsTest, ViewsAndColours) {
  ASSERT_TRUE(ReadView("proj:11"));
  EXPECT_EQ(ReadView("proj:11")->number, 11);
  EXPECT_EQ(ReadView("realiso")->number, 3);
  EXPECT_EQ(ReadView("iso")->form, "iso");
  EXPECT_EQ(ReadView("proj")->number, 0);
  EXPECT_FALSE(ReadView("proj:999999999999"));
  EXPECT_FALSE(ReadView(""));
  EXPECT_EQ(ReadBackground("10,20,70"), (std::array<double, 3>{10, 20, 70}));
  EXPECT_EQ(ReadBackground("white"), (std::array<double, 3>{255, 255, 255}));
  EXPECT_FALSE(ReadBackground("10,20,-1"));
  EXPECT_FALSE(ReadBackground("10;20;70"));
}

TEST_F(ArgumentsTest, ShowDrawsAPlotFileOrRanges) {
  const auto a = Parse({"show", "plot.txt", "--image", "a.png"});
  ASSERT_TRUE(a);
  EXPECT_EQ(a->command, Arguments::Command::Show);
  EXPECT_EQ(a->shown, "plot.txt");
  EXPECT_EQ(a->spec, "");
  ExpectRefused({"show", "plot.txt"}, "--image");
  ExpectRefused({"show", "--image", "a.png"}, "FILE");
  const auto b =
      Parse({"show", "b.xlsx", "--spec", "=MAX(A2:C60)&\"PENUP\"", "--sheet", "S", "--cell", "B4", "--image", "a.png"});
  ASSERT_TRUE(b) << err.str();
  EXPECT_EQ(b->spec, "=MAX(A2:C60)&\"PENUP\"");
  EXPECT_EQ(b->sheet, "S");
  EXPECT_EQ(b->cell, "B4");
}

TEST_F(ArgumentsTest, ARunMayTakeTheModelFromTheRunningSpreadsheet) {
  const auto a = Parse({"run", "--link", "--plot", "13"});
  ASSERT_TRUE(a) << err.str();
  EXPECT_TRUE(a->link);
  EXPECT_EQ(a->workbook, "");
  EXPECT_EQ(a->door, "");
  EXPECT_EQ(Parse({"run", "--link", "--door", "localhost:2002", "--plot", "13"})->door, "localhost:2002");
  EXPECT_FALSE(Parse({"run", "model.xlsx", "--plot", "13"})->link);
  ExpectRefused({"run", "model.xlsx", "--door", "2002", "--plot", "13"}, "--link");
  ExpectRefused({"run", "--link", "--door", "a;b", "--plot", "13"}, "neither a pipe's name nor a port");
  ExpectRefused({"run", "model.xlsx", "--link", "--plot", "13"}, "--link");
  ExpectRefused({"run", "--link", "--sheet", "S", "--plot", "13"}, "--link");
  ExpectRefused({"run", "--link", "--cell", "B4", "--plot", "13"}, "--link");
}

TEST_F(ArgumentsTest, TheManualPageNamesTypesAndThePurpose) {
  EXPECT_FALSE(Parse({"--man-page"}));
  EXPECT_EQ(exitCode, kExitDone);
  const std::string page = out.str();
  for (const char* part : {".SH NAME\norvvalis \\- what an electric", ".B \\-\\-sides \\fIINT\\fR\n",
                           ".B \\-\\-on\\-question \\fITEXT\\fR\n", ".B \\-\\-size \\fIWxH\\fR\n"}) {
    EXPECT_NE(page.find(part), std::string::npos) << part;
  }
  for (const char* mark : {"INT:", "FLOAT:", "TEXT:", "orvvalis \\- OrvValis"}) {
    EXPECT_EQ(page.find(mark), std::string::npos) << mark;
  }
}

TEST_F(ArgumentsTest, WithoutACommandTheWindowOpens) {
  const auto plain = Parse({});
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->command, Arguments::Command::Window);
  EXPECT_EQ(plain->workbook, "");
  const std::string file = std::string(ORV_SOURCE_DIR) + "/README.md";
  const auto opened = Parse({file, "--settings", "here"});
  ASSERT_TRUE(opened) << err.str();
  EXPECT_EQ(opened->command, Arguments::Command::Window);
  EXPECT_EQ(opened->workbook, file);
  EXPECT_EQ(opened->settingsFolder, "here");
}

}  // namespace
}  // namespace orv
