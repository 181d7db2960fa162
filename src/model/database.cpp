#include "model/database.h"

#include <algorithm>

#include "model/cell_table.h"
#include "model/sheet_grid.h"
#include "numerics/text.h"

namespace orv {
namespace {

const char* const kCritical = "Critical potential error";

std::string CellOf(const Database& database, int row, int column) {
  return Trim(SoftBlanks(database.DatabaseCells(row, column)));
}

void TellCritical(ErrorPrompt& prompt, const std::string& text) {
  prompt.dialogs().Tell(text, kCritical, Icon::Critical);
  prompt.AbortQuestion();
}

bool IsTitleOf(const std::string& cell, int number) {
  return Contains(cell, "Table ") && Contains(cell, " " + std::to_string(number) + " ");
}

int LastDataRow(const Database& database, int first) {
  for (int row = first; row <= database.NumberOfDatabaseRows; ++row) {
    const std::string cell = CellOf(database, row, 1);
    if (cell.empty() || StartsWith(cell, "Table")) return row - 1;
  }
  return database.NumberOfDatabaseRows;
}

TableLocation Locate(const Database& database, int number, const std::string& name, ErrorPrompt& prompt) {
  TableLocation location;
  int title = 0;
  for (int row = 1; row <= database.NumberOfDatabaseRows && title == 0; ++row) {
    if (IsTitleOf(CellOf(database, row, 1), number)) title = row;
  }
  if (title == 0) {
    TellCritical(prompt, "Error in the database: Table " + std::to_string(number) +
                             " is missing. The user is asked to check the conformance to the Database specification "
                             "carrefuly");
    return location;
  }
  location.titleNext = title + 1;
  if (name.empty()) {
    location.first = title + 2;
    location.last = LastDataRow(database, location.first);
    return location;
  }
  for (int row = title; row <= database.NumberOfDatabaseRows; ++row) {
    if (CellOf(database, row, 1) == name) {
      location.first = row;
      return location;
    }
  }
  TellCritical(prompt, "Error in the database: Thruster name \"" + name +
                           "\" is missing. The user is asked to check the conformance to the Database specification "
                           "carrefuly");
  return location;
}

}  // namespace

std::string Database::PlaceOf(int row, int column) const {
  return "Database cell " + ColumnLetters(firstColumn + column - 1) + std::to_string(firstRow + row - 1);
}

TableLocation LocateTable(const Database& database, int number, const std::string& name, ErrorPrompt& prompt) {
  try {
    return Locate(database, number, name, prompt);
  } catch (const RuntimeFailure&) {
    TellCritical(prompt,
                 "Error in the database: the user is asked to check the conformance to the Database specification "
                 "carrefuly");
    return {};
  }
}

void DatabaseRowsUsed::Grow(int capacity) {
  capacity_ = std::max(capacity_, static_cast<std::size_t>(capacity));
}

void DatabaseRowsUsed::Add(int row) {
  if (rows_.size() > capacity_) Raise(FailureNumber::SubscriptOutOfRange);
  rows_.push_back(row);
  rows_[0] = static_cast<int>(rows_.size()) - 1;
}

std::vector<std::string> CollectMaterialsUsed(const TextTable& ModelCells, int NumberOfPrimitives,
                                              int ThrusterPrimitive, int NameColumn, int& count) {
  std::vector<std::string> list(1);
  const auto add = [&](const std::string& name) {
    if (!name.empty() && std::find(list.begin() + 1, list.end(), name) == list.end()) list.push_back(name);
  };
  for (int row = 1; row <= NumberOfPrimitives; ++row) {
    if (row == ThrusterPrimitive) continue;
    std::string first;
    std::string second;
    SplitTwoNames(ModelCells(row, NameColumn), first, second);
    add(first);
    add(second);
  }
  count = static_cast<int>(list.size()) - 1;
  list[0] = std::to_string(count);
  return list;
}

namespace {

// The reading of the three material tables, with what is carried from row to row.
class MaterialReader {
 public:
  MaterialReader(const Database& database, const ThrusterVector& thruster, Materials& materials,
                 DatabaseRowsUsed& rowsUsed, CellText& reader)
      : database_(database),
        firstGas_(thruster(-1).text()),
        secondGas_(thruster(-2).text()),
        materials_(materials),
        rowsUsed_(rowsUsed),
        reader_(reader),
        block_(reader.prompt(),
               {"Error fautea_SpaceApplicationDataBaseMATERIALS ", "Error fautea_SpaceApplicationDataBaseMATERIALS"}) {}

