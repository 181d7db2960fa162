#include "model/ods_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "model/formula_text.h"
#include "model/xml_part.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr const char* kContentPart = "content.xml";
constexpr const char* kSettingsPart = "settings.xml";
constexpr const char* kManifestPart = "META-INF/manifest.xml";
constexpr std::string_view kSpreadsheetType = "application/vnd.oasis.opendocument.spreadsheet";

// Spans inside spans, groups of rows inside groups: no document of a user comes near.
constexpr int kMaxDepth = 64;

bool Is(pugi::xml_node node, std::string_view name) {
  return std::string_view(node.name()) == name;
}

// A repeat count; a missing or senseless one is 1.
long long Repeats(pugi::xml_node node, const char* attribute) {
  return std::max(1LL, node.attribute(attribute).as_llong(1));
}

// The text of one paragraph. White space collapses to one blank and vanishes at the start; wanted blanks, tabs and
// line breaks are elements.
class Paragraph {
 public:
  explicit Paragraph(const WorkbookBuilder& builder) : builder_(builder) {}

  std::string Read(pugi::xml_node node) {
    text_.clear();
    afterBlank_ = true;
    Walk(node, 0);
    return std::move(text_);
  }

 private:
  void Walk(pugi::xml_node node, int depth) {
    if (depth > kMaxDepth) builder_.Fail("is damaged: the text of a cell is nested too deeply.");
    Collapse(node.value());
    for (const pugi::xml_node child : node.children()) {
      if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
        Collapse(child.value());
      } else if (Is(child, "text:s")) {
        const auto count = std::min<long long>(Repeats(child, "text:c"), kMaxCellCharacters);
        Literal(std::string(static_cast<std::size_t>(count), ' '));
      } else if (Is(child, "text:tab")) {
        Literal("\t");
      } else if (Is(child, "text:line-break")) {
        Literal("\n");
      } else if (!Is(child, "text:ruby-text") && !Is(child, "office:annotation") && !Is(child, "text:note")) {
        Walk(child, depth + 1);
      }
      // Blanks by the thousand, repeated, must not fill the memory: what is above the limit is cut later anyway.
      if (text_.size() > 8 * kMaxCellCharacters) return;
    }
  }

  void Collapse(std::string_view text) {
    for (const char c : text) {
      const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
      if (!blank || !afterBlank_) text_.push_back(blank ? ' ' : c);
      afterBlank_ = blank;
    }
  }

  void Literal(const std::string& text) {
    text_ += text;
    afterBlank_ = false;
  }

  const WorkbookBuilder& builder_;
  std::string text_;
  bool afterBlank_ = true;
};

// The text of a cell: its paragraphs, one a line. Comments and drawings beside them are no part of it.
std::string CellParagraphs(pugi::xml_node cell, const WorkbookBuilder& builder) {
  std::string text;
  bool first = true;
  Paragraph paragraph(builder);
  for (const pugi::xml_node child : cell.children()) {
    if (!Is(child, "text:p") && !Is(child, "text:h")) continue;
    if (!first) text += "\n";
    text += paragraph.Read(child);
    first = false;
  }
  return CutForCell(CleanUtf8(text));
}

// Errors as every spreadsheet names them; those with a number alone are named by their kind.
std::string ErrorName(const std::string& text) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kNames = {{
      {"Err:503", "#NUM!"},
      {"Err:519", "#VALUE!"},
      {"Err:521", "#NULL!"},
      {"Err:524", "#REF!"},
      {"Err:525", "#NAME?"},
      {"Err:532", "#DIV/0!"},
      {"Err:533", "#NULL!"},
      {"Err:32767", "#N/A"},
  }};
  if (!StartsWith(text, "Err:")) return text;
  for (const auto& [number, name] : kNames) {
    if (text == number) return std::string(name);
  }
  return "#VALUE!";
}

// Reads one table into the builder.
class TableReader {
 public:
  TableReader(WorkbookBuilder& builder, double nullDate) : builder_(builder), nullDate_(nullDate) {}

  void Read(pugi::xml_node table) { ReadRows(table, 0); }

 private:
  struct Cell {
    long long column = 0;
    long long count = 0;
    std::string formula;
    std::string value;
    bool hasResult = false;
  };

