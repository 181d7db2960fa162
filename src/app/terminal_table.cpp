#include "app/terminal_table.h"

#include <algorithm>
#include <ostream>

#include "numerics/text.h"

namespace orv {

void TerminalTable::Print(std::ostream& out) const {
  std::vector<std::size_t> widths(rows_.front().size(), 0);
  const auto cellOf = [](const std::vector<std::string>& row, std::size_t c) {
    const std::string text = c < row.size() ? row[c] : "";
    return CharacterCount(text) > kWidest ? LeftCharacters(text, kWidest - 1) + "~" : text;
  };
  for (const auto& row : rows_) {
    for (std::size_t c = 0; c < widths.size(); ++c) widths[c] = std::max(widths[c], CharacterCount(cellOf(row, c)));
  }
  for (const auto& row : rows_) {
    std::string line = " ";
    for (std::size_t c = 0; c < widths.size(); ++c) {
      const std::string text = cellOf(row, c);
      const std::string pad(widths[c] - CharacterCount(text), ' ');
      if (c < leftColumns_) {
        line.append(" ").append(text).append(pad);
      } else {
        line.append("  ").append(pad).append(text);
      }
    }
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
}

}  // namespace orv
