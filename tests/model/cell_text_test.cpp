#include "model/cell_text.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

using testing::ScriptedDialogs;

const char* const kTooFew1 = "Input data in Excel sheet not correct: line ==>";
const char* const kTooFew2 = "<== !   Please read user manual   ";
const char* const kAbortQuestion = "Do you want to abort? See Hallam if the error cannot be solved ";

struct Reader {
  explicit Reader(const Locale& locale = {}) : text(prompt, locale) {}
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText text;
};

const Locale kPoint{".", ""};
const Locale kComma{",", ""};
const Locale kPointCommas{".", ","};
const Locale kCommaDots{",", "."};
const Locale kCommaNarrowBlanks{",", "\xE2\x80\xAF"};

struct NumberRow {
  const char* text;
  Locale locale;
  double expected;
};

void CheckNumbers(std::initializer_list<NumberRow> rows) {
  for (const NumberRow& row : rows) {
    SCOPED_TRACE("[" + std::string(row.text) + "] decimal '" + row.locale.decimalSeparator + "' thousands '" +
                 row.locale.thousandSeparator + "'");
    Reader reader(row.locale);
    EXPECT_DOUBLE_EQ(reader.text.ReadNumber(row.text), row.expected);
    EXPECT_TRUE(reader.dialogs.boxes.empty());
  }
}

TEST(ReadNumber, OfAnEmptyTextIsZero) {
  CheckNumbers({{"", kPoint, 0}, {"    ", kPoint, 0}, {"\xC2\xA0", kPoint, 0}, {" \xC2\xA0 ", kComma, 0}});
}

TEST(ReadNumber, TakesTheLeadingNumber) {
  CheckNumbers({{"12", kPoint, 12},     {"-12.5", kPoint, -12.5},   {"+3", kPoint, 3},     {".5", kPoint, 0.5},
                {"-.5", kPoint, -0.5},  {"5.", kPoint, 5},          {"007", kPoint, 7},    {"1e3", kPoint, 1000},
                {"1E-2", kPoint, 0.01}, {"-1.5e+2x", kPoint, -150}, {"12abc", kPoint, 12}, {"1.2.3", kPoint, 1.2},
                {"1e", kPoint, 1},      {"1e+", kPoint, 1},         {"1d3", kPoint, 1},    {"3-4", kPoint, 3},
                {"5m²", kPoint, 5},     {"0x10", kPoint, 0},        {"&H10", kPoint, 0},   {"abc", kPoint, 0},
                {"e5", kPoint, 0},      {"x1", kPoint, 0},          {".", kPoint, 0},      {"-", kPoint, 0},
                {"--1", kPoint, 0},     {"+-1", kPoint, 0},         {"-.", kPoint, 0},     {"(5)", kPoint, 0},
                {"\xFF", kPoint, 0}});
}

TEST(ReadNumber, DropsBlanksInside) {
  CheckNumbers({{"12 345", kPoint, 12345},
                {"12\xC2\xA0"
                 "345",
                 kPoint, 12345},
                {" - 5 ", kPoint, -5},
                {"1 e 3", kPoint, 1000},
                {"1 234,5", kComma, 1234.5},
                {"1\xE2\x80\xAF"
                 "234,5",
                 kCommaNarrowBlanks, 1234.5}});
}

TEST(ReadNumber, TakesOneCommaByItsPlace) {
  CheckNumbers({{"1,5", kPoint, 1.5},
                {"1,5", kComma, 1.5},
                {"1,5", kCommaDots, 1.5},
                {"-1,25", kPoint, -1.25},
                {"1,500", kComma, 1.5},
                {"1,500", kCommaDots, 1.5},
                {"1,500", kPoint, 1500},
                {"-1,500", kPoint, -1500},
                {"1,5000", kPoint, 1.5},
                {",5", kPoint, 0.5},
                {",500", kPoint, 500},
                {",500", kComma, 0.5},
                {"5,", kPoint, 5},
                // the exponent counts among the three characters behind the comma: 15e2
                {"1,5e2", kPoint, 1500},
                {"1,5e2", kComma, 150},
                {"1,5e02", kPoint, 150},
                {"1, 5", kPoint, 1.5},
                {",", kPoint, 0}});
}

