#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "model/automation.h"
#include "model/excel_values.h"
#include "model/sheet_grid.h"
#include "model/workbook_contents.h"
#include "numerics/failure.h"

// Excel's objects as far as the link speaks to them: strict about names and arguments, failing with the result codes
// that the program gives.
namespace orv::testing {

struct FakeCell {
  AutomationValue value;
  std::string formula;      // with "="; empty for a constant
  bool prefix = false;      // begins with ', which makes it a text
  bool textFormat = false;  // what is typed stays text
  friend bool operator==(const FakeCell&, const FakeCell&) = default;
};

class FakeObject : public AutomationObject {
 public:
  using Getter = std::function<AutomationValue(const AutomationList&)>;
  using Setter = std::function<void(const AutomationValue&)>;

  explicit FakeObject(std::function<void()> beforeEach) : beforeEach_(std::move(beforeEach)) {}
  void Offer(const std::string& member, Getter getter) { getters_[member] = std::move(getter); }
  void Accept(const std::string& member, Setter setter) { setters_[member] = std::move(setter); }

  using AutomationObject::Call;
  using AutomationObject::Get;
  AutomationValue Get(const std::string& member, const AutomationList& arguments) override {
    return Look(getters_, member)(arguments);
  }
  void Put(const std::string& member, const AutomationValue& value) override { Look(setters_, member)(value); }
  AutomationValue Call(const std::string& method, const AutomationList& arguments) override {
    return Look(getters_, method)(arguments);
  }

 private:
  template <class Map>
  const typename Map::mapped_type& Look(const Map& map, const std::string& member) {
    beforeEach_();
    const auto found = map.find(member);
    if (found == map.end()) throw FailureOfCall(static_cast<std::int32_t>(0x80020006));
    return found->second;
  }

  std::function<void()> beforeEach_;
  std::map<std::string, Getter> getters_;
  std::map<std::string, Setter> setters_;
};

class FakeExcel {
 public:
  struct Sheet {
    std::string name = "Sheet1";
    std::map<std::pair<int, int>, FakeCell> cells;
    CellPosition active;
  };

  bool running = true;
  bool visible = true;
  bool bookOpen = true;
  bool saved = true;
  bool readOnly = false;       // writing is refused with 1004
  bool tellsSeparator = true;  // otherwise International fails
  std::string separator = ".";
  std::string path = "/models";
  std::vector<std::string> captions = {"Model.xlsx"};
  std::vector<Sheet> sheets = {{}};
  std::size_t activeSheet = 0;

  int busyOperations = 0;        // so many further operations are refused as a busy Excel does
  int busyFrom = -1;             // ... beginning when so many operations are done
  std::int32_t everyResult = 0;  // a result code that every operation fails with
  int operations = 0;
  int quits = 0;
  std::vector<std::string> ranges;   // asked for
  std::vector<std::string> written;  // "B3 FormulaR1C1 =1/10"

  Sheet& sheet() { return sheets[activeSheet]; }
  FakeCell& At(CellPosition cell) { return sheet().cells[{cell.row, cell.column}]; }

  AutomationSource Source() {
    return [this](const std::string& program) -> AutomationReference {
      if (program != "Excel.Application") throw FailureOfCall(static_cast<std::int32_t>(0x800401F3));
      if (!running) throw FailureOfCall(static_cast<std::int32_t>(0x800401E3));
      return Application();
    };
  }

 private:
  std::shared_ptr<FakeObject> Object() {
    return std::make_shared<FakeObject>([this] {
      if (everyResult != 0) throw FailureOfCall(everyResult);
      if (operations++ == busyFrom) busyOperations = 3;
      if (busyOperations == 0) return;
      --busyOperations;
      throw FailureOfCall(static_cast<std::int32_t>(0x80020009), static_cast<std::int32_t>(0x800AC472));
    });
  }
  // The object, or nothing while no book is open.
  AutomationValue WhileOpen(const std::function<AutomationReference()>& make) {
    return bookOpen ? AutomationValue(make()) : AutomationValue();
  }
  static double Argument(const AutomationList& arguments, std::size_t k) { return std::get<double>(arguments.at(k)); }
  static int Whole(const AutomationList& arguments, std::size_t k) { return static_cast<int>(Argument(arguments, k)); }

