#include "model/cell_table.h"

#include <algorithm>

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {

void ReadTableFromTableXYInCell(const std::string& cell, int start, const std::function<void(int, double)>& store,
                                int& end, int& count, CellText& reader) {
  std::string separator;
  const std::string text = Trim(NormaliseNameSeparators(cell, separator));
  // The last slot stands at every moment, so that a store that is full leaves a true end behind.
  int& slot = end;
  slot = start;
  std::size_t position = 0;
  while (position < text.size()) {
    position = text.find_first_not_of(' ', position);
    const std::size_t blank = position == std::string::npos ? position : text.find(' ', position);
    if (blank == std::string::npos) break;
    const double x = reader.ReadNumber(std::string_view(text).substr(position, blank - position));
    position = blank + 1;
    const std::size_t bar = text.find(separator, position);
    const std::size_t stop = std::min(bar, text.size());
    const double y = reader.ReadNumber(std::string_view(text).substr(position, stop - position));
    store(slot + 1, x);
    store(slot + 2, y);
    slot += 2;
    if (bar == std::string::npos) break;
    position = bar + 1;
  }
  count = static_cast<int>(Int((end - start) / 2.0));
  if ((end - start) % 2 != 0) {
    reader.prompt().dialogs().Tell("error ReadTable from TableXYInCell$ : not Even number of values in " + cell, "",
                                   Icon::Critical);
    reader.prompt().AbortQuestion();
  }
}

void ReadTable(const std::string& cell, XYTable& table, int& count, CellText& reader) {
  const std::size_t room = static_cast<std::size_t>(std::max(kWorkValues, count));
  std::vector<double> work;
  int end = 0;
  ReadTableFromTableXYInCell(
      cell, 0,
      [&](int, double value) {
        if (work.size() >= room) Raise(FailureNumber::SubscriptOutOfRange);
        work.push_back(value);
      },
      end, count, reader);
  table.Clear();
  for (std::size_t k = 0; k + 1 < work.size(); k += 2) table.Add(work[k], work[k + 1]);
}

const XYTable& TableCache::Get(const std::string& cell, CellText& reader) {
  victim_ = (victim_ + 1) % slots_.size();
  for (const Slot& slot : slots_) {
    if (slot.used && slot.text == cell) return slot.table;
  }
  XYTable table;
  int count = 0;
  ReadTable(cell, table, count, reader);
  Slot& slot = slots_[victim_];
  slot.text = cell;
  slot.table = std::move(table);
  slot.used = true;
  return slot.table;
}

double Interpolate(const XYTable& table, double x, ErrorPrompt& prompt) {
  double lo = 0;
  double hi = 0;
  int loRow = 0;
  int hiRow = 0;
  for (int row = 1; row <= table.count(); ++row) {
    const double here = table.x(row);
    if (here <= x && (lo == 0 || here > lo)) {
      lo = here;
      loRow = row;
    }
    if (here >= x && (hi == 0 || here < hi)) {
      hi = here;
      hiRow = row;
    }
  }
  if (lo == 0 && hi != 0) return table.y(hiRow);
  if (hi == 0 && lo != 0) return table.y(loRow);
  if (lo == 0 && hi == 0) {
    prompt.dialogs().Tell("Warning Interpolation This should never occur Except big wrong database", "",
                          Icon::Critical);
    prompt.AbortQuestion();
  }
  if (lo == hi) return (table.y(loRow) + table.y(hiRow)) / 2;
  return table.y(loRow) + Divide((table.y(hiRow) - table.y(loRow)) * (x - lo), hi - lo);
}

int FindMaterial(const std::vector<std::string>& MaterialNames, const std::string& name, ErrorPrompt& prompt) {
  const std::string wanted = UpperTrim(name);
  for (std::size_t k = 1; k < MaterialNames.size(); ++k) {
    if (UpperTrim(MaterialNames[k]) == wanted) return static_cast<int>(k);
  }
  prompt.dialogs().Tell(
      "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | " + name, "",
      Icon::Critical);
  prompt.AbortQuestion();
  return -1;
}

}  // namespace orv
