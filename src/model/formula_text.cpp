#include "model/formula_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "model/sheet_grid.h"
#include "numerics/text.h"

namespace orv {
namespace {

enum class PieceKind { Word, Text, QuotedName, Bracket, Error, Sign };

struct Piece {
  PieceKind kind = PieceKind::Sign;
  std::string_view text;
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsWordCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_' || c == '.' || c == '$' || c == '\\' ||
         static_cast<unsigned char>(c) >= 0x80;
}

constexpr std::array<std::string_view, 8> kErrors = {"#DIV/0!", "#N/A",  "#NAME?",  "#NULL!",
                                                     "#NUM!",   "#REF!", "#VALUE!", "#GETTING_DATA"};

// Position behind a text in quotes that begins at `start`; a doubled quote belongs to it.
std::size_t QuoteEnd(std::string_view formula, std::size_t start) {
  const char quote = formula[start];
  for (std::size_t k = start + 1; k < formula.size(); ++k) {
    if (formula[k] != quote) continue;
    if (k + 1 == formula.size() || formula[k + 1] != quote) return k + 1;
    ++k;
  }
  return formula.size();
}

// Position behind a bracket. In OpenFormula it may hold a name in quotes; in the other notation brackets nest and an
// apostrophe takes the next character literally.
std::size_t BracketEnd(std::string_view formula, std::size_t start, bool openFormula) {
  int depth = 0;
  for (std::size_t k = start; k < formula.size(); ++k) {
    if (formula[k] == '\'') {
      k = openFormula ? QuoteEnd(formula, k) - 1 : k + 1;
    } else if (formula[k] == '[') {
      ++depth;
    } else if (formula[k] == ']' && --depth == 0) {
      return k + 1;
    }
  }
  return formula.size();
}

std::vector<Piece> Pieces(std::string_view formula, bool openFormula) {
  std::vector<Piece> pieces;
  for (std::size_t k = 0; k < formula.size();) {
    const char c = formula[k];
    PieceKind kind = PieceKind::Sign;
    std::size_t end = k + 1;
    if (c == '"' || c == '\'') {
      kind = c == '"' ? PieceKind::Text : PieceKind::QuotedName;
      end = QuoteEnd(formula, k);
    } else if (c == '[') {
      kind = PieceKind::Bracket;
      end = BracketEnd(formula, k, openFormula);
    } else if (c == '#') {
      for (const std::string_view error : kErrors) {
        if (!formula.substr(k).starts_with(error)) continue;
        kind = PieceKind::Error;
        end = k + error.size();
      }
    } else if (IsWordCharacter(c)) {
      kind = PieceKind::Word;
      while (end < formula.size() && IsWordCharacter(formula[end])) ++end;
    }
    pieces.push_back({kind, formula.substr(k, end - k)});
    k = end;
  }
  return pieces;
}

std::optional<FormulaReference> ReadReference(std::string_view text) {
  FormulaReference reference;
  std::size_t k = 0;
  const auto dollar = [&] {
    const bool found = k < text.size() && text[k] == '$';
    if (found) ++k;
    return found;
  };
  bool fixed = dollar();
  const std::size_t letters = k;
  while (k < text.size() && IsLetter(text[k])) ++k;
  if (k > letters) {
    const std::optional<int> column = ColumnFromLetters(text.substr(letters, k - letters));
    if (!column) return std::nullopt;
    reference.column = *column;
    reference.fixedColumn = fixed;
    if (k == text.size()) return reference;
    fixed = dollar();
  }
  if (k == text.size() || text.size() - k > 7) return std::nullopt;
  for (; k < text.size(); ++k) {
    if (!IsDigit(text[k])) return std::nullopt;
    reference.row = reference.row * 10 + (text[k] - '0');
  }
  reference.fixedRow = fixed;
  if (reference.row < 1 || reference.row > kSheetRows) return std::nullopt;
  return reference;
}

void AppendNumber(std::string& out, int number) {
  std::array<char, 12> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  out.append(digits.data(), end);
}

void AppendMoved(std::string& out, const FormulaReference& reference, int rows, int columns) {
  const int row = reference.row + (reference.fixedRow ? 0 : rows);
  const int column = reference.column + (reference.fixedColumn ? 0 : columns);
  const bool rowInside = reference.row == 0 || (row >= 1 && row <= kSheetRows);
  const bool columnInside = reference.column == 0 || (column >= 1 && column <= kSheetColumns);
  if (!rowInside || !columnInside) {
    out += "#REF!";
    return;
  }
  if (reference.column > 0) {
    if (reference.fixedColumn) out += '$';
    out += ColumnLetters(column);
  }
  if (reference.row > 0) {
    if (reference.fixedRow) out += '$';
    AppendNumber(out, row);
  }
}

// Whether piece k is a reference: no function, no name of a sheet; a lone column or row only beside a colon with its
// like on the other side.
std::optional<FormulaReference> ReferenceAt(const std::vector<Piece>& pieces, std::size_t k) {
  const auto read = [&](std::size_t n) -> std::optional<FormulaReference> {
    if (n >= pieces.size() || pieces[n].kind != PieceKind::Word) return std::nullopt;
    if (n + 1 < pieces.size() && (pieces[n + 1].text == "(" || pieces[n + 1].text == "!")) return std::nullopt;
    return ReadReference(pieces[n].text);
  };
  const std::optional<FormulaReference> reference = read(k);
  if (!reference || (reference->row > 0 && reference->column > 0)) return reference;
  const auto like = [&](std::size_t colon, std::size_t n) {
    if (colon >= pieces.size() || pieces[colon].text != ":") return false;
    const std::optional<FormulaReference> other = read(n);
    return other && (other->row > 0) == (reference->row > 0) && (other->column > 0) == (reference->column > 0);
  };
  if (like(k + 1, k + 2) || (k >= 2 && like(k - 1, k - 2))) return reference;
  return std::nullopt;
}

// A word without the prefixes under which files store functions that came later than the format.
std::string_view WithoutStorePrefix(std::string_view word) {
  static constexpr std::array<std::string_view, 9> kPrefixes = {"_xlfn.",          "_xlws.",         "_xlpm.",
                                                                "_xludf.",         "COM.MICROSOFT.", "ORG.LIBREOFFICE.",
                                                                "ORG.OPENOFFICE.", "COM.SUN.STAR.",  "LEGACY."};
  for (bool again = true; again;) {
    again = false;
    for (const std::string_view prefix : kPrefixes) {
      if (!word.starts_with(prefix)) continue;
      word.remove_prefix(prefix.size());
      again = true;
    }
  }
  return word;
}

}  // namespace

SharedFormula::SharedFormula(std::string_view formula, CellPosition from) : from_(from) {
  const std::vector<Piece> pieces = Pieces(formula, false);
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    const std::optional<FormulaReference> reference = ReferenceAt(pieces, k);
    if (reference) {
      parts_.push_back({std::move(rest_), *reference});
      rest_.clear();
    } else {
      rest_ += pieces[k].text;
    }
  }
}

