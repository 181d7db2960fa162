#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "model/calc_door.h"
#include "model/calc_process.h"
#include "model/worksheet.h"
#include "numerics/failure.h"

namespace orv {

// The helper program that belongs to this one: in its own folder, or in ../libexec/orvvalis from there. Empty when this
// build has none, as where it was built without LibreOffice's SDK.
std::filesystem::path FindCalcHelper();
std::filesystem::path FindCalcHelper(const std::filesystem::path& programFolder);

struct CalcLinkSettings {
  std::filesystem::path helper;
  std::string door = std::string(kCalcDoor);
  std::string decimalSeparator;                 // of the numbers that it gives; empty: the one that Calc prints
  std::chrono::milliseconds runDeadline{5000};  // of one operation of a run
  std::chrono::milliseconds watchDeadline{40};  // of a snapshot, which the window's timer waits for
  std::chrono::milliseconds hangLimit{20'000};  // an answer overdue for longer ends the helper
  std::chrono::milliseconds restartPause{
      1000};  // after a helper that never answered soundly; doubles up to eight times
};

// A running LibreOffice Calc as a spreadsheet: the workbook and sheet that are in front when it is attached to, until
// the next Attach. It is never started, and nothing in it changes: the active cell that Activate and Find move is the
// link's own, which begins at the user's; nothing is written, selected or copied.
//
// A small helper program holds the connection, so that neither a hanging nor a dying office touches this one. Failure
// 50290 tells that an answer did not come in time: the next operations then wait less and less for the late one, which
// is dropped. Failure 429, once, tells that the office went away; what follows fails with 91 until the next Attach.
// Numbers carry the decimal separator of the settings. To be used on one thread.
class CalcLink : public Spreadsheet {
 public:
  explicit CalcLink(CalcLinkSettings settings);
  ~CalcLink() override;

  // The deadline of the operations that follow, instead of settings.runDeadline.
  void SetDeadline(std::chrono::milliseconds deadline) { deadline_ = patience_ = deadline; }

  void Attach() override;
  void Release() override;
  std::string WorkbookPath() override;
  int WindowCount() override;
  std::string WindowCaption(int window) override;
  std::string SheetName() override;
  CellPosition ActiveCell() override;
  void Activate(CellPosition cell) override;
  std::string Formula(CellPosition cell) override;
  std::string Value(CellPosition cell) override;
  void Find(const std::string& part) override;
  std::string RangeText(const std::string& a1Range) override;
  // Of the numbers as they are given here: no scratch cell is written.
  bool PrintsDecimalComma(CellPosition scratch) override;
  // What is in front now, whether attached or not, within the watch's deadline; the active cell above stays.
  SheetSnapshot Snapshot() override;

 private:
  using Clock = HelperProcess::Clock;
  using Json = nlohmann::json;

  // One request with the patience that is left.
  Json Ask(Json request);
  // One request and its answer; `overdueWait` is for an answer that is still owed.
  Json Call(Json request, std::chrono::milliseconds deadline, std::chrono::milliseconds overdueWait);
  void StartHelper();
  void AwaitOverdue(std::chrono::milliseconds wait);
  bool AwaitAnswer(std::int64_t id, Clock::time_point until, Json& answer);
  [[noreturn]] void TimedOut();
  [[noreturn]] void HelperLost(const std::string& reason);

  void NeedAttached() const;
  void NeedInside(CellPosition cell) const;
  template <typename T>
  T Member(const Json& answer, const char* name);
  // The list of so many cells in an answer, one of them as text, and a cell's formula.
  const Json& Cells(const Json& answer, std::size_t count);
  std::string CellText(const Json& value, const std::string& separator);
  std::string FormulaText(const Json& answer, const std::string& separator);
  // That of the settings, or the one that an answer tells.
  std::string Separator(const Json& answer);
  CellPosition LastFilled();
  int AppendRows(std::string& text, CellPosition first, int rows, int columns, const std::string& rowEnd);

  CalcLinkSettings settings_;
  std::chrono::milliseconds deadline_;
  std::chrono::milliseconds patience_;  // shrinks with every answer that does not come
  HelperProcess helper_;
  std::int64_t lastId_ = 0;
  std::int64_t owedId_ = 0;  // of a request that was given up but not answered; 0 when there is none
  Clock::time_point owedSince_;
  bool answered_ = false;  // this helper has answered once
  int silentHelpers_ = 0;  // ended in a row without a sound answer
  Clock::time_point noStartBefore_;

  bool attached_ = false;
  std::string separator_ = ".";
  CellPosition active_;
};

}  // namespace orv
