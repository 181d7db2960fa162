#include "calc_helper/requests.h"

#include <nlohmann/json.hpp>

#include "calc_helper/cells.h"
#include "calc_helper/failure.h"
#include "calc_helper/uno_text.h"

namespace orv::calc_helper {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kBytesOfCells = std::size_t{4} << 20U;
constexpr std::size_t kMostFound = 100'000;

std::string Member(const char* name, const std::string& text) {
  std::string json = std::string(",\"") + name + "\":";
  AppendJson(json, text);
  return json;
}
std::string Member(const char* name, int number) {
  return std::string(",\"") + name + "\":" + std::to_string(number);
}
std::string Member(const char* name, bool value) {
  return std::string(",\"") + name + "\":" + (value ? "true" : "false");
}

std::string RangeMembers(const Book& book, const Json& request) {
  const Area area = {request.at("row").get<int>() - 1, request.at("column").get<int>() - 1,
                     request.at("rows").get<int>(), request.at("columns").get<int>()};
  std::string json = ",\"cells\":";
  const int rows = AppendValues(json, book, area, kBytesOfCells);
  return json + Member("rows", rows);
}

std::string FindMembers(const Book& book, const Json& request) {
  std::string json = ",\"found\":[";
  for (const auto& [row, column] : Holding(book, request.at("text").get<std::string>(), kMostFound)) {
    if (json.back() != '[') json += ',';
    json += '[' + std::to_string(row + 1) + ',' + std::to_string(column + 1) + ']';
  }
  return json + ']';
}

}  // namespace

std::string Requests::Answer(const std::string& line) {
  Json request;
  std::string members;
  try {
    request = Json::parse(line);
    members = Members(line);
  } catch (const Failure& failure) {
    members = Member("failure", failure.number) + Member("text", failure.text);
  } catch (const star::uno::Exception& exception) {
    // The office is gone, or only the workbook.
    const bool alive = office_.Alive();
    book_ = {};
    if (!alive) office_.Drop();
    members = Member("failure", alive ? kNoObject : kNoProgram) + Member("text", Utf8(exception.Message));
  } catch (const std::exception& error) {
    members = Member("failure", kRefused) + Member("text", std::string(error.what()));
  }
  const auto id = request.is_object() ? request.value("id", 0LL) : 0LL;
  return "{\"id\":" + std::to_string(id) + members + "}\n";
}

std::string Requests::Members(const std::string& line) {
  const Json request = Json::parse(line);
  const std::string what = request.at("do").get<std::string>();
  if (what == "attach") return Attach();
  if (what == "snapshot") return Snapshot();
  if (what == "release") {
    book_ = {};
    return {};
  }
  const Book& book = Attached();
  if (what == "names") return Names();
  if (what == "range") return RangeMembers(book, request);
  if (what == "find") return FindMembers(book, request);
  if (what == "used") {
    const auto [row, column] = LastFilled(book);
    return Member("row", row + 1) + Member("column", column + 1);
  }
  if (what == "formula") {
    std::string json = ",\"cells\":[";
    const bool formula =
        AppendFormula(json, book, request.at("row").get<int>() - 1, request.at("column").get<int>() - 1);
    return json + ']' + Member("formula", formula);
  }
  throw Failure{kRefused, "There is no request '" + what + "'."};
}

const Book& Requests::Attached() const {
  if (!book_.is()) throw Failure{kNoObject, "No spreadsheet is attached to."};
  return book_;
}

std::string Requests::Attach() {
  book_ = {};
  office_.Connect();
  try {
    book_ = office_.Front();
  } catch (const Failure&) {
    // The office runs without a workbook: each operation then tells so.
  }
  office_.LookUpSeparator();
  return Member("workbook", book_.is()) + Member("row", book_.row + 1) + Member("column", book_.column + 1) +
         Member("separator", office_.decimalSeparator());
}

std::string Requests::Names() {
  const Book& book = Attached();
  std::string captions = ",\"captions\":[";
  for (const std::string& caption : Captions(book)) {
    if (captions.back() != '[') captions += ',';
    AppendJson(captions, caption);
  }
  return captions + ']' + Member("folder", Folder(book)) + Member("sheet", SheetName(book));
}

std::string Requests::Snapshot() {
  office_.Connect();
  const Book book = office_.Front();
  const std::vector<std::string> captions = Captions(book);
  std::string json = Member("application", std::string("Calc")) + Member("workbook", Title(book)) +
                     Member("windows", static_cast<int>(captions.size())) + Member("caption", captions.front()) +
                     Member("sheet", SheetName(book)) + Member("row", book.row + 1) +
                     Member("column", book.column + 1) + Member("separator", office_.decimalSeparator()) +
                     ",\"cells\":[";
  const bool formula = AppendFormula(json, book, book.row, book.column);
  return json + ']' + Member("formula", formula);
}

}  // namespace orv::calc_helper
