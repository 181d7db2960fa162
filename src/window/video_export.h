#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A video of the numbered pictures of a movie, made by a program that is installed beside this one. Here is what that
// program is told and what it answers; nothing is started.
namespace orv {

inline constexpr const char* kVideoProgram = "ffmpeg";
inline constexpr int kFastestVideo = 100;

// The pictures of a movie: base name, number from 1, ".bmp".
struct MovieFrames {
  std::string folder;
  std::string base;
  int count = 0;
  double interval = 1;  // seconds between two of them
};

std::string FrameFile(const MovieFrames& frames, int number);
// How many follow each other on the disk from number 1, at most their count.
int FramesPresent(const MovieFrames& frames);

struct PictureSize {
  int width = 0;
  int height = 0;
};
// Of a bitmap file; nothing for a file that is none.
std::optional<PictureSize> BitmapSize(const std::string& file);

enum class VideoFormat { Mp4, WebM };
VideoFormat FormatOf(const std::string& file);
// The name with ".mp4" behind it, unless it ends with one of the two already.
std::string VideoName(const std::string& file);
// Where a video grows until it is whole: beside its file.
std::string UnfinishedName(const std::string& file);

// What is to be made.
struct VideoOrder {
  MovieFrames frames;
  PictureSize size;  // of the first picture; others are fitted into it
  int speed = 1;     // times faster than the pictures were taken, 1 to 100
  std::string file;
};

// Duration of the video.
double VideoSeconds(const VideoOrder& order);

// The encoders of a format, the best first. An installed program may lack some.
std::span<const std::string_view> EncodersOf(VideoFormat format);
// Arguments of the program, one each, for the unfinished file.
std::vector<std::string> VideoArguments(const VideoOrder& order, std::string_view encoder);

// The share done that a line of the program's report tells of, 0 to 1.
std::optional<double> VideoShare(std::string_view line, double seconds);
// The program lacks the encoder: the next one may do.
bool LacksEncoder(std::string_view said);

// Messages of the window.
std::string NoProgramText(const MovieFrames& frames);
std::string NoFramesText();
// The last lines of what the program said.
std::string FailedText(std::string_view said);

}  // namespace orv
