#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "view/gl_api.h"

namespace orv {

// Where a font stands, and what its file lacks of the wish.
struct FontFile {
  std::string file;
  int index = 0;  // of the face in the file
  bool makeBold = false;
  bool makeItalic = false;
};

// The file of a font by its name, nothing when there is none of that name. An empty name stands for any font.
using FontFinder = std::function<std::optional<FontFile>(const std::string& name, bool bold, bool italic)>;

// The fonts of the system, through fontconfig; without a usable configuration it finds nothing.
FontFinder SystemFonts();

// Extent of a text in pixels, from its pen position on the baseline.
struct TextExtent {
  double width = 0;
  double ascent = 0;   // of the font, upwards
  double descent = 0;  // of the font, downwards
};

// A text as premultiplied RGBA, rows from the top.
struct TextPicture {
  int width = 0;
  int height = 0;
  int originX = 0;  // pen position in the picture: from the left
  int originY = 0;  // and from the top
  std::vector<std::uint8_t> rgba;
};

// A thin border around the letters, so that they stay readable on any colour.
struct TextHalo {
  Rgba colour{0, 0, 0, 0.6F};
  double pixels = 1;
};

inline constexpr double kSmallestText = 4;         // pixels
inline constexpr double kLargestText = 400;        // pixels
inline constexpr std::size_t kLongestText = 2000;  // characters

// Draws texts for every view. Text height is the height of a font's em square in pixels. A font that is not there
// falls back to DejaVu Sans, then to any; letters that a font lacks come from DejaVu Sans where it has them. With no
// font at all texts are empty pictures and Message() says so.
class TextRaster {
 public:
  explicit TextRaster(FontFinder finder = SystemFonts());
  ~TextRaster();
  TextRaster(const TextRaster&) = delete;
  TextRaster& operator=(const TextRaster&) = delete;

  // A face by name and style, the same number for the same wish; kNoFace without any font.
  int Face(const std::string& name, bool bold, bool italic);
  static constexpr int kNoFace = -1;

  // One line of UTF-8; control characters are blanks, bytes that are no UTF-8 show as the replacement character.
  // Heights outside the limits are brought within them, longer texts are cut.
  TextExtent Measure(int face, std::string_view text, double pixels);
  TextPicture Render(int face, std::string_view text, double pixels, const Rgba& colour,
                     const std::optional<TextHalo>& halo = std::nullopt);

  // Why texts are left out; empty while there is a font. Face() finds out.
  const std::string& Message() const { return message_; }

 private:
  struct Library;

  FontFinder finder_;
  std::unique_ptr<Library> library_;
  std::string message_;
};

}  // namespace orv