TEST(ReadNumber, TakesSeveralCommasOrAPointBesideForThousands) {
  CheckNumbers({{"1,234.5", kPoint, 1234.5},
                {"1,234.5", kPointCommas, 1234.5},
                {"1,234.5", kComma, 1234.5},
                {"1,234,567", kPoint, 1234567},
                {"1,234,567", kComma, 1234567},
                {"1,2,3", kPoint, 123},
                {"1.234,5", kPoint, 1.2345},
                {",,", kPoint, 0}});
}

TEST(ReadNumber, LosesTheThousandsSeparatorOfTheLocaleFirst) {
  CheckNumbers({{"1.5", kCommaDots, 15},
                {"1.234,5", kCommaDots, 1234.5},
                {"1.234", kCommaDots, 1234},
                {"1,234.5", kCommaDots, 1.2345},
                {"1,500", kPointCommas, 1500},
                {"1,5", kPointCommas, 15},
                {"1,234,567", kPointCommas, 1234567}});
}

TEST(ReadNumber, TakesQuotesOff) {
  CheckNumbers({{"\"12\"", kPoint, 12},
                {"\"12", kPoint, 12},
                {"12\"", kPoint, 12},
                {"\"-1.5e1\"", kPoint, -15},
                {"\"\"", kPoint, 0},
                {"\"", kPoint, 0},
                {"\"\"5\"\"", kPoint, 0},  // one quote only at each end
                {"\" 7 \"", kPoint, 7},
                // with a comma the kept text, still quoted, is read
                {"\"1,5\"", kPoint, 0},
                {"\"1,500\"", kComma, 0},
                {"\"1,234,567\"", kPoint, 0},
                {"1,5\"", kPoint, 1.5},
                {"1,50\"", kPoint, 150},  // the quote counts as a character behind the comma
                {"1,50\"", kComma, 1.5},
                {"1,500\"", kPoint, 1.5}});
}

TEST(ReadNumber, TellsANumberTooLargeAndGoesOn) {
  const std::string zeros(400, '0');
  for (const std::string& text : {std::string("1e999"), "-1" + zeros, "1" + zeros + "e-5", std::string("0.1e400"),
                                  std::string("1e99999999999999999999")}) {
    SCOPED_TRACE(text.substr(0, 20) + " of " + std::to_string(text.size()) + " characters");
    Reader reader;
    EXPECT_EQ(reader.text.ReadNumber(text), 0);
    ASSERT_EQ(reader.dialogs.boxes.size(), 1U);
    EXPECT_EQ(reader.dialogs.boxes[0].text, "Overflow");
    EXPECT_EQ(reader.dialogs.boxes[0].title, "ERROR n° 6");
    EXPECT_EQ(reader.dialogs.boxes[0].buttons, Buttons::Ok);
  }
}

TEST(ReadNumber, ReadsWhatIsTooSmallAsZero) {
  const std::string zeros(400, '0');
  for (const std::string& text : {std::string("1e-999"), "0." + zeros + "1", "-0." + zeros + "1e5",
                                  std::string("0e999"), "0" + zeros + "e99", std::string("1e-99999999999999999999")}) {
    SCOPED_TRACE(text.substr(0, 20) + " of " + std::to_string(text.size()) + " characters");
    Reader reader;
    EXPECT_EQ(reader.text.ReadNumber(text), 0);
    EXPECT_TRUE(reader.dialogs.boxes.empty());
  }
  Reader reader;
  EXPECT_DOUBLE_EQ(reader.text.ReadNumber("1" + zeros + "e-399"), 10);
}

