#include "window/class_interface.h"

#include <array>
#include <cmath>
#include <limits>

#include "model/plot_filler.h"
#include "model/range_plot.h"
#include "model/workbook_contents.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr std::string_view kTimeMask = "#0.00000000000000000";
constexpr std::size_t kItems = 3;  // of a row that are looked at
const char* const kOwnTitle = "ClassInterface";

using Items = std::array<std::string, kItems + 1>;  // from 1

// Takes the next row off a text. The line end behind the last row begins no further one.
std::string_view TakeRow(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view row = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (row.ends_with('\r')) row.remove_suffix(1);
  return row;
}

void SplitItems(std::string_view row, Items& items) {
  for (std::size_t item = 1; item <= kItems; ++item) {
    const std::size_t tab = std::min(row.find('\t'), row.size());
    items[item] = Trim(row.substr(0, tab));
    row.remove_prefix(std::min(tab + 1, row.size()));
  }
}

bool HasDigit(std::string_view text) {
  return text.find_first_of("0123456789") != std::string_view::npos;
}

// Reads the items of one call. The user is stopped by the first number that cannot be read, not by each of them.
class ItemReader {
 public:
  ItemReader(CellText& reader, ItemFaults& faults)
      : boxes_(reader.prompt().dialogs()), prompt_(boxes_), reader_(prompt_, reader.locale()), faults_(faults) {}

  // Calls take(index, items) for each row, from index 0; returns the last index, kNoEntry for an empty text.
  template <class Take>
  int Rows(std::string_view text, Take&& take) {
    Items items;
    int last = kNoEntry;
    for (row_ = 1; !text.empty(); ++row_) {
      const std::string_view row = TakeRow(text);
      if (last + 1 >= kListEntries) {
        faults_.beyond.Add(row_);
        continue;
      }
      SplitItems(row, items);
      take(++last, items);
    }
    return last;
  }

  double Number(const std::string& item) {
    const long before = boxes_.boxes();
    const double value = reader_.ReadPointNumber(item);
    if (boxes_.boxes() != before) {
      faults_.tooLarge.Add(row_);
    } else if (value == 0 && !item.empty() && !HasDigit(item)) {
      faults_.noNumber.Add(row_);
    }
    return value;
  }

  float Single(double value) {
    if (std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max())) return static_cast<float>(value);
    faults_.tooLarge.Add(row_);
    return 0;
  }

 private:
  FirstBoxOnly boxes_;
  ErrorPrompt prompt_;
  CellText reader_;
  ItemFaults& faults_;
  long long row_ = 0;
};

void TellNote(UserDialogs& dialogs, const std::string& routine, const LineNote& note, const std::string& what) {
  if (note.lines == 0) return;
  dialogs.Log("_" + routine + ", row " + std::to_string(note.first) +
              (note.lines > 1 ? " and " + std::to_string(note.lines - 1) + " more: " : ": ") + what);
}

}  // namespace

// The text is read whole whatever the user answers.
void ClassInterface::CheckLength(const std::string& text) {
  if (CharacterCount(text) <= kInterfaceCharacters) return;
  reader_.prompt().dialogs().Tell("Overflow", "Some Data are to be lost", Icon::Warning);
  reader_.prompt().AbortQuestion();
}

// Plots of the program's own bring a title of theirs.
bool ClassInterface::OwnPlot() const {
  return !title_.empty() && lists_.Title == title_;
}

void ClassInterface::NamePlot() {
  title_ = Selection_.empty() ? kOwnTitle : Selection_;
  lists_.Title = title_;
  lists_.TimePlot = FlagOptionToPlot_ != 0 || timesGiven_ != 0;
}

void ClassInterface::TakeLists() {
  if (!OwnPlot() || newPlot_) {
    lists_.Clear();
    lists_.KeepScale = 0;
    lists_.FirstDraw = 0;
    timesGiven_ = 0;
  }
  newPlot_ = false;
  NamePlot();
}

void ClassInterface::InterFaceXls(const std::string& Selection, int FlagOptionToPlot) {
  const std::string name = CleanUtf8(Selection);
  newPlot_ = newPlot_ || name != Selection_;
  Selection_ = name;
  FlagOptionToPlot_ = FlagOptionToPlot;
  if (OwnPlot()) NamePlot();
  Publish("InterFaceXls", {});
}

void ClassInterface::GlrayonXls(const std::string& given, double FactorScale) {
  if (!std::isfinite(FactorScale)) Raise(FailureNumber::InvalidProcedureCall);
  const std::string text = CleanUtf8(given);
  CheckLength(text);
  TakeLists();
  ItemFaults faults;
  if (FactorScale != 0) {
    ItemReader items(reader_, faults);
    lists_.NumberPoints = items.Rows(text, [&](int n, const Items& row) {
      for (std::size_t axis = 1; axis <= 3; ++axis) {
        lists_.PointList(axis, n) = items.Single(items.Number(row[axis]) * FactorScale);
      }
      lists_.PointList(4, n) = 0;
    });
    lists_.FactorScale = FactorScale;
    lists_.EarthOn = FactorScale != 1;
    lists_.Scaled = false;
    FinishValues();
  }
  Publish("GlrayonXls", faults);
}

void ClassInterface::GlrayonXlsT(const std::string& given, int flag) {
  const std::string text = CleanUtf8(given);
  CheckLength(text);
  TakeLists();
  timesGiven_ = flag;
  NamePlot();
  ItemFaults faults;
  ItemReader items(reader_, faults);
  items.Rows(text, [&](int n, const Items& row) {
    const std::string shown = ReplaceAll(FormatNumber(items.Number(row[1]), kTimeMask), ",", ".");
    lists_.PointList(0, n) = items.Single(LeadingNumber(shown));
  });
  FinishValues();
  Publish("GlrayonXlsT", faults);
}

void ClassInterface::GlEventsXls(const std::string& given, double FactorScale) {
  if (!std::isfinite(FactorScale)) Raise(FailureNumber::InvalidProcedureCall);
  const std::string text = CleanUtf8(given);
  CheckLength(text);
  TakeLists();
  ItemFaults faults;
  ItemReader items(reader_, faults);
  lists_.EventCount = items.Rows(text, [&](int n, const Items& row) {
    lists_.EventList(0, n) = items.Single(items.Number(row[1]));
    lists_.EventList(1, n) = 0;
    const std::string state = UpperTrim(SoftBlanks(row[2]));
    const char last = state.empty() ? '\0' : state.back();
    if (last == 'S' || last == '1') {
      lists_.EventList(1, n) = 1;
    } else if (last != 'E' && last != '0' && n > 0) {
      lists_.EventList(1, n - 1) = items.Single(items.Number(row[2]));
    }
  });
  Publish("GlEventsXls", faults);
}

void ClassInterface::FinishValues() {
  if (lists_.NumberPoints == kNoEntry) return;
  lists_.FindPlotValues();
  lists_.legend.LegendMin = lists_.legend.ScaleMin = lists_.PlotValueMin;
  lists_.legend.LegendMax = lists_.legend.ScaleMax = lists_.PlotValueMax;
}

void ClassInterface::Publish(const std::string& routine, const ItemFaults& faults) {
  UserDialogs& dialogs = reader_.prompt().dialogs();
  TellNote(dialogs, routine, faults.noNumber, "an item is no number and reads as 0");
  TellNote(dialogs, routine, faults.tooLarge, "a number is too large for the view and reads as 0");
  TellNote(dialogs, routine, faults.beyond, "no room is left for these rows");
  lists_.PlotLoaded = 0;
  lists_.PlotNormalised = 0;
  if (paint_) paint_();
}

}  // namespace orv
