#include "plume/potentials.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "model/cell_table.h"
#include "numerics/angles.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kLastColumn = 11;

enum class Form { None, Table, TableSym, TableSymMajor, Function };

struct Keyword {
  const char* word;
  Form form;
};

constexpr std::array<Keyword, 5> kKeywords = {{{"V ", Form::Table},
                                               {"VTABLE ", Form::Table},
                                               {"VTABLESYM ", Form::TableSym},
                                               {"VTABLESYMMAJOR ", Form::TableSymMajor},
                                               {"POTENTIALFUNTION ", Form::Function}}};

// The form that a cell asks for; `text` becomes what stands behind the keyword.
Form TakeKeyword(std::string& text) {
  const std::string trimmed = Trim(text);
  const std::string head = UpperCase(trimmed);
  for (const Keyword& keyword : kKeywords) {
    if (!StartsWith(head, keyword.word)) continue;
    text = Trim(std::string_view(trimmed).substr(std::string_view(keyword.word).size()));
    return keyword.form;
  }
  return Form::None;
}

// How a potential varies along one direction of a primitive.
struct Law {
  std::string name;
  double multiplier = 0;
  double f = 1;  // the factor of the cell before, where the name is none of the laws
};

class PotentialReader {
 public:
  PotentialReader(Cells& cells, CellText& reader)
      : cells_(cells), reader_(reader), block_(reader.prompt(), FailureLabels::Of("PotentialTable")) {}

  void Read(int p, Form form, const std::string& text) {
    if (form == Form::Function) {
      ReadFunction(p, text);
    } else {
      ReadCells(p, form, text);
    }
    block_([&] { cells_.CellData(p, 0, 0, 63) = 1; });
  }

 private:
  void ReadCells(int p, Form form, const std::string& text) {
    const int NI = cells_.CountI(p);
    const int NJ = cells_.CountJ(p);
    const std::int64_t wanted = static_cast<std::int64_t>(NI) * NJ;
    XYTable table;
    int count = 0;
    block_([&] {
      XYTable rows;
      count = ReadRows(text, wanted, rows);
      table = std::move(rows);
    });
    if (count != wanted) reader_.prompt()("faute xx6 ");
    const char* const mismatch = form == Form::Table      ? "faute xx7 "
                                 : form == Form::TableSym ? "faute xx8 "
                                                          : "faute xx9 ";
    int row = 0;
    for (int stepJ = 1; stepJ <= NJ; ++stepJ) {
      const int j = form == Form::TableSym ? NJ + 1 - stepJ : stepJ;
      for (int stepI = 1; stepI <= NI; ++stepI) {
        const int i = form == Form::Table ? stepI : NI + 1 - stepI;
        ++row;
        const bool given = row <= table.count();  // rows that are missing read as 0
        if (!given || table.x(row) != i) reader_.prompt()(mismatch);
        block_([&] { cells_.CellData(p, i, j, 63) = given ? table.y(row) : 0; });
      }
    }
  }

  // Gives the number of rows in the text. Those beyond the wanted ones have no cell: they are counted and dropped.
  int ReadRows(const std::string& text, std::int64_t wanted, XYTable& table) {
    double x = 0;
    int end = 0;
    int count = 0;
    const auto store = [&](int slot, double value) {
      if (slot % 2 == 1) {
        x = value;
      } else if (table.count() < wanted) {
        table.Add(x, value);
      }
    };
    ReadTableFromTableXYInCell(text, 0, store, end, count, reader_);
    return count;
  }

  // Numbers and law names may be mixed freely: the numbers are V1, V2, nI, nJ, the names those of i and j.
  void ReadFunction(int p, const std::string& text) {
    std::array<double, 4> numbers{};
    std::array<Law, 2> laws;
    std::size_t numberCount = 0;
    std::size_t nameCount = 0;
    std::string separator;
    std::string rest = NormaliseNameSeparators(text, separator);
    rest = Trim(ReplaceAll(rest, separator, " "));
    bool faulty = false;
    while (!rest.empty()) {
      const std::size_t blank = rest.find(' ');
      const std::string word = rest.substr(0, blank);
      rest = blank == std::string::npos ? "" : Trim(std::string_view(rest).substr(blank + 1));
      const bool name = word.find_first_of("0123456789") == std::string::npos;
      if (name && nameCount < laws.size()) {
        laws[nameCount++].name = UpperCase(word);
      } else if (!name && numberCount < numbers.size()) {
        numbers[numberCount++] = reader_.ReadNumber(word);
      } else {
        faulty = true;
      }
    }
    if (faulty || numberCount < 2 || nameCount == 0) reader_.prompt()("faute xx9 ");
    laws[0].multiplier = numbers[2];
    laws[1].multiplier = numbers[3];
    CheckGrid(p, 8, laws[0], "faute x10 ");
    CheckGrid(p, 9, laws[1], "faute x11 ");
    FillFunction(p, numbers[0], numbers[1], laws);
  }

  // A primitive without a grid of its own in a direction has no angles along it.
  void CheckGrid(int p, int column, const Law& law, const char* label) {
    const double unit = cells_.CellData(p, 0, 0, column);
    if (!law.name.empty() && !(unit >= 1 && unit <= 4)) reader_.prompt()(label);
  }

  void FillFunction(int p, double V1, double V2, std::array<Law, 2>& laws) {
    const int NI = cells_.CountI(p);
    const int NJ = cells_.CountJ(p);
    for (int i = 1; i <= NI; ++i) {
      for (int j = 1; j <= NJ; ++j) {
        block_([&] { Apply(laws[0], i, NI); });
        block_([&] { Apply(laws[1], j, NJ); });
        block_([&] { cells_.CellData(p, i, j, 63) = V1 + laws[0].f * laws[1].f * (V2 - V1); });
      }
    }
  }

  void Apply(Law& law, int index, int count) {
    const bool cosine = law.name == "COS" || law.name == "SIN";
    if (!cosine && law.name != "SLOPEDOWNUP") return;
    const double angle = Divide(360.0 * (index - 1), count - 1);
    if (cosine) {
      law.f = (std::cos(DegToRad(angle * law.multiplier)) + 1) / 2;
      return;
    }
    const double down = angle <= 180 ? 1 - angle / 180 : (angle - 180) / 180;
    const double up = angle <= 180 ? angle / 180 : 1 - (angle - 180) / 180;
    law.f = law.multiplier > 0 ? up : down;
  }

  Cells& cells_;
  CellText& reader_;
  FailureBlock block_;
};

void RemoveCell(TextTable& ModelCells, int row, int column) {
  int last = kLastColumn;
  while (last > column && Trim(ModelCells(row, last)).empty()) --last;
  ModelCells(row, column) = last > column ? ModelCells(row, last) : "";
  if (last > column) ModelCells(row, last).clear();
}

}  // namespace

std::vector<std::string> PotentialTable(TextTable& ModelCells, int NumberOfPrimitives, int firstColumn, Cells& cells,
                                        CellText& reader) {
  std::vector<std::string> texts(static_cast<std::size_t>(NumberOfPrimitives) + 1);
  PotentialReader potentials(cells, reader);
  for (int p = 1; p <= NumberOfPrimitives; ++p) {
    for (int column = firstColumn; column <= kLastColumn; ++column) {
      std::string text = ModelCells(p, column);
      const Form form = TakeKeyword(text);
      if (form == Form::None) continue;
      texts[static_cast<std::size_t>(p)] = ModelCells(p, column);
      potentials.Read(p, form, text);
      RemoveCell(ModelCells, p, column);
      break;
    }
  }
  return texts;
}

}  // namespace orv
