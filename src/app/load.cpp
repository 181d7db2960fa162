#include <filesystem>

#include "app/command_line.h"
#include "model/calc_link.h"
#include "numerics/paths.h"

namespace orv {
namespace {

std::unique_ptr<Spreadsheet> OpenFile(const Arguments& arguments, Session& session) {
  auto workbook = std::make_unique<FileWorkbook>(PathOf(arguments.workbook), session.reader().locale());
  if (!arguments.sheet.empty()) workbook->ChooseSheet(arguments.sheet);
  if (!arguments.cell.empty()) workbook->ChooseCell(arguments.cell);
  for (const std::string& warning : workbook->warnings()) session.dialogs().Log(warning);
  return workbook;
}

}  // namespace

std::unique_ptr<Spreadsheet> OpenLink(const Arguments& arguments) {
  CalcLinkSettings settings;
  settings.helper = FindCalcHelper();
  settings.door = CalcDoorOf(arguments.door);
  return std::make_unique<CalcLink>(std::move(settings));
}

void LoadModel(const Arguments& arguments, Session& session) {
  const std::unique_ptr<Spreadsheet> sheet = arguments.link ? OpenLink(arguments) : OpenFile(arguments, session);
  if (arguments.link && FindCalcHelper().empty()) {
    throw ModelNotFound{"This program was built without the link to a running Calc."};
  }
  CommExcel reading(*sheet, session.reader(), session.clock());
  CommExcel::Session source;
  source.MainKeyword.clear();  // a model is wanted, whatever the active cell holds
  if (reading.Read(session.run().model, source) != CommExcel::Outcome::Model) {
    throw ModelNotFound{"There is no running Calc that can be reached. Open its door by the command\n  " +
                        CalcDoorCommand(CalcDoorOf(arguments.door))};
  }
  if (!arguments.outFolder.empty()) {
    std::error_code error;
    std::filesystem::create_directories(PathOf(arguments.outFolder), error);
    session.run().model.WorkbookFolder = TextOf(std::filesystem::absolute(PathOf(arguments.outFolder), error)) + "/";
  }
}

}  // namespace orv
