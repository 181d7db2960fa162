#include "view/text_raster.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>

namespace orv {

namespace {

constexpr char kFallbackFont[] = "DejaVu Sans";
constexpr std::size_t kCachedGlyphs = 4096;
constexpr int kSubPixels = 4;  // places of a letter within a pixel
constexpr char32_t kReplacement = 0xFFFD;
constexpr int kWidestPicture = 16384;

struct ConfigDeleter {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
struct PatternDeleter {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

const FcChar8* Bytes(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

bool HasFamily(FcPattern* font, const std::string& name) {
  FcChar8* family = nullptr;
  for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &family) == FcResultMatch; ++i) {
    if (FcStrCmpIgnoreCase(family, Bytes(name)) == 0) return true;
  }
  return false;
}

std::optional<FontFile> FindFont(FcConfig* config, const std::string& name, bool bold, bool italic) {
  const Pattern wish(FcPatternCreate());
  if (!wish) return std::nullopt;
  if (!name.empty()) FcPatternAddString(wish.get(), FC_FAMILY, Bytes(name));
  FcPatternAddInteger(wish.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(wish.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(wish.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(config, wish.get(), FcMatchPattern);
  FcDefaultSubstitute(wish.get());
  FcResult result = FcResultNoMatch;
  const Pattern font(FcFontMatch(config, wish.get(), &result));
  if (!font || (!name.empty() && !HasFamily(font.get(), name))) return std::nullopt;
  FcChar8* file = nullptr;
  if (FcPatternGetString(font.get(), FC_FILE, 0, &file) != FcResultMatch) return std::nullopt;
  FontFile found;
  found.file = reinterpret_cast<const char*>(file);
  FcPatternGetInteger(font.get(), FC_INDEX, 0, &found.index);
  int weight = FC_WEIGHT_REGULAR;
  int slant = FC_SLANT_ROMAN;
  FcPatternGetInteger(font.get(), FC_WEIGHT, 0, &weight);
  FcPatternGetInteger(font.get(), FC_SLANT, 0, &slant);
  found.makeBold = bold && weight < FC_WEIGHT_DEMIBOLD;
  found.makeItalic = italic && slant == FC_SLANT_ROMAN;
  return found;
}

// Next character of UTF-8 text; bytes that are none give the replacement character, one each.
char32_t TakeCharacter(std::string_view& text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  const std::size_t length = first < 0x80         ? 1
                             : first >> 5 == 0x6  ? 2
                             : first >> 4 == 0xE  ? 3
                             : first >> 3 == 0x1E ? 4
                                                  : 0;
  char32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
  bool valid = length > 0 && length <= text.size();
  for (std::size_t i = 1; valid && i < length; ++i) {
    valid = byte(i) >> 6 == 0x2;
    code = code << 6 | (byte(i) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kShortest{0, 0, 0x80, 0x800, 0x10000};
  valid = valid && code >= kShortest[length] && code <= 0x10FFFF && !(code >= 0xD800 && code < 0xE000);
  text.remove_prefix(valid ? length : 1);
  return valid ? code : kReplacement;
}

std::u32string CharactersOf(std::string_view text) {
  std::u32string characters;
  while (!text.empty() && characters.size() < kLongestText) {
    const char32_t code = TakeCharacter(text);
    characters.push_back(code < 0x20 || (code >= 0x7F && code < 0xA0) ? U' ' : code);
  }
  return characters;
}

struct Glyph {
  int left = 0;  // of the bitmap from the pen's pixel
  int top = 0;   // of the bitmap above the baseline
  int width = 0;
  int height = 0;
  double advance = 0;
  std::vector<std::uint8_t> coverage;
};

struct Placed {
  const Glyph* glyph;
  int x;  // pixel of the pen
};

// Coverage of a line of text, one byte a pixel.
struct Coverage {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> bytes;
  std::uint8_t& at(int x, int y) {
    return bytes[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
  std::uint8_t at(int x, int y) const {
    return bytes[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

// The coverage grown by a disc with a soft edge.
Coverage Grown(const Coverage& letters, double radius) {
  Coverage grown{letters.width, letters.height, std::vector<std::uint8_t>(letters.bytes.size())};
  const int reach = static_cast<int>(std::ceil(radius));
  for (int dy = -reach; dy <= reach; ++dy) {
    for (int dx = -reach; dx <= reach; ++dx) {
      const double weight = std::clamp(radius + 0.5 - std::hypot(dx, dy), 0.0, 1.0);
      const int share = static_cast<int>(std::lround(weight * 256));
      if (share == 0) continue;
      for (int y = std::max(0, -dy); y < letters.height - std::max(0, dy); ++y) {
        for (int x = std::max(0, -dx); x < letters.width - std::max(0, dx); ++x) {
          const int value = letters.at(x, y) * share / 256;
          std::uint8_t& target = grown.at(x + dx, y + dy);
          if (value > target) target = static_cast<std::uint8_t>(value);
        }
      }
    }
  }
  return grown;
}

}  // namespace

FontFinder SystemFonts() {
  const std::shared_ptr<FcConfig> config(FcInitLoadConfigAndFonts(), ConfigDeleter());
  return [config](const std::string& name, bool bold, bool italic) -> std::optional<FontFile> {
    if (!config) return std::nullopt;
    return FindFont(config.get(), name, bold, italic);
  };
}

struct TextRaster::Library {
  struct OpenFace {
    FT_Face face = nullptr;
    FontFile source;
    double size = 0;  // that the face is set to
  };
  using GlyphKey = std::tuple<int, char32_t, int, int>;  // face, character, height in 64ths of a pixel, place

  FT_Library handle = nullptr;
  std::vector<OpenFace> faces;
  std::map<std::tuple<std::string, bool, bool>, int> byWish;
  std::map<GlyphKey, Glyph> glyphs;
  int fallback = kNoFace;

  Library() {
    if (FT_Init_FreeType(&handle) != 0) handle = nullptr;
  }
  ~Library() {
    for (const OpenFace& open : faces) FT_Done_Face(open.face);
    if (handle != nullptr) FT_Done_FreeType(handle);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  int Open(const FontFinder& finder, const std::string& name, bool bold, bool italic);
  void SetSize(OpenFace& open, double pixels) const;
  int FaceWith(int face, char32_t code) const;
  double Kerning(int face, char32_t left, char32_t right, double pixels);
  const Glyph& GlyphOf(int face, char32_t code, double pixels, int place);
  // Walks along the text; the width at its end.
  template <class Visit>
  double Walk(int face, const std::u32string& text, double pixels, Visit visit);
};

int TextRaster::Library::Open(const FontFinder& finder, const std::string& name, bool bold, bool italic) {
  if (handle == nullptr) return kNoFace;
  const std::optional<FontFile> source = finder(name, bold, italic);
  if (!source) return kNoFace;
  FT_Face face = nullptr;
  if (FT_New_Face(handle, source->file.c_str(), source->index, &face) != 0) return kNoFace;
  if (!FT_IS_SCALABLE(face)) {
    FT_Done_Face(face);
    return kNoFace;
  }
  faces.push_back({face, *source, 0});
  return static_cast<int>(faces.size()) - 1;
}

void TextRaster::Library::SetSize(OpenFace& open, double pixels) const {
  if (open.size == pixels) return;
  FT_Set_Char_Size(open.face, 0, static_cast<FT_F26Dot6>(std::lround(pixels * 64)), 72, 72);
  open.size = pixels;
}

int TextRaster::Library::FaceWith(int face, char32_t code) const {
  const auto has = [&](int number) {
    return FT_Get_Char_Index(faces[static_cast<std::size_t>(number)].face, code) != 0;
  };
  return !has(face) && fallback != kNoFace && has(fallback) ? fallback : face;
}

double TextRaster::Library::Kerning(int face, char32_t left, char32_t right, double pixels) {
  OpenFace& open = faces[static_cast<std::size_t>(face)];
  if (!FT_HAS_KERNING(open.face)) return 0;
  SetSize(open, pixels);
  FT_Vector move{};
  const FT_UInt leftGlyph = FT_Get_Char_Index(open.face, left);
  const FT_UInt rightGlyph = FT_Get_Char_Index(open.face, right);
  if (FT_Get_Kerning(open.face, leftGlyph, rightGlyph, FT_KERNING_UNFITTED, &move) != 0) return 0;
  return static_cast<double>(move.x) / 64;
}

const Glyph& TextRaster::Library::GlyphOf(int face, char32_t code, double pixels, int place) {
  const GlyphKey key{face, code, static_cast<int>(std::lround(pixels * 64)), place};
  const auto found = glyphs.find(key);
  if (found != glyphs.end()) return found->second;
  Glyph& glyph = glyphs[key];
  OpenFace& open = faces[static_cast<std::size_t>(face)];
  SetSize(open, pixels);
  if (FT_Load_Char(open.face, code, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT) != 0) return glyph;
  const FT_GlyphSlot slot = open.face->glyph;
  glyph.advance = static_cast<double>(slot->linearHoriAdvance) / 65536;
  if (slot->format != FT_GLYPH_FORMAT_OUTLINE) return glyph;
  if (open.source.makeItalic) {
    FT_Matrix slanted{0x10000, 0x3600, 0, 0x10000};
    FT_Outline_Transform(&slot->outline, &slanted);
  }
  if (open.source.makeBold) {
    const double strength = pixels / 24;
    FT_Outline_Embolden(&slot->outline, static_cast<FT_Pos>(std::lround(strength * 64)));
    glyph.advance += strength;
  }
  FT_Outline_Translate(&slot->outline, place * 64 / kSubPixels, 0);
  if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) return glyph;
  const FT_Bitmap& bitmap = slot->bitmap;
  glyph.left = slot->bitmap_left;
  glyph.top = slot->bitmap_top;
  glyph.width = static_cast<int>(bitmap.width);
  glyph.height = static_cast<int>(bitmap.rows);
  for (int row = 0; row < glyph.height; ++row) {
    const std::uint8_t* bytes = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
    glyph.coverage.insert(glyph.coverage.end(), bytes, bytes + glyph.width);
  }
  return glyph;
}

template <class Visit>
double TextRaster::Library::Walk(int face, const std::u32string& text, double pixels, Visit visit) {
  // Between texts, as glyphs of the one at work are referred to.
  if (glyphs.size() > kCachedGlyphs) glyphs.clear();
  double pen = 0;
  int lastFace = kNoFace;
  char32_t last = 0;
  for (const char32_t code : text) {
    const int used = FaceWith(face, code);
    if (used == lastFace) pen += Kerning(used, last, code, pixels);
    const double quarters = std::floor(pen * kSubPixels + 0.5);
    const double pixel = std::floor(quarters / kSubPixels);
    const Glyph& glyph = GlyphOf(used, code, pixels, static_cast<int>(quarters - pixel * kSubPixels));
    visit(glyph, static_cast<int>(pixel));
    pen += glyph.advance;
    lastFace = used;
    last = code;
  }
  return pen;
}

TextRaster::TextRaster(FontFinder finder) : finder_(std::move(finder)), library_(std::make_unique<Library>()) {}

TextRaster::~TextRaster() = default;

int TextRaster::Face(const std::string& name, bool bold, bool italic) {
  Library& library = *library_;
  const auto wish = std::make_tuple(name, bold, italic);
  if (const auto found = library.byWish.find(wish); found != library.byWish.end()) return found->second;
  int face = name.empty() ? kNoFace : library.Open(finder_, name, bold, italic);
  if (face == kNoFace && name != kFallbackFont) face = library.Open(finder_, kFallbackFont, bold, italic);
  if (face == kNoFace) face = library.Open(finder_, {}, bold, italic);
  if (face != kNoFace && library.fallback == kNoFace)
    library.fallback = library.Open(finder_, kFallbackFont, false, false);
  if (face == kNoFace && message_.empty()) {
    message_ = library.handle == nullptr ? "Texts are left out of the view: the font library could not be started."
                                         : "Texts are left out of the view: no font was found on this system.";
  }
  library.byWish[wish] = face;
  return face;
}

namespace {

double WithinLimits(double pixels) {
  return pixels > kSmallestText ? std::min(pixels, kLargestText) : kSmallestText;  // also for what is no number
}

std::uint8_t Byte(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

// Letters over their halo, premultiplied.
void Compose(const Coverage& letters, const Rgba& colour, const Coverage* border, const Rgba& borderColour,
             std::vector<std::uint8_t>& rgba) {
  rgba.resize(letters.bytes.size() * 4);
  for (std::size_t i = 0; i < letters.bytes.size(); ++i) {
    const double front = letters.bytes[i] / 255.0 * static_cast<double>(colour.alpha);
    const double around = border == nullptr ? 0 : border->bytes[i] / 255.0 * static_cast<double>(borderColour.alpha);
    const double back = around * (1 - front);
    const auto part = [&](float a, float b) {
      return Byte(static_cast<double>(a) * front + static_cast<double>(b) * back);
    };
    rgba[i * 4] = part(colour.red, borderColour.red);
    rgba[i * 4 + 1] = part(colour.green, borderColour.green);
    rgba[i * 4 + 2] = part(colour.blue, borderColour.blue);
    rgba[i * 4 + 3] = Byte(front + back);
  }
}

void Add(Coverage& letters, const Glyph& glyph, int left, int top) {
  for (int y = 0; y < glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      std::uint8_t& target = letters.at(left + x, top + y);
      const int sum = target + glyph.coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(glyph.width) +
                                              static_cast<std::size_t>(x)];
      target = static_cast<std::uint8_t>(std::min(sum, 255));
    }
  }
}

}  // namespace

TextExtent TextRaster::Measure(int face, std::string_view text, double pixels) {
  if (face == kNoFace) return {};
  const double height = WithinLimits(pixels);
  TextExtent extent;
  extent.width = library_->Walk(face, CharactersOf(text), height, [](const Glyph&, int) {});
  const FT_Face metrics = library_->faces[static_cast<std::size_t>(face)].face;
  const double unit = height / std::max<double>(metrics->units_per_EM, 1);
  extent.ascent = metrics->ascender * unit;
  extent.descent = -metrics->descender * unit;
  return extent;
}

TextPicture TextRaster::Render(int face, std::string_view text, double pixels, const Rgba& colour,
                               const std::optional<TextHalo>& halo) {
  TextPicture picture;
  if (face == kNoFace) return picture;
  std::vector<Placed> line;
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;
  library_->Walk(face, CharactersOf(text), WithinLimits(pixels), [&](const Glyph& glyph, int x) {
    if (glyph.width == 0 || x + glyph.left + glyph.width > kWidestPicture) return;
    left = line.empty() ? x + glyph.left : std::min(left, x + glyph.left);
    right = line.empty() ? x + glyph.left + glyph.width : std::max(right, x + glyph.left + glyph.width);
    top = line.empty() ? glyph.top : std::max(top, glyph.top);
    bottom = line.empty() ? glyph.top - glyph.height : std::min(bottom, glyph.top - glyph.height);
    line.push_back({&glyph, x});
  });
  if (line.empty()) return picture;
  const int margin = halo ? static_cast<int>(std::ceil(halo->pixels)) + 1 : 0;
  picture.width = right - left + 2 * margin;
  picture.height = top - bottom + 2 * margin;
  picture.originX = margin - left;
  picture.originY = margin + top;
  Coverage letters{picture.width, picture.height, {}};
  letters.bytes.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
  for (const auto& [glyph, x] : line)
    Add(letters, *glyph, picture.originX + x + glyph->left, picture.originY - glyph->top);
  if (halo) {
    const Coverage border = Grown(letters, halo->pixels);
    Compose(letters, colour, &border, halo->colour, picture.rgba);
  } else {
    Compose(letters, colour, nullptr, {}, picture.rgba);
  }
  return picture;
}

}  // namespace orv
