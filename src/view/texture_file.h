#pragma once

#include <string>

#include "view/image_file.h"

namespace orv {

inline constexpr int kLargestTextureSide = 8192;  // pixels

// Reads a JPEG or PNG file, told apart by their first bytes, of at most kLargestTextureSide pixels a side. The result
// is empty, or says in a sentence with the file's name why there is no picture; `image` is then left as it was.
[[nodiscard]] std::string ReadTexture(const std::string& file, Image& image);

}  // namespace orv
