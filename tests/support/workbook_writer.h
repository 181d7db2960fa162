#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>
#include <zip.h>

#include "model/sheet_grid.h"
#include "numerics/text.h"

// Small workbooks for tests, written the way several common writers do.
namespace orv::testing {

// A folder of its own that disappears with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "orv_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = std::filesystem::canonical(name);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path Write(const std::string& name, std::string_view bytes) const {
    std::filesystem::path file = path_ / name;
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
  }

 private:
  std::filesystem::path path_;
};

struct ZipPart {
  std::string name;
  std::string content;
  int method = ZIP_CM_DEFLATE;
};

// The bytes of a zip archive.
inline std::string Zip(const std::vector<ZipPart>& parts) {
  zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
  zip_source_keep(target);
  zip_t* archive = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, nullptr);
  for (const ZipPart& part : parts) {
    zip_source_t* source = zip_source_buffer(archive, part.content.data(), part.content.size(), 0);
    const zip_int64_t index = zip_file_add(archive, part.name.c_str(), source, ZIP_FL_ENC_UTF_8);
    zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), part.method, 0);
  }
  if (zip_close(archive) != 0) throw std::runtime_error(zip_strerror(archive));
  std::string bytes;
  zip_stat_t stat;
  zip_source_stat(target, &stat);
  bytes.resize(stat.size);
  zip_source_open(target);
  zip_source_read(target, bytes.data(), bytes.size());
  zip_source_close(target);
  zip_source_free(target);
  return bytes;
}

inline std::string Escaped(std::string_view text) {
  std::string out = ReplaceAll(text, "&", "&amp;");
  out = ReplaceAll(out, "<", "&lt;");
  out = ReplaceAll(out, ">", "&gt;");
  return ReplaceAll(out, "\"", "&quot;");
}

enum class CellKind { Text, Number, Logical, Error };

struct TestCell {
  CellPosition position;
  CellKind kind = CellKind::Text;
  std::string value;        // a number as files spell it, "TRUE" or "FALSE", "#N/A"
  std::string formula;      // "SUM(A1:B2)"; empty for a constant
  std::string openFormula;  // "SUM([.A1:.B2])"
};

struct TestSheet {
  std::string name = "Sheet1";
  std::vector<TestCell> cells;  // in reading order
  CellPosition active;
};

struct TestBook {
  std::vector<TestSheet> sheets = {{}};
  std::size_t active = 0;
};

struct XlsxStyle {
  bool cellNames = true;      // r attributes on rows and cells; otherwise empty rows and cells fill the gaps
  bool sharedStrings = true;  // otherwise the texts stand in the cells
  bool rootedTargets = false;
  bool prefixed = false;  // <x:worksheet> instead of <worksheet>
};

namespace writer_detail {

inline constexpr const char* kRelationships = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
inline constexpr const char* kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

// Writes the elements of a spreadsheet part with or without a prefix.
class Elements {
 public:
  explicit Elements(bool prefixed) : prefix_(prefixed ? "x:" : "") {}
  std::string Open(const std::string& name, const std::string& attributes = {}) const {
    return "<" + prefix_ + name + (attributes.empty() ? "" : " " + attributes) + ">";
  }
  std::string Close(const std::string& name) const { return "</" + prefix_ + name + ">"; }
  std::string Whole(const std::string& name, const std::string& attributes, const std::string& content) const {
    return Open(name, attributes) + content + Close(name);
  }
  std::string Root(const std::string& name, const std::string& content) const {
    const std::string space = prefix_.empty() ? "xmlns" : "xmlns:x";
    return kHead + Whole(name,
                         space + "=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" xmlns:r=\"" +
                             kRelationships + "\"",
                         content);
  }

 private:
  std::string prefix_;
};

inline std::string Named(const std::string& name, const std::string& value) {
  return name + "=\"" + Escaped(value) + "\"";
}

class XlsxWriter {
 public:
  explicit XlsxWriter(const XlsxStyle& style) : style_(style), x_(style.prefixed) {}

