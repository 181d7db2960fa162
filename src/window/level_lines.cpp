#include "window/level_lines.h"

#include <cstdint>
#include <span>

#include "analysis/level_line_data.h"
#include "numerics/text.h"
#include "view/image_file.h"
#include "view/raster_surface.h"
#include "view/svg_surface.h"
#include "view/text_raster.h"

namespace orv {
namespace {

bool HasEnd(const std::string& name, std::string_view end) {
  return UpperCase(name).ends_with(end);
}

}  // namespace

bool DrawLevelLines(RunContext& run, const std::function<std::string(const LevelLineInput&)>& plot) {
  if (!run.record.finished) return false;
  std::string message;
  const std::optional<LevelLineInput> input = FindLevelLineData(run, message);
  if (input) message = plot(*input);
  TellLevelLineFault(run.dialogs(), message);
  return input.has_value();
}

void TellLevelLineFault(UserDialogs& dialogs, const std::string& text) {
  if (text.empty()) return;
  dialogs.Status(text);
  dialogs.Log(text);
}

bool IsLevelLineFile(const std::string& name) {
  return HasEnd(name, ".PNG") || HasEnd(name, ".SVG");
}

std::string WriteLevelLines(const LevelLineInput& input, const LevelLineFile& file, std::string& errorText) {
  TextRaster texts;
  const double ratio = file.pixelRatio;
  const double unit = ReadableUnitsPerPoint(file.width / ratio, file.height / ratio) * ratio;
  if (HasEnd(file.name, ".SVG")) {
    SvgSurface surface(texts, file.width, file.height, unit);
    errorText = PlotLevelLines(input, surface);
    const std::string text = surface.File();
    const std::span<const char> bytes(text);
    return WriteBytes(file.name, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }
  RasterSurface surface(texts, file.width, file.height, unit);
  errorText = PlotLevelLines(input, surface);
  return WritePng(file.name, surface.Picture());
}

}  // namespace orv
