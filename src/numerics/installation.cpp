#include "numerics/installation.h"

#include <filesystem>

#include "numerics/paths.h"

namespace orv {
namespace {

constexpr int kFoldersAbove = 3;  // build/PRESET/orvvalis

std::string IfThere(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(path, error) ? TextOf(path.lexically_normal()) : std::string();
}

}  // namespace

std::string FindInstalled(const std::string& program, const std::string& name) {
  std::filesystem::path folder = PathOf(program).parent_path();
  std::string installed = IfThere(folder / ".." / "share" / "orvvalis" / PathOf(name));
  if (!installed.empty()) return installed;
  for (int above = 0; above <= kFoldersAbove; ++above) {
    std::string found = IfThere(folder / PathOf(name));
    if (!found.empty()) return found;
    folder = folder.parent_path();
  }
  return {};
}

std::string ProgramFile() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : TextOf(program);
}

}  // namespace orv
