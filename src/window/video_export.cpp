#include "window/video_export.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "numerics/paths.h"
#include "numerics/text.h"
#include "view/capture.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

constexpr double kLeastRate = 10;  // pictures a second that players show without trouble
constexpr int kMostRate = 60;
constexpr int kPlainRate = 25;
constexpr std::size_t kHeaderBytes = 26;
constexpr std::size_t kMostSaid = 400;  // characters
constexpr std::array<std::string_view, 3> kMp4Encoders = {"libx264", "libopenh264", "mpeg4"};
constexpr std::array<std::string_view, 2> kWebMEncoders = {"libvpx-vp9", "libvpx"};

std::string Absolute(const std::string& file) {
  std::error_code error;
  const fs::path path = fs::absolute(PathOf(file), error);
  return error ? file : TextOf(path);
}

// Pictures were taken every so many tenths of a second.
int Tenths(const VideoOrder& order) {
  return std::max(1, static_cast<int>(std::lround(order.frames.interval * 10)));
}

int Speed(const VideoOrder& order) {
  return std::clamp(order.speed, 1, kFastestVideo);
}

// Pictures a second, as a fraction. However fast, none is left out.
bool IsTooFast(const VideoOrder& order) {
  return 10 * Speed(order) > kMostRate * Tenths(order);
}
std::string RateText(const VideoOrder& order) {
  if (IsTooFast(order)) return std::to_string(kMostRate);
  return std::to_string(10 * Speed(order)) + "/" + std::to_string(Tenths(order));
}
double Rate(const VideoOrder& order) {
  return IsTooFast(order) ? kMostRate : 10.0 * Speed(order) / Tenths(order);
}

// The name of a frame as the program counts it up; its sign for the number is doubled elsewhere.
std::string FramePattern(const MovieFrames& frames) {
  const auto escaped = [](const std::string& text) { return ReplaceAll(text, "%", "%%"); };
  return Absolute(SaveName(escaped(frames.base) + "%d.bmp", escaped(frames.folder)));
}

std::string Even(int length) {
  return std::to_string(length + length % 2);
}

// Pictures of another size than the first are fitted into it; encoders want even lengths.
std::string Filter(const VideoOrder& order) {
  const std::string size = Even(order.size.width) + ":" + Even(order.size.height);
  return "scale=" + size + ":force_original_aspect_ratio=decrease,pad=" + size + ":(ow-iw)/2:(oh-ih)/2,setsar=1";
}

std::vector<std::string> Quality(std::string_view encoder) {
  if (encoder == "libx264") return {"-preset", "medium", "-crf", "18"};
  if (encoder == "libopenh264") return {"-b:v", "8M"};
  if (encoder == "mpeg4") return {"-q:v", "2"};
  if (encoder == "libvpx-vp9") return {"-crf", "24", "-b:v", "0", "-row-mt", "1"};
  return {"-crf", "10", "-b:v", "8M"};
}

int LittleEndian(const std::array<char, kHeaderBytes>& bytes, std::size_t at) {
  unsigned number = 0;
  for (std::size_t k = 4; k-- > 0;) number = (number << 8) | static_cast<unsigned char>(bytes[at + k]);
  return static_cast<int>(number);
}

}  // namespace

std::string FrameFile(const MovieFrames& frames, int number) {
  return SaveName(frames.base + std::to_string(number) + ".bmp", frames.folder);
}

int FramesPresent(const MovieFrames& frames) {
  std::error_code error;
  int present = 0;
  while (present < frames.count && fs::is_regular_file(PathOf(FrameFile(frames, present + 1)), error)) ++present;
  return present;
}

std::optional<PictureSize> BitmapSize(const std::string& file) {
  std::array<char, kHeaderBytes> head{};
  std::ifstream in(PathOf(file), std::ios::binary);
  if (!in.read(head.data(), static_cast<std::streamsize>(head.size())) || head[0] != 'B' || head[1] != 'M') return {};
  // Bitmaps that run from top to bottom have a negative height.
  const int width = LittleEndian(head, 18);
  const int height = LittleEndian(head, 22);
  constexpr int kMost = 1 << 16;
  if (width <= 0 || width > kMost || height == 0 || height > kMost || height < -kMost) return {};
  return PictureSize{width, std::abs(height)};
}

