#include <cmath>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "model/cell_table.h"
#include "model/cell_text.h"
#include "model/directives.h"
#include "numerics/number_format.h"

// What users type in cells: numbers, lists of numbers and words, curves and directives, a line each.
namespace orv::testing {
namespace {

void CheckTexts(const std::string& text) {
  for (const std::string& changed :
       {UpperCase(text), LowerCase(text), UpperTrim(text), RepairMinus(text), CleanFileName(text), SoftBlanks(text)}) {
    RequireText(changed, "a changed text is a text");
    Require(changed.size() <= text.size(), "a changed text is no longer", text);
  }
  Require(UpperCase(text).size() == text.size(), "capitals take the room of small letters", text);
  Require(RepairMinus(RepairMinus(text)) == RepairMinus(text), "a minus is repaired at once", text);
  Require(CleanFileName(text).find_first_of("\\/:@|") == std::string::npos, "a file name is clean", text);
  const std::size_t count = CharacterCount(text);
  Require(LeftCharacters(text, count) == text, "all characters are the text", text);
  RequireText(LeftCharacters(text, count / 2), "the front of a text is a text");
  Require(CharacterCount(LeftCharacters(text, count / 2)) == count / 2, "characters are counted", text);
  std::string separator;
  std::string first;
  std::string second;
  Require(NormaliseNameSeparators(text, separator).find_first_of(";%$@") == std::string::npos, "one separator", text);
  SplitTwoNames(text, first, second);
  Require(!Contains(first, "|") && Trim(first) == first && Trim(second) == second, "names are split", text);
}

// Runs a reader that may raise a failure; nothing else.
template <class Statement>
void Try(Statement&& statement) {
  try {
    statement();
  } catch (const RuntimeFailure& failure) {
    RequireText(failure.description(), "a failure is described by a text");
  }
}

void CheckNumbers(const std::string& text, CellText& reader) {
  const double number = reader.ReadNumber(text);
  Require(std::isfinite(number), "a number is finite", text);
  reader.ReadNumberAt(text, "cell A1");
  Try([&] { Require(std::isfinite(LeadingNumber(text)), "a number is finite", text); });
  std::vector<double> values;
  for (int wanted : {0, 3, 20}) {
    std::string rest = text;
    int count = wanted;
    Try([&] {
      reader.SplitNumbers(rest, values, count);
      Require(count >= 0 && static_cast<std::size_t>(count) < CellText::kMaxList, "numbers are counted", text);
      Require(wanted == 0 || count <= wanted, "no more numbers than wanted", text);
    });
    RequireText(rest, "the rest of a line is a text");
    std::vector<std::string> words;
    rest = text;
    count = wanted;
    Try([&] { reader.SplitWords(rest, words, count); });
    for (const std::string& word : words) RequireText(word, "a word is a text");
  }
  for (const double value : values) Require(std::isfinite(value), "a number is finite", text);
  double a = 0, b = 0, c = 0, d = 0;
  std::string rest = text;
  reader.Extract4(rest, a, b, c, d);
  rest = text;
  Require(reader.ExtractWords10(rest).size() == 10, "ten words", text);
}

void CheckTablesAndDirectives(const std::string& text, CellText& reader) {
  Try([&] {
    XYTable table;
    int count = 0;
    ReadTable(text, table, count, reader);
    for (int row = 1; row <= table.count(); ++row) {
      Require(std::isfinite(table.x(row)) && std::isfinite(table.y(row)), "a curve is of numbers", text);
    }
    Interpolate(table, 1, reader.prompt());
  });
  std::vector<std::string> captured;
  const Directives d = ParseDirectives(text, reader, captured);
  for (const double value : {d.MomentOrigin[1], d.RotationFrom, d.RotationStep, d.Twall, d.LogScale, d.NotHidden}) {
    Require(std::isfinite(value), "a directive is a number", text);
  }
  Require(d.TableList.size() <= kMaxTableList + 1, "the list of primitives is bounded", text);
  for (const std::string& word : captured) RequireText(word, "a captured word is a text");
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Require(Windows1252FromUtf8(Utf8FromWindows1252(bytes)) == bytes, "the code page is read and written alike");
  RequireText(CleanUtf8(bytes), "cleaned bytes are a text");
  FuzzInput input(data, size);
  for (int line = 0; line < 4 && !input.Empty(); ++line) {
    const std::string text = input.TextLine();
    CheckTexts(text);
    for (const Locale& locale : FuzzLocales()) {
      FuzzDialogs dialogs;
      ErrorPrompt prompt(dialogs);
      CellText reader(prompt, locale);
      reader.setCommaDecimal(locale.decimalSeparator == "," ? 1 : 0);
      reader.setPlace("cell A1");
      CheckNumbers(text, reader);
      CheckTablesAndDirectives(text, reader);
    }
    FuzzDialogs dialogs;
    ErrorPrompt prompt(dialogs);
    CellText reader(prompt, Locale{});
    const double number = reader.ReadNumber(text);
    Require(reader.ReadNumber(ExactText(number)) == number, "a number is read as it was written", text);
  }
  return 0;
}
