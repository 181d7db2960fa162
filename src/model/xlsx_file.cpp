#include "model/xlsx_file.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "model/formula_text.h"
#include "model/xml_part.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr const char* kRootRelations = "_rels/.rels";
constexpr long long kFarRow = 1LL << 40U;  // outside of any sheet, and far from overflow
constexpr double k1904Days = 1462;         // from the ordinary day 0 to that of a workbook counting from 1904

// An attribute without regard to its prefix; relationship ids come under several.
std::string_view Attribute(pugi::xml_node node, std::string_view localName) {
  for (const pugi::xml_attribute attribute : node.attributes()) {
    if (LocalName(attribute.name()) == localName) return attribute.value();
  }
  return {};
}

bool IsTrue(std::string_view flag) {
  return flag == "1" || flag == "true" || flag == "on";
}

std::optional<std::size_t> ReadIndex(std::string_view text) {
  std::size_t index = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return index;
}

struct Relation {
  std::string type;  // its last word: "worksheet", "sharedStrings"
  std::string part;
};

// The name of a part that `target` names from inside `folder` ("xl/"). A rooted target begins at the archive's root.
std::string ResolveTarget(std::string_view folder, std::string_view target) {
  std::string path = target.starts_with('/') ? std::string(target) : std::string(folder) + std::string(target);
  std::vector<std::string> steps;
  for (std::size_t k = 0; k <= path.size();) {
    const std::size_t end = std::min(path.find('/', k), path.size());
    const std::string step = path.substr(k, end - k);
    if (step == ".." && !steps.empty()) steps.pop_back();
    if (!step.empty() && step != "." && step != "..") steps.push_back(step);
    k = end + 1;
  }
  std::string part;
  for (const std::string& step : steps) part += (part.empty() ? "" : "/") + step;
  return part;
}

std::string FolderOf(std::string_view part) {
  const std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? "" : std::string(part.substr(0, slash + 1));
}

// The relations of a part by their id; empty when it has none.
std::map<std::string, Relation, std::less<>> ReadRelations(ZipArchive& archive, const std::string& fileName,
                                                           const std::string& relationsPart,
                                                           const std::string& folder) {
  std::map<std::string, Relation, std::less<>> relations;
  if (!archive.Has(relationsPart)) return relations;
  const XmlPart xml(archive.Read(relationsPart), fileName, relationsPart);
  for (pugi::xml_node node = Child(xml.root(), "Relationship"); node; node = NextLike(node)) {
    if (Attribute(node, "TargetMode") == "External") continue;
    const std::string_view type = Attribute(node, "Type");
    relations[std::string(Attribute(node, "Id"))] = {std::string(type.substr(type.rfind('/') + 1)),
                                                     ResolveTarget(folder, Attribute(node, "Target"))};
  }
  return relations;
}

std::string WorkbookPart(ZipArchive& archive, const std::string& fileName) {
  for (const auto& [id, relation] : ReadRelations(archive, fileName, kRootRelations, "")) {
    if (relation.type == "officeDocument") return relation.part;
  }
  return "xl/workbook.xml";
}

// The character data directly inside an element.
std::string PlainText(pugi::xml_node node) {
  std::string text = node.value();
  for (const pugi::xml_node child : node.children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
  }
  return text;
}

// Whether white space around the texts in an element counts.
bool KeepsSpace(pugi::xml_node node, bool inherited) {
  const pugi::xml_attribute space = node.attribute("xml:space");
  return space ? std::string_view(space.value()) == "preserve" : inherited;
}

std::string TextElement(pugi::xml_node t, bool keepSpace) {
  const std::string text = PlainText(t);
  return DecodeEscapes(KeepsSpace(t, keepSpace) ? text : TrimWhiteSpace(text));
}