std::string SharedFormula::At(CellPosition to) const {
  std::string out;
  for (const Part& part : parts_) {
    out += part.before;
    AppendMoved(out, part.reference, to.row - from_.row, to.column - from_.column);
  }
  return out += rest_;
}

std::string QuotedSheetName(std::string_view name) {
  const bool plain =
      !name.empty() && !IsDigit(name[0]) && name[0] != '.' &&
      std::all_of(name.begin(), name.end(), [](char c) { return IsWordCharacter(c) && c != '$' && c != '\\'; });
  if (plain && !ParseA1Cell(name)) return std::string(name);
  return "'" + ReplaceAll(name, "'", "''") + "'";
}

namespace {

// The name that begins the text, without its quotes; removed from the text.
std::string TakeName(std::string_view& text, std::string_view ends) {
  if (text.starts_with('\'')) {
    const std::size_t end = QuoteEnd(text, 0);
    const std::string_view quoted = text.substr(1, end - 1);
    text.remove_prefix(end);
    return ReplaceAll(quoted.substr(0, quoted.ends_with('\'') ? quoted.size() - 1 : quoted.size()), "''", "'");
  }
  const std::size_t end = std::min(text.find_first_of(ends), text.size());
  std::string name(text.substr(0, end));
  text.remove_prefix(end);
  return name;
}

// One end of an OpenFormula reference: ".A1", "$Sheet1.$A$1", "'file:///a/b.ods'#$Sheet1.A1".
struct OpenReference {
  std::string book;
  std::string sheet;
  std::string cell;
};

OpenReference ReadOpenReference(std::string_view text) {
  OpenReference reference;
  if (text.starts_with('\'') && text.substr(QuoteEnd(text, 0)).starts_with('#')) {
    const std::string source = TakeName(text, "");
    reference.book = source.substr(source.find_last_of("/\\") + 1);
    text.remove_prefix(1);
  }
  const bool hasSheet = !text.starts_with('.') && text.find('.') != std::string_view::npos;
  if (hasSheet && text.starts_with('$')) text.remove_prefix(1);
  if (hasSheet) reference.sheet = TakeName(text, ".");
  if (text.starts_with('.')) text.remove_prefix(1);
  reference.cell = std::string(text);
  return reference;
}

std::string SheetPrefix(const OpenReference& first, const OpenReference& second) {
  if (first.sheet.empty()) return {};
  const bool several = !second.sheet.empty() && second.sheet != first.sheet;
  if (first.book.empty() && !several) return QuotedSheetName(first.sheet) + "!";
  const bool plain = first.book.empty() && QuotedSheetName(first.sheet) == first.sheet &&
                     QuotedSheetName(second.sheet) == second.sheet;
  std::string name = first.book.empty() ? "" : "[" + first.book + "]";
  name += several ? first.sheet + ":" + second.sheet : first.sheet;
  return plain ? name + "!" : "'" + ReplaceAll(name, "'", "''") + "'!";
}

// The reference between brackets in A1 notation.
std::string ReferenceFromBracket(std::string_view bracket) {
  if (Contains(bracket, "#REF!")) return "#REF!";
  bracket.remove_prefix(1);
  if (bracket.ends_with(']')) bracket.remove_suffix(1);
  std::size_t colon = 0;
  while (colon < bracket.size() && bracket[colon] != ':')
    colon = bracket[colon] == '\'' ? QuoteEnd(bracket, colon) : colon + 1;
  const OpenReference first = ReadOpenReference(bracket.substr(0, colon));
  if (colon == bracket.size()) return SheetPrefix(first, {}) + first.cell;
  const OpenReference second = ReadOpenReference(bracket.substr(colon + 1));
  return SheetPrefix(first, second) + first.cell + ":" + second.cell;
}

// "'Sheet 1':Last!" at piece k, as one writer spells a row of sheets whose names need quotes: "'Sheet 1:Last'!". Empty
// when the pieces are something else.
std::string SheetRow(const std::vector<Piece>& pieces, std::size_t k) {
  const auto isName = [&](std::size_t n) {
    return pieces[n].kind == PieceKind::QuotedName || pieces[n].kind == PieceKind::Word;
  };
  if (k + 3 >= pieces.size() || pieces[k + 1].text != ":" || pieces[k + 3].text != "!") return {};
  if (!isName(k) || !isName(k + 2) || ReferenceAt(pieces, k)) return {};
  if (pieces[k].kind == PieceKind::Word && pieces[k + 2].kind == PieceKind::Word) return {};
  OpenReference first;
  OpenReference last;
  std::string_view firstText = pieces[k].text;
  std::string_view lastText = pieces[k + 2].text;
  first.sheet = TakeName(firstText, "");
  last.sheet = TakeName(lastText, "");
  return SheetPrefix(first, last);
}

}  // namespace

