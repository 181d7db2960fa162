#include <set>

#include "shell/settings_store.h"
#include "support/golden_image.h"
#include "system/program_run.h"
#include "view/image_file.h"

namespace orv::testing {
namespace {

class PictureTest : public ProgramTest {
 protected:
  Image Png(const std::string& name) {
    Image image;
    EXPECT_EQ(ReadPng(File(name), image), "");
    return image;
  }
  // Colours that a picture holds, coarsely.
  static std::size_t Colours(const Image& image) {
    std::set<int> colours;
    for (std::size_t i = 0; i + 2 < image.rgb.size(); i += 3) {
      colours.insert((image.rgb[i] / 32) * 64 + (image.rgb[i + 1] / 32) * 8 + image.rgb[i + 2] / 32);
    }
    return colours.size();
  }
};

TEST_F(PictureTest, ARunDrawsItsPlot) {
  ASSERT_EQ(Run(Example("telecom_satellite.xlsx"),
                {"--log", "1", "--image", File("pictures/a.png"), "--image", File("a.bmp"), "--size", "320x240"}),
            kExitDone)
      << err;
  const Image image = Png("pictures/a.png");
  EXPECT_EQ(image.width, 320);
  EXPECT_EQ(image.height, 240);
  EXPECT_GT(Colours(image), 20U);
  EXPECT_TRUE(OutHas("Picture     " + File("pictures/a.png")));
  const std::string bitmap = ReadWhole(File("a.bmp"));
  EXPECT_EQ(bitmap.substr(0, 2), "BM");
  EXPECT_EQ(bitmap.size(), 58U + 320 * 3 * 240);
}

TEST_F(PictureTest, ViewsSidesStylesAndBackgroundsDiffer) {
  const std::vector<std::vector<std::string>> looks = {
      {},
      {"--view", "proj:5"},
      {"--sides", "0"},
      {"--color-style", "3"},
      {"--scale-mode", "5"},
      {"--background", "white"},
      {"--frame-fraction", "400"},
      {"--start-fraction", "400"},
      {"--pixel-ratio", "2"},
      {"--vectors"},
  };
  std::vector<Image> images;
  for (const auto& look : looks) {
    std::vector<std::string> more = {"--plot", "13", "--image", File("a.png"), "--size", "200x150", "--quiet"};
    more.insert(more.end(), look.begin(), look.end());
    ASSERT_EQ(Run(Example("telecom_satellite.xlsx"), more), kExitDone) << err;
    images.push_back(Png("a.png"));
    for (std::size_t other = 0; other + 1 < images.size(); ++other) {
      EXPECT_NE(images[other], images.back()) << (look.empty() ? "" : look.front()) << " draws what look " << other;
    }
  }
}

TEST_F(PictureTest, APictureThatCannotBeWrittenIsTold) {
  folder.Write("file", "x");
  EXPECT_EQ(Run(Example("telecom_satellite.xlsx"), {"--image", File("file/a.png"), "--size", "64x48"}), kExitOutput);
  EXPECT_TRUE(ErrHas(File("file/a.png"))) << err;
  EXPECT_TRUE(OutHas("Density")) << "the results of the run are there all the same";
}

// Satellite, planets and their pictures come from the same settings as in the window.
TEST_F(PictureTest, TakesTheSettingsOfTheOptionsFrame) {
  const auto draw = [&](const std::string& file, const std::string& spec = "=MAX(A24:O114)") {
    EXPECT_EQ(Program({"show", Example("range_plots.xlsx"), "--spec", spec, "--settings", File("set"), "--image",
                       File(file), "--size", "200x150"}),
              kExitDone)
        << err;
    return Png(file);
  };
  const auto store = [&](const std::string& key, const std::string& value) {
    std::string warning;
    FileSettings(File("set"), warning).Write(std::string(kSectionUse), key, value);
  };
  const Image plain = draw("plain.png");
  store("Setstr04.00", "1");
  const Image satellite = draw("satellite.png");
  EXPECT_NE(satellite, plain);
  store("Setstr03.00", "3000");
  EXPECT_NE(draw("large.png"), satellite);
  store("Setstr00.00", "absent.jpg");
  draw("bare.png", "=0.001*MAX(A24:O114)");  // an orbit: the Earth is drawn
  EXPECT_TRUE(ErrHas("absent.jpg") || OutHas("absent.jpg")) << out << err;
}

TEST_F(PictureTest, LevelLinesAreWritten) {
  const std::string model = Example("primitive_gallery.xlsx");
  const std::vector<std::string> files = {
      "--level-lines", File("new/lines.png"), "--level-lines", File("lines.svg"), "--size", "400x300"};
  const auto run = [&](std::vector<std::string> more) {
    more.insert(more.end(), files.begin(), files.end());
    return Run(model, more);
  };
  ASSERT_EQ(run({"--options", "L 2"}), kExitDone) << err;
  EXPECT_TRUE(OutHas("Level lines " + File("lines.svg")));
  const Image image = Png("new/lines.png");
  EXPECT_EQ(image.width, 400);
  EXPECT_GT(Colours(image), 3U);
  const std::string drawing = ReadWhole(File("lines.svg"));
  EXPECT_TRUE(drawing.starts_with("<?xml") || drawing.starts_with("<svg")) << drawing.substr(0, 80);
  EXPECT_NE(drawing.find("</svg>"), std::string::npos);
  std::filesystem::remove_all(File("new"));

  EXPECT_EQ(run({"--options", "L 99", "--quiet"}), kExitOutput);
  EXPECT_TRUE(ErrHas("there is no primitive 99")) << err;
  EXPECT_EQ(run({"--quiet"}), kExitOutput);
  EXPECT_TRUE(ErrHas("L n")) << err;
  EXPECT_FALSE(std::filesystem::exists(File("new")));

  EXPECT_EQ(Run(model, {"--options", "L 99"}), kExitDone) << "no file was asked for";
  EXPECT_TRUE(ErrHas("there is no primitive 99") || OutHas("there is no primitive 99")) << out << err;
  EXPECT_EQ(Run(model, {"--options", "L 2", "--level-lines", File("lines.pdf")}), kExitUsage);
  EXPECT_TRUE(ErrHas(".svg")) << err;
}

// The frame without lines is a picture all the same: the reason is told once, also when the run is quiet.
TEST_F(PictureTest, MissingLevelLinesAreToldOnce) {
  for (const bool quiet : {false, true}) {
    std::vector<std::string> words = {"--plot", "7",    "--options",     "L 1",
                                      "--case", "flat", "--level-lines", File("flat.svg")};
    words.insert(words.end(), {"--level-lines", File("flat.png")});
    if (quiet) words.emplace_back("--quiet");
    EXPECT_EQ(Run(Example("tutorial.xlsx"), words), kExitDone);
    const std::string warning = "Warning [Picture]: Error in Contour Levels\n";
    const std::size_t place = err.find(warning);
    ASSERT_NE(place, std::string::npos) << err;
    EXPECT_EQ(err.find("Contour Levels", place + warning.size()), std::string::npos) << err;
    EXPECT_FALSE(OutHas("Contour Levels")) << out;
    EXPECT_EQ(Png("flat.png").width, 1280);
  }
}

TEST_F(PictureTest, APlotFileIsShown) {
  std::string plot = "From: \tbook.xls\tSheet1\t=MAX(A2:D40)\t1\t\tDate 2026/01/01 00:00:00\r\n";
  for (int i = 0; i < 39; ++i) {
    plot += std::to_string(i) + "\t" + std::to_string(i * i) + "\t" + std::to_string(20 - i) + "\t" +
            std::to_string(i) + "\r\n";
  }
  folder.Write("plot.txt", plot);
  ASSERT_EQ(
      Program({"show", File("plot.txt"), "--settings", File("set"), "--image", File("p.png"), "--size", "200x150"}),
      kExitDone)
      << err;
  EXPECT_GT(Colours(Png("p.png")), 2U);
  EXPECT_TRUE(OutHas("Picture"));
}

TEST_F(PictureTest, RangesOfAWorkbookAreShown) {
  std::vector<Image> images;
  const std::vector<std::vector<std::string>> choices = {{},
                                                         {"--cell", "A12"},
                                                         {"--sheet", "Surface"},
                                                         {"--spec", "=2*MAX(A24:C114)"},
                                                         {"--sheet", "Surface", "--spec", "=MAX(G10:I400)"}};
  for (const std::string ending : {"xlsx", "ods"}) {
    for (std::size_t k = 0; k < choices.size(); ++k) {
      std::vector<std::string> words = {"show",         Example("range_plots." + ending),
                                        "--settings",   File("set"),
                                        "--image",      File("p.png"),
                                        "--size",       "200x150",
                                        "--background", "white"};
      words.insert(words.end(), choices[k].begin(), choices[k].end());
      ASSERT_EQ(Program(words), kExitDone) << err;
      EXPECT_EQ(err, "");
      images.push_back(Png("p.png"));
      EXPECT_GT(Colours(images.back()), 2U);
      for (std::size_t other = 0; other < k; ++other) {
        EXPECT_NE(images[images.size() - 1 - k + other], images.back()) << other << " and " << k;
      }
    }
  }
  EXPECT_FALSE(std::filesystem::exists(File("set/OrvLastPlot.txt"))) << "the window's last plot is not touched";
}

TEST_F(PictureTest, ATextOfNumbersIsAWorkbook) {
  folder.Write("table.txt", "x\ty\tz\n1\t2\t3\n4\t6\t5\n7\t8\t9\n");
  EXPECT_EQ(Program({"show", File("table.txt"), "--spec", "=MAX(A2:C4)", "--settings", File("set"), "--image",
                     File("p.png"), "--size", "200x150"}),
            kExitDone)
      << err;
  EXPECT_GT(Colours(Png("p.png")), 2U);
}

TEST_F(PictureTest, AnotherKeywordOfTheSettingsMarksRanges) {
  std::filesystem::create_directories(File("set"));
  folder.Write("set/settings.json", R"({"Use": {"Setstr02.00": "PLOT"}})");
  folder.Write("table.txt", "1\t2\t3\n4\t6\t5\n7\t8\t9\n");
  const auto show = [&](const std::string& spec) {
    return Program({"show", File("table.txt"), "--spec", spec, "--settings", File("set"), "--image", File("p.png"),
                    "--size", "64x48"});
  };
  EXPECT_EQ(show("=PLOT(A1:C3)"), kExitDone) << err;
  EXPECT_EQ(show("=MAX(A1:C3)"), kExitWorkbook);
  EXPECT_TRUE(ErrHas("=PLOT(A2:C60)")) << err;
}

// A second range without values: with it known, the points keep the value 0; otherwise they would take z.
TEST_F(PictureTest, AnotherKeywordOfTheSettingsMarksTheRangesOfAPlotFile) {
  std::filesystem::create_directories(File("set"));
  folder.Write("set/settings.json", R"({"Use": {"Setstr02.00": "PLOT"}})");
  const auto picture = [&](const std::string& keyword, const std::string& settings) {
    folder.Write("plot.txt", "From: \tb\ts\t=" + keyword + "(A1:C3)+" + keyword +
                                 "(D1:D3)\t1\tPENUP\tDate \n1\t2\t3\n4\t5\t6\n7\t8\t9\n");
    EXPECT_EQ(Program({"show", File("plot.txt"), "--settings", File(settings), "--image", File("p.png"), "--size",
                       "200x150"}),
              kExitDone)
        << err;
    return Png("p.png");
  };
  const Image known = picture("MAX", "usual");
  EXPECT_EQ(picture("PLOT", "set"), known);
  EXPECT_NE(picture("MAX", "set"), known);
}

TEST_F(PictureTest, WhatCannotBePlottedIsTold) {
  struct Row {
    std::vector<std::string> words;
    const char* part;
  };
  folder.Write("plot.txt", "From: \tb\ts\t=MAX(A2:C3)\t1\n1\t2\t3\n4\t5\t6\n");
  const std::string example = Example("range_plots.xlsx");
  for (const Row& row :
       {Row{{example, "--cell", "B30"}, "its cell B30 on the sheet \"Orbit\" holds no specification"},
        Row{{Example("telecom_satellite.xlsx")}, "holds no specification such as \"=MAX(A2:C60)\""},
        Row{{example, "--spec", "A2:C60"}, "a specification names ranges"},
        Row{{example, "--spec", "=MAX(A24:B204)"}, "the first range needs 3 columns"},
        Row{{example, "--spec", "=MAX(Surface!A10:C20)"}, "another sheet"}, Row{{example, "--sheet", "None"}, "None"},
        Row{{example, "--cell", "5"}, "5"}, Row{{File("plot.txt"), "--spec", "=MAX(A2:C60)"}, "are for workbooks"},
        Row{{File("plot.txt"), "--sheet", "S"}, "are for workbooks"}, Row{{File("none.xlsx")}, "does not exist"}}) {
    std::vector<std::string> words = {"show", "--settings", File("set"), "--image", File("p.png")};
    words.insert(words.end(), row.words.begin(), row.words.end());
    EXPECT_EQ(Program(words), kExitWorkbook) << row.part;
    EXPECT_TRUE(ErrHas(row.part)) << err;
    EXPECT_FALSE(std::filesystem::exists(File("p.png")));
  }
}

// An active cell with a specification is no matter for a computation.
TEST_F(PictureTest, ARunTakesTheModelWhateverTheActiveCellHolds) {
  EXPECT_EQ(Run(Example("range_plots.xlsx")), kExitWorkbook);
  EXPECT_TRUE(ErrHas("Orvdata")) << err;
}

TEST_F(PictureTest, WhatIsNoPlotFileIsTold) {
  EXPECT_EQ(Program({"show", File("none.txt"), "--settings", File("set"), "--image", File("p.png")}), kExitWorkbook);
  EXPECT_TRUE(ErrHas("none.txt")) << err;
  folder.Write("empty.txt", "");
  EXPECT_EQ(Program({"show", File("empty.txt"), "--settings", File("set"), "--image", File("p.png")}), kExitWorkbook);
  EXPECT_TRUE(ErrHas("empty.txt")) << err;
  EXPECT_FALSE(std::filesystem::exists(File("p.png")));
}

}  // namespace
}  // namespace orv::testing
