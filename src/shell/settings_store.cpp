#include "shell/settings_store.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "analysis/result_file.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t kMaxBytes = 4 << 20;

std::string FileName(const std::string& folder) {
  return folder + "/settings.json";
}

}  // namespace

FileSettings::FileSettings(std::string folder, std::string& warning) : folder_(std::move(folder)) {
  Load(warning);
}

std::string FileSettings::UserFolder() {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && *configured == '/') return std::string(configured) + "/orvvalis";
  const char* appData = std::getenv("APPDATA");
  if (appData != nullptr && *appData != '\0') return std::string(appData) + "/OrvValis";
  const char* home = std::getenv("HOME");
  return std::string(home != nullptr && *home != '\0' ? home : ".") + "/.config/orvvalis";
}

void FileSettings::Load(std::string& warning) {
  const std::string name = FileName(folder_);
  std::error_code error;
  const std::uintmax_t size = fs::file_size(PathOf(name), error);
  if (error) return;
  nlohmann::json root;
  if (size <= kMaxBytes) {
    std::ifstream in(PathOf(name), std::ios::binary);
    root = nlohmann::json::parse(in, nullptr, false);
  }
  if (!root.is_object()) {
    warning = "The settings file \"" + name + "\" is damaged; the settings start anew.";
    fs::rename(PathOf(name), PathOf(name + ".damaged"), error);
    return;
  }
  for (const auto& [section, keys] : root.items()) {
    if (!keys.is_object()) continue;
    for (const auto& [key, value] : keys.items()) {
      if (value.is_string()) values_[{section, key}] = value.get<std::string>();
    }
  }
}

void FileSettings::Save() const {
  std::error_code error;
  fs::create_directories(PathOf(folder_), error);
  nlohmann::json root = nlohmann::json::object();
  for (const auto& [place, value] : values_) root[place.first][place.second] = value;
  ResultFile file(FileName(folder_));
  file.stream() << root.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
  file.Commit();
}

void FileSettings::Write(const std::string& section, const std::string& key, const std::string& value) {
  WriteAll({{section, key, value}});
}

void FileSettings::WriteAll(const std::vector<StoredText>& texts) {
  const auto before = values_;
  for (const StoredText& text : texts) MemorySettings::Write(text.section, text.key, text.value);
  if (values_ == before) return;
  try {
    Save();
  } catch (const RuntimeFailure& failure) {
    // What is not stored must not count as stored: the next attempt writes it.
    values_ = before;
    Raise(FailureNumber::PathFileAccessError, failure.description());
  }
}

std::string FileSettings::OutputFolder() {
  std::error_code error;
  fs::create_directories(PathOf(folder_), error);
  const auto withSeparator = [](std::string folder) {
    if (folder.empty() || (folder.back() != '/' && folder.back() != '\\')) folder += '/';
    return folder;
  };
  const std::string stored = ReadSetting(*this, kSectionDirs, "directory");
  const std::string folder = withSeparator(stored.empty() || stored == "C:\\" ? folder_ : stored);
  try {
    Write(std::string(kSectionDirs), "directory", folder);
  } catch (const RuntimeFailure&) {
    return withSeparator(folder_);
  }
  // A folder that is away for the moment (a drive not mounted) stays the stored one.
  return fs::is_directory(PathOf(folder), error) ? folder : withSeparator(folder_);
}

}  // namespace orv
