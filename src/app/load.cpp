#include <filesystem>

#include "app/command_line.h"
#include "numerics/paths.h"

namespace orv {

void LoadModel(const Arguments& arguments, Session& session) {
  FileWorkbook workbook(PathOf(arguments.workbook), session.reader().locale());
  if (!arguments.sheet.empty()) workbook.ChooseSheet(arguments.sheet);
  if (!arguments.cell.empty()) workbook.ChooseCell(arguments.cell);
  for (const std::string& warning : workbook.warnings()) session.dialogs().Log(warning);
  CommExcel reading(workbook, session.reader(), session.clock());
  CommExcel::Session source;
  reading.Read(session.run().model, source);
  if (!arguments.outFolder.empty()) {
    std::error_code error;
    std::filesystem::create_directories(PathOf(arguments.outFolder), error);
    session.run().model.WorkbookFolder = TextOf(std::filesystem::absolute(PathOf(arguments.outFolder), error)) + "/";
  }
}

}  // namespace orv