TEST(UpperTrim, IsTheFormOfKeywords) {
  EXPECT_EQ(UpperTrim("  rectOriented "), "RECTORIENTED");
  EXPECT_EQ(UpperTrim(""), "");
  EXPECT_EQ(UpperTrim(" é a "), "É A");
}

TEST(RepairMinus, JoinsAMinusToItsNumber) {
  struct Row {
    const char* text;
    const char* expected;
  };
  for (const Row& row : {Row{"- 5", "-5"},
                         Row{"-   5", "-5"},
                         Row{"a - b", "a - b"},
                         Row{"5 -   3", "5 -3"},
                         Row{"rect - 1 - .2 x", "rect -1 -.2 x"},
                         Row{"- x - 7", "- x -7"},
                         Row{"- .5", "-.5"},
                         Row{"- ,5", "-,5"},
                         Row{"- +5", "-+5"},
                         Row{"- - 5", "--5"},
                         Row{"- /5", "- /5"},
                         Row{"- *5", "- *5"},
                         Row{"-5", "-5"},
                         Row{"-", "-"},
                         Row{"-   ", "-   "},
                         Row{"  - ", "  - "},
                         Row{"- é", "- é"},
                         Row{"- \t5", "- \t5"},
                         Row{"", ""},
                         Row{" 1 2 ", " 1 2 "}}) {
    SCOPED_TRACE("[" + std::string(row.text) + "]");
    EXPECT_EQ(RepairMinus(row.text), row.expected);
  }
}

TEST(SplitTwoNames, TakesTheFirstSeparator) {
  struct Row {
    const char* cell;
    const char* first;
    const char* second;
  };
  for (const Row& row : {Row{" Kapton ", "Kapton", ""}, Row{"Kapton ; Glass", "Kapton", "Glass"}, Row{"a%b", "a", "b"},
                         Row{"a$b", "a", "b"}, Row{"a@b", "a", "b"}, Row{"a|b", "a", "b"},
                         Row{"a | b ; c", "a", "b | c"}, Row{";b", "", "b"}, Row{"a;", "a", ""}, Row{"", "", ""},
                         Row{"\xC2\xA0"
                             "a\xC2\xA0z;\xC2\xA0"
                             "b",
                             "a z", "b"},
                         Row{"a,b", "a,b", ""}}) {
    SCOPED_TRACE("[" + std::string(row.cell) + "]");
    std::string first = "old", second = "old";
    SplitTwoNames(row.cell, first, second);
    EXPECT_EQ(first, row.first);
    EXPECT_EQ(second, row.second);
  }
}

TEST(NormaliseNameSeparators, GivesBars) {
  std::string separator = ";";
  EXPECT_EQ(NormaliseNameSeparators("a;b%c$d@e|f\xC2\xA0g,h", separator), "a|b|c|d|e|f g,h");
  EXPECT_EQ(separator, "|");
}

TEST(CleanFileName, RemovesWhatANameCannotHold) {
  EXPECT_EQ(CleanFileName("a\\b/c:d@e|f g"), "abcdef g");
  EXPECT_EQ(CleanFileName(""), "");
  EXPECT_EQ(CleanFileName("\\/:@|"), "");
}

TEST(NextWordEnd, IsBehindTheTextWhenNothingWasFound) {
  EXPECT_EQ(NextWordEnd(3, "abcdef"), 3U);
  EXPECT_EQ(NextWordEnd(0, "abcdef"), 7U);
  EXPECT_EQ(NextWordEnd(0, ""), 1U);
  EXPECT_EQ(NextWordEnd(0, "né"), 3U);
}

std::string CommaWarning(const std::string& text, const std::string& between) {
  return "_ string: " + text + " has 1 comma, but seems used as decimal " + between +
         " . Next time think to check the Excel sheet and replace all commas by dots to not get such warning";
}

