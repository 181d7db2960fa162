#include <QApplication>
#include <cstdlib>
#include <ostream>

#include "app/command_line.h"
#include "model/calc_door.h"
#include "shell/frm_main.h"
#include "shell/frm_warning.h"
#include "window/running_spreadsheet.h"

namespace orv {
namespace {

// Windows need a display; without one the toolkit would end the program in its own way.
bool HasDisplay() {
#ifdef __linux__
  const auto set = [](const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
  };
  return set("DISPLAY") || set("WAYLAND_DISPLAY") || set("QT_QPA_PLATFORM");
#else
  return true;
#endif
}

}  // namespace

int RunWindow(const Arguments& arguments, int argc, const char* const* argv, const Streams& streams) {
  if (!HasDisplay()) {
    streams.err
        << "orvvalis: there is no display for the window. \"orvvalis run WORKBOOK --plot N --image FILE\" works "
           "without one.\n";
    return kExitUsage;
  }
  PrepareOpenGl();
  QApplication application(argc, const_cast<char**>(argv));
  QApplication::setApplicationName("OrvValis");
  QApplication::setQuitOnLastWindowClosed(false);

  std::string warning;
  FileSettings settings(SettingsFolder(arguments), warning);
  frmWarning warnings;
  QtDialogs dialogs(nullptr, warnings);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, ChooseLocale(arguments, settings));
  const SystemClock clock;
  const std::string dataFolder = settings.OutputFolder();
  RunContext run(prompt, reader, settings, clock, dataFolder);
  int exitCode = kExitDone;
  {
    const RunningSpreadsheet running = OpenRunningSpreadsheet(arguments.door, reader.locale());
    frmMain window({run, settings, dialogs, warnings, dataFolder, QApplication::applicationFilePath().toStdString(),
                    *running.sheet, CalcDoorOf(arguments.door), running.excel.get()});
    dialogs.SetWindow(&window);
    if (!arguments.workbook.empty()) window.OpenFile(arguments.workbook, true);
    window.show();
    if (!warning.empty()) dialogs.Log(warning);
    exitCode = QApplication::exec();
    dialogs.SetWindow(nullptr);
  }
  return exitCode;
}

}  // namespace orv
