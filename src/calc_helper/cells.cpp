#include "calc_helper/cells.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/lang/XMultiServiceFactory.hpp>
#include <com/sun/star/sheet/AddressConvention.hpp>
#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XCellRangesQuery.hpp>
#include <com/sun/star/sheet/XFormulaParser.hpp>
#include <com/sun/star/sheet/XFormulaTokens.hpp>
#include <com/sun/star/sheet/XSheetCellRanges.hpp>
#include <com/sun/star/sheet/XUniqueCellFormatRangesSupplier.hpp>
#include <com/sun/star/table/XCell.hpp>
#include <com/sun/star/util/NumberFormat.hpp>
#include <com/sun/star/util/XNumberFormatsSupplier.hpp>
#include <com/sun/star/util/XSearchDescriptor.hpp>
#include <com/sun/star/util/XSearchable.hpp>
#include <optional>

#include "calc_helper/failure.h"
#include "calc_helper/uno_text.h"

namespace orv::calc_helper {

using star::table::CellContentType_FORMULA;
using star::table::CellRangeAddress;
using star::uno::Any;
using star::uno::Sequence;
using star::uno::UNO_QUERY;

namespace {

using DataRows = Sequence<Sequence<Any>>;
using SheetRange = Reference<star::table::XCellRange>;

void AppendNumber(std::string& json, double value) {
  char digits[40];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
  json.append(digits, end);
}

void AppendText(std::string& json, const rtl::OUString& text) {
  if (text.isEmpty()) {
    json += "null";
  } else {
    // The sign for a tab in a cell of several lines or fonts.
    AppendJson(json, Utf8(text.replace(u'\x01', u'\t')));
  }
}

// What an error is called; the office shows the numbers of those without a name.
std::string ErrorText(sal_Int32 code) {
  switch (code) {
    case 503:
      return "#NUM!";
    case 519:
      return "#VALUE!";
    case 521:
      return "#NULL!";
    case 524:
      return "#REF!";
    case 525:
      return "#NAME?";
    case 532:
      return "#DIV/0!";
    case 32767:
      return "#N/A";
    default:
      return "Err:" + std::to_string(code);
  }
}

bool IsLogicalFormat(const Book& book, const Reference<star::uno::XInterface>& cells) {
  const Reference<star::beans::XPropertySet> properties(cells, UNO_QUERY);
  const Reference<star::util::XNumberFormatsSupplier> formats(book.document, UNO_QUERY);
  sal_Int32 key = 0;
  // A mixed range has no format of its own.
  if (!properties.is() || !formats.is() || !(properties->getPropertyValue("NumberFormat") >>= key)) return false;
  sal_Int16 type = 0;
  formats->getNumberFormats()->getByKey(key)->getPropertyValue("Type") >>= type;
  return (type & star::util::NumberFormat::LOGICAL) != 0;
}

// The values of a rectangle inside the sheet, with its logical values and its errors found out.
class Values {
 public:
  Values(const Book& book, const SheetRange& range, CellRangeAddress place)
      : range_(range), place_(place), columns_(place.EndColumn - place.StartColumn + 1) {
    const Reference<star::sheet::XCellRangeData> data(range, UNO_QUERY);
    if (!data.is()) throw Failure{kRefused, "The range gives no data."};
    rows_ = data->getDataArray();
    if (HasZeroOrOne()) FindLogicals(book);
  }

  void Append(std::string& json, sal_Int32 row, sal_Int32 column) const {
    const Any& value = std::as_const(rows_)[row][column];
    double number = 0;
    rtl::OUString text;
    if (value >>= number) {
      if (IsLogical(row, column) && (number == 0 || number == 1)) {
        json += number == 0 ? "\"FALSE\"" : "\"TRUE\"";
      } else if (std::isfinite(number)) {
        AppendNumber(json, number);
      } else {
        json += "\"#NUM!\"";
      }
    } else if (value >>= text) {
      AppendText(json, text);
    } else {
      // Cells with an error come without a value.
      AppendJson(json, ErrorText(range_->getCellByPosition(column, row)->getError()));
    }
  }