  // Rows stand directly in the table or in groups and headers.
  void ReadRows(pugi::xml_node parent, int depth) {
    if (depth > kMaxDepth)
      builder_.Fail("is damaged: the rows of sheet '" + builder_.sheet().name + "' are nested too deeply.");
    for (const pugi::xml_node node : parent.children()) {
      if (Is(node, "table:table-row")) {
        ReadRow(node);
      } else if (Is(node, "table:table-rows") || Is(node, "table:table-header-rows") ||
                 Is(node, "table:table-row-group")) {
        ReadRows(node, depth + 1);
      }
    }
  }

  void ReadRow(pugi::xml_node rowNode) {
    cells_.clear();
    long long column = 1;
    for (const pugi::xml_node node : rowNode.children()) {
      if (!Is(node, "table:table-cell") && !Is(node, "table:covered-table-cell")) continue;
      const long long count = std::min<long long>(Repeats(node, "table:number-columns-repeated"), kSheetColumns + 1);
      Cell cell = ReadCell(node);
      cell.column = column;
      cell.count = count;
      if (!cell.value.empty() || !cell.formula.empty()) cells_.push_back(std::move(cell));
      column = std::min<long long>(column + count, kSheetColumns + 1);
    }
    // One row more than a sheet has is enough to see a filled cell outside.
    const long long repeats = std::min<long long>(Repeats(rowNode, "table:number-rows-repeated"), kSheetRows + 1);
    if (!cells_.empty()) {
      for (long long row = row_; row < row_ + repeats; ++row) StoreRow(row);
    }
    row_ = std::min<long long>(row_ + repeats, kSheetRows + 1);
  }

  void StoreRow(long long row) {
    for (const Cell& cell : cells_) {
      for (long long column = cell.column; column < cell.column + cell.count; ++column) {
        const CellPosition position = builder_.At(row, column);
        builder_.Put(position, cell.formula, cell.value);
        if (!cell.formula.empty() && !cell.hasResult) builder_.WarnOfMissingResult(position);
      }
    }
  }

  Cell ReadCell(pugi::xml_node node) const {
    Cell cell;
    std::string_view type;
    std::string_view extendedType;
    pugi::xml_attribute stringValue;
    std::string_view stored;  // in the attribute of the value's type
    for (const pugi::xml_attribute attribute : node.attributes()) {
      const std::string_view name = attribute.name();
      if (name == "table:formula") {
        cell.formula = FormulaFromOds(CutForCell(CleanUtf8(attribute.value())));
      } else if (name == "office:value-type") {
        type = attribute.value();
      } else if (name == "calcext:value-type") {
        extendedType = attribute.value();
      } else if (name == "office:string-value") {
        stringValue = attribute;
      } else if (name == "office:value" || name == "office:date-value" || name == "office:time-value" ||
                 name == "office:boolean-value") {
        stored = attribute.value();
      }
    }
    double number = 0;
    if (extendedType == "error") {
      cell.value = ErrorName(CellParagraphs(node, builder_));
    } else if (type == "boolean" && !stored.empty()) {
      cell.value = stored == "true" ? "TRUE" : "FALSE";
    } else if (ReadNumber(type, stored, number)) {
      if (LostDigits(stored, number)) number = FullerNumber(node, number);
      cell.value = builder_.NumberText(number);
    } else if (stringValue) {
      cell.value = CutForCell(CleanUtf8(stringValue.value()));
    } else {
      cell.value = CellParagraphs(node, builder_);
    }
    // An empty text as result is stored as an empty paragraph.
    cell.hasResult = !type.empty() || !cell.value.empty() || node.child("text:p");
    return cell;
  }

  // One writer stores small numbers with 20 decimals and no exponent, which leaves 1.23456789012345E-13 eight digits.
  static bool LostDigits(std::string_view stored, double number) {
    return number != 0 && std::abs(number) < 1e-5 && stored.find_first_of("eE") == std::string_view::npos;
  }

  // The number that the cell shows, when it differs from the stored one by no more than the rounding to 20 decimals.
  double FullerNumber(pugi::xml_node node, double number) const {
    double shown = 0;
    if (!ReadPlainNumber(ReplaceAll(CellParagraphs(node, builder_), ",", "."), shown)) return number;
    return std::abs(shown - number) <= 0.51e-20 ? shown : number;
  }

