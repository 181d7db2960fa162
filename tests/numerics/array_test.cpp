#include "numerics/array.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <string>

#include "numerics/zero_pages.h"

namespace orv {
namespace {

template <class Operation>
int FailureOf(Operation operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

TEST(Array, HasLowerAndUpperBounds) {
  Array<double, 1> thruster({Bounds{-10, 300}});
  EXPECT_EQ(thruster.bounds(0).lower, -10);
  EXPECT_EQ(thruster.bounds(0).upper, 300);
  EXPECT_EQ(thruster.values().size(), 311U);
  thruster(-10) = 1;
  thruster(300) = 2;
  EXPECT_EQ(thruster.values().front(), 1);
  EXPECT_EQ(thruster.values().back(), 2);
  EXPECT_EQ(thruster(0), 0);
}

TEST(Array, RaisesFailure9OutsideItsBounds) {
  Array<double, 2> array({Bounds{0, 3}, Bounds{1, 2}});
  struct Row {
    int i, j;
    int failure;
  };
  for (const Row& row : {Row{0, 1, 0}, Row{3, 2, 0}, Row{-1, 1, 9}, Row{4, 1, 9}, Row{0, 0, 9}, Row{0, 3, 9},
                         Row{2147483647, 1, 9}, Row{-2147483647, 1, 9}}) {
    SCOPED_TRACE(std::to_string(row.i) + ", " + std::to_string(row.j));
    EXPECT_EQ(FailureOf([&] { array(row.i, row.j) = 1; }), row.failure);
  }
  const Array<double, 1> empty;
  EXPECT_EQ(FailureOf([&] { empty(0); }), 9);
}

TEST(Array, StoresTheLastIndexFastest) {
  Array<int, 3> array({Bounds{1, 2}, Bounds{0, 1}, Bounds{-1, 1}});
  int value = 0;
  for (int i = 1; i <= 2; ++i) {
    for (int j = 0; j <= 1; ++j) {
      for (int k = -1; k <= 1; ++k) array(i, j, k) = value++;
    }
  }
  for (int n = 0; n < 12; ++n) EXPECT_EQ(array.values()[static_cast<std::size_t>(n)], n);
}

TEST(Array, RoundsBrokenIndicesToEven) {
  Array<int, 1> array({Bounds{0, 5}});
  for (int k = 0; k <= 5; ++k) array(k) = k;
  struct Row {
    double index;
    int element;
  };
  for (const Row& row : {Row{0.5, 0}, Row{1.5, 2}, Row{2.5, 2}, Row{3.5, 4}, Row{2.4999, 2}, Row{2.5001, 3},
                         Row{-0.5, 0}, Row{5.49, 5}}) {
    SCOPED_TRACE(row.index);
    EXPECT_EQ(array(row.index), row.element);
  }
  EXPECT_EQ(FailureOf([&] { array(5.51); }), 9);
  EXPECT_EQ(FailureOf([&] { array(-0.51); }), 9);
  EXPECT_EQ(array(2.5F), 2);
}

TEST(Array, RaisesFailure6ForAnIndexThatFitsNowhere) {
  Array<int, 1> array({Bounds{0, 5}});
  for (const double index :
       {1e10, -1e10, 1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    SCOPED_TRACE(index);
    EXPECT_EQ(FailureOf([&] { array(index); }), 6);
  }
}

TEST(Array, SizeClearsEveryElement) {
  Array<std::string, 1> names({Bounds{0, 2}});
  names(1) = "kept";
  names.Size({Bounds{0, 4}});
  EXPECT_EQ(names(1), "");
  EXPECT_EQ(names(4), "");
  names.Size({Bounds{0, -1}});
  EXPECT_TRUE(names.values().empty());
  EXPECT_EQ(FailureOf([&] { names(0); }), 9);
  EXPECT_EQ((Bounds{3, 1}.count()), 0U);
}

TEST(Array, RaisesFailure6WhenItCannotBeAddressed) {
  const std::ptrdiff_t most = std::numeric_limits<std::ptrdiff_t>::max();
  struct Row {
    const char* name;
    std::array<Bounds, 2> bounds;
  };
  for (const Row& row :
       {Row{"one huge dimension", {Bounds{1, most}, Bounds{0, 0}}},
        Row{"two large ones", {Bounds{1, std::ptrdiff_t{1} << 40}, Bounds{1, std::ptrdiff_t{1} << 40}}},
        Row{"twice what fits", {Bounds{1, std::ptrdiff_t{1} << 60}, Bounds{1, 1}}}}) {
    SCOPED_TRACE(row.name);
    Array<double, 2> array;
    int failure = 0;
    try {
      array.Size(row.bounds);
    } catch (const RuntimeFailure& raised) {
      failure = static_cast<int>(raised.number());
    } catch (const std::exception& other) {
      ADD_FAILURE() << other.what();
    }
    EXPECT_EQ(failure, 6);
  }
}

// In a process of its own: an overflow of the count itself stops an instrumented program.
TEST(Array, CountsTheWidestBounds) {
  const auto size = [] {
    Array<double, 1> array;
    const Bounds widest{-10, std::numeric_limits<std::ptrdiff_t>::max()};
    std::exit(FailureOf([&] { array.Size({widest}); }));
  };
  EXPECT_EXIT(size(), ::testing::ExitedWithCode(6), "");
}

TEST(ZeroPages, AreZeroAndWritable) {
  ZeroPages pages(1000);
  ASSERT_EQ(pages.size(), 1000U);
  for (std::size_t k = 0; k < pages.size(); ++k) ASSERT_EQ(pages.data()[k], 0);
  pages.data()[0] = 1;
  pages.data()[999] = 2;
  EXPECT_EQ(pages.data()[999], 2);
}

TEST(ZeroPages, MayBeEmptyOrMove) {
  EXPECT_EQ(ZeroPages().data(), nullptr);
  EXPECT_EQ(ZeroPages(0).data(), nullptr);
  EXPECT_EQ(ZeroPages(0).size(), 0U);
  ZeroPages first(10);
  first.data()[3] = 7;
  const ZeroPages second = std::move(first);
  EXPECT_EQ(second.size(), 10U);
  EXPECT_EQ(second.data()[3], 7);
}

// Far more than the machine has: only the pages that are written cost memory.
TEST(ZeroPages, CostNothingUntilWritten) {
  const std::size_t count = std::size_t{1} << 34;
  ZeroPages pages(count);
  pages.data()[count - 1] = 5;
  EXPECT_EQ(pages.data()[count - 1], 5);
  EXPECT_EQ(pages.data()[count / 2], 0);
}

TEST(ZeroPages, ThrowWhenTheAddressSpaceIsTooSmall) {
  EXPECT_THROW(ZeroPages(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
  EXPECT_THROW(ZeroPages(std::numeric_limits<std::size_t>::max() / sizeof(double)), std::bad_alloc);
}

TEST(PagedArray, IsCheckedAndZero) {
  PagedArray<float, 3> store;
  EXPECT_EQ(FailureOf([&] { store(0, 0, 0); }), 9);
  store.Size({Bounds{0, 4}, Bounds{1, 3}, Bounds{-1, 1}});
  EXPECT_EQ(store(4, 3, 1), 0.0F);
  store(4, 3, 1) = 2.5F;
  store(0, 1, -1) = 1.5F;
  EXPECT_EQ(store(4, 3, 1), 2.5F);
  EXPECT_EQ(store(0, 1, -1), 1.5F);
  EXPECT_EQ(store(0, 1, 0), 0.0F);
  for (const int i : {-1, 5}) EXPECT_EQ(FailureOf([&] { store(i, 1, 0); }), 9);
  EXPECT_EQ(FailureOf([&] { store(0, 0, 0); }), 9);
  EXPECT_EQ(FailureOf([&] { store(0, 1, 2); }), 9);
  store.Size({Bounds{0, 4}, Bounds{1, 3}, Bounds{-1, 1}});
  EXPECT_EQ(store(4, 3, 1), 0.0F);
  const std::ptrdiff_t huge = std::ptrdiff_t{1} << 40;
  EXPECT_THROW(store.Size({Bounds{0, huge}, Bounds{0, huge}, Bounds{0, huge}}), std::bad_alloc);
}

}  // namespace
}  // namespace orv
