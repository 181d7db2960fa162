#include "window/remembered.h"

#include <algorithm>

#include "numerics/date_format.h"
#include "numerics/text.h"
#include "window/shell_failures.h"

namespace orv {
namespace {

constexpr const char* kWorkbooksKey = "RecentWorkbooks";
constexpr std::size_t kMost = kRememberedSpecifications;
constexpr int kSecondsOfHour = 3600;
constexpr int kSecondsOfMinute = 60;

void KeepWorkbooks(SettingsStore& settings, ErrorPrompt& prompt, const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : "\n") + name;
  KeepSetting(settings, prompt, kSectionUse, kWorkbooksKey, text);
}

}  // namespace

void SpecificationList::Combo1_InitList(int count) {
  items_ = RememberedSpecifications(settings_);
  const auto wanted = static_cast<std::size_t>(std::clamp(count, 0, kRememberedSpecifications));
  if (items_.size() > wanted) items_.resize(wanted);
  current_ = items_.empty() ? -1 : 0;
}

std::string SpecificationList::Combo1_GotFocusRoutine() const {
  return current_ < 0 ? std::string() : items_[static_cast<std::size_t>(current_)];
}

void SpecificationList::Choose(int index) {
  if (index >= 0 && static_cast<std::size_t>(index) < items_.size()) current_ = index;
}

void SpecificationList::Enter(const std::string& text) {
  SpecText_ = Trim(text);
  SpecEntered_ = SpecText_.empty() ? 0 : 1;
  if (SpecEntered_ == 1) Remember(SpecText_);
}

void SpecificationList::Remember(const std::string& text) {
  try {
    RememberSpecification(settings_, text);
  } catch (const RuntimeFailure& failure) {
    prompt_("_The specification could not be stored: " + failure.description());
  }
  // The list of this session takes it even when the store did not.
  items_.erase(std::remove(items_.begin(), items_.end(), text), items_.end());
  items_.insert(items_.begin(), text);
  if (items_.size() > kMost) items_.resize(kMost);
  current_ = 0;
}

void SpecificationList::Forget() {
  SpecEntered_ = 0;
  SpecText_.clear();
}

std::vector<std::string> RecentWorkbooks(const SettingsStore& settings) {
  std::vector<std::string> names;
  const std::string text = ReadSetting(settings, kSectionUse, kWorkbooksKey);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (end > begin && names.size() < kRecentWorkbooks) names.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

void RememberWorkbook(SettingsStore& settings, ErrorPrompt& prompt, const std::string& fullName) {
  if (fullName.empty() || Contains(fullName, "\n")) return;
  std::vector<std::string> names = RecentWorkbooks(settings);
  names.erase(std::remove(names.begin(), names.end(), fullName), names.end());
  names.insert(names.begin(), fullName);
  if (names.size() > kRecentWorkbooks) names.resize(kRecentWorkbooks);
  KeepWorkbooks(settings, prompt, names);
}

void ForgetWorkbook(SettingsStore& settings, ErrorPrompt& prompt, const std::string& fullName) {
  std::vector<std::string> names = RecentWorkbooks(settings);
  names.erase(std::remove(names.begin(), names.end(), fullName), names.end());
  KeepWorkbooks(settings, prompt, names);
}

std::string PowerPointFileName(const CivilTime& now) {
  const int seconds = now.hour * kSecondsOfHour + now.minute * kSecondsOfMinute + now.second;
  return "PowerPoint" + FormatDate(now, "yyyyMMdd") + "_" + std::to_string(seconds) + ".txt";
}

std::string PowerPointCommand(const std::string& program, const std::string& file) {
  return "\"" + program + "\" \"" + file + "\"";
}

}  // namespace orv