VideoFormat FormatOf(const std::string& file) {
  return LowerCase(TextOf(PathOf(file).extension())) == ".webm" ? VideoFormat::WebM : VideoFormat::Mp4;
}

std::string VideoName(const std::string& file) {
  const std::string extension = LowerCase(TextOf(PathOf(file).extension()));
  return extension == ".mp4" || extension == ".webm" ? file : file + ".mp4";
}

std::string UnfinishedName(const std::string& file) {
  return Absolute(file) + ".part";
}

double VideoSeconds(const VideoOrder& order) {
  return order.frames.count / Rate(order);
}

std::span<const std::string_view> EncodersOf(VideoFormat format) {
  if (format == VideoFormat::WebM) return kWebMEncoders;
  return kMp4Encoders;
}

std::vector<std::string> VideoArguments(const VideoOrder& order, std::string_view encoder) {
  std::vector<std::string> out = {"-hide_banner", "-nostdin", "-y", "-loglevel", "error", "-progress", "pipe:1"};
  const auto add = [&](const std::vector<std::string>& more) { out.insert(out.end(), more.begin(), more.end()); };
  add({"-f", "image2", "-pattern_type", "sequence", "-start_number", "1"});
  add({"-framerate", RateText(order)});
  add({"-i", FramePattern(order.frames), "-frames:v"});
  // A slow series is repeated to a rate that every player takes.
  const bool plain = Rate(order) < kLeastRate;
  const double pictures = plain ? std::max(1.0, std::round(VideoSeconds(order) * kPlainRate)) : order.frames.count;
  add({std::to_string(static_cast<long long>(pictures))});
  const std::string rate = plain ? "fps=" + std::to_string(kPlainRate) + "," : "";
  add({"-vf", rate + Filter(order), "-pix_fmt", "yuv420p", "-c:v", std::string(encoder)});
  add(Quality(encoder));
  if (FormatOf(order.file) == VideoFormat::WebM) {
    add({"-f", "webm"});
  } else {
    add({"-movflags", "+faststart", "-f", "mp4"});
  }
  add({UnfinishedName(order.file)});
  return out;
}

std::optional<double> VideoShare(std::string_view line, double seconds) {
  constexpr std::string_view kKey = "out_time_us=";
  if (line == "progress=end") return 1;
  if (!line.starts_with(kKey) || !(seconds > 0)) return {};
  line.remove_prefix(kKey.size());
  long long micro = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), micro);
  if (error != std::errc() || end == line.data()) return {};
  return std::clamp(static_cast<double>(micro) / 1e6 / seconds, 0.0, 1.0);
}

bool LacksEncoder(std::string_view said) {
  return said.find("Unknown encoder") != std::string_view::npos;
}

std::string NoProgramText(const MovieFrames& frames) {
  std::string text = "No program ffmpeg was found on this computer. Install ffmpeg to save videos.";
  if (frames.count > 0) text += " The pictures are kept in \"" + frames.folder + "\".";
  return text;
}

std::string NoFramesText() {
  return "There are no pictures to make a video of. Start a movie first.";
}

std::string FailedText(std::string_view said) {
  std::string tail = Trim(ReplaceAll(std::string(said), "\r", ""));
  while (!tail.empty() && tail.back() == '\n') tail.pop_back();
  if (tail.size() > kMostSaid) {
    std::size_t begin = tail.size() - kMostSaid;
    const std::size_t line = tail.find('\n', begin);
    if (line != std::string::npos) begin = line + 1;
    while (begin < tail.size() && (static_cast<unsigned char>(tail[begin]) & 0xC0) == 0x80) ++begin;
    tail.erase(0, begin);
  }
  return "The video could not be made." + (tail.empty() ? std::string() : "\n" + tail);
}

}  // namespace orv
