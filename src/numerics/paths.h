#pragma once

#include <filesystem>
#include <string>

namespace orv {

// A file name in UTF-8 as a path of the platform, and back.
inline std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}
inline std::string TextOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace orv