  AutomationReference Application() {
    auto object = Object();
    object->Offer("ActiveWorkbook", [this](const auto&) { return WhileOpen([&] { return Workbook(); }); });
    object->Offer("ActiveSheet", [this](const auto&) { return WhileOpen([&] { return SheetObject(); }); });
    object->Offer("Windows", [this](const auto&) { return Windows(); });
    object->Offer("International", [this](const AutomationList& arguments) -> AutomationValue {
      if (!tellsSeparator || Argument(arguments, 0) != 3) throw FailureOfCall(static_cast<std::int32_t>(0x800A03EC));
      return separator;
    });
    object->Offer("Name", [](const auto&) { return std::string("Microsoft Excel"); });
    object->Offer("Visible", [this](const auto&) { return visible; });
    object->Accept("Visible", [this](const AutomationValue& value) { visible = std::get<bool>(value); });
    object->Offer("Quit", [this](const auto&) {
      ++quits;
      running = false;
      return AutomationValue();
    });
    return object;
  }

  AutomationReference Workbook() {
    auto object = Object();
    object->Offer("Name", [](const auto&) { return std::string("Model.xlsx"); });
    object->Offer("Path", [this](const auto&) { return path; });
    object->Offer("Saved", [this](const auto&) { return saved; });
    object->Accept("Saved", [this](const AutomationValue& value) { saved = std::get<bool>(value); });
    return object;
  }

  AutomationReference Windows() {
    auto object = Object();
    object->Offer("Count", [this](const auto&) { return static_cast<double>(bookOpen ? captions.size() : 0); });
    object->Offer("Item", [this](const AutomationList& arguments) {
      const int number = Whole(arguments, 0);
      if (!bookOpen || number < 1 || number > static_cast<int>(captions.size())) {
        throw FailureOfCall(static_cast<std::int32_t>(0x80020009), static_cast<std::int32_t>(0x800A0009));
      }
      auto window = Object();
      window->Offer("Caption", [this, number](const auto&) { return captions[static_cast<std::size_t>(number - 1)]; });
      window->Offer("ActiveCell", [this](const auto&) { return Cell(sheet().active); });
      return window;
    });
    return object;
  }

  AutomationReference SheetObject() {
    auto object = Object();
    object->Offer("Name", [this](const auto&) { return sheet().name; });
    object->Offer("Cells", [this](const auto&) { return Cells(); });
    object->Offer("UsedRange", [this](const auto&) { return UsedRange(); });
    object->Offer("Range", [this](const AutomationList& arguments) {
      const std::string name = std::get<std::string>(arguments.at(0));
      ranges.push_back(name);
      return Range(ParseA1Range(name));
    });
    return object;
  }

  AutomationReference Cells() {
    auto object = Object();
    object->Offer("Item", [this](const AutomationList& arguments) {
      return Cell({Whole(arguments, 0), Whole(arguments, 1)});
    });
    object->Offer("Find", [this](const AutomationList& arguments) { return Find(arguments); });
    return object;
  }

  AutomationReference Cell(CellPosition cell) {
    if (!InsideSheet(cell)) throw FailureOfCall(static_cast<std::int32_t>(0x800A03EC));
    auto object = Object();
    object->Offer("Row", [cell](const auto&) { return static_cast<double>(cell.row); });
    object->Offer("Column", [cell](const auto&) { return static_cast<double>(cell.column); });
    object->Offer("Value2", [this, cell](const auto&) { return Look(cell).value; });
    object->Offer("Formula", [this, cell](const auto&) { return FormulaOf(Look(cell)); });
    object->Offer("HasFormula", [this, cell](const auto&) { return !Look(cell).formula.empty(); });
    object->Offer("PrefixCharacter", [this, cell](const auto&) { return std::string(Look(cell).prefix ? "'" : ""); });
    object->Offer("Activate", [this, cell](const auto&) {
      sheet().active = cell;
      return true;
    });
    object->Offer("ClearContents", [this, cell](const auto&) {
      CheckWriting(cell, "ClearContents");
      sheet().cells.erase({cell.row, cell.column});
      return true;
    });
    for (const char* member : {"Value2", "Formula", "FormulaR1C1"}) {
      object->Accept(member, [this, cell, member](const AutomationValue& value) {
        CheckWriting(cell, member + (" " + ValueText(value, ".")));
        Type(cell, value);
      });
    }
    return object;
  }

