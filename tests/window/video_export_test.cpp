#include "window/video_export.h"

#include <filesystem>
#include <gmock/gmock.h>

#include "support/workbook_writer.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Not;

// The first bytes of a bitmap file.
std::string Bitmap(int width, int height) {
  std::string head(54, '\0');
  head[0] = 'B';
  head[1] = 'M';
  const auto put = [&](std::size_t at, int number) {
    for (std::size_t k = 0; k < 4; ++k)
      head[at + k] = static_cast<char>((static_cast<unsigned>(number) >> (8 * k)) & 255);
  };
  put(18, width);
  put(22, height);
  return head;
}

VideoOrder Order(const std::string& file = "/videos/movie.mp4") {
  return {{"/pictures", "Valis20310405_22028", 20, 1}, {801, 600}, 1, file};
}

// What stands behind an option.
std::string After(const std::vector<std::string>& arguments, const std::string& option) {
  const auto found = std::find(arguments.begin(), arguments.end(), option);
  return found == arguments.end() || found + 1 == arguments.end() ? "absent" : *(found + 1);
}

TEST(VideoFrames, AreNamedAsTheMovieSavesThem) {
  const MovieFrames frames{"/pictures", "Valis20310405_22028", 3, 1};
  EXPECT_EQ(FrameFile(frames, 1), "/pictures/Valis20310405_220281.bmp");
  EXPECT_EQ(FrameFile(frames, 12), "/pictures/Valis20310405_2202812.bmp");
  EXPECT_EQ(FrameFile({"", "base", 1, 1}, 1), "base1.bmp");
}

TEST(VideoFrames, CountUntilTheFirstGap) {
  const TemporaryFolder folder;
  const MovieFrames frames{folder.path().string(), "base", 5, 1};
  EXPECT_EQ(FramesPresent(frames), 0);
  for (const char* name : {"base1.bmp", "base2.bmp", "base4.bmp"}) folder.Write(name, "x");
  EXPECT_EQ(FramesPresent(frames), 2);
  folder.Write("base3.bmp", "x");
  folder.Write("base5.bmp", "x");
  folder.Write("base6.bmp", "of another movie");
  EXPECT_EQ(FramesPresent(frames), 5);
}

TEST(VideoFrames, TellTheirSize) {
  const TemporaryFolder folder;
  const auto size = BitmapSize(folder.Write("a.bmp", Bitmap(801, 600)).string());
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 801);
  EXPECT_EQ(size->height, 600);
  const auto flipped = BitmapSize(folder.Write("b.bmp", Bitmap(300, -200)).string());
  ASSERT_TRUE(flipped);
  EXPECT_EQ(flipped->height, 200);
  EXPECT_FALSE(BitmapSize(folder.Write("c.bmp", "BM").string()));
  EXPECT_FALSE(BitmapSize(folder.Write("d.bmp", std::string(60, 'x')).string()));
  EXPECT_FALSE(BitmapSize(folder.Write("e.bmp", Bitmap(0, 10)).string()));
  EXPECT_FALSE(BitmapSize(folder.Write("f.bmp", Bitmap(10, 1 << 30)).string()));
  EXPECT_FALSE(BitmapSize((folder.path() / "absent.bmp").string()));
}

TEST(VideoNames, EndWithTheirFormat) {
  EXPECT_EQ(VideoName("/v/movie"), "/v/movie.mp4");
  EXPECT_EQ(VideoName("/v/movie.avi"), "/v/movie.avi.mp4");
  EXPECT_EQ(VideoName("/v/movie.WebM"), "/v/movie.WebM");
  EXPECT_EQ(FormatOf("/v/movie.WebM"), VideoFormat::WebM);
  EXPECT_EQ(FormatOf("/v/movie.mp4"), VideoFormat::Mp4);
  EXPECT_EQ(UnfinishedName("/v/movie.mp4"), "/v/movie.mp4.part");
}

TEST(VideoArgumentsTest, OfAnMp4InTheTimeOfTheMovie) {
  EXPECT_THAT(
      VideoArguments(Order(), "libx264"),
      ElementsAre("-hide_banner", "-nostdin", "-y", "-loglevel", "error", "-progress", "pipe:1", "-f", "image2",
                  "-pattern_type", "sequence", "-start_number", "1", "-framerate", "10/10", "-i",
                  "/pictures/Valis20310405_22028%d.bmp", "-frames:v", "500", "-vf",
                  "fps=25,scale=802:600:force_original_aspect_ratio=decrease,pad=802:600:(ow-iw)/2:(oh-ih)/2,setsar=1",
                  "-pix_fmt", "yuv420p", "-c:v", "libx264", "-preset", "medium", "-crf", "18", "-movflags",
                  "+faststart", "-f", "mp4", "/videos/movie.mp4.part"));
}

TEST(VideoArgumentsTest, OfAWebM) {
  const auto arguments = VideoArguments(Order("/videos/movie.webm"), "libvpx-vp9");
  EXPECT_EQ(After(arguments, "-c:v"), "libvpx-vp9");
  EXPECT_EQ(After(arguments, "-crf"), "24");
  EXPECT_EQ(arguments.back(), "/videos/movie.webm.part");
  EXPECT_EQ(arguments[arguments.size() - 2], "webm");
  EXPECT_THAT(arguments, Not(::testing::Contains("-movflags")));
}