  std::vector<ZipPart> Parts(const TestBook& book) {
    std::vector<ZipPart> parts;
    std::string sheets;
    std::string relations;
    for (std::size_t k = 0; k < book.sheets.size(); ++k) {
      const std::string number = std::to_string(k + 1);
      sheets += x_.Whole(
          "sheet",
          Named("name", book.sheets[k].name) + " " + Named("sheetId", number) + " " + Named("r:id", "rId" + number),
          "");
      relations += Relation("rId" + number, "worksheet", "xl/", "worksheets/sheet" + number + ".xml");
      parts.push_back({"xl/worksheets/sheet" + number + ".xml", Sheet(book.sheets[k])});
    }
    if (style_.sharedStrings) {
      std::string items;
      for (const std::string& text : strings_) items += x_.Whole("si", "", Text(text));
      parts.push_back({"xl/sharedStrings.xml", x_.Root("sst", items)});
      relations += Relation("rIdS", "sharedStrings", "xl/", "sharedStrings.xml");
    }
    const std::string views =
        x_.Whole("bookViews", "", x_.Whole("workbookView", Named("activeTab", std::to_string(book.active)), ""));
    parts.push_back({"xl/workbook.xml", x_.Root("workbook", views + x_.Whole("sheets", "", sheets))});
    parts.push_back({"xl/_rels/workbook.xml.rels", Relations(relations)});
    parts.push_back({"_rels/.rels", Relations(Relation("rId1", "officeDocument", "", "xl/workbook.xml"))});
    parts.push_back({"[Content_Types].xml",
                     std::string(kHead) +
                         "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"></Types>"});
    return parts;
  }

 private:
  static std::string Relations(const std::string& content) {
    return std::string(kHead) +
           "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" + content +
           "</Relationships>";
  }
  std::string Relation(const std::string& id, const std::string& type, const std::string& folder,
                       const std::string& target) const {
    return "<Relationship " + Named("Id", id) + " " + Named("Type", std::string(kRelationships) + "/" + type) + " " +
           Named("Target", style_.rootedTargets ? "/" + folder + target : target) + "/>";
  }
  std::string Text(const std::string& text) const { return x_.Whole("t", "xml:space=\"preserve\"", Escaped(text)); }

  std::string Cell(const TestCell& cell) {
    std::string attributes = style_.cellNames ? Named("r", CellName(cell.position)) : "";
    std::string value = x_.Whole("v", "", Escaped(cell.value));
    std::string type;
    if (cell.kind == CellKind::Logical) {
      type = "b";
      value = x_.Whole("v", "", cell.value == "TRUE" ? "1" : "0");
    } else if (cell.kind == CellKind::Error) {
      type = "e";
    } else if (cell.kind == CellKind::Text && !cell.formula.empty()) {
      type = "str";
    } else if (cell.kind == CellKind::Text && style_.sharedStrings) {
      type = "s";
      const auto [entry, added] = stringIndex_.emplace(cell.value, strings_.size());
      if (added) strings_.push_back(cell.value);
      value = x_.Whole("v", "", std::to_string(entry->second));
    } else if (cell.kind == CellKind::Text) {
      type = "inlineStr";
      value = x_.Whole("is", "", Text(cell.value));
    }
    if (!type.empty()) attributes += (attributes.empty() ? "" : " ") + Named("t", type);
    const std::string formula = cell.formula.empty() ? "" : x_.Whole("f", "", Escaped(cell.formula));
    return x_.Whole("c", attributes, formula + value);
  }

  std::string Sheet(const TestSheet& sheet) {
    std::string rows;
    int row = 0;
    int column = 0;
    const auto endRow = [&] {
      if (row > 0) rows += x_.Close("row");
    };
    for (const TestCell& cell : sheet.cells) {
      if (cell.position.row != row) {
        endRow();
        if (!style_.cellNames) {
          for (++row; row < cell.position.row; ++row) rows += x_.Whole("row", "", "");
        }
        row = cell.position.row;
        column = 0;
        rows += x_.Open("row", style_.cellNames ? Named("r", std::to_string(row)) : "");
      }
      if (!style_.cellNames) {
        for (++column; column < cell.position.column; ++column) rows += x_.Whole("c", "", "");
      }
      rows += Cell(cell);
      column = cell.position.column;
    }
    endRow();
    const std::string name = CellName(sheet.active);
    const std::string view =
        x_.Whole("sheetViews", "",
                 x_.Whole("sheetView", "workbookViewId=\"0\"", x_.Whole("selection", Named("activeCell", name), "")));
    return x_.Root("worksheet", view + x_.Whole("sheetData", "", rows));
  }

  XlsxStyle style_;
  Elements x_;
  std::map<std::string, std::size_t> stringIndex_;
  std::vector<std::string> strings_;
};

// A text as paragraphs, with elements for blanks and tabs that XML would not keep.
inline std::string OdsParagraphs(const std::string& text) {
  std::string out = "<text:p>";
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (text[k] == '\n') {
      out += "</text:p><text:p>";
    } else if (text[k] == '\t') {
      out += "<text:tab/>";
    } else if (text[k] == ' ' && (k == 0 || text[k - 1] == ' ' || text[k - 1] == '\n')) {
      std::size_t end = k;
      while (end < text.size() && text[end] == ' ') ++end;
      out += "<text:s text:c=\"" + std::to_string(end - k) + "\"/>";
      k = end - 1;
    } else {
      out += Escaped(text.substr(k, 1));
    }
  }
  return out + "</text:p>";
}

inline std::string OdsCell(const TestCell& cell) {
  std::string attributes;
  if (!cell.formula.empty()) attributes += " " + Named("table:formula", "of:=" + cell.openFormula);
  std::string text = cell.value;
  if (cell.kind == CellKind::Number) {
    attributes += " office:value-type=\"float\" " + Named("office:value", cell.value);
    text = "shown otherwise";
  } else if (cell.kind == CellKind::Logical) {
    attributes += std::string(" office:value-type=\"boolean\" office:boolean-value=\"") +
                  (cell.value == "TRUE" ? "true" : "false") + "\"";
  } else if (cell.kind == CellKind::Error) {
    attributes += " office:value-type=\"string\" office:string-value=\"\" calcext:value-type=\"error\"";
  } else {
    attributes += " office:value-type=\"string\" calcext:value-type=\"string\"";
  }
  return "<table:table-cell" + attributes + ">" + OdsParagraphs(text) + "</table:table-cell>";
}

inline std::string OdsTable(const TestSheet& sheet) {
  std::string out = "<table:table " + Named("table:name", sheet.name) + "><table:table-column/>";
  int row = 0;
  int column = 0;
  for (const TestCell& cell : sheet.cells) {
    if (cell.position.row != row) {
      if (row > 0) out += "</table:table-row>";
      const int gap = cell.position.row - row - 1;
      if (gap > 0) {
        out += "<table:table-row " + Named("table:number-rows-repeated", std::to_string(gap)) +
               "><table:table-cell/></table:table-row>";
      }
      out += "<table:table-row>";
      row = cell.position.row;
      column = 0;
    }
    const int gap = cell.position.column - column - 1;
    if (gap > 0) out += "<table:table-cell " + Named("table:number-columns-repeated", std::to_string(gap)) + "/>";
    out += OdsCell(cell);
    column = cell.position.column;
  }
  if (row > 0) out += "</table:table-row>";
  return out + "</table:table>";
}

inline constexpr const char* kOdsSpaces =
    " xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\""
    " xmlns:table=\"urn:oasis:names:tc:opendocument:xmlns:table:1.0\""
    " xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\""
    " xmlns:config=\"urn:oasis:names:tc:opendocument:xmlns:config:1.0\""
    " xmlns:ooo=\"http://openoffice.org/2004/office\""
    " xmlns:of=\"urn:oasis:names:tc:opendocument:xmlns:of:1.2\""
    " xmlns:calcext=\"urn:org:documentfoundation:names:experimental:calc:xmlns:calcext:1.0\" office:version=\"1.3\"";

inline std::string ConfigItem(const std::string& name, const std::string& value, const std::string& type = "int") {
  return "<config:config-item " + Named("config:name", name) + " " + Named("config:type", type) + ">" + Escaped(value) +
         "</config:config-item>";
}

}  // namespace writer_detail

inline std::vector<ZipPart> XlsxParts(const TestBook& book, const XlsxStyle& style = {}) {
  return writer_detail::XlsxWriter(style).Parts(book);
}

// The content.xml of an ods file around what stands inside the element office:spreadsheet.
inline std::string OdsContent(const std::string& spreadsheet) {
  return std::string(writer_detail::kHead) + "<office:document-content" + writer_detail::kOdsSpaces +
         "><office:body><office:spreadsheet>" + spreadsheet +
         "</office:spreadsheet></office:body></office:document-content>";
}

inline std::vector<ZipPart> OdsParts(const TestBook& book) {
  using namespace writer_detail;
  std::string tables;
  std::string cursors;
  for (const TestSheet& sheet : book.sheets) {
    tables += OdsTable(sheet);
    cursors += "<config:config-item-map-entry " + Named("config:name", sheet.name) + ">" +
               ConfigItem("CursorPositionX", std::to_string(sheet.active.column - 1)) +
               ConfigItem("CursorPositionY", std::to_string(sheet.active.row - 1)) + "</config:config-item-map-entry>";
  }
  const std::string settings =
      std::string(kHead) + "<office:document-settings" + kOdsSpaces +
      "><office:settings><config:config-item-set config:name=\"ooo:view-settings\"><config:config-item-map-indexed "
      "config:name=\"Views\"><config:config-item-map-entry>" +
      ConfigItem("ViewId", "view1", "string") + "<config:config-item-map-named config:name=\"Tables\">" + cursors +
      "</config:config-item-map-named>" + ConfigItem("ActiveTable", book.sheets[book.active].name, "string") +
      "</config:config-item-map-entry></config:config-item-map-indexed></config:config-item-set></office:settings>"
      "</office:document-settings>";
  return {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet", ZIP_CM_STORE},
          {"content.xml", OdsContent(tables)},
          {"settings.xml", settings},
          {"META-INF/manifest.xml",
           std::string(kHead) +
               "<manifest:manifest xmlns:manifest=\"urn:oasis:names:tc:opendocument:xmlns:manifest:1.0\"/>"}};
}

// Parts with the content of one of them replaced, or with one more.
inline std::vector<ZipPart> WithPart(std::vector<ZipPart> parts, const std::string& name, const std::string& content) {
  for (ZipPart& part : parts) {
    if (part.name != name) continue;
    part.content = content;
    return parts;
  }
  parts.push_back({name, content});
  return parts;
}

// An xlsx file whose one sheet has these rows, and shared strings when there are items ("<si><t>a</t></si>").
inline std::string XlsxWithRows(const std::string& rows, const std::string& items = {}) {
  std::vector<ZipPart> parts =
      WithPart(XlsxParts({}), "xl/worksheets/sheet1.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>");
  return Zip(WithPart(parts, "xl/sharedStrings.xml", "<sst>" + items + "</sst>"));
}

// An ods file whose one sheet has these rows.
inline std::string OdsWithRows(const std::string& rows) {
  return Zip(WithPart(OdsParts({}), "content.xml",
                      OdsContent("<table:table table:name=\"Sheet1\">" + rows + "</table:table>")));
}

}  // namespace orv::testing