  void ReadTable7(const TableLocation& table) {
    AddHeadRows(table);
    for (int row = table.first; row <= table.last; ++row) {
      const int index = row - table.first + 1;
      block_([&] { materials_.MaterialNames[static_cast<std::size_t>(index)] = CellOf(database_, row, 1); });
      block_([&] { materials_.MaterialTable(index, 1) = static_cast<double>(index); });
      block_([&] { Store(index, 2, row, 2); });
      block_([&] { Store(index, 3, row, 3); });
      AddIfUsed(materials_.MaterialNames[static_cast<std::size_t>(index)], row);
    }
  }

  void ReadTable8(const TableLocation& table) {
    AddHeadRows(table);
    int offset = 0;
    for (int row = table.first; row <= table.last; ++row) {
      const int index = Select(row, offset);
      for (int k = 0; k < 3; ++k) {
        block_([&] { Store(index, 4 + k + offset, row, 3 + k); });
      }
      const std::string letter = UpperTrim(CellOf(database_, row, 6));
      block_([&] {
        GeneralValue flag = letter == "Y" ? GeneralValue(1.0) : GeneralValue(0.0);
        // Neither "Y" nor "N": the field before it is stored once more.
        if (letter != "Y" && letter != "N") flag = reader_.ReadNumber(CellOf(database_, row, 5));
        materials_.MaterialTable(index, 7 + offset) = flag;
      });
    }
  }

  void ReadTable9(const TableLocation& table) {
    AddHeadRows(table);
    int offset = 0;
    for (int row = table.first; row <= table.last; ++row) {
      const int index = Select(row, offset);
      block_([&] { ReadYieldRow(index, row, offset); });
      block_([&] { ReadYieldTables(index, row, offset); });
    }
  }

 private:
  void AddHeadRows(const TableLocation& table) {
    if (table.titleNext == 0) return;
    block_([&] { rowsUsed_.Add(table.titleNext - 1); });
    block_([&] { rowsUsed_.Add(table.titleNext); });
  }

  void AddIfUsed(const std::string& material, int row) {
    const auto& used = materials_.MaterialsUsed;
    if (std::find(used.begin() + 1, used.end(), material) == used.end()) return;
    block_([&] { rowsUsed_.Add(row); });
  }

  // The material of a row of Tables 8 and 9. A gas that is none of the thruster's leaves the offset of the row before.
  int Select(int row, int& offset) {
    const std::string material = CellOf(database_, row, 2);
    const int index = FindMaterial(materials_.MaterialNames, material, reader_.prompt());
    AddIfUsed(material, row);
    const std::string gas = CellOf(database_, row, 1);
    if (gas == firstGas_) {
      offset = 0;
    } else if (gas == secondGas_) {
      offset = kSecondGasOffset;
    }
    return index;
  }

  void Store(int index, int slot, int row, int column) {
    materials_.MaterialTable(index, slot) =
        reader_.ReadNumberAt(CellOf(database_, row, column), database_.PlaceOf(row, column));
  }

  void ReadYieldRow(int index, int row, int offset) {
    const double count = materials_.MaterialTable(index, 8 + offset).number();
    if (count == -1) return;
    materials_.MaterialTable(index, 8 + offset) = count + 1;
    const int record = 9 + offset + 5 * static_cast<int>(count);
    for (int k = 0; k < 5; ++k) {
      block_([&] { Store(index, record + k, row, 3 + k); });
    }
  }

  void ReadYieldTables(int index, int row, int offset) {
    if (CellOf(database_, row, 8).empty()) return;
    materials_.MaterialTable(index, 8 + offset) = -1.0;
    for (int k = 0; k < 4; ++k) {
      materials_.MaterialTable(index, 9 + offset + k) = CellOf(database_, row, 8 + k);
    }
  }

  const Database& database_;
  std::string firstGas_;
  std::string secondGas_;
  Materials& materials_;
  DatabaseRowsUsed& rowsUsed_;
  CellText& reader_;
  FailureBlock block_;
};

}  // namespace

void aSpaceApplicationDataBaseMATERIALS(const Database& database, const TableLocation& table7,
                                        const TableLocation& table8, const TableLocation& table9,
                                        const ThrusterVector& ThrusterData, Materials& materials,
                                        DatabaseRowsUsed& rowsUsed, CellText& reader) {
  materials.NumberOfMaterials = std::max(0, table7.last - table7.first + 1);
  materials.MaterialNames.assign(static_cast<std::size_t>(materials.NumberOfMaterials) + 1, "");
  materials.MaterialTable.Size({Bounds{1, materials.NumberOfMaterials}, Bounds{1, kMaterialSlots}});
  MaterialReader tables(database, ThrusterData, materials, rowsUsed, reader);
  tables.ReadTable7(table7);
  tables.ReadTable8(table8);
  tables.ReadTable9(table9);
}

}  // namespace orv
