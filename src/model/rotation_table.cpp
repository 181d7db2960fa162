#include "model/rotation_table.h"

#include <cmath>
#include <string>

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kLastColumn = 11;
constexpr int kMaxPairs = 720;
constexpr int kDefaultSteps = 36;
constexpr double kDefaultWeight = 1.0 / kDefaultSteps;
constexpr const char* kRot = "ROT% ";
constexpr const char* kShift = "SHIFT ";

class RotationTableReader {
 public:
  RotationTableReader(TextTable& cells, int rows, Array<double, 2>& table, CellText& reader)
      : cells_(cells), rows_(rows), table_(table), reader_(reader) {}

  void Execute(int rotating, int& firstColumn) {
    table_(-1, 2) = 0;
    int row = 0;
    int column = 0;
    if (FindText(firstColumn, row, column)) {
      const std::string text = cells_(row, column);
      const std::string list = PairsOf(text);
      ownList_ = list == PairsOf(DefaultText());
      ReadShift(text);
      firstColumn = MoveLeft(row, firstColumn, column);
      ReadPairs(list);
    }
    SumWeights();
    if (table_(0, 2) != 0) {
      CheckWeights();
    } else {
      MakeDefault(rotating, firstColumn);
    }
  }

 private:
  bool FindText(int firstColumn, int& row, int& column) const {
    for (row = 1; row <= rows_; ++row) {
      for (column = firstColumn; column <= kLastColumn; ++column) {
        if (Contains(UpperCase(cells_(row, column)), kRot)) return true;
      }
    }
    return false;
  }

  static double DefaultAngle(int k) { return (k - 1) * 10; }

  // The default table as the model shows it, with points under any locale.
  static std::string DefaultText() {
    std::string text = "Shift 0 Rot% ";
    for (int k = 1; k <= kDefaultSteps; ++k) {
      text += FormatNumber(DefaultAngle(k), "#0.##") + " " + FormatNumber(kDefaultWeight, "#0.####") + " | ";
    }
    return ReplaceAll(text, ",", ".");
  }

  static std::string PairsOf(const std::string& text) {
    return Trim(std::string_view(text).substr(UpperCase(text).find(kRot) + std::string_view(kRot).size()));
  }

  void ReadShift(const std::string& text) {
    table_(-1, 1) = 0;
    const std::string upper = UpperCase(text);
    const std::string head = text.substr(0, upper.find(kRot));
    const std::size_t shift = UpperCase(head).find(kShift);
    if (shift == std::string::npos) return;
    std::string behind = head.substr(shift + std::string(kShift).size());
    reader_.Extract1(behind, table_(-1, 1));
  }

  // The text moves to the first empty cell on its left, so that the filled columns stand together.
  int MoveLeft(int row, int firstColumn, int column) {
    for (int left = firstColumn; left < column; ++left) {
      if (!Trim(cells_(row, left)).empty()) continue;
      cells_(row, left) = cells_(row, column);
      cells_(row, column).clear();
      return left;
    }
    return column;
  }

  void ReadPairs(const std::string& list) {
    std::string separator;
    std::string text = NormaliseNameSeparators(list, separator);
    text = Trim(ReplaceAll(text, separator, " "));
    int count = 0;
    while (!text.empty() && count < kMaxPairs) {
      double pair[2] = {};
      for (double& value : pair) {
        const std::size_t blank = text.find(' ');
        const std::string word = text.substr(0, blank);
        value = ownList_ ? reader_.ReadPointNumber(word) : reader_.ReadNumber(word);
        text = blank == std::string::npos ? "" : Trim(std::string_view(text).substr(blank + 1));
      }
      ++count;
      table_(count, 1) = pair[0];
      table_(count, 2) = pair[1];
    }
    table_(-1, 2) = count;
  }

  int count() const { return static_cast<int>(table_(-1, 2)); }

  void SumWeights() {
    table_(0, 1) = 0;
    table_(0, 2) = 0;
    for (int k = 1; k <= count(); ++k) table_(0, 2) += table_(k, 2);
  }

  void CheckWeights() {
    if (std::abs(table_(0, 2) - 1) > 0.1) {
      reader_.prompt().dialogs().Tell(
          "Error integral Rot%   that should be equal to unity  (100%). Please check that data in the model.", "",
          Icon::Warning);
      reader_.prompt()("Error integral Rot%  ");
    }
    for (int k = 2; k <= count(); ++k) {
      if (table_(k, 2) != table_(1, 2)) return;
    }
    for (int k = 1; k <= count(); ++k) table_(k, 2) = 1.0 / count();
  }

  void MakeDefault(int rotating, int& firstColumn) {
    table_(-1, 1) = 0;
    table_(-1, 2) = kDefaultSteps;
    for (int k = 1; k <= kDefaultSteps; ++k) {
      table_(k, 1) = DefaultAngle(k);
      table_(k, 2) = kDefaultWeight;
    }
    if (rotating == 0) return;
    for (int column = 3; column <= kLastColumn; ++column) {
      if (!Trim(cells_(rotating, column)).empty()) continue;
      cells_(rotating, column) = DefaultText();
      firstColumn = column;
      return;
    }
  }

  TextTable& cells_;
  int rows_;
  Array<double, 2>& table_;
  CellText& reader_;
  bool ownList_ = false;  // the default angles and weights, as an earlier run has shown them
};

}  // namespace

void ReadRotPercentTable(TextTable& ModelCells, int NumberOfPrimitives, int RotatingPrimitive, int& firstColumn,
                         Array<double, 2>& RotPercentTable, CellText& reader) {
  RotPercentTable.Size({Bounds{-1, 360}, Bounds{1, 2}});
  RotationTableReader(ModelCells, NumberOfPrimitives, RotPercentTable, reader).Execute(RotatingPrimitive, firstColumn);
}

}  // namespace orv
