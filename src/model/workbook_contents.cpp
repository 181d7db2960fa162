#include "model/workbook_contents.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <utility>

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {

WorkbookBuilder::WorkbookBuilder(std::string fileName, Locale locale, const WorkbookLimits& limits)
    : fileName_(std::move(fileName)), locale_(std::move(locale)), limits_(limits) {}

void WorkbookBuilder::Fail(const std::string& complaint) const {
  throw WorkbookError(fileName_, complaint);
}

void WorkbookBuilder::BeginSheet(const std::string& name) {
  FinishSheet();
  if (contents_.sheets.size() == limits_.sheets) {
    Fail("is too large: it has more than " + std::to_string(limits_.sheets) + " sheets.");
  }
  contents_.sheets.push_back({});
  sheet().name = name;
}

CellPosition WorkbookBuilder::At(long long row, long long column) const {
  if (row < 1 || row > kSheetRows || column < 1 || column > kSheetColumns) {
    Fail("is damaged: sheet '" + contents_.sheets.back().name + "' has a cell in row " + std::to_string(row) +
         ", column " + std::to_string(column) + ", outside of any sheet.");
  }
  return {static_cast<int>(row), static_cast<int>(column)};
}

void WorkbookBuilder::Put(CellPosition cell, std::string formula, std::string value) {
  if (formula.empty() && value.empty()) return;
  if (value.size() > kMaxCellCharacters) value = Cut(cell, std::move(value));
  if (formula.size() > kMaxCellCharacters) formula = Cut(cell, std::move(formula));
  byteCount_ += formula.size() + value.size();
  if (++cellCount_ > limits_.filledCells) {
    Fail("is too large: it fills more than " + std::to_string(limits_.filledCells) + " cells.");
  }
  if (byteCount_ > limits_.textBytes) {
    Fail("is too large: the texts of its cells have more than " + std::to_string(limits_.textBytes) + " bytes.");
  }
  sheet().grid.SetFormula(cell, std::move(formula), std::move(value));
}

std::string WorkbookBuilder::Cut(CellPosition cell, std::string text) {
  std::string kept = LeftCharacters(text, kMaxCellCharacters);
  if (kept.size() == text.size()) return text;
  if (++cutTexts_ <= kMaxWarningsOfAKind) {
    contents_.sheets.back().warnings.push_back("The text in cell " + CellLabel(cell) + " was cut to " +
                                               std::to_string(kMaxCellCharacters) + " characters.");
  }
  return kept;
}

void WorkbookBuilder::WarnOfMissingResult(CellPosition cell) {
  if (++missingResults_ > kMaxWarningsOfAKind) return;
  sheet().warnings.push_back("The formula in cell " + CellLabel(cell) +
                             " has no stored result; it reads as empty. Open and save the workbook in a spreadsheet "
                             "program once.");
}

void WorkbookBuilder::FinishSheet() {
  const auto more = [&](std::size_t count, const std::string& what) {
    if (count <= kMaxWarningsOfAKind) return;
    sheet().warnings.push_back("The same holds for " + std::to_string(count - kMaxWarningsOfAKind) + " more " + what +
                               " in sheet '" + sheet().name + "'.");
  };
  more(missingResults_, "formulas without a stored result");
  more(cutTexts_, "long texts");
  missingResults_ = 0;
  cutTexts_ = 0;
}

std::string WorkbookBuilder::CellLabel(CellPosition cell) const {
  return "'" + ReplaceAll(contents_.sheets.back().name, "'", "''") + "'!" + CellName(cell);
}

std::string WorkbookBuilder::NumberText(double value) const {
  return LocalNumberText(value, locale_.decimalSeparator);
}

WorkbookContents WorkbookBuilder::Finish() {
  FinishSheet();
  if (contents_.sheets.empty()) Fail("holds no sheet of cells.");
  if (contents_.activeSheet >= contents_.sheets.size()) contents_.activeSheet = 0;
  return std::move(contents_);
}

namespace {

// Takes a number from the front of the text up to a character that is none of it.
bool TakeNumber(std::string_view& text, double& value) {
  if (text.empty() || text.front() < '0' || text.front() > '9') return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

// Takes `digits` digits and the separator behind them, which may be missing at the end of the text.
bool TakeField(std::string_view& text, std::size_t digits, char separator, int& value) {
  if (text.size() < digits) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + digits, value);
  if (error != std::errc() || end != text.data() + digits || value < 0) return false;
  text.remove_prefix(digits);
  if (text.empty()) return true;
  if (text.front() != separator) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

std::string LocalNumberText(double value, const std::string& decimalSeparator) {
  std::string text = NumberText(value);
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, decimalSeparator);
  return text;
}

std::string QuotedPart(std::string_view part) {
  constexpr std::size_t kMostCharacters = 200;
  return "'" + LeftCharacters(CleanUtf8(part), kMostCharacters) + "'";
}

std::string_view TrimWhiteSpace(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool ReadPlainNumber(std::string_view text, double& value) {
  text = TrimWhiteSpace(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return false;
  value = number;
  return true;
}

bool ReadIsoDate(std::string_view text, double& days) {
  text = TrimWhiteSpace(text);
  if (text.ends_with('Z')) text.remove_suffix(1);
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  int year = 0;
  int month = 0;
  int day = 0;
  if (!TakeField(text, 4, '-', year) || !TakeField(text, 2, '-', month) || !TakeField(text, 2, 'T', day)) return false;
  const std::chrono::year_month_day date{std::chrono::year(negative ? -year : year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return false;
  constexpr std::chrono::sys_days kOrigin = std::chrono::year(1899) / 12 / 30;
  double result = static_cast<double>((std::chrono::sys_days(date) - kOrigin).count());
  if (!text.empty()) {
    int hour = 0;
    int minute = 0;
    double second = 0;
    if (!TakeField(text, 2, ':', hour) || !TakeField(text, 2, ':', minute)) return false;
    if (!text.empty() && (!TakeNumber(text, second) || !text.empty())) return false;
    if (hour > 24 || minute > 59 || second > 60) return false;
    result += (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
  }
  days = result;
  return true;
}

bool ReadIsoDuration(std::string_view text, double& days) {
  text = TrimWhiteSpace(text);
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (!text.starts_with('P')) return false;
  text.remove_prefix(1);
  double seconds = 0;
  bool clock = false;
  bool any = false;
  while (!text.empty()) {
    if (!clock && text.front() == 'T') {
      clock = true;
      text.remove_prefix(1);
      continue;
    }
    double amount = 0;
    if (!TakeNumber(text, amount) || text.empty()) return false;
    const char unit = text.front();
    text.remove_prefix(1);
    if (unit == 'D' && !clock) {
      seconds += amount * 86400;
    } else if (unit == 'H' && clock) {
      seconds += amount * 3600;
    } else if (unit == 'M' && clock) {
      seconds += amount * 60;
    } else if (unit == 'S' && clock) {
      seconds += amount;
    } else {
      return false;
    }
    any = true;
  }
  if (!any) return false;
  days = (negative ? -seconds : seconds) / 86400;
  return std::isfinite(days);
}

std::string CleanUtf8(std::string_view text) {
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return ascii || IsValidUtf8(text) ? std::string(text) : Utf8FromWindows1252(text);
}

std::string CutForCell(std::string text) {
  return text.size() <= kMaxCellCharacters ? std::move(text) : LeftCharacters(text, kMaxCellCharacters + 1);
}

void AppendUtf8(std::string& out, char32_t character) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (character == 0) return;
  if ((character >= 0xD800 && character < 0xE000) || character > 0x10FFFF) character = 0xFFFD;
  if (character < 0x80) {
    put(character);
    return;
  }
  if (character < 0x800) {
    put(0xC0 | (character >> 6U));
  } else {
    if (character < 0x10000) {
      put(0xE0 | (character >> 12U));
    } else {
      put(0xF0 | (character >> 18U));
      put(0x80 | ((character >> 12U) & 0x3F));
    }
    put(0x80 | ((character >> 6U) & 0x3F));
  }
  put(0x80 | (character & 0x3F));
}

}  // namespace orv
