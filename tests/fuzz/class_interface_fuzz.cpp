#include <cmath>

#include "fuzz/plot_checks.h"
#include "window/class_interface.h"

// Calls of another program: each begins with a line "@@" and P (points), T (values or times), E (events) or S (the
// specification), with a number behind the letter; the text of the call follows.
namespace orv::testing {
namespace {

constexpr int kMostCalls = 12;

struct Call {
  char operation = 'P';
  double number = 1;
  std::string text;
};

Call NextCall(std::string_view& rest) {
  Call call;
  if (rest.starts_with("@@")) {
    FuzzDialogs dialogs;
    ErrorPrompt prompt(dialogs);
    CellText reader(prompt, Locale{});
    rest.remove_prefix(2);
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    if (end > 0) call.operation = rest.front();
    if (end > 1) call.number = reader.ReadNumber(CleanUtf8(rest.substr(1, end - 1)));
    if (rest.substr(0, end).ends_with("nan")) call.number = std::nan("");
    if (rest.substr(0, end).ends_with("inf")) call.number = HUGE_VAL;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  const std::size_t end = std::min(rest.find("@@"), rest.size());
  call.text = CleanUtf8(rest.substr(0, end));
  rest.remove_prefix(end);
  return call;
}

bool Run(ClassInterface& interface, const Call& call) {
  const int flag = std::isfinite(call.number) ? static_cast<int>(std::fmod(call.number, 4)) : 0;
  try {
    switch (call.operation) {
      case 'S':
        interface.InterFaceXls(call.text, flag);
        break;
      case 'T':
        interface.GlrayonXlsT(call.text, flag);
        break;
      case 'E':
        interface.GlEventsXls(call.text, call.number);
        break;
      default:
        interface.GlrayonXls(call.text, call.number);
        break;
    }
    return true;
  } catch (const RuntimeFailure& failure) {
    Require(failure.number() == FailureNumber::InvalidProcedureCall && !std::isfinite(call.number),
            "only a factor that is no number fails", failure.description());
    return false;
  }
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  FuzzDialogs dialogs(Answer::Ignore, kMostPlotBoxes * kMostCalls);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, FuzzLocales()[size % 3]);
  PointLists lists;
  lists.PlotLoaded = lists.PlotNormalised = 1;
  int paints = 0;
  ClassInterface interface(lists, reader, [&] { ++paints; });
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string_view rest = bytes;
  for (int k = 0; k < kMostCalls && !rest.empty(); ++k) {
    const int before = paints;
    if (Run(interface, NextCall(rest))) {
      Require(paints > before && lists.PlotLoaded == 0 && lists.PlotNormalised == 0, "a call asks for a paint");
    }
    CheckLists(lists);
  }
  return 0;
}
