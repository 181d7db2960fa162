#include "model/text_file.h"

#include <gtest/gtest.h>

#include "model/file_workbook.h"

namespace orv {
namespace {

WorkbookSheet Read(const std::string& bytes) {
  return ReadWorkbook(bytes, "model.txt", Locale{}).sheets.at(0);
}

TEST(TextFile, IsASheetNamedAfterTheFile) {
  const WorkbookSheet sheet = Read("Orvdata\tRO 0 360 10\r\nplate\t1 2 3\r\n");
  EXPECT_EQ(sheet.name, "model");
  EXPECT_EQ(sheet.grid.RangeText("A1:B2"), "Orvdata\tRO 0 360 10\r\nplate\t1 2 3\r\n");
  EXPECT_EQ(sheet.activeCell, (CellPosition{1, 1}));
}

TEST(TextFile, KnowsTheLineEndsOfAllSystems) {
  EXPECT_EQ(Read("a\nb\r\nc\rd").grid.RangeText("A1:A4"), "a\r\nb\r\nc\r\nd\r\n");
  EXPECT_EQ(Read("a\n\n\r\n\rd").grid.Value({5, 1}), "d");
  EXPECT_EQ(Read("\t\tc\n").grid.Value({1, 3}), "c");
}

TEST(TextFile, KnowsTheEncodings) {
  EXPECT_EQ(Read("caf\xC3\xA9 \xCE\xA9").grid.Value({1, 1}), "café Ω");
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "caf\xC3\xA9")
                .grid.Value({1, 1}),
            "café");
  EXPECT_EQ(Read("caf\xE9 \x80").grid.Value({1, 1}), "café €");
  EXPECT_EQ(Read(std::string("\xFF\xFE"
                             "a\0\t\0\xA9\x03\n\0"
                             "b\0",
                             12))
                .grid.RangeText("A1:B2"),
            "a\tΩ\r\nb\t\r\n");
  EXPECT_EQ(Read(std::string("\xFE\xFF\xD8\x3D\xDE\x00", 6)).grid.Value({1, 1}), "😀");
  EXPECT_EQ(Read(std::string("\xFF\xFE"
                             "a\0\x3D\xD8",
                             6))
                .grid.Value({1, 1}),
            "a\xEF\xBF\xBD");
  EXPECT_EQ(Read(std::string("\xFF\xFE"
                             "a\0b",
                             5))
                .grid.Value({1, 1}),
            "a");
}

TEST(TextFile, UnquotesCellsAsSpreadsheetsWriteThem) {
  EXPECT_EQ(Read("\"two\nlines\"\tnext").grid.Value({1, 1}), "two\nlines");
  EXPECT_EQ(Read("\"two\nlines\"\tnext").grid.Value({1, 2}), "next");
  EXPECT_EQ(Read("\"a \"\"b\"\" c\"\r\nx").grid.Value({1, 1}), "a \"b\" c");
  EXPECT_EQ(Read("\"\"\tx").grid.Value({1, 2}), "x");
  EXPECT_EQ(Read("\"tab\tinside\"").grid.Value({1, 1}), "tab\tinside");
}

TEST(TextFile, LeavesOtherQuotesAlone) {
  EXPECT_EQ(Read("\"open\tx").grid.RangeText("A1:B1"), "\"open\tx\r\n");
  EXPECT_EQ(Read("\"a\" b\tx").grid.RangeText("A1:B1"), "\"a\" b\tx\r\n");
  EXPECT_EQ(Read("5\" pipe").grid.Value({1, 1}), "5\" pipe");
}

TEST(TextFile, TakesCellsAsTheyStand) {
  EXPECT_EQ(Read("=MAX(A2:C60)").grid.Formula({1, 1}), "=MAX(A2:C60)");
  EXPECT_EQ(Read("=MAX(A2:C60)").grid.Value({1, 1}), "=MAX(A2:C60)");
  EXPECT_EQ(Read(" 0.10 \t007").grid.RangeText("A1:B1"), " 0.10 \t007\r\n");
  EXPECT_EQ(Read("last\x1A").grid.Value({1, 1}), "last");
}

TEST(TextFile, IsToldFromOtherFilesByItsCharacters) {
  EXPECT_TRUE(IsText("a\tb\r\n\f"));
  EXPECT_TRUE(
      IsText(std::string("\xFF\xFE"
                         "a\0",
                         4)));
  EXPECT_FALSE(IsText(std::string("a\0b", 3)));
  EXPECT_FALSE(IsText("a\x01"));
  EXPECT_THROW(Read("abc\x02"), WorkbookError);
}

TEST(TextFile, RefusesMoreRowsOrColumnsThanASheetHas) {
  EXPECT_THROW(Read(std::string(16384, '\t') + "x"), WorkbookError);
  EXPECT_EQ(Read(std::string(16383, '\t') + "x").grid.Value({1, 16384}), "x");
  EXPECT_THROW(Read(std::string(1048576, '\n') + "x"), WorkbookError);
  EXPECT_EQ(Read(std::string(1048575, '\n') + "x").grid.Value({1048576, 1}), "x");
}

TEST(TextFile, ReadsManyOpenQuotesInLittleTime) {
  std::string text;
  for (int k = 0; k < 400000; ++k) text += k % 2 == 0 ? "\"a\t" : "\"\"\"b\n";
  EXPECT_GT(Read(text).grid.CellCount(), 100000U);
}

}  // namespace
}  // namespace orv
