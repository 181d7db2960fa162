#pragma once

#include <optional>
#include <string>

#include "view/gl_control.h"

namespace orv {

inline constexpr int kBusyPointer = 11;

// A part of the view in device pixels; x from the left, y from the bottom.
struct CaptureRegion {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// Saves a part of what the view shows as a bitmap, one column wider than asked for, cut to the viewport. An older file
// is replaced. The pointer shows that the view is busy meanwhile and is the normal one afterwards, whatever happens.
// False when there is nothing to save or the file could not be written; the older file then stays.
bool SaveFrameBuffer(glxCtl& control, const std::string& file, const CaptureRegion& region);

// Where SaveBMP puts a picture: DIReCT with a separator behind it, then Name or "ImageSaved.bmp"; "\" is the separator
// of the system. An empty DIReCT is the working folder.
std::string SaveName(const std::string& Name, const std::string& DIReCT);

// Saves the view, or the rectangle that is being dragged. Result as of SaveFrameBuffer.
bool SaveBMP(glxCtl& control, const std::string& Name, const std::string& DIReCT,
             const std::optional<CaptureRegion>& dragged = std::nullopt);

}  // namespace orv
