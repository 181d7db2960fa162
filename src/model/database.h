#pragma once

#include <string>
#include <vector>

#include "model/cell_text.h"
#include "model/primitive_spec.h"
#include "numerics/array.h"
#include "numerics/general_value.h"

// The database: numbered tables, one under the other, each opened by a title cell in column 1. Only positions are read;
// headers are free text.
namespace orv {

// The database block of the sheet.
struct Database {
  TextTable DatabaseCells;                 // row 0 .., column 0 .. 21
  std::vector<std::string> DatabaseLines;  // the raw tab-separated rows, from 0
  int NumberOfDatabaseRows = 0;
  int firstRow = 1;  // place of the block on the sheet, for messages
  int firstColumn = 1;

  // Where a cell of the block stands on the sheet, and in which table column.
  std::string PlaceOf(int row, int column) const;
};

struct TableLocation {
  int first = 0;      // first data row, or the row of the name
  int last = -1;      // last data row; not set in a search for a name
  int titleNext = 0;  // row behind the title
};

// Finds table `number`; with a name, the first row from the title to the end of the database whose column 1 is the
// name. A missing table or name is told, then the abort question; the location then stays empty (row 0).
TableLocation LocateTable(const Database& database, int number, const std::string& name, ErrorPrompt& prompt);

// The list of database rows that a run used; element 0 is the count. Failure 9 when the list is full.
class DatabaseRowsUsed {
 public:
  void Clear() { rows_.assign(1, 0); }
  void Grow(int capacity);
  void Add(int row);
  int count() const { return rows_[0]; }
  const std::vector<int>& rows() const { return rows_; }

 private:
  std::vector<int> rows_{0};
  std::size_t capacity_ = 200;
};

inline constexpr int kMaterialSlots = 80;
inline constexpr int kSecondGasOffset = 40;

struct Materials {
  int NumberOfMaterials = 0;
  int NumberOfMaterialsUsed = 0;
  std::vector<std::string> MaterialNames{""};   // from 1
  Array<GeneralValue, 2> MaterialTable;         // (1 .. n, 1 .. 80)
  std::vector<std::string> MaterialsUsed{"0"};  // element 0 the count as text
};

// Collects the distinct material names of the primitives in order of first meeting; the row of the thruster is left
// out. A cell may name two materials.
std::vector<std::string> CollectMaterialsUsed(const TextTable& ModelCells, int NumberOfPrimitives,
                                              int ThrusterPrimitive, int NameColumn, int& count);

// Thruster values, slots -10 .. 300.
using ThrusterVector = Array<GeneralValue, 1>;

// Reads Tables 7, 8 and 9 into MaterialNames and MaterialTable; both are sized here from Table 7's rows.
void aSpaceApplicationDataBaseMATERIALS(const Database& database, const TableLocation& table7,
                                        const TableLocation& table8, const TableLocation& table9,
                                        const ThrusterVector& ThrusterData, Materials& materials,
                                        DatabaseRowsUsed& rowsUsed, CellText& reader);

}  // namespace orv
