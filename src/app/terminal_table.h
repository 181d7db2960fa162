#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace orv {

// A table for a terminal: columns as wide as their widest cell, the first ones to the left, numbers to the right.
class TerminalTable {
 public:
  // Heads of the columns; the first `leftColumns` are set to the left.
  TerminalTable(std::vector<std::string> heads, std::size_t leftColumns)
      : rows_{std::move(heads)}, leftColumns_(leftColumns) {}
  void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.size() == 1; }
  void Print(std::ostream& out) const;

  static constexpr std::size_t kWidest = 30;  // longer texts are cut

 private:
  std::vector<std::vector<std::string>> rows_;
  std::size_t leftColumns_;
};

}  // namespace orv
