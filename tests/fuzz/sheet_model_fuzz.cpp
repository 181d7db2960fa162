#include <vector>

#include "fuzz/fuzz_support.h"
#include "model/comm_excel.h"
#include "model/memory_sheet.h"

// A sheet with a model and its database: the active cell on the first line, the cells behind it.
namespace orv::testing {
namespace {

void CheckModel(const ModelData& model) {
  Require(model.NumberOfPrimitives >= 0 && model.NumberOfPrimitives < kSheetRows, "primitives are counted");
  Require(CharacterCount(model.ModelId) <= 64 && CharacterCount(model.ModelTitle) <= 96, "titles are bounded");
  Require(CharacterCount(model.DatabaseTitle) <= 96 && CharacterCount(model.SheetTitle) <= 128, "titles are bounded");
  for (const std::string& text : {model.ModelId, model.ModelTitle, model.DatabaseTitle, model.SheetTitle}) {
    RequireText(text, "a title is a text");
  }
  for (const std::string& cell : model.ModelCells.values()) RequireText(cell, "a cell is a text");
  for (const std::string& cell : model.database.DatabaseCells.values()) RequireText(cell, "a cell is a text");
  Require(model.database.NumberOfDatabaseRows <= kSheetRows, "rows are counted");
}

void ReadModel(MemorySheet& sheet, CommExcel::Session session, Answer answer, const Locale& locale) {
  const FixedClock clock({2031, 4, 5, 6, 7, 8});
  FuzzDialogs dialogs(answer, 1000);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  ModelData model;
  try {
    const CommExcel::Outcome outcome = CommExcel(sheet, reader, clock).Read(model, session);
    if (outcome == CommExcel::Outcome::Model) CheckModel(model);
    Require(outcome != CommExcel::Outcome::RangePlot || Contains(session.specification, ":"), "a plot has a range");
  } catch (const ModelNotFound& absent) {
    RequireText(absent.message, "a complaint is a text");
  } catch (const ProgramEnd&) {
    Require(answer == Answer::Abort, "only the user ends the program");
  }
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  FuzzInput input(data, size);
  const std::string active = input.TextLine();
  const Locale& locale = FuzzLocales()[size % 3];
  MemorySheet sheet(locale);
  sheet.Attach();
  try {
    sheet.SetText({1, 1}, ReplaceAll(CleanUtf8(input.Rest()), std::string_view("\0", 1), " "));
  } catch (const RuntimeFailure&) {
    return 0;  // more columns than a sheet has
  }
  if (const std::optional<CellPosition> cell = ParseA1Cell(active)) sheet.Activate(*cell);
  CommExcel::Session session;
  ReadModel(sheet, session, Answer::Ignore, locale);
  session.watchRun = true;
  ReadModel(sheet, session, Answer::Abort, locale);
  session.watchRun = false;
  session.SpecEntered = 1;
  session.SpecText = active;
  ReadModel(sheet, session, Answer::Abort, locale);
  return 0;
}
