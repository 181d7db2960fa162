#include <filesystem>

#include "app/command_line.h"
#include "numerics/paths.h"
#include "window/running_spreadsheet.h"

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

void LoadModel(const Arguments& arguments, Session& session) {
  if (arguments.link && !HasSpreadsheetLink()) {
    throw ModelNotFound{"This program was built without the link to a running Calc."};
  }
  const std::unique_ptr<Spreadsheet> sheet =
      arguments.link ? OpenRunningSpreadsheet(arguments.door, session.reader().locale()).sheet
                     : OpenFile(arguments, session);
  CommExcel reading(*sheet, session.reader(), session.clock());
  CommExcel::Session source;
  source.MainKeyword.clear();  // a model is wanted, whatever the active cell holds
  if (reading.Read(session.run().model, source) != CommExcel::Outcome::Model) {
    throw ModelNotFound{NoSpreadsheetText(arguments.door)};
  }
  if (!arguments.outFolder.empty()) {
    std::error_code error;
    std::filesystem::create_directories(PathOf(arguments.outFolder), error);
    session.run().model.WorkbookFolder = TextOf(std::filesystem::absolute(PathOf(arguments.outFolder), error)) + "/";
  }
}

}  // namespace orv
