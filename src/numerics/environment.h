#pragma once

#include <string>

// What the run takes from the outside world, passed in so that tests can fix it.
namespace orv {

struct CivilTime {
  int year = 1900;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual CivilTime Local() const = 0;
  // Seconds since some fixed moment, rising steadily; used for durations only.
  virtual double Seconds() const = 0;
};

class SystemClock : public Clock {
 public:
  CivilTime Local() const override;
  double Seconds() const override;
};

// The system's clock with the date and time fixed, for repeatable runs.
class DatedClock : public SystemClock {
 public:
  explicit DatedClock(CivilTime time) : time_(time) {}
  CivilTime Local() const override { return time_; }

 private:
  CivilTime time_;
};

class FixedClock : public Clock {
 public:
  explicit FixedClock(CivilTime time) : time_(time) {}
  CivilTime Local() const override { return time_; }
  double Seconds() const override { return 0; }

 private:
  CivilTime time_;
};

// "yyyy/MM/dd" and "hh:mm:ss".
std::string DateText(const CivilTime& time);
std::string TimeText(const CivilTime& time);

// The separators of numbers; the thousands separator is empty in the C locale.
struct Locale {
  std::string decimalSeparator = ".";
  std::string thousandSeparator;
};

// The separators of the user's locale, one character each.
Locale UserLocale();

}  // namespace orv