  AutomationReference Range(CellRange range) {
    auto object = Object();
    object->Offer("Value2", [this, range](const auto&) -> AutomationValue {
      if (range.first == range.last) return Look(range.first).value;
      auto table = std::make_shared<AutomationTable>();
      table->rows = static_cast<std::size_t>(range.last.row - range.first.row + 1);
      table->columns = static_cast<std::size_t>(range.last.column - range.first.column + 1);
      for (int row = range.first.row; row <= range.last.row; ++row) {
        for (int column = range.first.column; column <= range.last.column; ++column) {
          table->values.push_back(Look({row, column}).value);
        }
      }
      return std::shared_ptr<const AutomationTable>(table);
    });
    return object;
  }

  AutomationReference UsedRange() {
    CellRange used;
    for (const auto& [position, cell] : sheet().cells) {
      used.last.row = std::max(used.last.row, position.first);
      used.last.column = std::max(used.last.column, position.second);
    }
    auto object = Object();
    object->Offer("Row", [](const auto&) { return 1.0; });
    object->Offer("Column", [](const auto&) { return 1.0; });
    object->Offer("Rows", [this, used](const auto&) { return Counted(used.last.row); });
    object->Offer("Columns", [this, used](const auto&) { return Counted(used.last.column); });
    return object;
  }
  AutomationReference Counted(int count) {
    auto object = Object();
    object->Offer("Count", [count](const auto&) { return static_cast<double>(count); });
    return object;
  }

  FakeCell Look(CellPosition cell) {
    const auto found = sheet().cells.find({cell.row, cell.column});
    return found == sheet().cells.end() ? FakeCell() : found->second;
  }
  static std::string FormulaOf(const FakeCell& cell) {
    return cell.formula.empty() ? ValueText(cell.value, ".") : cell.formula;
  }

  AutomationValue Find(const AutomationList& arguments) {
    if (arguments.size() != 7 || Argument(arguments, 2) != -4123 || Argument(arguments, 3) != 2 ||
        Argument(arguments, 4) != 1 || Argument(arguments, 5) != 1 || std::get<bool>(arguments[6])) {
      throw std::logic_error("Find with other arguments");
    }
    const AutomationReference after = std::get<AutomationReference>(arguments[1]);
    const CellPosition start{AnswerCount(after->Get("Row")), AnswerCount(after->Get("Column"))};
    std::string part;
    const std::string& pattern = std::get<std::string>(arguments[0]);
    for (std::size_t k = 0; k < pattern.size(); ++k) {
      if (pattern[k] == '*' || pattern[k] == '?') throw std::logic_error("Find with a wildcard");
      if (pattern[k] == '~') ++k;
      part.push_back(pattern.at(k));
    }
    SheetGrid grid;
    for (const auto& [position, cell] : sheet().cells) grid.Set({position.first, position.second}, FormulaOf(cell));
    try {
      return Cell(grid.Find(part, start));
    } catch (const RuntimeFailure&) {
      return {};
    }
  }

  void CheckWriting(CellPosition cell, const std::string& what) {
    if (readOnly) throw FailureOfCall(static_cast<std::int32_t>(0x80020009), static_cast<std::int32_t>(0x800A03EC));
    written.push_back(CellName(cell) + " " + what);
    saved = false;
  }

  // What a cell becomes when this is typed.
  void Type(CellPosition position, const AutomationValue& value) {
    FakeCell& cell = At(position);
    cell.formula.clear();
    cell.prefix = false;
    cell.value = value;
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr || cell.textFormat) return;
    double number = 0;
    if (text->starts_with('\'')) {
      cell.prefix = true;
      cell.value = text->substr(1);
    } else if (text->starts_with('=')) {
      cell.formula = *text;
      cell.value = ResultOf(*text, position);
    } else if (text->starts_with('#')) {
      cell.value = AutomationError{static_cast<std::int32_t>(0x800A07FA)};
    } else if (ReadPlainNumber(*text, number)) {
      cell.value = number;
    }
  }
  AutomationValue ResultOf(const std::string& formula, CellPosition position) {
    if (formula == "=1/10") return 0.1;
    if (formula != "=ISERR(SEARCH(\",\",+R[-1]C))") return 42.0;
    const AutomationValue above = Look({position.row - 1, position.column}).value;
    return ValueText(above, separator).find(',') == std::string::npos;
  }
};

}  // namespace orv::testing