std::string FormulaFromXlsx(std::string_view stored) {
  while (stored.starts_with(' ') || stored.starts_with('\n')) stored.remove_prefix(1);
  if (stored.starts_with('=')) stored.remove_prefix(1);
  std::string out = "=";
  const bool plain =
      !Contains(stored, "_xl") && !Contains(stored, "~") && !Contains(stored, "':") && !Contains(stored, ":'");
  if (plain) return out.append(stored);
  const std::vector<Piece> pieces = Pieces(stored, false);
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    const std::string sheets = SheetRow(pieces, k);
    if (!sheets.empty()) {
      out += sheets;
      k += 3;
    } else if (pieces[k].kind == PieceKind::Word) {
      out += WithoutStorePrefix(pieces[k].text);
    } else {
      out += pieces[k].text == "~" ? "," : pieces[k].text;  // one writer leaves its own sign for a union
    }
  }
  return out;
}

std::string FormulaFromOds(std::string_view stored) {
  const std::size_t equals = stored.find('=');
  if (equals == std::string_view::npos) return "=" + std::string(stored);
  const std::string_view notation = stored.substr(0, equals);
  stored.remove_prefix(equals + 1);
  while (stored.starts_with(' ')) stored.remove_prefix(1);
  if (StartsWith(notation, "msoxl")) return FormulaFromXlsx(stored);
  std::string out = "=";
  int inlineArray = 0;
  for (const Piece& piece : Pieces(stored, true)) {
    if (piece.kind == PieceKind::Bracket) {
      out += ReferenceFromBracket(piece.text);
    } else if (piece.kind == PieceKind::Word) {
      out += WithoutStorePrefix(piece.text);
    } else if (piece.kind != PieceKind::Sign) {
      out += piece.text;
    } else if (piece.text == ";" || piece.text == "~") {
      out += ",";
    } else if (piece.text == "|" && inlineArray > 0) {
      out += ";";
    } else if (piece.text == "!") {
      out += " ";
    } else {
      if (piece.text == "{") ++inlineArray;
      if (piece.text == "}") --inlineArray;
      out += piece.text;
    }
  }
  return out;
}

}  // namespace orv