// A string item: one text or runs of text. The phonetic guide beside it (rPh) is no part of the cell's text.
std::string StringItem(pugi::xml_node item, bool keepSpace) {
  keepSpace = KeepsSpace(item, keepSpace);
  std::string text;
  for (const pugi::xml_node child : item.children()) {
    const std::string_view name = LocalName(child.name());
    if (name == "t") text += TextElement(child, keepSpace);
    if (name == "r") {
      const bool keepInRun = KeepsSpace(child, keepSpace);
      for (pugi::xml_node t = Child(child, "t"); t; t = NextLike(t)) text += TextElement(t, keepInRun);
    }
  }
  return CutForCell(CleanUtf8(text));
}

// What the sheets of a workbook have in common.
struct BookParts {
  std::vector<std::string> strings;
  std::vector<bool> booleanStyles;  // by the number of a cell's style
  bool from1904 = false;
};

// Reads one sheet into the builder.
class SheetReader {
 public:
  SheetReader(WorkbookBuilder& builder, const BookParts& book) : builder_(builder), book_(book) {}

  void Read(pugi::xml_node worksheet) {
    ReadView(Child(worksheet, "sheetViews"));
    long long row = 0;
    for (pugi::xml_node node = Child(Child(worksheet, "sheetData"), "row"); node; node = NextLike(node)) {
      ++row;
      const pugi::xml_attribute number = node.attribute("r");
      if (number) row = std::clamp(number.as_llong(), 0LL, kFarRow);
      ReadRow(node, row);
    }
    for (const Pending& pending : pending_) {
      const auto found = shared_.find(pending.index);
      if (found == shared_.end()) continue;
      Store(pending.cell, found->second.At(pending.cell), builder_.sheet().grid.Value(pending.cell), pending.hasResult);
    }
  }

 private:
  struct Pending {  // a cell in front of the one whose formula it shares; its value is in the grid already
    CellPosition cell;
    std::size_t index = 0;
    bool hasResult = false;
  };

  // The selection of the active pane of the first view.
  void ReadView(pugi::xml_node views) {
    const pugi::xml_node view = Child(views, "sheetView");
    std::string_view activePane = Attribute(Child(view, "pane"), "activePane");
    if (activePane.empty()) activePane = "topLeft";
    std::optional<CellPosition> active;
    for (pugi::xml_node node = Child(view, "selection"); node; node = NextLike(node)) {
      std::string_view pane = Attribute(node, "pane");
      if (pane.empty()) pane = "topLeft";
      const std::optional<CellPosition> cell = ParseA1Cell(Attribute(node, "activeCell"));
      if (cell && (!active || pane == activePane)) active = cell;
    }
    if (active) builder_.sheet().activeCell = *active;
  }

  void ReadRow(pugi::xml_node rowNode, long long row) {
    long long column = 0;
    for (pugi::xml_node c = Child(rowNode, "c"); c; c = NextLike(c)) {
      ++column;
      long long cellRow = row;
      const std::string_view name = c.attribute("r").value();
      if (!name.empty()) {
        const std::optional<CellPosition> cell = ParseA1Cell(name);
        if (!cell) {
          builder_.Fail("is damaged: sheet '" + builder_.sheet().name + "' has a cell named '" +
                        LeftCharacters(CleanUtf8(name), 40) + "', which is no cell of a sheet.");
        }
        cellRow = cell->row;
        column = cell->column;
      }
      ReadCell(c, cellRow, column);
    }
  }

  void ReadCell(pugi::xml_node c, long long row, long long column) {
    const std::string_view type = c.attribute("t").value();
    pugi::xml_node formula;
    pugi::xml_node value;
    pugi::xml_node inlineText;
    for (const pugi::xml_node child : c.children()) {
      const std::string_view name = LocalName(child.name());
      if (name == "f") formula = child;
      if (name == "v") value = child;
      if (name == "is") inlineText = child;
    }
    std::string text = inlineText ? StringItem(inlineText, false) : ValueText(c, type, PlainText(value));
    if (!formula && text.empty()) return;
    const CellPosition cell = builder_.At(row, column);
    const bool hasResult = type == "str" || inlineText || !text.empty();
    std::string own = formula ? CutForCell(CleanUtf8(DecodeEscapes(PlainText(formula)))) : "";
    if (!own.empty()) own = FormulaFromXlsx(own);
    std::optional<std::size_t> shared;
    if (formula && Attribute(formula, "t") == "shared") shared = ReadIndex(Attribute(formula, "si"));
    if (shared && own.empty() && !shared_.contains(*shared)) {
      pending_.push_back({cell, *shared, hasResult});
    } else if (shared && own.empty()) {
      own = shared_.at(*shared).At(cell);
    } else if (shared) {
      shared_[*shared] = SharedFormula(own, cell);
    }
    Store(cell, std::move(own), std::move(text), hasResult);
  }

