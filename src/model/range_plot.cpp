#include "model/range_plot.h"

#include <algorithm>
#include <vector>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr std::size_t kMaxRangeText = 100;
constexpr int kLastSheetRow = 1'048'576;

char UpperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Position of a word in any case of its plain letters.
std::size_t FindWord(std::string_view text, std::string_view word, std::size_t from = 0) {
  const auto found =
      std::search(text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size())), text.end(), word.begin(),
                  word.end(), [](char a, char b) { return UpperLetter(a) == UpperLetter(b); });
  return found == text.end() || word.empty() ? std::string_view::npos : static_cast<std::size_t>(found - text.begin());
}

// Cuts the options out of a specification; what stands on both sides of the quotes remains.
std::string TakeOptions(std::string& spec) {
  const std::size_t quote = spec.find('"');
  if (quote == std::string::npos) return std::string(kDefaultPlotOptions);
  const std::size_t begin = std::min(spec.find_first_not_of('"', quote), spec.size());
  const std::size_t end = spec.find('"', begin);
  std::string options;
  // Two quotes side by side hold nothing, unless a formula doubles its quotes and another closes them.
  if (begin - quote == 1 || end != std::string::npos) options = spec.substr(begin, end - begin);
  std::size_t behind = spec.size();
  if (end != std::string::npos) {
    behind = std::min(spec.find_first_not_of('"', end), spec.size());
  } else if (begin - quote > 1) {
    behind = begin;
  }
  spec = spec.substr(0, quote) + " " + spec.substr(behind);
  return options;
}

bool IsWordCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

// A range found behind its keyword.
struct KeywordRange {
  std::size_t keyword;
  std::string text;
};

std::vector<KeywordRange> FindKeywordRanges(std::string_view spec, std::string_view keyword) {
  std::vector<KeywordRange> found;
  std::size_t at = FindWord(spec, keyword);
  while (at != std::string_view::npos && found.size() < kPlotRanges) {
    std::size_t next = at + keyword.size();
    const std::size_t open = spec.find_first_not_of(' ', next);
    const bool wholeWord = at == 0 || !IsWordCharacter(spec[at - 1]);
    if (wholeWord && open != std::string_view::npos && spec[open] == '(') {
      next = std::min(spec.find(')', open), spec.size());
      found.push_back({at, ReplaceAll(ReplaceAll(spec.substr(open + 1, next - open - 1), " ", ""), "$", "")});
    }
    at = FindWord(spec, keyword, next);
  }
  return found;
}

// The number between "=" and the first keyword.
double ReadScale(std::string_view front, CellText& reader) {
  const std::size_t equals = front.find('=');
  if (equals != std::string_view::npos) front.remove_prefix(equals + 1);
  std::string text = Trim(SoftBlanks(front));
  while (!text.empty() && (text.back() == '*' || text.back() == ' ')) text.pop_back();
  const double scale = reader.ReadPointNumber(text);
  return scale == 0 ? 1 : scale;
}

// Reads "AB12" at the front of a text; false when it begins otherwise.
bool TakeCell(std::string_view& text, int& column, int& row) {
  std::size_t k = 0;
  int letters = 0;
  while (k < text.size() && k < 2 && UpperLetter(text[k]) >= 'A' && UpperLetter(text[k]) <= 'Z') {
    letters = letters * 26 + UpperLetter(text[k]) - 64;
    ++k;
  }
  const std::size_t digits = k;
  int number = 0;
  while (k < text.size() && text[k] >= '0' && text[k] <= '9' && number <= kLastSheetRow) {
    number = number * 10 + (text[k] - '0');
    ++k;
  }
  if (digits == 0 || k == digits || number < 1 || number > kLastSheetRow) return false;
  column = letters;
  row = number;
  text.remove_prefix(k);
  return true;
}

std::string ColumnLetters(int column) {
  std::string letters;
  for (; column > 0; column = (column - 1) / 26)
    letters.insert(letters.begin(), static_cast<char>('A' + (column - 1) % 26));
  return letters;
}

void CutColumns(RangeBounds& range, int columns) {
  if (range.columns() > columns) range.lastColumn = range.firstColumn + columns - 1;
}

// The ranges that the columns of a wide first one stand for: offsets from its first column, and widths.
struct SplitColumns {
  int offset;
  int width;
};
constexpr std::array<SplitColumns, 5> kSplits = {{{3, 1}, {4, 2}, {6, 5}, {11, 2}, {13, 2}}};

// How many of kSplits a first range that is so many columns too wide makes; 0: it is not split.
std::size_t SplitCount(int extraColumns) {
  switch (extraColumns) {
    case 1:
      return 1;
    case 3:
      return 2;
    case 8:
      return 3;
    case 10:
      return 4;
    case 12:
      return 5;
    default:
      return 0;
  }
}

// A range with the text it came from.
struct PlacedRange {
  RangeBounds bounds;
  std::string text;
};

void SplitFirst(std::vector<PlacedRange>& places) {
  RangeBounds& first = places.front().bounds;
  const std::size_t count = SplitCount(first.columns() - kColumnsTaken[0]);
  if (count == 0) return;
  std::vector<PlacedRange> made;
  for (std::size_t k = 0; k < count; ++k) {
    RangeBounds part = first;
    part.firstColumn = first.firstColumn + kSplits[k].offset;
    part.lastColumn = part.firstColumn + kSplits[k].width - 1;
    made.push_back({part, ""});
  }
  CutColumns(first, kColumnsTaken[0]);
  places.insert(places.begin() + 1, made.begin(), made.end());
  places.resize(kPlotRanges);
}