 private:
  bool HasZeroOrOne() const {
    for (const Sequence<Any>& row : rows_) {
      for (const Any& value : row) {
        double number = 2;
        if ((value >>= number) && (number == 0 || number == 1)) return true;
      }
    }
    return false;
  }

  void FindLogicals(const Book& book) {
    const Reference<star::sheet::XUniqueCellFormatRangesSupplier> supplier(range_, UNO_QUERY);
    if (!supplier.is()) return;
    const Reference<star::container::XIndexAccess> groups = supplier->getUniqueCellFormatRanges();
    for (sal_Int32 k = 0; k < groups->getCount(); ++k) {
      const Reference<star::sheet::XSheetCellRanges> group(groups->getByIndex(k), UNO_QUERY);
      if (!group.is() || !IsLogicalFormat(book, group)) continue;
      logical_.resize(static_cast<std::size_t>(rows_.getLength()) * static_cast<std::size_t>(columns_));
      for (const CellRangeAddress& part : group->getRangeAddresses()) Mark(part);
    }
  }

  void Mark(const CellRangeAddress& part) {
    for (sal_Int32 row = std::max(part.StartRow, place_.StartRow); row <= std::min(part.EndRow, place_.EndRow); ++row) {
      for (sal_Int32 column = std::max(part.StartColumn, place_.StartColumn);
           column <= std::min(part.EndColumn, place_.EndColumn); ++column) {
        logical_[Index(row - place_.StartRow, column - place_.StartColumn)] = true;
      }
    }
  }

  std::size_t Index(sal_Int32 row, sal_Int32 column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column);
  }
  bool IsLogical(sal_Int32 row, sal_Int32 column) const { return !logical_.empty() && logical_[Index(row, column)]; }

  SheetRange range_;
  CellRangeAddress place_;
  sal_Int32 columns_;
  DataRows rows_;
  std::vector<bool> logical_;  // empty when no cell has the format
};

// In the notation that the other spreadsheets use, with "," between arguments.
std::string PrintedFormula(const Book& book, const Reference<star::table::XCell>& cell, int row, int column) {
  const Reference<star::lang::XMultiServiceFactory> factory(book.document, UNO_QUERY);
  const Reference<star::sheet::XFormulaTokens> tokens(cell, UNO_QUERY);
  if (!factory.is() || !tokens.is()) return {};
  const Reference<star::sheet::XFormulaParser> parser(factory->createInstance("com.sun.star.sheet.FormulaParser"),
                                                      UNO_QUERY);
  const Reference<star::beans::XPropertySet> properties(parser, UNO_QUERY);
  if (!properties.is()) return {};
  properties->setPropertyValue("CompileEnglish", Any(true));
  properties->setPropertyValue("FormulaConvention", Any(star::sheet::AddressConvention::XL_OOX));
  const star::table::CellAddress place(book.edges.Sheet, column, row);
  return Utf8(parser->printFormula(tokens->getTokens(), place));
}

// Errors written in a formula are missing from its print.
bool NamesError(const std::string& formula) {
  for (const char* error : {"#N/A", "#DIV/0!", "#VALUE!", "#NUM!", "#NAME?", "#NULL!"}) {
    if (formula.find(error) != std::string::npos) return true;
  }
  return false;
}

// Calc's own text of a formula with "," between arguments.
std::string WithCommas(std::string formula) {
  bool quoted = false;
  for (char& c : formula) {
    if (c == '"') quoted = !quoted;
    if (c == ';' && !quoted) c = ',';
  }
  return formula;
}

// Every cell of the ranges, row by row.
std::vector<std::pair<int, int>> CellsOf(const Sequence<CellRangeAddress>& ranges, std::size_t most) {
  std::vector<std::pair<int, int>> cells;
  for (const CellRangeAddress& range : ranges) {
    for (sal_Int32 row = range.StartRow; row <= range.EndRow && cells.size() < most; ++row) {
      for (sal_Int32 column = range.StartColumn; column <= range.EndColumn && cells.size() < most; ++column) {
        cells.emplace_back(row, column);
      }
    }
  }
  std::sort(cells.begin(), cells.end());
  return cells;
}

Sequence<CellRangeAddress> Filled(const Book& book) {
  using namespace star::sheet;
  const Reference<XCellRangesQuery> query(book.sheet, UNO_QUERY);
  if (!query.is()) return {};
  const auto ranges =
      query->queryContentCells(CellFlags::VALUE | CellFlags::DATETIME | CellFlags::STRING | CellFlags::FORMULA);
  return ranges.is() ? ranges->getRangeAddresses() : Sequence<CellRangeAddress>();
}

}  // namespace