  // What the element v of a cell says, by the type of the cell.
  std::string ValueText(pugi::xml_node c, std::string_view type, const std::string& content) {
    if (type == "str") return CutForCell(CleanUtf8(DecodeEscapes(content)));
    const std::string_view v = TrimWhiteSpace(content);
    if (v.empty()) return {};
    if (type == "s") {
      const std::optional<std::size_t> index = ReadIndex(v);
      if (index && *index < book_.strings.size()) return book_.strings[*index];
      builder_.Fail("is damaged: sheet '" + builder_.sheet().name + "' uses its text number " +
                    LeftCharacters(CleanUtf8(v), 40) + ", but the file has " + std::to_string(book_.strings.size()) +
                    " texts.");
    }
    if (type == "b") return IsTrue(v) ? "TRUE" : "FALSE";
    if (type == "e") return CleanUtf8(v);
    double number = 0;
    if (type == "d" && ReadIsoDate(v, number)) return builder_.NumberText(book_.from1904 ? number - k1904Days : number);
    if (!ReadPlainNumber(v, number)) return CutForCell(CleanUtf8(v));
    if (!book_.booleanStyles.empty()) {
      const std::size_t style = ReadIndex(c.attribute("s").value()).value_or(0);
      if (style < book_.booleanStyles.size() && book_.booleanStyles[style]) return number == 0 ? "FALSE" : "TRUE";
    }
    return builder_.NumberText(number);
  }

  // A formula that the file does not spell out (a data table) leaves its result behind as a constant.
  void Store(CellPosition cell, std::string formula, std::string value, bool hasResult) {
    const bool warn = !formula.empty() && !hasResult;
    builder_.Put(cell, std::move(formula), std::move(value));
    if (warn) builder_.WarnOfMissingResult(cell);
  }

  WorkbookBuilder& builder_;
  const BookParts& book_;
  std::map<std::size_t, SharedFormula> shared_;
  std::vector<Pending> pending_;
};

std::vector<std::string> ReadSharedStrings(ZipArchive& archive, const std::string& fileName, const std::string& part) {
  const XmlPart xml(archive.Read(part), fileName, part);
  std::vector<std::string> strings;
  const bool keepSpace = KeepsSpace(xml.root(), false);
  for (pugi::xml_node item = Child(xml.root(), "si"); item; item = NextLike(item)) {
    strings.push_back(StringItem(item, keepSpace));
  }
  return strings;
}

// One writer stores a logical result as a number in a format that shows TRUE and FALSE. Empty when no style does so.
std::vector<bool> ReadBooleanStyles(ZipArchive& archive, const std::string& fileName, const std::string& part) {
  const XmlPart xml(archive.Read(part), fileName, part);
  std::set<std::string_view> formats;
  for (pugi::xml_node node = Child(Child(xml.root(), "numFmts"), "numFmt"); node; node = NextLike(node)) {
    if (Attribute(node, "formatCode") == R"("TRUE";"TRUE";"FALSE")") formats.insert(Attribute(node, "numFmtId"));
  }
  std::vector<bool> styles;
  if (formats.empty()) return styles;
  for (pugi::xml_node xf = Child(Child(xml.root(), "cellXfs"), "xf"); xf; xf = NextLike(xf)) {
    styles.push_back(formats.contains(Attribute(xf, "numFmtId")));
  }
  return styles;
}

}  // namespace

