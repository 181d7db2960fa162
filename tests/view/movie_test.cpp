#include "view/movie.h"

#include <filesystem>
#include <gmock/gmock.h>

#include "numerics/paths.h"
#include "view/capture.h"
#include "view/recording_control.h"

namespace orv {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* kFramesTip =
    "Before or During a movie process, use this scrollbar to increase the number of Frames (default is 20)";
constexpr const char* kRateTip =
    "Before or During a movie process, use this scrollbar to change the rate of the Frames (in seconds), default is 1 "
    "s";

struct MovieClock : Clock {
  CivilTime Local() const override { return local; }
  double Seconds() const override { return now; }
  CivilTime local{2031, 4, 5, 6, 7, 8};
  double now = 5000;
};

class MovieTest : public ::testing::Test {
 protected:
  MovieTest() { movie.Form_Load(); }
  // The window opened, and a movie of `frames` at a second each started.
  void Start(int frames = 20) {
    ASSERT_TRUE(movie.mnuFMovieSaveAs("folder"));
    movie.HScroll1_Change(frames);
    movie.Command1_Click();
  }
  bool TickAfter(double seconds) {
    clock.now += seconds;
    return movie.MovieSaveAs();
  }

  MovieClock clock;
  std::vector<std::string> saved;
  std::vector<std::string> folders;
  Movie movie{clock, [this](const std::string& Name, const std::string& DIReCT) {
                saved.push_back(Name);
                folders.push_back(DIReCT);
                return true;
              }};
};

TEST(ImageNames, CarryTheDateAndTheSecondsOfTheDay) {
  EXPECT_EQ(TimeStampName({2031, 4, 5, 6, 7, 8}), "Valis20310405_22028");
  EXPECT_EQ(TimeStampImage({2031, 12, 31, 23, 59, 59}), "Valis20311231_86399.bmp");
  EXPECT_EQ(TimeStampImage({2031, 1, 1, 0, 0, 0}), "Valis20310101_0.bmp");
  EXPECT_STREQ(kSavedImage, "ImageOrvValisSaved.bmp");
}

TEST(ImageNames, LoseWhatAFileNameCannotHold) {
  EXPECT_EQ(WithoutIllegalCharacters("a\\b/c:d*e?f\"g<h>i|j.bmp"), "abcdefghij.bmp");
  EXPECT_EQ(WithoutIllegalCharacters("été\t_1\n.bmp"), "été_1.bmp");
}

TEST(ImageNames, GoToTheFolderOfTheOptionsFirst) {
  EXPECT_EQ(ImageFolder("chosen", "book", "pictures"), "chosen");
  EXPECT_EQ(ImageFolder("", "book", "pictures"), "book");
  EXPECT_EQ(ImageFolder("", "", "pictures"), "pictures");
}

TEST_F(MovieTest, TheFormBeginsWithTwentyFramesOfASecond) {
  EXPECT_EQ(movie.MovieCount(), 20);
  EXPECT_EQ(movie.MovieInterval(), 1);
  EXPECT_EQ(movie.MovieFrame(), 0);
  EXPECT_EQ(movie.Form().Command1Tip, "Start Video");
  EXPECT_EQ(movie.Form().Command1Tag, "");
  EXPECT_EQ(movie.Form().Text3, "-1 / 20 Frames ");
  EXPECT_EQ(movie.Form().Text2, "1. seconds between Frames");
  EXPECT_EQ(movie.Form().Text3Tip, kFramesTip);
  EXPECT_EQ(movie.Form().Text2Tip, kRateTip);
  EXPECT_FALSE(movie.Form().visible);
}

TEST_F(MovieTest, TheIntervalIsNeverZero) {
  movie.HScroll2_Change(0);
  EXPECT_DOUBLE_EQ(movie.MovieInterval(), 0.1);
  EXPECT_EQ(movie.Form().Text2, ".1 seconds between Frames");
  movie.HScroll2_Change(-5);
  EXPECT_DOUBLE_EQ(movie.MovieInterval(), 0.1);
  movie.HScroll2_Change(600);
  EXPECT_DOUBLE_EQ(movie.MovieInterval(), 60.1);
  movie.HScroll2_Change(1000);
  EXPECT_DOUBLE_EQ(movie.MovieInterval(), 60.1);
}

TEST_F(MovieTest, NoFramesMeanTwenty) {
  movie.HScroll1_Change(7);
  EXPECT_EQ(movie.MovieCount(), 7);
  EXPECT_EQ(movie.Form().Text3, "-1 / 7 Frames ");
  movie.HScroll1_Change(0);
  EXPECT_EQ(movie.MovieCount(), 20);
  movie.HScroll1_Change(2000);
  EXPECT_EQ(movie.MovieCount(), 1000);
}

TEST_F(MovieTest, FramesAreSavedWhenTheyAreDue) {
  EXPECT_FALSE(movie.MovieSaveAs()) << "no movie";
  Start(3);
  EXPECT_TRUE(movie.Form().visible);
  EXPECT_EQ(movie.MovieFrame(), 1);
  EXPECT_EQ(movie.MovieNext(), 0);
  EXPECT_EQ(movie.Form().Text3, " / 3 Frames ");
  EXPECT_TRUE(TickAfter(0)) << "the first one at once";
  EXPECT_EQ(movie.MovieNext(), clock.now);
  EXPECT_EQ(movie.Form().Text3, "1 / 3 Frames ");
  EXPECT_FALSE(TickAfter(0.5));
  EXPECT_FALSE(TickAfter(0.5)) << "not at the very moment";
  EXPECT_TRUE(TickAfter(0.1));
  EXPECT_TRUE(TickAfter(1.1));
  EXPECT_THAT(saved, ElementsAre("Valis20310405_220281.bmp", "Valis20310405_220282.bmp", "Valis20310405_220283.bmp"));
  EXPECT_THAT(folders, ElementsAre("folder", "folder", "folder"));
  EXPECT_EQ(movie.MovieFrame(), 4);
  EXPECT_TRUE(TickAfter(0.02)) << "ends with the next check, however soon";
  EXPECT_EQ(movie.MovieFrame(), 0);
  EXPECT_EQ(movie.MovieNext(), 0);
  EXPECT_FALSE(movie.Flag());
  EXPECT_FALSE(TickAfter(10));
  EXPECT_THAT(saved, SizeIs(3));
}

TEST_F(MovieTest, AYoungClockDoesNotDelayTheFirstFrame) {
  clock.now = 0.01;
  Start();
  EXPECT_TRUE(TickAfter(0));
}

TEST_F(MovieTest, CountAndRateMayChangeMeanwhile) {
  Start(20);
  TickAfter(0);
  movie.HScroll2_Change(1);
  EXPECT_TRUE(TickAfter(0.3));
  movie.HScroll1_Change(2);
  EXPECT_TRUE(TickAfter(0.01));
  EXPECT_EQ(movie.MovieFrame(), 0) << "two frames are there";
  EXPECT_THAT(saved, SizeIs(2));
}

TEST_F(MovieTest, PauseAndRestart) {
  Start();
  TickAfter(0);
  movie.Command2_Click();
  EXPECT_EQ(movie.MovieNext(), clock.now + 100000);
  EXPECT_EQ(movie.Form().Command1Tag, "ReStart");
  EXPECT_EQ(movie.Form().Command1Tip, "Restart Video");
  EXPECT_FALSE(TickAfter(50000));
  movie.Command1_Click();
  EXPECT_EQ(movie.Form().Command1Tag, "");
  EXPECT_EQ(movie.Form().Command1Tip, "Start Video");
  EXPECT_EQ(movie.MovieFrame(), 2) << "it goes on where it was";
  EXPECT_FALSE(TickAfter(0.9));
  EXPECT_TRUE(TickAfter(0.2));
  EXPECT_THAT(saved, ElementsAre("Valis20310405_220281.bmp", "Valis20310405_220282.bmp"));
}

TEST_F(MovieTest, StartWhileItRunsBeginsAnew) {
  Start();
  TickAfter(0);
  TickAfter(2);
  movie.Command1_Click();
  EXPECT_EQ(movie.MovieFrame(), 1);
  EXPECT_TRUE(TickAfter(0));
  EXPECT_EQ(saved.back(), "Valis20310405_220281.bmp");
}

TEST_F(MovieTest, APauseBeforeTheStartDoesNotSwallowIt) {
  ASSERT_TRUE(movie.mnuFMovieSaveAs(""));
  movie.Command2_Click();
  movie.Command1_Click();
  EXPECT_EQ(movie.MovieFrame(), 1);
  EXPECT_TRUE(TickAfter(0));
}

TEST_F(MovieTest, EndAlsoWhilePaused) {
  for (const bool paused : {false, true}) {
    Start();
    TickAfter(0);
    TickAfter(2);
    if (paused) movie.Command2_Click();
    movie.Command3_Click();
    EXPECT_EQ(movie.MovieCount(), 3);
    EXPECT_EQ(movie.MovieFrame(), 0);
    EXPECT_EQ(movie.MovieNext(), 0);
    EXPECT_FALSE(movie.Flag());
    EXPECT_FALSE(movie.Form().visible);
    EXPECT_EQ(movie.Form().Command1Tag, "");
    EXPECT_FALSE(TickAfter(5));
    EXPECT_THAT(saved, SizeIs(2));
    saved.clear();
  }
}

TEST_F(MovieTest, TheMenuStopsARunningMovie) {
  Start();
  TickAfter(0);
  EXPECT_TRUE(movie.Flag());
  EXPECT_FALSE(movie.mnuFMovieSaveAs("elsewhere"));
  EXPECT_FALSE(movie.Flag());
  EXPECT_EQ(movie.MovieFrame(), 0);
  EXPECT_FALSE(TickAfter(5));
  clock.local.second = 9;
  Start();
  EXPECT_EQ(movie.BaseName(), "Valis20310405_22029");
}

TEST_F(MovieTest, ASecondSeriesOfTheSameFormTakesNamesOfItsOwn) {
  Start(1);
  TickAfter(0);
  TickAfter(0);
  ASSERT_FALSE(movie.Flag());
  clock.local.minute = 8;
  movie.Command1_Click();
  EXPECT_TRUE(movie.Flag());
  TickAfter(0);
  EXPECT_THAT(saved, ElementsAre("Valis20310405_220281.bmp", "Valis20310405_220881.bmp"));
}

TEST_F(MovieTest, TheFieldsTellTheProgressAndComeBack) {
  const MovieFields old{"Redraw 1000", "Starting0", "tip a", "tip b"};
  MovieFields fields = old;
  EXPECT_FALSE(movie.ShowTexts(fields));
  EXPECT_EQ(fields, old);
  Start(2);
  EXPECT_TRUE(movie.ShowTexts(fields));
  EXPECT_EQ(fields, (MovieFields{" / 2 Frames ", "1. seconds between Frames", kFramesTip, kRateTip}));
  EXPECT_FALSE(movie.ShowTexts(fields)) << "nothing new";
  TickAfter(0);
  EXPECT_TRUE(movie.ShowTexts(fields));
  EXPECT_EQ(fields.Text3, "1 / 2 Frames ");
  movie.HScroll2_Change(24);
  movie.ShowTexts(fields);
  EXPECT_EQ(fields.Text10, "2.5 seconds between Frames");
  fields.Text3 = "Redraw 400";  // a scroll bar was moved meanwhile
  movie.ShowTexts(fields);
  EXPECT_EQ(fields.Text3, "1 / 2 Frames ");
  TickAfter(3);
  TickAfter(3);
  EXPECT_TRUE(movie.ShowTexts(fields));
  EXPECT_EQ(fields, (MovieFields{"Redraw 400", "Starting0", "tip a", "tip b"}));
  EXPECT_FALSE(movie.ShowTexts(fields));
}

TEST_F(MovieTest, EveryEndBringsTheTextsBack) {
  const MovieFields old{"Redraw", "Starting", "", ""};
  const std::vector<std::function<void()>> ends = {
      [&] { movie.Command3_Click(); },
      [&] { movie.mnuFMovieSaveAs(""); },
      [&] {
        movie.Command2_Click();
        movie.Command3_Click();
      },
  };
  for (const auto& end : ends) {
    MovieFields fields = old;
    Start();
    movie.ShowTexts(fields);
    ASSERT_NE(fields, old);
    end();
    EXPECT_TRUE(movie.ShowTexts(fields));
    EXPECT_EQ(fields, old);
  }
}

TEST(MovieFiles, AreBitmapsOfTheView) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / "orv_movie_files";
  fs::remove_all(folder);
  fs::create_directories(folder);
  MovieClock clock;
  RecordingControl control{10, 6};
  control.Gl().Viewport(0, 0, 10, 6);
  Movie movie(clock,
              [&](const std::string& Name, const std::string& DIReCT) { return SaveBMP(control, Name, DIReCT); });
  movie.Form_Load();
  movie.mnuFMovieSaveAs(TextOf(folder));
  movie.Command1_Click();
  movie.MovieSaveAs();
  EXPECT_EQ(fs::file_size(folder / "Valis20310405_220281.bmp"), 58U + 32 * 6);
  fs::remove_all(folder);
  clock.now += 2;
  EXPECT_TRUE(movie.MovieSaveAs()) << "a frame that cannot be saved is passed over quietly";
  EXPECT_EQ(movie.MovieFrame(), 3);
}

}  // namespace
}  // namespace orv