TEST(VideoArgumentsTest, FasterThanTheMovie) {
  VideoOrder order = Order();
  order.frames.interval = 0.4;
  order.speed = 8;
  const auto arguments = VideoArguments(order, "libx264");
  EXPECT_EQ(After(arguments, "-framerate"), "80/4");
  EXPECT_THAT(After(arguments, "-vf"), ::testing::StartsWith("scale")) << "20 pictures a second play well";
  EXPECT_EQ(After(arguments, "-frames:v"), "20");
  EXPECT_DOUBLE_EQ(VideoSeconds(order), 1);
  order.speed = 1000;
  EXPECT_EQ(After(VideoArguments(order, "libx264"), "-framerate"), "60") << "no picture is left out";
  EXPECT_EQ(After(VideoArguments(order, "libx264"), "-frames:v"), "20");
  EXPECT_NEAR(VideoSeconds(order), 20 / 60.0, 1e-12);
  order.frames.interval = 60.1;
  EXPECT_EQ(After(VideoArguments(order, "libx264"), "-framerate"), "1000/601") << "100 times is the most";
  order.frames.interval = 0.4;
  order.speed = 0;
  EXPECT_EQ(After(VideoArguments(order, "libx264"), "-framerate"), "10/4");
}

TEST(VideoArgumentsTest, NamesAreNoPatterns) {
  VideoOrder order = Order("/v/100% done.mp4");
  order.frames.folder = "/50% of; $(rm) \"all\"";
  order.frames.base = "a%d";
  const auto arguments = VideoArguments(order, "libx264");
  EXPECT_EQ(After(arguments, "-i"), "/50%% of; $(rm) \"all\"/a%%d%d.bmp");
  EXPECT_EQ(arguments.back(), "/v/100% done.mp4.part");
}

TEST(VideoArgumentsTest, ARelativeNameIsNeverAnOption) {
  VideoOrder order = Order("-movie.mp4");
  order.frames.folder = "";
  order.frames.base = "-x";
  const auto arguments = VideoArguments(order, "libx264");
  EXPECT_TRUE(std::filesystem::path(arguments.back()).is_absolute());
  EXPECT_TRUE(std::filesystem::path(After(arguments, "-i")).is_absolute());
}

TEST(VideoArgumentsTest, EveryEncoderHasItsQuality) {
  EXPECT_THAT(EncodersOf(VideoFormat::Mp4), ElementsAre("libx264", "libopenh264", "mpeg4"));
  EXPECT_THAT(EncodersOf(VideoFormat::WebM), ElementsAre("libvpx-vp9", "libvpx"));
  EXPECT_EQ(After(VideoArguments(Order(), "mpeg4"), "-q:v"), "2");
  EXPECT_EQ(After(VideoArguments(Order(), "libopenh264"), "-b:v"), "8M");
  EXPECT_EQ(After(VideoArguments(Order(), "libvpx"), "-crf"), "10");
}

TEST(VideoReport, TellsTheShareDone) {
  EXPECT_EQ(VideoShare("out_time_us=5000000", 20), 0.25);
  EXPECT_EQ(VideoShare("out_time_us=50000000", 20), 1);
  EXPECT_EQ(VideoShare("out_time_us=-4", 20), 0);
  EXPECT_EQ(VideoShare("progress=end", 20), 1);
  for (const char* line : {"out_time_us=N/A", "out_time_us=", "progress=continue", "frame=4", ""}) {
    EXPECT_FALSE(VideoShare(line, 20)) << line;
  }
  EXPECT_FALSE(VideoShare("out_time_us=5", 0));
}

TEST(VideoReport, TellsAMissingEncoder) {
  EXPECT_TRUE(LacksEncoder("Unknown encoder 'libx264'\n"));
  EXPECT_FALSE(LacksEncoder("No space left on device"));
}

TEST(VideoMessages, SayWhatToDo) {
  EXPECT_EQ(NoProgramText({"/pictures", "base", 3, 1}),
            "No program ffmpeg was found on this computer. Install ffmpeg to save videos. The pictures are kept in "
            "\"/pictures\".");
  EXPECT_EQ(NoProgramText({}), "No program ffmpeg was found on this computer. Install ffmpeg to save videos.");
  EXPECT_EQ(NoFramesText(), "There are no pictures to make a video of. Start a movie first.");
  EXPECT_EQ(FailedText(""), "The video could not be made.");
  EXPECT_EQ(FailedText("No space left\r\n\n"), "The video could not be made.\nNo space left");
  EXPECT_EQ(FailedText(std::string(1000, 'a') + "\nlast line\n"), "The video could not be made.\nlast line");
  std::string accents;
  for (int k = 0; k < 500; ++k) accents += "é";
  const std::string cut = FailedText("x" + accents + "z");
  EXPECT_EQ(cut.find("\n") + 1, cut.find("é")) << "no half character";
}

}  // namespace
}  // namespace orv::testing