void OrderBounds(RangeBounds& range) {
  range.lastColumn = std::max(range.firstColumn, range.lastColumn);
  range.lastRow = std::max(range.firstRow, range.lastRow);
}

// A value column given by its first cell alone is as long as the points.
void ExtendSingleCell(PlacedRange& second, const RangeBounds& first) {
  std::string_view text = second.text;
  int column = 0;
  int row = 0;
  if (Contains(text, ":") || !TakeCell(text, column, row) || !text.empty()) return;
  second.bounds = {column, column, row, std::min(row + first.rows() - 1, kLastSheetRow)};
}

}  // namespace

RangeBounds PlotRanges::Taken(std::size_t place) const {
  RangeBounds part = range.at(place);
  CutColumns(part, kColumnsTaken.at(place));
  return part;
}

bool PlotRanges::FirstAlone() const {
  return range[0].present() &&
         std::none_of(range.begin() + 1, range.end(), [](const RangeBounds& other) { return other.present(); });
}

int PlotRanges::LineCount() const {
  int lines = 0;
  for (const RangeBounds& part : range) lines = std::max(lines, part.rows());
  return lines;
}

bool ParseSpecification(std::string_view spec, double& scale, std::string& options, RangeTexts& ranges,
                        CellText& reader, std::string_view MainKeyword) {
  std::string text = SoftBlanks(spec);
  options = TakeOptions(text);
  const std::vector<KeywordRange> found = FindKeywordRanges(text, MainKeyword);
  scale = found.empty() ? 1 : ReadScale(std::string_view(text).substr(0, found.front().keyword), reader);
  ranges.fill("");
  for (std::size_t k = 0; k < found.size(); ++k) ranges[k] = found[k].text;
  return std::any_of(ranges.begin(), ranges.end(), [](const std::string& range) { return Contains(range, ":"); });
}

RangeBounds ParseRange(std::string_view text) {
  if (CharacterCount(text) > kMaxRangeText) return {};
  const std::string plain = ReplaceAll(Trim(SoftBlanks(text)), "$", "");
  std::string_view rest = plain;
  RangeBounds bounds;
  if (!TakeCell(rest, bounds.firstColumn, bounds.firstRow) || !rest.starts_with(':')) return {};
  rest.remove_prefix(1);
  if (!TakeCell(rest, bounds.lastColumn, bounds.lastRow) || !rest.empty()) return {};
  return bounds;
}

std::string RangeText(const RangeBounds& bounds) {
  if (!bounds.present()) return {};
  return ColumnLetters(bounds.firstColumn) + std::to_string(bounds.firstRow) + ":" + ColumnLetters(bounds.lastColumn) +
         std::to_string(bounds.lastRow);
}

bool FindPlotRanges(const RangeTexts& texts, PlotRanges& ranges) {
  std::vector<PlacedRange> places;
  for (const std::string& text : texts) places.push_back({ParseRange(text), text});
  SplitFirst(places);
  RangeBounds& first = places.front().bounds;
  for (PlacedRange& place : places) OrderBounds(place.bounds);
  const bool wideEnough = first.columns() >= kColumnsTaken[0];
  CutColumns(first, 16);
  constexpr std::array<int, kPlotRanges> kWidest = {16, 4, 3, 5, 2, 2};
  for (std::size_t k = 1; k < kPlotRanges; ++k) CutColumns(places[k].bounds, kWidest[k]);
  if (wideEnough) ExtendSingleCell(places[1], first);
  for (std::size_t k = 0; k < kPlotRanges; ++k) ranges.range[k] = places[k].bounds;
  return wideEnough;
}

bool RemoveWord(std::string_view word, std::string& text) {
  const std::size_t at = FindWord(text, word);
  if (at == std::string::npos) return false;
  const std::string behind = text.substr(at + word.size());
  text.resize(at);
  if (!behind.empty()) text += " " + behind;
  return true;
}

PlotSwitches ReadPlotOptions(std::string& options) {
  PlotSwitches switches;
  switches.PenUpMode = RemoveWord("PENUP", options);
  if (RemoveWord("valz", options)) {
    switches.ValueColumn = 3;
  } else if (RemoveWord("valy", options)) {
    switches.ValueColumn = 2;
  } else if (RemoveWord("valx", options)) {
    switches.ValueColumn = 1;
  }
  switches.MaravoFactor = RemoveWord("maravo", options) ? 0.5 : 0;
  switches.TraceOrderWFirst = Contains(options, "ESA");
  if (RemoveWord("xyzw", options)) switches.TraceOrderWFirst = true;
  switches.MoonView = RemoveWord("moon", options);
  if (RemoveWord("lune", options)) switches.MoonView = true;
  return switches;
}

std::string WrongSpecificationText(std::string_view spec) {
  return "Warning: an Excel sheet is already open without a correct specification for ValisExcelPro:    " +
         std::string(spec) +
         "   . You should open only the one with a correct specification or you can write or use a previous "
         "specification "
         "in the scolling textbox";
}

}  // namespace orv
