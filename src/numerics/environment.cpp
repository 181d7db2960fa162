#include "numerics/environment.h"

#include <chrono>
#include <clocale>
#include <cstdio>
#include <ctime>

#include "numerics/text.h"

namespace orv {

CivilTime SystemClock::Local() const {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &now);
#else
  localtime_r(&now, &parts);
#endif
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

double SystemClock::Seconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::string DateText(const CivilTime& time) {
  char buffer[48];
  std::snprintf(buffer, sizeof buffer, "%04d/%02d/%02d", time.year, time.month, time.day);
  return buffer;
}

std::string TimeText(const CivilTime& time) {
  char buffer[48];
  std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", time.hour, time.minute, time.second);
  return buffer;
}

Locale UserLocale() {
  const char* current = std::setlocale(LC_NUMERIC, nullptr);
  const std::string saved = current != nullptr ? current : "C";
  Locale locale;
  if (std::setlocale(LC_NUMERIC, "") != nullptr) {
    const std::lconv* conventions = std::localeconv();
    locale.decimalSeparator = LeftCharacters(conventions->decimal_point, 1);
    locale.thousandSeparator = LeftCharacters(conventions->thousands_sep, 1);
    if (locale.decimalSeparator.empty()) locale.decimalSeparator = ".";
  }
  std::setlocale(LC_NUMERIC, saved.c_str());
  return locale;
}

}  // namespace orv