TEST(CleanNumberLine, MakesTheBlankTheSeparator) {
  struct Row {
    const char* text;
    const char* expected;
  };
  for (const Row& row : {Row{"  1 2  ", "1 2"}, Row{"1;2;3;", "1 2 3"},
                         Row{"\xC2\xA0"
                             "1\xC2\xA0"
                             "2\xC2\xA0",
                             "1 2"},
                         Row{"1 ; 2", "1   2"}, Row{";;", ""}, Row{"", ""}, Row{"1,2,3", "1,2,3"},
                         Row{"1, 2, 3", "1  2  3"}, Row{"1,2, 3", "1 2  3"}, Row{",1", "1"}, Row{"1,", "1"},
                         Row{"a,b", "a b"}, Row{"1,5 2,5", "1,5 2,5"}, Row{"1;,2", "1  2"}}) {
    SCOPED_TRACE("[" + std::string(row.text) + "]");
    Reader reader;
    std::string text = row.text;
    reader.text.CleanNumberLine(text);
    EXPECT_EQ(text, row.expected);
  }
}

TEST(CleanNumberLine, WarnsOfTheFirstCommaOnly) {
  Reader reader;
  std::string text = " 1,2,3 ";
  reader.text.CleanNumberLine(text);
  EXPECT_EQ(reader.dialogs.log, std::vector<std::string>{CommaWarning("1,2,3", "True")});
  text = "4, 5";
  reader.text.CleanNumberLine(text);
  EXPECT_EQ(reader.dialogs.log.size(), 1U);
  EXPECT_TRUE(reader.dialogs.boxes.empty());

  Reader another;
  text = "4;, 5";
  another.text.CleanNumberLine(text);
  EXPECT_EQ(another.dialogs.log, std::vector<std::string>{CommaWarning("4 , 5", "False")});
}

TEST(CleanNumberLine, LeavesCommasToASpreadsheetThatPrintsThem) {
  Reader reader;
  reader.text.setCommaDecimal(1);
  std::string text = "1,5; 2, 5";
  reader.text.CleanNumberLine(text);
  EXPECT_EQ(text, "1,5  2, 5");
  EXPECT_TRUE(reader.dialogs.log.empty());
  // Those commas were not counted.
  reader.text.setCommaDecimal(0);
  text = "7,5";
  reader.text.CleanNumberLine(text);
  EXPECT_EQ(reader.dialogs.log.size(), 1U);
}

struct SplitRow {
  const char* text;
  int count;
  int first;
  bool tolerant;
  std::vector<double> expected;  // from `first`
  const char* rest;
  int counted;
  bool tells;
};

