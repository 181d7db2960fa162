#pragma once

#include <functional>
#include <string>

#include "model/cell_text.h"
#include "model/database.h"
#include "model/directives.h"
#include "model/primitive_spec.h"
#include "model/range_plot.h"
#include "model/worksheet.h"
#include "numerics/environment.h"

namespace orv {

inline constexpr int kModelColumns = 11;
inline constexpr int kDatabaseColumns = 21;
inline constexpr int kSpareModelRows = 10;
inline constexpr int kTable9Lines = 1000;

// What one reading of the workbook yields; kept for re-plots.
struct ModelData {
  TextTable ModelCells;
  int NumberOfPrimitives = 0;
  std::string DirectiveLine;
  Directives directives;
  PhysicalConstants constants;
  Database database;
  std::string ModelId;        // at most 64 characters
  std::string ModelTitle;     // at most 96 characters
  std::string DatabaseTitle;  // at most 96 characters
  std::string SheetTitle;     // at most 128 characters
  std::string WorkbookName;
  std::string SheetName;
  std::string WorkbookFolder;  // with a trailing separator
  CellPosition keyword;
  CellPosition databaseCell;
  int Table1Row = 0;
  int Table9Row = 0;
  int LastDatabaseRow = 0;
  double StartTime = 0;  // seconds of the clock

  bool DatabaseIsEmpty() const { return database.NumberOfDatabaseRows < 1 || database.DatabaseCells(1, 1).empty(); }
  // Whether any row of the database block is the title of a table.
  bool DatabaseHasTables() const;
};

// Thrown when the keyword is nowhere and the user does not name another sheet.
struct ModelNotFound {
  std::string message;
};

// The name of a range in A1 notation, cut at the end of the sheet. A column above 256 brings a message and the abort
// question; the name is built all the same.
std::string RangeName(int row1, int column1, int row2, int column2, ErrorPrompt& prompt);

// Finds out what the spreadsheet offers and reads it: the specification of a range plot, or a model with its database.
class CommExcel {
 public:
  // What steers the readings and what they leave behind. One object a window, kept from run to run.
  struct Session {
    int SourceMode = 0;    // 1: the sample plot, 2: the last plot; no spreadsheet is touched
    int FileMode = 0;      // 1: a plot file was given at the start, which is shown instead
    int SpecEntered = 0;   // 1: a specification was typed ...
    std::string SpecText;  // ... this one
    // What marks a specification; "demo" asks for the sample plot, and with an empty one there are no range plots.
    std::string MainKeyword = std::string(kMainKeyword);
    bool watchRun =
        false;  // the watch runs it: nothing is asked, and the active cell goes before a typed specification

    int ExcelState = 0;         // 1: the sample plot is shown; 2: there is no spreadsheet, the last plot is shown
    int LinkReady = 0;          // 1: a workbook was reached
    std::string specification;  // the one to plot

    // Counters of failures, which live as long as the program.
    int attachFailures = 0;
    int failures = 0;
    int ExcelBusyRetrynumber = 0;  // copies repeated because the spreadsheet was busy

    // Typed texts give way to a cell that was taken.
    void ForgetSpecification() {
      SpecEntered = 0;
      SpecText.clear();
    }
  };

  // Nothing: the watch found neither specification nor model, or no spreadsheet; what is shown stays.
  enum class Outcome { Model, RangePlot, PlotFile, Nothing };

  CommExcel(Spreadsheet& sheet, CellText& reader, const Clock& clock) : sheet_(sheet), reader_(reader), clock_(clock) {}

  // One reading. A plot file is left to the caller, and so is a range plot, whose specification stands in the session
  // then. When the database block stays empty after a second reading the outcome is Model all the same: the run refuses
  // it. Throws ModelNotFound when the keyword is absent.
  Outcome Read(ModelData& model, Session& session);

 private:
  // Runs a statement against the spreadsheet; false when it failed, its number then being in lastFailure_.
  bool Try(const std::function<void()>& statement);

  Outcome FindSource(ModelData& model, Session& session);
  bool Attach(Session& session);
  bool TakeSpecification(Session& session);
  bool IsSpecification(const std::string& text, const Session& session);
  void ReadNames(ModelData& model);
  bool FindKeyword(ModelData& model);
  bool WalkLeft(CellPosition start);
  bool WalkUp(CellPosition start);
  bool HoldsKeyword(CellPosition cell, bool& empty);
  bool FindText(const std::string& text);
  bool AskForAnotherSheet(const ModelData& model);
  void FindDatabase(ModelData& model);
  std::string TitleAt(CellPosition cell, const std::string& keyword);
  void CountPrimitives(ModelData& model);
  void FindTable1(ModelData& model);
  void FindEndOfTable9(ModelData& model);
  void ReadModelCells(ModelData& model);
  void ReadDirectives(ModelData& model);
  void ReadDatabase(ModelData& model);
  void ForgetTitles(ModelData& model);

  std::string ValueAt(int row, int column);
  ErrorPrompt& prompt() { return reader_.prompt(); }

  Spreadsheet& sheet_;
  CellText& reader_;
  const Clock& clock_;
  Session* session_ = nullptr;  // of the reading under way
  CellPosition start_;
  std::string startFormula_;  // of the active cell
  int lastFailure_ = 0;
};

}  // namespace orv
