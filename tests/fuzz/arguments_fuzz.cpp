#include <cmath>
#include <sstream>
#include <vector>

#include "app/arguments.h"
#include "fuzz/fuzz_support.h"

// The command line: an argument a line.
namespace orv::testing {
namespace {

void CheckArguments(const Arguments& arguments) {
  const PictureArguments& picture = arguments.picture;
  Require(picture.width > 0 && picture.height > 0, "a picture has a size");
  Require(static_cast<long long>(picture.width) * picture.height <= 1LL << 27U, "a picture fits the memory");
  Require(std::isfinite(picture.pixelRatio) && picture.pixelRatio > 0, "a ratio is a number");
  Require(picture.colorStyle >= 0 && picture.colorStyle <= 6, "a colour style is one");
  Require(picture.scaleMode >= 0 && picture.scaleMode <= 5, "a place of the legend is one");
  Require(picture.startFraction >= 0 && picture.frameFraction <= 1000, "a fraction is one");
  Require(!arguments.decimal || *arguments.decimal == "." || *arguments.decimal == ",", "a separator is one");
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  constexpr std::size_t kMostArguments = 24;
  FuzzInput input(data, size);
  std::vector<std::string> texts = {"orvvalis"};
  while (!input.Empty() && texts.size() <= kMostArguments) {
    const std::string_view line = input.Line();
    texts.emplace_back(line.substr(0, line.find('\0')));
  }
  std::vector<const char*> pointers;
  for (const std::string& text : texts) {
    pointers.push_back(text.c_str());
    if (const std::optional<ViewChoice> view = ReadView(text)) {
      Require(view->number >= 0 && view->number <= 11, "a view is one", text);
    }
    if (const auto colour = ReadBackground(text)) {
      for (const double part : *colour) Require(part >= 0 && part <= 255, "a colour is one", text);
    }
    if (const std::optional<CivilTime> time = ReadDate(text)) {
      Require(time->month >= 1 && time->month <= 12 && time->day >= 1 && time->day <= 31, "a date is one", text);
      Require(time->hour >= 0 && time->hour < 24 && time->minute < 60 && time->second < 61, "a time is one", text);
    }
  }
  std::ostringstream out;
  std::ostringstream err;
  int exitCode = -1;
  const std::optional<Arguments> arguments =
      ParseArguments(static_cast<int>(pointers.size()), pointers.data(), out, err, exitCode);
  if (arguments) {
    CheckArguments(*arguments);
  } else {
    Require(exitCode == kExitDone || exitCode == kExitUsage, "the end has its code");
    Require(exitCode == kExitDone ? !out.str().empty() : !err.str().empty(), "the end is explained");
  }
  return 0;
}
