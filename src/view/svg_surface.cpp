#include "view/svg_surface.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kFar = 1e6;
constexpr double kLetterWidth = 0.6;  // of the height, where there is no font to measure by
constexpr double kLetterAscent = 0.9;
constexpr double kLetterDescent = 0.25;

// With two decimals at most.
std::string Number(double value) {
  std::array<char, 32> buffer{};
  const double rounded = std::round(std::clamp(value, -kFar, kFar) * 100) / 100;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded == 0 ? 0 : rounded,
                                     std::chars_format::fixed, 2);
  std::string text(buffer.data(), written.ptr);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

std::string ColourText(const SurfaceColour& colour) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned part : {colour.red, colour.green, colour.blue}) {
    text.push_back(kDigits[part / 16]);
    text.push_back(kDigits[part % 16]);
  }
  return text;
}

// As content or attribute of the file; control characters, which it cannot hold, become blanks.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : IsValidUtf8(text) ? text : Utf8FromWindows1252(text)) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else if (c == '\'') {
      escaped += "&#39;";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      escaped.push_back(' ');
    } else {
      escaped.push_back(c);
    }
  }
  return escaped;
}

bool IsPlace(const SurfacePoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

std::string Families(const std::string& family) {
  return (family.empty() ? "" : "'" + ReplaceAll(family, "'", "") + "', ") + "'DejaVu Sans', Verdana, sans-serif";
}

}  // namespace

SvgSurface::SvgSurface(TextRaster& texts, double width, double height, double unitsPerPoint)
    : texts_(texts), width_(std::max(width, 1.0)), height_(std::max(height, 1.0)), unitsPerPoint_(unitsPerPoint) {}

SurfaceText SvgSurface::Measure(const std::string& text) {
  const double pixels = Font().points * unitsPerPoint_;
  const int face = texts_.Face(Font().family, Font().bold, false);
  if (face == TextRaster::kNoFace) {
    return {static_cast<double>(CharacterCount(text)) * kLetterWidth * pixels, kLetterAscent * pixels,
            kLetterDescent * pixels};
  }
  const TextExtent extent = texts_.Measure(face, text, pixels);
  return {extent.width, extent.ascent, extent.descent};
}

void SvgSurface::Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) {
  if (text.empty() || !IsPlace(pen)) return;
  // The length is told, so that a text keeps to its box in whatever font the reader has.
  const double width = Measure(text).width;
  body_ += "<text" + Attribute("x", Number(pen.x)) + Attribute("y", Number(pen.y)) +
           Attribute("font-family", Escaped(Families(Font().family))) +
           Attribute("font-size", Number(Font().points * unitsPerPoint_)) +
           (Font().bold ? Attribute("font-weight", "bold") : "") + Attribute("fill", ColourText(colour)) +
           Attribute("textLength", Number(width)) + Attribute("lengthAdjust", "spacingAndGlyphs") +
           Attribute("xml:space", "preserve") + ">" + Escaped(text) + "</text>\n";
}

void SvgSurface::Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) {
  std::string path;
  for (const SurfaceLine& line : lines) {
    if (!IsPlace(line.begin) || !IsPlace(line.end)) continue;
    path += (path.empty() ? "M" : "\nM") + Number(line.begin.x) + " " + Number(line.begin.y) + "L" +
            Number(line.end.x) + " " + Number(line.end.y);
  }
  if (path.empty()) return;
  body_ += "<path" + Attribute("fill", "none") + Attribute("stroke", ColourText(colour)) +
           Attribute("stroke-width", Number(width)) + Attribute("stroke-linecap", "round") + Attribute("d", path) +
           "/>\n";
}

void SvgSurface::Fill(const SurfaceBox& box, const SurfaceColour& colour) {
  if (!IsPlace({box.left, box.top}) || !IsPlace({box.right, box.bottom})) return;
  if (!(box.width() > 0 && box.height() > 0)) return;
  body_ += "<rect" + Attribute("x", Number(box.left)) + Attribute("y", Number(box.top)) +
           Attribute("width", Number(box.width())) + Attribute("height", Number(box.height())) +
           Attribute("fill", ColourText(colour)) + "/>\n";
}

std::string SvgSurface::File() const {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"" +
         Attribute("width", Number(width_)) + Attribute("height", Number(height_)) +
         Attribute("viewBox", "0 0 " + Number(width_) + " " + Number(height_)) + ">\n<rect" +
         Attribute("width", "100%") + Attribute("height", "100%") + Attribute("fill", "#ffffff") + "/>\n" + body_ +
         "</svg>\n";
}

}  // namespace orv