void AppendJson(std::string& json, const std::string& text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  json += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20) {
      json += "\\u00";
      json += kDigits[byte >> 4U];
      json += kDigits[byte & 15U];
      continue;
    }
    if (c == '"' || c == '\\') json += '\\';
    json += c;
  }
  json += '"';
}

int AppendValues(std::string& json, const Book& book, const Area& area, std::size_t bytes) {
  const CellRangeAddress& edges = book.edges;
  const int lastRow = std::min(area.row + area.rows - 1, static_cast<int>(edges.EndRow));
  const int lastColumn = std::min(area.column + area.columns - 1, static_cast<int>(edges.EndColumn));
  std::optional<Values> values;
  if (lastRow >= area.row && lastColumn >= area.column) {
    const SheetRange range = book.sheet->getCellRangeByPosition(area.column, area.row, lastColumn, lastRow);
    values.emplace(book, range, CellRangeAddress(edges.Sheet, area.column, area.row, lastColumn, lastRow));
  }
  const std::size_t start = json.size();
  json += '[';
  int row = 0;
  while (row < area.rows && (row == 0 || json.size() - start <= bytes)) {
    for (int column = 0; column < area.columns; ++column) {
      if (row + column > 0) json += ',';
      if (values && area.row + row <= lastRow && area.column + column <= lastColumn) {
        values->Append(json, row, column);
      } else {
        json += "null";
      }
    }
    ++row;
  }
  json += ']';
  return row;
}

bool AppendFormula(std::string& json, const Book& book, int row, int column) {
  const CellRangeAddress& edges = book.edges;
  if (row > edges.EndRow || column > edges.EndColumn) {
    json += "null";
    return false;
  }
  const Reference<star::table::XCell> cell = book.sheet->getCellByPosition(column, row);
  if (cell->getType() == CellContentType_FORMULA) {
    const std::string printed = PrintedFormula(book, cell, row, column);
    const std::string own = Utf8(cell->getFormula());
    // Errors and logical values that were typed are kept as formulas.
    if (own != "=" + ErrorText(cell->getError()) && own != "=TRUE()" && own != "=FALSE()") {
      AppendJson(json, NamesError(own) || printed.empty() ? WithCommas(own) : "=" + printed);
      return true;
    }
  }
  std::string value;
  AppendValues(value, book, {row, column, 1, 1}, 0);
  json.append(value, 1, value.size() - 2);
  return false;
}

std::vector<std::pair<int, int>> Holding(const Book& book, const std::string& text, std::size_t most) {
  if (text.empty()) return CellsOf(Filled(book), most);
  const Reference<star::util::XSearchable> sheet(book.sheet, UNO_QUERY);
  if (!sheet.is()) throw Failure{kNoObject, "The sheet cannot be searched."};
  const Reference<star::util::XSearchDescriptor> search = sheet->createSearchDescriptor();
  search->setSearchString(Wide(text));
  search->setPropertyValue("SearchType", Any(sal_Int16{0}));  // formulas
  for (const char* off : {"SearchCaseSensitive", "SearchWords", "SearchRegularExpression", "SearchWildcard",
                          "SearchSimilarity", "SearchBackwards"}) {
    search->setPropertyValue(rtl::OUString::createFromAscii(off), Any(false));
  }
  const Reference<star::sheet::XSheetCellRanges> found(sheet->findAll(search), UNO_QUERY);
  return found.is() ? CellsOf(found->getRangeAddresses(), most) : std::vector<std::pair<int, int>>();
}

std::pair<int, int> LastFilled(const Book& book) {
  std::pair<int, int> last = {-1, -1};
  for (const CellRangeAddress& range : Filled(book)) {
    last.first = std::max(last.first, static_cast<int>(range.EndRow));
    last.second = std::max(last.second, static_cast<int>(range.EndColumn));
  }
  return last;
}

}  // namespace orv::calc_helper
