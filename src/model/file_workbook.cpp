#include "model/file_workbook.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include "model/ods_file.h"
#include "model/text_file.h"
#include "model/xlsx_file.h"
#include "model/zip_archive.h"
#include "numerics/failure.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr std::uintmax_t kMaxFileBytes = std::uintmax_t{256} << 20U;

std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

// The bytes of a regular file of sensible size.
std::string ReadFile(const std::filesystem::path& path, const std::string& fileName) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) throw WorkbookError(fileName, "does not exist.");
  if (std::filesystem::is_directory(status)) throw WorkbookError(fileName, "is a folder, not a workbook.");
  if (!std::filesystem::is_regular_file(status)) throw WorkbookError(fileName, "is not a file that can be read.");
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (!error && size > kMaxFileBytes) {
    throw WorkbookError(fileName, "is too large: it has more than " + std::to_string(kMaxFileBytes >> 20U) + " MB.");
  }
  std::ifstream stream(path, std::ios::binary);
  if (error || !stream) throw WorkbookError(fileName, "cannot be opened; check that you may read it.");
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (stream.bad()) throw WorkbookError(fileName, "cannot be read.");
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

std::string Utf16Of(std::string_view text) {
  std::string out;
  for (const char c : text) {
    out.push_back(c);
    out.push_back('\0');
  }
  return out;
}

// The compound files of older programs; a workbook with a password is kept in one as well.
[[noreturn]] void RefuseCompoundFile(std::string_view bytes, const std::string& fileName) {
  if (Contains(bytes, Utf16Of("EncryptedPackage"))) {
    throw WorkbookError(fileName, "is encrypted; save it without a password first.");
  }
  if (Contains(bytes, Utf16Of("Workbook")) || Contains(bytes, Utf16Of("Book"))) {
    throw WorkbookError(fileName, "is a workbook of the old binary format (.xls); save it as .xlsx or .ods first.");
  }
  throw WorkbookError(fileName, "is a document of another kind, not a workbook.");
}

// What a file is that begins like this; nullptr for what may be a text.
const char* ForeignKind(std::string_view bytes) {
  using namespace std::string_view_literals;
  static constexpr std::array<std::pair<std::string_view, const char*>, 13> kKinds = {{
      {"%PDF-"sv, "a PDF document"},
      {"\x89PNG"sv, "a picture"},
      {"\xFF\xD8\xFF"sv, "a picture"},
      {"GIF8"sv, "a picture"},
      {"{\\rtf"sv, "a text document"},
      {"\x1F\x8B"sv, "a packed archive"},
      {"Rar!"sv, "a packed archive"},
      {"7z\xBC\xAF"sv, "a packed archive"},
      {"<?xml"sv, "an XML document"},
      {"<!DOCTYPE"sv, "a page of the web"},
      {"<!doctype"sv, "a page of the web"},
      {"<html"sv, "a page of the web"},
      {"<HTML"sv, "a page of the web"},
  }};
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  for (const auto& [start, kind] : kKinds) {
    if (bytes.starts_with(start)) return kind;
  }
  return nullptr;
}

std::string Stem(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string::npos || dot == 0 ? fileName : fileName.substr(0, dot);
}

}  // namespace

WorkbookContents ReadWorkbook(std::string bytes, const std::string& fileName, const Locale& locale,
                              const WorkbookLimits& limits) {
  using namespace std::string_view_literals;
  if (bytes.empty()) throw WorkbookError(fileName, "is empty.");
  WorkbookBuilder builder(fileName, locale, limits);
  if (bytes.starts_with("PK\x03\x04"sv) || bytes.starts_with("PK\x05\x06"sv)) {
    ZipArchive archive(std::move(bytes), fileName);
    if (IsXlsx(archive)) {
      ReadXlsx(archive, builder);
    } else if (IsOds(archive)) {
      ReadOds(archive, builder);
    } else {
      builder.Fail("is an archive of other files, not a workbook.");
    }
    return builder.Finish();
  }
  if (bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv)) RefuseCompoundFile(bytes, fileName);
  if (const char* kind = ForeignKind(bytes)) builder.Fail("is " + std::string(kind) + ", not a workbook.");
  if (!IsText(bytes)) builder.Fail("is not a workbook: neither .xlsx nor .ods nor tab-separated text.");
  ReadText(bytes, Stem(fileName), builder);
  return builder.Finish();
}

