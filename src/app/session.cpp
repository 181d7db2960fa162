#include "app/session.h"

#include <filesystem>

#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {
namespace {

TerminalDialogs::Options DialogOptions(const Arguments& arguments, const SettingsStore& settings, bool terminal) {
  TerminalDialogs::Options options;
  const std::string policy = arguments.onQuestion.value_or(ReadSetting(settings, kSectionUseOrv, "OnQuestion"));
  options.policy = terminal ? QuestionPolicy::Ask : QuestionPolicy::Ignore;
  if (policy == "ask") options.policy = QuestionPolicy::Ask;
  if (policy == "ignore") options.policy = QuestionPolicy::Ignore;
  if (policy == "abort") options.policy = QuestionPolicy::Abort;
  options.quiet = arguments.quiet;
  options.progressLine = terminal;
  return options;
}

std::unique_ptr<Clock> MakeClock(const Arguments& arguments) {
  const std::optional<CivilTime> date = arguments.date ? ReadDate(*arguments.date) : std::nullopt;
  if (date) return std::make_unique<DatedClock>(*date);
  return std::make_unique<SystemClock>();
}

}  // namespace

std::string SettingsFolder(const Arguments& arguments) {
  if (arguments.settingsFolder.empty()) return FileSettings::UserFolder();
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(PathOf(arguments.settingsFolder), error);
  return error ? arguments.settingsFolder : TextOf(absolute);
}

Locale ChooseLocale(const Arguments& arguments, const SettingsStore& settings) {
  Locale locale = UserLocale();
  const std::string decimal = arguments.decimal.value_or(ReadSetting(settings, kSectionUseOrv, "DecimalSeparator"));
  const std::string thousands =
      arguments.thousands.value_or(ReadSetting(settings, kSectionUseOrv, "ThousandSeparator"));
  if (decimal == "." || decimal == ",") locale.decimalSeparator = decimal;
  if (thousands == "none") {
    locale.thousandSeparator.clear();
  } else if (!thousands.empty()) {
    locale.thousandSeparator = LeftCharacters(thousands, 1);
  }
  // One character cannot be both; a decimal separator that was asked for wins.
  if (locale.thousandSeparator == locale.decimalSeparator) locale.thousandSeparator.clear();
  return locale;
}

Session::Session(const Arguments& arguments, const Streams& streams)
    : settings_(SettingsFolder(arguments), warning_),
      dialogs_(streams.in, streams.err, DialogOptions(arguments, settings_, streams.terminal)),
      prompt_(dialogs_),
      reader_(prompt_, ChooseLocale(arguments, settings_)),
      clock_(MakeClock(arguments)),
      run_(prompt_, reader_, settings_, *clock_, settings_.OutputFolder()) {
  if (!warning_.empty()) dialogs_.Tell(warning_, "Settings", Icon::Warning);
}

}  // namespace orv
