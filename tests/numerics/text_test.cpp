#include "numerics/text.h"

#include <gtest/gtest.h>
#include <string>

namespace orv {
namespace {

// A text given as UTF-8 source.
std::string U(const char8_t* text) {
  const std::u8string_view view(text);
  return std::string(view.begin(), view.end());
}

TEST(Text, TrimTakesBlanksOnly) {
  struct Row {
    const char* text;
    const char* expected;
  };
  for (const Row& row : {Row{"", ""}, Row{"   ", ""}, Row{"a", "a"}, Row{"  a b  ", "a b"}, Row{"\ta ", "\ta"},
                         Row{" \r\n ", "\r\n"}, Row{"\xC2\xA0x\xC2\xA0", "\xC2\xA0x\xC2\xA0"}, Row{" \xFF ", "\xFF"}}) {
    SCOPED_TRACE(std::string("[") + row.text + "]");
    EXPECT_EQ(Trim(row.text), row.expected);
  }
}

TEST(Text, ChangesTheCaseOfLetters) {
  struct Row {
    const char8_t* lower;
    const char8_t* upper;
  };
  for (const Row& row :
       {Row{u8"orvdata 9 _", u8"ORVDATA 9 _"}, Row{u8"azyx", u8"AZYX"}, Row{u8"éàçêïöùþ", u8"ÉÀÇÊÏÖÙÞ"},
        Row{u8"ÿ", u8"Ÿ"}, Row{u8"āčđęłňőšžź", u8"ĀČĐĘŁŇŐŠŽŹ"}, Row{u8"αβγω", u8"ΑΒΓΩ"}, Row{u8"абяёђџ", u8"АБЯЁЂЏ"}}) {
    SCOPED_TRACE(U(row.lower));
    EXPECT_EQ(UpperCase(U(row.lower)), U(row.upper));
    EXPECT_EQ(UpperCase(U(row.upper)), U(row.upper));
    EXPECT_EQ(LowerCase(U(row.upper)), U(row.lower));
    EXPECT_EQ(LowerCase(U(row.lower)), U(row.lower));
  }
  for (const char8_t* same : {u8"ß", u8"µ", u8"÷×", u8"²°€", u8"@[`{", u8"日本", u8"\U0001F680"}) {
    SCOPED_TRACE(U(same));
    EXPECT_EQ(UpperCase(U(same)), U(same));
    EXPECT_EQ(LowerCase(U(same)), U(same));
  }
}

TEST(Text, LeavesStrayBytesAlone) {
  for (const char* stray : {"\xFF", "\xC3", "\xA0", "\xE2\x82", "\xF0\x9F\x9A", "\x80\x81", "\xC0\xAF"}) {
    SCOPED_TRACE(CharacterCount(stray));
    const std::string text = "a" + std::string(stray) + "z";
    EXPECT_EQ(UpperCase(text), "A" + std::string(stray) + "Z");
    EXPECT_EQ(LowerCase("A" + std::string(stray) + "Z"), text);
    EXPECT_FALSE(IsValidUtf8(text));
  }
}

// Long forms of short characters, surrogates and codes beyond the last plane are no UTF-8.
TEST(Text, LeavesForbiddenFormsAlone) {
  struct Row {
    const char* name;
    std::string bytes;
  };
  for (const Row& row : {Row{"long a", "\xE0\x81\xA1"}, Row{"longer a", "\xF0\x80\x81\xA1"},
                         Row{"surrogate", "\xED\xA0\x80"}, Row{"beyond", "\xF4\x90\x80\x80"}}) {
    SCOPED_TRACE(row.name);
    EXPECT_FALSE(IsValidUtf8(row.bytes));
    EXPECT_EQ(UpperCase(row.bytes), row.bytes);
    EXPECT_EQ(LowerCase(row.bytes), row.bytes);
    EXPECT_EQ(CharacterCount(row.bytes), row.bytes.size());
  }
}

TEST(Text, ReplacesFromLeftToRight) {
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(ReplaceAll("", "a", "b"), "");
  EXPECT_EQ(ReplaceAll("a.a", "a", "aa"), "aa.aa");
  EXPECT_EQ(ReplaceAll("a.b", ".", ""), "ab");
  EXPECT_EQ(SoftBlanks("\xC2\xA0x\xC2\xA0y z"), " x y z");
}

TEST(Text, LooksForParts) {
  EXPECT_TRUE(Contains("abc", "bc"));
  EXPECT_TRUE(Contains("abc", ""));
  EXPECT_FALSE(Contains("abc", "BC"));
  EXPECT_FALSE(Contains("", "a"));
  EXPECT_TRUE(StartsWith("abc", "ab"));
  EXPECT_TRUE(StartsWith("abc", ""));
  EXPECT_FALSE(StartsWith("a", "ab"));
}

TEST(Text, CountsCharactersNotBytes) {
  EXPECT_EQ(CharacterCount(""), 0U);
  EXPECT_EQ(CharacterCount(U(u8"né²€")), 4U);
  EXPECT_EQ(CharacterCount(U(u8"\U0001F680x")), 2U);
  EXPECT_EQ(CharacterCount("a\xFF\xC3"), 3U);
  EXPECT_EQ(LeftCharacters(U(u8"né²€"), 2), U(u8"né"));
  EXPECT_EQ(LeftCharacters(U(u8"né²€"), 0), "");
  EXPECT_EQ(LeftCharacters(U(u8"né²€"), 99), U(u8"né²€"));
  EXPECT_EQ(LeftCharacters("", 3), "");
  EXPECT_EQ(LeftCharacters("ab\xFFz", 3), "ab\xFF");
}

TEST(Text, TurnsEveryByteOfTheCodePageAndBack) {
  std::string bytes;
  for (int k = 0; k < 256; ++k) bytes.push_back(static_cast<char>(k));
  const std::string text = Utf8FromWindows1252(bytes);
  EXPECT_TRUE(IsValidUtf8(text));
  EXPECT_EQ(CharacterCount(text), 256U);
  EXPECT_EQ(Windows1252FromUtf8(text), bytes);
}

TEST(Text, KnowsTheCodePage) {
  EXPECT_EQ(Windows1252FromUtf8(U(u8"m² € Ÿ é°")), "m\xB2 \x80 \x9F \xE9\xB0");
  EXPECT_EQ(Windows1252FromUtf8(U(u8"\u00A0|日|Ω|\U0001F680")), "\xA0|?|?|?");
  EXPECT_EQ(Utf8FromWindows1252("\x80\x92\xA0"), U(u8"€’\u00A0"));
}

TEST(Text, TellsUtf8) {
  EXPECT_TRUE(IsValidUtf8(""));
  EXPECT_TRUE(IsValidUtf8("plain"));
  EXPECT_TRUE(IsValidUtf8(U(u8"é€\U0001F680\U0010FFFF")));
  EXPECT_FALSE(IsValidUtf8("\xE9t\xE9"));
  EXPECT_FALSE(IsValidUtf8("\xC3"));
  EXPECT_FALSE(IsValidUtf8("\xC0\x80"));
}

TEST(Text, TakesVeryLongTexts) {
  const std::string blanks(1 << 22, ' ');
  EXPECT_EQ(Trim(blanks), "");
  const std::string letters(1 << 20, 'a');
  EXPECT_EQ(UpperCase(letters), std::string(1 << 20, 'A'));
  EXPECT_EQ(ReplaceAll(letters, "a", "bb").size(), std::size_t{1} << 21);
  EXPECT_EQ(CharacterCount(std::string(1 << 20, '\xFF')), std::size_t{1} << 20);
}

}  // namespace
}  // namespace orv
