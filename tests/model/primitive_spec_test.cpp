#include "model/primitive_spec.h"

#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

class PrimitiveSpecTest : public ::testing::Test {
 protected:
  PrimitiveSpecTest() : names(13) { table.Size({Bounds{0, 12}, Bounds{1, 11}}); }

  PrimitiveSpec Parse(const std::string& line, int row = 1) {
    table(row, kSpecColumn) = line;
    PrimitiveSpec spec;
    ParsePrimitive(table, row, kSpecColumn, names, reader, spec);
    return spec;
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  TextTable table;
  std::vector<std::string> names;
};

TEST_F(PrimitiveSpecTest, ReadsTheLineOfTheManual) {
  const PrimitiveSpec spec = Parse("MyBeam cyl size 1  3.5    5 cells 32   32  T -2   0  -0.8");
  EXPECT_EQ(names[1], "MyBeam");
  EXPECT_EQ(spec.Type, "CYL");
  EXPECT_EQ(spec.Size1, 1);
  EXPECT_EQ(spec.Size2, 3.5);
  EXPECT_EQ(spec.Size3, 5);
  EXPECT_EQ(spec.Nx, 32);
  EXPECT_EQ(spec.Ny, 32);
  EXPECT_EQ(spec.Tail, "t -2   0  -0.8");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PrimitiveSpecTest, TheWordsSizeAndCellsAreOptional) {
  const PrimitiveSpec with = Parse("MyPanel RECT size 2 1 cells 4 2");
  const PrimitiveSpec without = Parse("MyPanel rect 2 1 4 2", 2);
  EXPECT_EQ(names[2], "MyPanel");
  for (const PrimitiveSpec* spec : {&with, &without}) {
    EXPECT_EQ(spec->Type, "RECT");
    EXPECT_EQ(spec->Size1, 2);
    EXPECT_EQ(spec->Size2, 1);
    EXPECT_EQ(spec->Size3, 0);
    EXPECT_EQ(spec->Nx, 4);
    EXPECT_EQ(spec->Ny, 2);
    EXPECT_EQ(spec->Tail, "");
  }
}

TEST_F(PrimitiveSpecTest, WordsInFrontOfSizeAndCellsAreDropped) {
  const PrimitiveSpec spec = Parse("MyPanel rect 9 large SIZE 2 1 small Cells 4 2 T 1 2 3");
  EXPECT_EQ(spec.Size1, 2);
  EXPECT_EQ(spec.Size2, 1);
  EXPECT_EQ(spec.Nx, 4);
  EXPECT_EQ(spec.Tail, "t 1 2 3");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PrimitiveSpecTest, SizeCountsInsideALongerWordToo) {
  const PrimitiveSpec spec = Parse("MyPanel rect oversized 2 1 size 7 8 cells 4 2");
  // Behind "oversize": "d" reads as 0.
  EXPECT_EQ(spec.Size1, 0);
  EXPECT_EQ(spec.Size2, 2);
}

TEST_F(PrimitiveSpecTest, TheWordsInsideTheNameDoNotCount) {
  const PrimitiveSpec spec = Parse("cells_size rect 2 1 4 2");
  EXPECT_EQ(names[1], "cells_size");
  EXPECT_EQ(spec.Size1, 2);
  EXPECT_EQ(spec.Nx, 4);
}

TEST_F(PrimitiveSpecTest, CommasSeparateWhenOneIsNotBetweenDigits) {
  const PrimitiveSpec spec = Parse("MyPanel rect size 2, 1 cells 4,2");
  EXPECT_EQ(spec.Size1, 2);
  EXPECT_EQ(spec.Size2, 1);
  EXPECT_EQ(spec.Nx, 4);
  EXPECT_EQ(spec.Ny, 2);
  const PrimitiveSpec semicolons = Parse("MyPanel rect size 2;1 cells 4;2", 2);
  EXPECT_EQ(semicolons.Size2, 1);
  EXPECT_EQ(semicolons.Ny, 2);
}

TEST_F(PrimitiveSpecTest, WithoutNumbersTheCountsAreZeroAfterTheMessage) {
  const PrimitiveSpec spec = Parse("MyPanel rect size 2 1");
  EXPECT_EQ(spec.Size1, 2);
  EXPECT_EQ(spec.Nx, 0);
  EXPECT_EQ(spec.Ny, 0);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Input data in Excel sheet not correct: line ==><== !   Please read user manual   ");
}

TEST_F(PrimitiveSpecTest, EachTypeTakesItsNumbers) {
  PrimitiveSpec spec = Parse("P rectOriented size 1 2 3 4 5 6 7 8 9 10 11 12 cells 3 4");
  EXPECT_EQ(spec.Type, "RECTORIENTED");
  for (int k = 1; k <= 12; ++k) EXPECT_EQ(spec.ExtraNumbers(k), k);
  spec = Parse("P cylshapeX6b size 1 2 3 4 5 6 7 8 9 10 cells 3 4");
  EXPECT_EQ(spec.Type, "CYLSHAPEX6B");
  EXPECT_EQ(spec.Size3, 3);
  for (int k = -1; k <= 5; ++k) EXPECT_EQ(spec.ExtraNumbers(k), k + 5);
  spec = Parse("P thr size 1 2 cells 3 4");
  EXPECT_EQ(spec.Size2, 2);
  spec = Parse("P rectfree size 1 2 3 4 cells 3 4");
  EXPECT_EQ(spec.Free4, 4);
  spec = Parse("P rect2sides size 1 2 3 4 5 6 7 cells 3 4");
  EXPECT_EQ(spec.Free1, 1);
  EXPECT_EQ(spec.ExtraNumbers(1), 5);
  EXPECT_EQ(spec.ExtraNumbers(3), 7);
  for (const char* type : {"elli", "con2", "cylellipse"}) {
    spec = Parse(std::string("P ") + type + " size 1 2 3 4 cells 3 4");
    EXPECT_EQ(spec.Size3, 3) << type;
    EXPECT_EQ(spec.ExtraNumbers(1), 4) << type;
    EXPECT_EQ(spec.Ny, 4) << type;
  }
  spec = Parse("P cylfree size 1 2 3 4 5 cells 3 4");
  EXPECT_EQ(spec.Free4, 4);
  EXPECT_EQ(spec.Size3, 5);
  for (const char* type : {"par", "sph", "con", "cyl", "disc", "cylshape44", "whatever"}) {
    spec = Parse(std::string("P ") + type + " size 1 2 3 cells 3 4");
    EXPECT_EQ(spec.Size3, 3) << type;
    EXPECT_EQ(spec.Nx, 3) << type;
    EXPECT_EQ(spec.Ny, 4) << type;
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PrimitiveSpecTest, ALineWithoutABlankFailsAndChangesNothing) {
  names[1] = "Old";
  table(1, kSpecColumn) = "  MyPanel ";
  PrimitiveSpec spec;
  spec.Nx = 7;
  EXPECT_THROW(ParsePrimitive(table, 1, kSpecColumn, names, reader, spec), RuntimeFailure);
  EXPECT_EQ(names[1], "Old");
  EXPECT_EQ(spec.Nx, 7);
}

TEST_F(PrimitiveSpecTest, TheTypeAloneCanBeRead) {
  table(3, kSpecColumn) = "  Engine  Thr size 1 2 cells 3 4";
  EXPECT_EQ(PrimitiveType(table, 3, kSpecColumn), "THR");
  EXPECT_EQ(PrimitiveTypeAsTyped(table, 3, kSpecColumn), "Thr");
  EXPECT_EQ(PrimitiveType(table, 4, kSpecColumn), "");
}

AutomaticRotation ReadTail(std::string tail) {
  AutomaticRotation rotation;
  ReadAutomaticRotation(tail, rotation);
  return rotation;
}

TEST(AutomaticRotationText, ReadsAllSpellings) {
  AutomaticRotation rotation = ReadTail("utomaticrotation x r y 20");
  EXPECT_EQ(rotation.RotationKeyword, "AutomaticRotation");
  EXPECT_EQ(rotation.RotationAxisLetter, "X");
  EXPECT_EQ(rotation.RotationTailLength, 6);
  rotation = ReadTail("utomatic r z");
  EXPECT_EQ(rotation.RotationKeyword, "Automatic");
  EXPECT_EQ(rotation.RotationAxisLetter, "Z");
  EXPECT_EQ(rotation.RotationTailLength, 0);
  rotation = ReadTail("y t 1 0 0");
  EXPECT_EQ(rotation.RotationKeyword, "A");
  EXPECT_EQ(rotation.RotationAxisLetter, "Y");
  EXPECT_EQ(rotation.RotationTailLength, 7);
}

TEST(AutomaticRotationText, TakesTheAxisOffTheTail) {
  std::string tail = "utomatic r x   t 1 0 0";
  AutomaticRotation rotation;
  ReadAutomaticRotation(tail, rotation);
  EXPECT_EQ(tail, "t 1 0 0");
}

class RewriteTest : public ::testing::Test {
 protected:
  // The tail as a rotation step reads it; the rotation is read from the tail as a build does.
  std::string Rewrite(const std::string& tail, double angle) {
    AutomaticRotation rotation;
    std::string rest = tail.substr(tail.find('a') + 1);
    rest.erase(0, rest.find_first_not_of(' '));
    ReadAutomaticRotation(rest, rotation);
    rotation.RotationAngle = angle;
    return RewriteTailForRotation(tail, rotation, "line", "name", prompt, locale);
  }
  Locale locale;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

TEST_F(RewriteTest, PutsTheRotationBeforeTheThirdItem) {
  EXPECT_EQ(Rewrite("automaticrotation x r y 20", 12.346), "    R X 12.35      r y 20");
  EXPECT_EQ(Rewrite("t 0 1 2 automatic r z t 1 0 0", -7.5), "t 0 1 2     R Z -7.5      t 1 0 0");
  EXPECT_EQ(Rewrite("t 0 1 2 a z t 1 0 0", 0.25), "t 0 1 2     R Z 0.25      t 1 0 0");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RewriteTest, TheAngleReadsTheSameWhereTheDotSeparatesThousands) {
  locale = {",", "."};
  EXPECT_EQ(Rewrite("t 0 1 2 automatic r z t 1 0 0", -7.25), "t 0 1 2     R Z -725E-2      t 1 0 0");
  EXPECT_EQ(Rewrite("a z t 1 0 0", 20), "    R Z 20      t 1 0 0");
  CellText reader(prompt, locale);
  EXPECT_EQ(reader.ReadNumber("-725E-2"), -7.25);
  EXPECT_EQ(reader.ReadNumber(TextForAnyLocale("0.25", locale)), 0.25);
  EXPECT_EQ(TextForAnyLocale("22.5", {".", ","}), "22.5");
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(RewriteTest, TakesTheFirstCharacterOfTheAxisWhole) {
  EXPECT_EQ(Rewrite("a r \u00E9t\u00E9 r x 1", 2.5), "    R \u00C9 2.5      r x 1");
}

TEST_F(RewriteTest, WithNothingBehindTheAxisTheRotationComesFirst) {
  EXPECT_EQ(Rewrite("t 0 1 2 automatic x", 12.5), "R X 12.5 t 0 1 2 automatic x");
}

TEST_F(RewriteTest, AnotherThirdItemDoesNotComply) {
  EXPECT_EQ(Rewrite("automatic x 20 r y 20", 10.5), "    R X 10.5      20 r y 20");
  ASSERT_EQ(dialogs.boxes.size(), 3U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "line PB at:Automatic rotation specification not compliant , see user manual... Primitive name");
  EXPECT_EQ(dialogs.log.at(1), "Automatic rotation specification not compliant");
  EXPECT_EQ(dialogs.log.at(0), "Automatic rotation specification not compliant ");
}

TEST_F(RewriteTest, OneCharacterBehindTheAxisLeavesTheTail) {
  EXPECT_EQ(Rewrite("automatic x 5", 10), "automatic x 5");
}

}  // namespace
}  // namespace orv