TEST(SplitNumbers, TakesNumbersFromTheFront) {
  for (const SplitRow& row :
       {SplitRow{"1 2 3 4", 3, 1, false, {1, 2, 3}, "4", 3, false},
        SplitRow{"1 2 3", 3, 1, false, {1, 2, 3}, "", 3, false},
        SplitRow{"1;2; 3", 3, 1, false, {1, 2, 3}, "", 3, false},
        SplitRow{"  1   -2.5 3e1 ", 3, 1, false, {1, -2.5, 30}, "", 3, false},
        SplitRow{"1 2", 3, 1, false, {1, 2}, "", 2, true}, SplitRow{"1 2", 3, 1, true, {1, 2}, "", 2, false},
        SplitRow{"", 2, 1, false, {}, "", 0, true}, SplitRow{"   ", 2, 1, true, {}, "", 0, false},
        SplitRow{"0 0 5", 3, 1, false, {0, 0, 5}, "", 3, false},
        SplitRow{"1 shift 2", 3, 1, false, {1, 0, 2}, "", 3, false},
        SplitRow{"1 2 3 4 5", 5, 3, false, {1, 2, 3}, "4 5", 5, false},
        // without a count: up to a word that reads as zero
        SplitRow{"1 2 3", 0, 1, false, {1, 2, 3}, "", 3, false},
        SplitRow{"1 2 recto 4", 0, 1, false, {1, 2}, "recto 4", 2, false},
        SplitRow{"1 0 2", 0, 1, false, {1}, "0 2", 1, false}, SplitRow{"recto", 0, 1, false, {}, "recto", 0, false},
        SplitRow{"5 x", 0, 1, false, {5}, "x", 1, false}, SplitRow{"", 0, 1, false, {}, "", 0, false},
        SplitRow{"4 5", 0, 7, false, {4, 5}, "", 8, false}, SplitRow{"1, 2, 3", 0, 1, false, {1, 2, 3}, "", 3, false},
        SplitRow{"1,2,3", 0, 1, false, {123}, "", 1, false},
        SplitRow{"1,5 2,25", 2, 1, false, {1.5, 2.25}, "", 2, false}}) {
    SCOPED_TRACE("[" + std::string(row.text) + "] count " + std::to_string(row.count));
    Reader reader;
    std::string text = row.text;
    std::vector<double> values(10, 0.0);
    int count = row.count;
    reader.text.SplitNumbers(text, values, count, row.first, row.tolerant);
    EXPECT_EQ(count, row.counted);
    EXPECT_EQ(text, row.rest);
    std::vector<double> expected(10, 0.0);
    for (std::size_t k = 0; k < row.expected.size(); ++k) {
      expected[static_cast<std::size_t>(row.first) + k] = row.expected[k];
    }
    EXPECT_EQ(values, expected);
    EXPECT_EQ(reader.dialogs.Count(kTooFew1), row.tells ? 1 : 0);
    EXPECT_EQ(reader.dialogs.Count(kAbortQuestion), row.tells ? 1 : 0);
  }
}

