#include "window/level_lines.h"

#include <filesystem>

#include "analysis/level_line_data.h"
#include "analysis/run_fixture.h"
#include "support/level_fields.h"
#include "support/recording_surface.h"
#include "view/image_file.h"

namespace orv::testing {
namespace {

class LevelLinesTest : public RunFixture {
 protected:
  std::string Name(const std::string& name) const { return folder.path().string() + "/" + name; }
  std::string Content(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(Name(name), std::ios::binary).rdbuf();
    return content.str();
  }

  static auto On(DrawingSurface& target) {
    return [&target](const LevelLineInput& input) { return PlotLevelLines(input, target); };
  }

  RecordingSurface surface{640, 480};
  std::string errorText_ = "before";
};

TEST_F(LevelLinesTest, DrawsThePrimitiveOfTheOption) {
  LoadAndRun(9, "L 2");
  dialogs.statuses.clear();
  EXPECT_TRUE(DrawLevelLines(run, On(surface)));
  EXPECT_EQ(surface.strokes.size(), 21U);
  EXPECT_TRUE(surface.Has("IncidenceOnElem (deg)"));
  EXPECT_TRUE(dialogs.statuses.empty());
  ASSERT_TRUE(Replot(1));
  RecordingSurface second(640, 480);
  EXPECT_TRUE(DrawLevelLines(run, On(second)));
  EXPECT_TRUE(second.Has("X (m)"));
  EXPECT_EQ(second.strokes.size(), 21U);
}

TEST_F(LevelLinesTest, DrawsNothingUnasked) {
  LoadAndRun(13, "");
  dialogs.statuses.clear();
  EXPECT_FALSE(DrawLevelLines(run, On(surface)));
  EXPECT_TRUE(surface.texts.empty());
  EXPECT_TRUE(dialogs.statuses.empty());
}

TEST_F(LevelLinesTest, OnlyAFinishedRunHasThem) {
  LoadAndRun(9, "L 2");
  run.record.finished = false;
  EXPECT_FALSE(DrawLevelLines(run, On(surface)));
  EXPECT_TRUE(surface.texts.empty());
}

TEST_F(LevelLinesTest, FaultsGoToStatusLineAndLog) {
  struct Row {
    const char* options;
    const char* text;
    bool drawn;
  };
  for (const Row& row : {Row{"L 1", "Error in Input Parameters", true},  // one cell
                         Row{"L 2", "Error in Contour Levels", true},    // the area of a plate's cells
                         Row{"L 77", "Level lines: there is no primitive 77, the primitives are 1 to 3", false}}) {
    SCOPED_TRACE(row.options);
    LoadAndRun(4, row.options);
    dialogs.log.clear();
    dialogs.boxes.clear();
    RecordingSurface frame(640, 480);
    EXPECT_EQ(DrawLevelLines(run, On(frame)), row.drawn);
    EXPECT_EQ(dialogs.statuses.back(), row.text);
    EXPECT_EQ(dialogs.log, (std::vector<std::string>{row.text}));
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_EQ(frame.strokes.size(), row.drawn ? 1U : 0U);
  }
}

TEST_F(LevelLinesTest, WritesPicturesAndVectorFiles) {
  const LevelLineInput input = FieldOnPlate(ConeField);
  EXPECT_EQ(WriteLevelLines(input, {Name("cone.PNG"), 320, 200, 1}, errorText_), "");
  EXPECT_EQ(errorText_, "");
  Image image;
  ASSERT_EQ(ReadPng(Name("cone.PNG"), image), "");
  EXPECT_EQ(image.width, 320);
  EXPECT_EQ(image.height, 200);
  EXPECT_EQ(WriteLevelLines(input, {Name("cone.svg"), 320, 200, 1}, errorText_), "");
  const std::string small = Content("cone.svg");
  EXPECT_EQ(small.rfind("<?xml", 0), 0U);
  EXPECT_NE(small.find("viewBox=\"0 0 320 200\""), std::string::npos);
  EXPECT_NE(small.find("font-size=\"8\""), std::string::npos);
  EXPECT_EQ(WriteLevelLines(input, {Name("cone.svg"), 640, 400, 2}, errorText_), "");
  EXPECT_NE(Content("cone.svg").find("font-size=\"16\""), std::string::npos);
}

TEST_F(LevelLinesTest, AFrameAloneIsWrittenToo) {
  const LevelLineInput input = FieldOnPlate([](double, double) { return 2.0; });
  EXPECT_EQ(WriteLevelLines(input, {Name("flat.svg")}, errorText_), "");
  EXPECT_EQ(errorText_, "Error in Contour Levels");
  EXPECT_NE(Content("flat.svg").find("Density (m-3)"), std::string::npos);
}

TEST_F(LevelLinesTest, TellsWhyAFileIsMissing) {
  const LevelLineInput input = FieldOnPlate(ConeField);
  for (const char* name : {"none/cone.png", "none/cone.svg"}) {
    const std::string message = WriteLevelLines(input, {Name(name)}, errorText_);
    EXPECT_NE(message.find(name), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Name(name)));
  }
}

TEST_F(LevelLinesTest, KnowsItsFiles) {
  EXPECT_TRUE(IsLevelLineFile("a.png"));
  EXPECT_TRUE(IsLevelLineFile("A.SVG"));
  EXPECT_FALSE(IsLevelLineFile("a.bmp"));
  EXPECT_FALSE(IsLevelLineFile("png"));
}

}  // namespace
}  // namespace orv::testing
