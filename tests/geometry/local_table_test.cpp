#include "geometry/local_table.h"

#include <gtest/gtest.h>

#include "numerics/failure.h"

namespace orv {
namespace {

TEST(LocalTable, KeepsSinglePrecisionOfTheCellsThatExist) {
  LocalTable table(7);
  table.Reserve(3, 2, 4);
  table.Set(3, 2, 4, 7, 0.1);
  EXPECT_EQ(table(3, 2, 4, 7), 0.1F);
  EXPECT_EQ(table(3, 1, 4, 7), 0.0F);
}

TEST(LocalTable, DropsWhatLiesOutsideItsCells) {
  LocalTable table(2);
  table.Reserve(100, 80, 70);
  table.Set(100, 80, 70, 2, 5);
  table.Set(100, 81, 1, 2, 5);
  table.Set(100, 1, 71, 2, 5);
  EXPECT_EQ(table(100, 80, 70, 2), 5.0F);
  EXPECT_EQ(table(100, 81, 1, 2), 0.0F);
  EXPECT_EQ(table(100, 1, 71, 2), 0.0F);
  table.Set(7, 1, 1, 1, 5);
  EXPECT_EQ(table(7, 1, 1, 1), 0.0F);
  EXPECT_THROW(table(-1, 1, 1, 1), RuntimeFailure);
  EXPECT_THROW(table(100, 1, 1, 3), RuntimeFailure);
}

TEST(LocalTable, AnEquallyLargePageKeepsItsValuesAndAnotherSizeClearsThem) {
  LocalTable table(2);
  table.Reserve(1, 2, 2);
  table.Set(1, 2, 1, 1, 3);
  table.Reserve(1, 2, 2);
  EXPECT_EQ(table(1, 2, 1, 1), 3.0F);
  table.Reserve(1, 3, 2);
  EXPECT_EQ(table(1, 2, 1, 1), 0.0F);
  table.Set(1, 3, 2, 2, 4);
  table.Clear();
  EXPECT_EQ(table(1, 3, 2, 2), 0.0F);
}

}  // namespace
}  // namespace orv