TEST(SplitNumbers, ShowsTheLineAsItWas) {
  Reader reader;
  std::string text = " 1;  2 ";
  std::vector<double> values;
  int count = 3;
  reader.text.SplitNumbers(text, values, count);
  ASSERT_EQ(reader.dialogs.boxes.size(), 2U);
  EXPECT_EQ(reader.dialogs.boxes[0].text, std::string(kTooFew1) + " 1;  2 " + kTooFew2);
  EXPECT_EQ(reader.dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(reader.dialogs.boxes[1].text, kAbortQuestion);

  reader.dialogs.answers = {Answer::Abort};
  text = "1";
  count = 2;
  EXPECT_THROW(reader.text.SplitNumbers(text, values, count), ProgramEnd);
}

TEST(SplitNumbers, ReadsDecimalCommasOfTheSpreadsheet) {
  Reader reader;
  reader.text.setCommaDecimal(1);
  std::string text = "1,5 2,25";
  std::vector<double> values;
  int count = 0;
  reader.text.SplitNumbers(text, values, count);
  EXPECT_EQ(values, (std::vector<double>{0, 1.5, 2.25}));
}

TEST(SplitDoubles, CountsInADouble) {
  Reader reader;
  std::string text = "1 2 3 x";
  std::vector<double> values;
  double count = 0;
  reader.text.SplitDoubles(text, values, count);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(values, (std::vector<double>{0, 1, 2, 3}));
  EXPECT_EQ(text, "x");
  count = 4;
  text = "1 2";
  reader.text.SplitDoubles(text, values, count);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(reader.dialogs.Count(kTooFew1), 1);
}

TEST(SplitWords, TakesWordsWithoutConversion) {
  struct Row {
    const char* text;
    int count;
    bool tolerant;
    std::vector<std::string> expected;
    const char* rest;
    bool tells;
  };
  for (const Row& row :
       {Row{" rect  1 0 x ", 0, false, {"rect", "1", "0", "x"}, "", false},
        Row{"rect 1 0 x", 2, false, {"rect", "1"}, "0 x", false}, Row{"a;b", 3, false, {"a", "b"}, "", true},
        Row{"a;b", 3, true, {"a", "b"}, "", false}, Row{"0 0", 0, false, {"0", "0"}, "", false},
        Row{"", 0, false, {}, "", false}, Row{"", 1, false, {}, "", true}}) {
    SCOPED_TRACE("[" + std::string(row.text) + "] count " + std::to_string(row.count));
    Reader reader;
    std::string text = row.text;
    std::vector<std::string> words{""};
    int count = row.count;
    reader.text.SplitWords(text, words, count, 1, row.tolerant);
    words.erase(words.begin());
    EXPECT_EQ(words, row.expected);
    EXPECT_EQ(count, static_cast<int>(row.expected.size()));
    EXPECT_EQ(text, row.rest);
    EXPECT_EQ(reader.dialogs.Count(kTooFew1), row.tells ? 1 : 0);
  }
}

TEST(Extract, TakesOneToFive) {
  Reader reader;
  double a = 9, b = 9, c = 9, d = 9, e = 9;
  std::string text = "1 2 3 4 5 rest";
  reader.text.Extract5(text, a, b, c, d, e);
  EXPECT_EQ((std::vector<double>{a, b, c, d, e}), (std::vector<double>{1, 2, 3, 4, 5}));
  EXPECT_EQ(text, "rest");
  text = "6 7 8 9 rest";
  reader.text.Extract4(text, a, b, c, d);
  EXPECT_EQ((std::vector<double>{a, b, c, d}), (std::vector<double>{6, 7, 8, 9}));
  EXPECT_EQ(text, "rest");
  text = "1 2 3 rest";
  reader.text.Extract3(text, a, b, c);
  EXPECT_EQ((std::vector<double>{a, b, c}), (std::vector<double>{1, 2, 3}));
  text = "4 5 rest";
  reader.text.Extract2(text, a, b);
  EXPECT_EQ((std::vector<double>{a, b}), (std::vector<double>{4, 5}));
  text = "6 rest";
  reader.text.Extract1(text, a);
  EXPECT_EQ(a, 6);
  EXPECT_EQ(text, "rest");
  EXPECT_TRUE(reader.dialogs.boxes.empty());
}

TEST(Extract, OneIsTolerantOfAShorterLine) {
  Reader reader;
  double a = 9;
  std::string text;
  reader.text.Extract1(text, a);
  EXPECT_EQ(a, 0);
  EXPECT_TRUE(reader.dialogs.boxes.empty());
}

TEST(Extract, OfAShortLineTellsAndLeavesZero) {
  Reader reader;
  double a = 9, b = 9, c = 9, d = 9, e = 9;
  std::string text = "1 2";
  reader.text.Extract3(text, a, b, c);
  EXPECT_EQ((std::vector<double>{a, b, c}), (std::vector<double>{1, 2, 0}));
  EXPECT_EQ(reader.dialogs.Count(std::string(kTooFew1) + "1 2" + kTooFew2), 1);
  EXPECT_EQ(reader.dialogs.Count(kAbortQuestion), 1);
  text = "1";
  reader.text.Extract2(text, a, b);
  EXPECT_EQ(b, 0);
  text = "";
  reader.text.Extract5(text, a, b, c, d, e);
  EXPECT_EQ((std::vector<double>{a, b, c, d, e}), (std::vector<double>{0, 0, 0, 0, 0}));
  text = "1 2 3";
  reader.text.Extract4(text, a, b, c, d);
  EXPECT_EQ((std::vector<double>{a, b, c, d}), (std::vector<double>{1, 2, 3, 0}));
  EXPECT_EQ(reader.dialogs.Count("Exctract 2 error "), 0) << "both readings agree";
}

std::vector<double> Many(std::size_t count, std::string& text, Reader& reader) {
  std::vector<double> values(count, 9.0);
  std::vector<double*> targets;
  for (double& value : values) targets.push_back(&value);
  if (count == 7) reader.text.Extract7(text, targets);
  if (count == 10) reader.text.Extract10(text, targets);
  if (count == 12) reader.text.Extract12(text, targets);
  return values;
}

TEST(Extract, TakesSevenTenAndTwelve) {
  for (const std::size_t count : {std::size_t{7}, std::size_t{10}, std::size_t{12}}) {
    SCOPED_TRACE(count);
    Reader reader;
    std::string text;
    std::vector<double> expected;
    for (std::size_t k = 1; k <= count; ++k) {
      expected.push_back(static_cast<double>(k) + 0.5);
      text += std::to_string(k) + ".5 ";
    }
    text += "rest";
    EXPECT_EQ(Many(count, text, reader), expected);
    EXPECT_EQ(text, "rest");
    EXPECT_TRUE(reader.dialogs.boxes.empty());

    text = "1 2 3 4 5 6";
    const std::vector<double> some = Many(count, text, reader);
    EXPECT_EQ(some[5], 6);
    EXPECT_EQ(some[6], 0);
    EXPECT_GE(reader.dialogs.Count(kTooFew1), 1);
  }
}

TEST(Extract, TakesUpToTwentyWords) {
  Reader reader;
  std::string text = "rect 1 0 x";
  std::vector<std::string> words = reader.text.ExtractWords10(text);
  ASSERT_EQ(words.size(), 10U);
  EXPECT_EQ(words[0], "rect");
  EXPECT_EQ(words[3], "x");
  EXPECT_EQ(words[4], "");
  EXPECT_EQ(text, "");
  for (int k = 1; k <= 25; ++k) text += "w" + std::to_string(k) + " ";
  words = reader.text.ExtractWords10(text);
  EXPECT_EQ(words[0], "w1");
  EXPECT_EQ(words[9], "w10");
  EXPECT_EQ(text, "w21 w22 w23 w24 w25");
  EXPECT_TRUE(reader.dialogs.boxes.empty());
}

TEST(CellText, EndsOnAnyText) {
  std::mt19937 random(20240607);
  const std::string pieces[] = {" ",  "-", ",",        ".",    "1", "23", "e", "E+",
                                "\"", ";", "\xC2\xA0", "\xFF", "x", "0",  "\t"};
  std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1);
  std::uniform_int_distribution<int> length(0, 40);
  for (int round = 0; round < 3000; ++round) {
    std::string line;
    for (int k = length(random); k > 0; --k) line += pieces[piece(random)];
    SCOPED_TRACE(line);
    Reader reader(round % 2 == 0 ? kPoint : kCommaDots);
    reader.text.setCommaDecimal(round % 3 == 0 ? 1 : 0);
    const double number = reader.text.ReadNumber(line);
    ASSERT_EQ(number, number);
    for (const int wanted : {0, 1, 4}) {
      std::string text = line;
      std::vector<double> values;
      int count = wanted;
      reader.text.SplitNumbers(text, values, count);
      ASSERT_LE(values.size(), 41U);
      ASSERT_EQ(static_cast<std::size_t>(count), values.empty() ? 0U : values.size() - 1);
    }
    const std::string repaired = RepairMinus(line);
    ASSERT_EQ(ReplaceAll(repaired, " ", ""), ReplaceAll(line, " ", ""));
    ASSERT_EQ(RepairMinus(repaired), repaired);
  }
}

TEST(CellText, TakesVeryLongTexts) {
  Reader reader;
  EXPECT_EQ(reader.text.ReadNumber(std::string(1 << 20, '1')), 0);
  EXPECT_EQ(reader.text.ReadNumber(std::string(1 << 20, ',')), 0);
  EXPECT_EQ(reader.text.ReadNumber(std::string(1 << 20, ' ') + "5"), 5);
  std::string minuses;
  for (int k = 0; k < 16000; ++k) minuses += "- ";
  EXPECT_EQ(RepairMinus(minuses + "5"), std::string(16000, '-') + "5");
  std::string many;
  for (int k = 0; k < 4000; ++k) many += "7 ";
  std::vector<double> values;
  int count = 0;
  reader.text.SplitNumbers(many, values, count);
  EXPECT_EQ(count, 4000);
}

}  // namespace
}  // namespace orv