std::string DecodeEscapes(std::string_view text) {
  std::string out;
  std::size_t k = 0;
  // The four digits of an escape at `at`.
  const auto unitAt = [&](std::size_t at, unsigned& unit) {
    if (at + 7 > text.size() || text.substr(at, 2) != "_x" || text[at + 6] != '_') return false;
    const char* digits = text.data() + at + 2;
    const auto [end, error] = std::from_chars(digits, digits + 4, unit, 16);
    return error == std::errc() && end == digits + 4;
  };
  while (k < text.size()) {
    const std::size_t next = std::min(text.find("_x", k), text.size());
    out.append(text.substr(k, next - k));
    k = next;
    if (k == text.size()) break;
    unsigned unit = 0;
    if (!unitAt(k, unit)) {
      out.append("_x");
      k += 2;
      continue;
    }
    k += 7;
    unsigned low = 0;
    if (unit >= 0xD800 && unit < 0xDC00 && unitAt(k, low) && low >= 0xDC00 && low < 0xE000) {
      unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
      k += 7;
    }
    AppendUtf8(out, unit);
  }
  return out;
}

bool IsXlsx(const ZipArchive& archive) {
  return archive.Has("[Content_Types].xml") || archive.Has(kRootRelations);
}

void ReadXlsx(ZipArchive& archive, WorkbookBuilder& builder) {
  const std::string& fileName = builder.fileName();
  const std::string workbookPart = WorkbookPart(archive, fileName);
  if (workbookPart.ends_with(".bin")) builder.Fail("is a binary workbook (.xlsb); save it as .xlsx or .ods first.");
  if (!archive.Has(workbookPart)) builder.Fail("is not a workbook: it holds no " + QuotedPart(workbookPart) + ".");
  const XmlPart workbook(archive.Read(workbookPart), fileName, workbookPart);
  if (LocalName(workbook.root().name()) != "workbook") builder.Fail("is a document of another kind, not a workbook.");

  const std::string folder = FolderOf(workbookPart);
  const std::string relationsPart = folder + "_rels/" + workbookPart.substr(folder.size()) + ".rels";
  const auto relations = ReadRelations(archive, fileName, relationsPart, folder);
  BookParts book;
  for (const auto& [id, relation] : relations) {
    if (relation.type == "sharedStrings") book.strings = ReadSharedStrings(archive, fileName, relation.part);
    if (relation.type == "styles" && archive.Has(relation.part)) {
      book.booleanStyles = ReadBooleanStyles(archive, fileName, relation.part);
    }
  }
  book.from1904 = IsTrue(Attribute(Child(workbook.root(), "workbookPr"), "date1904"));
  const pugi::xml_node view = Child(Child(workbook.root(), "bookViews"), "workbookView");
  const std::size_t activeTab = ReadIndex(Attribute(view, "activeTab")).value_or(0);

  std::size_t tab = 0;
  for (pugi::xml_node node = Child(Child(workbook.root(), "sheets"), "sheet"); node; node = NextLike(node), ++tab) {
    const std::string name = CleanUtf8(DecodeEscapes(Attribute(node, "name")));
    const auto relation = relations.find(Attribute(node, "id"));
    if (relation == relations.end()) builder.Fail("is damaged: the part of its sheet '" + name + "' is not named.");
    if (relation->second.type != "worksheet") {  // a sheet that is one chart, for instance
      if (tab == activeTab) {
        builder.contents().activeSheet = builder.SheetCount();
        builder.contents().warnings.push_back("The active sheet '" + name + "' holds no cells; another sheet is used.");
      }
      continue;
    }
    if (tab == activeTab) builder.contents().activeSheet = builder.SheetCount();
    builder.BeginSheet(name);
    const XmlPart sheet(archive.Read(relation->second.part), fileName, relation->second.part);
    SheetReader(builder, book).Read(sheet.root());
  }
}

}  // namespace orv
