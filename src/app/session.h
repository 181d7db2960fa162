#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "analysis/run_driver.h"
#include "app/arguments.h"
#include "model/comm_excel.h"
#include "model/file_workbook.h"
#include "numerics/terminal_dialogs.h"
#include "shell/settings_store.h"

namespace orv {

struct Streams {
  std::istream& in;
  std::ostream& out;      // results
  std::ostream& err;      // messages and questions
  bool terminal = false;  // a person sits at it
};

// Everything that lives from the start of the program to its end.
class Session {
 public:
  Session(const Arguments& arguments, const Streams& streams);

  TerminalDialogs& dialogs() { return dialogs_; }
  RunContext& run() { return run_; }
  CellText& reader() { return reader_; }
  const Clock& clock() const { return *clock_; }
  FileSettings& settings() { return settings_; }

 private:
  std::string warning_;
  FileSettings settings_;
  TerminalDialogs dialogs_;
  ErrorPrompt prompt_;
  CellText reader_;
  std::unique_ptr<Clock> clock_;
  RunContext run_;
};

// The folder of settings, absolute.
std::string SettingsFolder(const Arguments& arguments);

// The separators in use: an argument before a setting, a setting before the locale.
Locale ChooseLocale(const Arguments& arguments, const SettingsStore& settings);

}  // namespace orv
