#pragma once

#include <string>

namespace orv::calc_helper {

// A request that cannot be answered, by the numbers that the program knows.
struct Failure {
  int number = 0;
  std::string text;
};

inline constexpr int kNoObject = 91;
inline constexpr int kNoProgram = 429;
inline constexpr int kRefused = 1004;

}  // namespace orv::calc_helper