FileWorkbook::FileWorkbook(const std::filesystem::path& path, const Locale& locale) : path_(path), locale_(locale) {
  if (!path_.has_filename() && path_.has_parent_path()) path_ = path_.parent_path();  // "folder/"
  fileName_ = PathText(path_.has_filename() ? path_.filename() : path_);
  std::error_code error;
  const std::filesystem::path folder = path_.has_parent_path() ? path_.parent_path() : ".";
  const std::filesystem::path absolute = std::filesystem::canonical(folder, error);
  if (!error) path_ = absolute / path_.filename();
  Load();
}

void FileWorkbook::Load() {
  contents_ = ReadWorkbook(ReadFile(path_, fileName_), fileName_, locale_);
  if (!chosenSheet_.empty()) ChooseSheet(chosenSheet_);
  if (!chosenCell_.empty()) ChooseCell(chosenCell_);
}

WorkbookSheet& FileWorkbook::Sheet() {
  if (!attached_) Raise(FailureNumber::ObjectVariableNotSet);
  return contents_.sheets[contents_.activeSheet];
}

void FileWorkbook::ChooseSheet(const std::string& name) {
  const auto& sheets = contents_.sheets;
  auto found = std::find_if(sheets.begin(), sheets.end(), [&](const WorkbookSheet& s) { return s.name == name; });
  if (found == sheets.end()) {
    const std::string wanted = LowerCase(name);
    found =
        std::find_if(sheets.begin(), sheets.end(), [&](const WorkbookSheet& s) { return LowerCase(s.name) == wanted; });
  }
  if (found == sheets.end()) {
    std::string list;
    for (const std::string& existing : SheetNames()) list += (list.empty() ? "'" : ", '") + existing + "'";
    throw WorkbookError(fileName_, "has no sheet '" + name + "'. Its sheets are " + list + ".");
  }
  contents_.activeSheet = static_cast<std::size_t>(found - sheets.begin());
  chosenSheet_ = name;
}

void FileWorkbook::ChooseCell(const std::string& a1Cell) {
  const std::optional<CellPosition> cell = ParseA1Cell(a1Cell);
  if (!cell) {
    throw WorkbookError(fileName_, "has no cell '" + a1Cell + "'. Name a cell by its column letters and its row: B7.");
  }
  contents_.sheets[contents_.activeSheet].activeCell = *cell;
  chosenCell_ = a1Cell;
}

std::vector<std::string> FileWorkbook::SheetNames() const {
  std::vector<std::string> names;
  for (const WorkbookSheet& sheet : contents_.sheets) names.push_back(sheet.name);
  return names;
}

std::vector<std::string> FileWorkbook::warnings() const {
  std::vector<std::string> all = contents_.warnings;
  const std::vector<std::string>& ofSheet = contents_.sheets[contents_.activeSheet].warnings;
  all.insert(all.end(), ofSheet.begin(), ofSheet.end());
  return all;
}

void FileWorkbook::Attach() {
  if (released_) {
    try {
      Load();
    } catch (const WorkbookError& error) {
      Raise(FailureNumber::CannotCreateObject, error.what());
    }
  }
  released_ = false;
  attached_ = true;
}

void FileWorkbook::Release() {
  released_ = released_ || attached_;
  attached_ = false;
}

std::string FileWorkbook::WorkbookPath() {
  Sheet();
  return PathText(path_.parent_path());
}

int FileWorkbook::WindowCount() {
  Sheet();
  return 1;
}

std::string FileWorkbook::WindowCaption(int window) {
  Sheet();
  if (window != 1) Raise(FailureNumber::SubscriptOutOfRange);
  return fileName_;
}

std::string FileWorkbook::SheetName() {
  return Sheet().name;
}

CellPosition FileWorkbook::ActiveCell() {
  return Sheet().activeCell;
}

void FileWorkbook::Activate(CellPosition cell) {
  WorkbookSheet& sheet = Sheet();
  if (!InsideSheet(cell)) Raise(FailureNumber::ApplicationDefined);
  sheet.activeCell = cell;
}

std::string FileWorkbook::Formula(CellPosition cell) {
  return Sheet().grid.Formula(cell);
}

std::string FileWorkbook::Value(CellPosition cell) {
  return Sheet().grid.Value(cell);
}

void FileWorkbook::Find(const std::string& part) {
  WorkbookSheet& sheet = Sheet();
  sheet.activeCell = sheet.grid.Find(part, sheet.activeCell);
}

std::string FileWorkbook::RangeText(const std::string& a1Range) {
  return Sheet().grid.RangeText(a1Range);
}

bool FileWorkbook::PrintsDecimalComma(CellPosition) {
  Sheet();
  return locale_.decimalSeparator == ",";
}

}  // namespace orv