  // The number behind a stored value, dates as their day.
  bool ReadNumber(std::string_view type, std::string_view stored, double& number) const {
    if (type == "float" || type == "percentage" || type == "currency") return ReadPlainNumber(stored, number);
    if (type == "time") return ReadIsoDuration(stored, number);
    if (type != "date" || !ReadIsoDate(stored, number)) return false;
    number -= nullDate_;
    return true;
  }

  WorkbookBuilder& builder_;
  double nullDate_;
  long long row_ = 1;
  std::vector<Cell> cells_;
};

// The first child of a kind with a name in config:name.
pugi::xml_node Config(pugi::xml_node node, std::string_view kind, std::string_view name) {
  for (const pugi::xml_node child : node.children()) {
    if (Is(child, kind) && std::string_view(child.attribute("config:name").value()) == name) return child;
  }
  return {};
}

// The active sheet and every sheet's active cell, as the first view had them.
void ReadSettings(ZipArchive& archive, WorkbookBuilder& builder) {
  if (!archive.Has(kSettingsPart)) return;
  const XmlPart xml(archive.Read(kSettingsPart), builder.fileName(), kSettingsPart);
  const pugi::xml_node settings = xml.root().child("office:settings");
  const pugi::xml_node views = Config(Config(settings, "config:config-item-set", "ooo:view-settings"),
                                      "config:config-item-map-indexed", "Views");
  const pugi::xml_node view = views.child("config:config-item-map-entry");
  const std::string active = CleanUtf8(Config(view, "config:config-item", "ActiveTable").child_value());
  std::map<std::string, CellPosition> cells;
  for (const pugi::xml_node entry : Config(view, "config:config-item-map-named", "Tables").children()) {
    const int row = Config(entry, "config:config-item", "CursorPositionY").text().as_int(0);
    const int column = Config(entry, "config:config-item", "CursorPositionX").text().as_int(0);
    if (row < 0 || row >= kSheetRows || column < 0 || column >= kSheetColumns) continue;
    cells.emplace(CleanUtf8(entry.attribute("config:name").value()), CellPosition{row + 1, column + 1});
  }
  std::vector<WorkbookSheet>& sheets = builder.contents().sheets;
  for (std::size_t k = 0; k < sheets.size(); ++k) {
    if (sheets[k].name == active) builder.contents().activeSheet = k;
    const auto cell = cells.find(sheets[k].name);
    if (cell != cells.end()) sheets[k].activeCell = cell->second;
  }
}

void RefuseEncrypted(ZipArchive& archive, const WorkbookBuilder& builder) {
  if (archive.Has("encrypted-package")) builder.Fail("is encrypted; save it without a password first.");
  if (!archive.Has(kManifestPart)) return;
  if (Contains(archive.Read(kManifestPart), "encryption-data")) {
    builder.Fail("is encrypted; save it without a password first.");
  }
}

}  // namespace

bool IsOds(const ZipArchive& archive) {
  return archive.Has("mimetype") || archive.Has(kContentPart);
}

void ReadOds(ZipArchive& archive, WorkbookBuilder& builder) {
  RefuseEncrypted(archive, builder);
  if (archive.Has("mimetype") && !StartsWith(archive.Read("mimetype"), kSpreadsheetType)) {
    builder.Fail("is a document of another kind, not a workbook.");
  }
  const XmlPart content(archive.Read(kContentPart), builder.fileName(), kContentPart);
  const pugi::xml_node spreadsheet = content.root().child("office:body").child("office:spreadsheet");
  if (!spreadsheet) builder.Fail("is a document of another kind, not a workbook.");

  double nullDate = 0;
  const pugi::xml_node nullDateNode = spreadsheet.child("table:calculation-settings").child("table:null-date");
  ReadIsoDate(nullDateNode.attribute("table:date-value").value(), nullDate);

  for (const pugi::xml_node table : spreadsheet.children("table:table")) {
    if (table.child("table:table-source")) continue;  // the kept copy of another workbook's sheet
    builder.BeginSheet(CleanUtf8(table.attribute("table:name").value()));
    TableReader(builder, nullDate).Read(table);
  }
  ReadSettings(archive, builder);
}

}  // namespace orv
