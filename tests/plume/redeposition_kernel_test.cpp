#include "plume/redeposition_kernel.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <random>
#include <tbb/global_control.h>
#include <tbb/task_arena.h>

#include "numerics/angles.h"
#include "numerics/failure.h"
#include "reference/plain_redeposition.h"

namespace orv {
namespace {

using reference::PlainEmitter;
using reference::PlainReceiver;

constexpr double kAtomicVolume = 1.7e-29;

// The same pairs for the shipped and for the plain form.
struct Pairs {
  std::vector<RedepositionSource> sources;
  std::vector<PlainEmitter> emitters;
  std::vector<PlainReceiver> receivers;
  RedepositionTargets targets;

  void AddSource(const std::array<double, 3>& at, const std::array<double, 3>& normal, double beta,
                 double atoms = 3e17) {
    emitters.push_back({at[0], at[1], at[2], normal[0], normal[1], normal[2], atoms, beta, kAtomicVolume});
    const double strength = atoms * ((beta + 1) / (2 * kPi15)) * kAtomicVolume;
    sources.push_back({at[0], at[1], at[2], normal[0], normal[1], normal[2], strength, beta});
  }
  void AddTarget(const std::array<double, 3>& at, const std::array<double, 3>& normal, double weight = 1) {
    receivers.push_back({at[0], at[1], at[2], normal[0], normal[1], normal[2], weight});
  }
  void Pack() {
    targets.Resize(receivers.size());
    for (std::size_t t = 0; t < receivers.size(); ++t) {
      const PlainReceiver& r = receivers[t];
      targets.x[t] = r.x;
      targets.y[t] = r.y;
      targets.z[t] = r.z;
      targets.nx[t] = r.nx;
      targets.ny[t] = r.ny;
      targets.nz[t] = r.nz;
      targets.weight[t] = r.weight;
    }
  }
  RedepositionTargets Shipped() const {
    RedepositionTargets result = targets;
    AddRedeposition(sources, result, 0, result.size());
    return result;
  }
};

std::array<double, 3> Direction(std::mt19937& random) {
  std::normal_distribution<double> normal;
  const double x = normal(random);
  const double y = normal(random);
  const double z = normal(random);
  const double length = std::sqrt(x * x + y * y + z * z);
  return {x / length, y / length, z / length};
}

// Cells here and there, looking anywhere.
Pairs RandomPairs(unsigned seed, std::size_t sources, std::size_t targets, const std::vector<double>& exponents) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> place(-2, 2);
  std::uniform_real_distribution<double> share(0, 1);
  Pairs pairs;
  for (std::size_t n = 0; n < sources; ++n) {
    pairs.AddSource({place(random), place(random), place(random)}, Direction(random),
                    exponents.empty() ? 3 * share(random) : exponents[n % exponents.size()],
                    1e17 * (0.1 + share(random)));
  }
  for (std::size_t n = 0; n < targets; ++n) {
    pairs.AddTarget({place(random), place(random), place(random)}, Direction(random), n % 3 == 0 ? share(random) : 1);
  }
  pairs.Pack();
  return pairs;
}

// Values to 1e-12 relative, the same cells untouched.
void ExpectLikePlain(const Pairs& pairs) {
  std::vector<double> rate(pairs.receivers.size());
  std::vector<float> stored(pairs.receivers.size());
  reference::PlainRedeposition(pairs.emitters, pairs.receivers, rate, stored);
  const RedepositionTargets shipped = pairs.Shipped();
  std::size_t reached = 0;
  for (std::size_t t = 0; t < rate.size(); ++t) {
    ASSERT_EQ(shipped.rate[t] == 0, rate[t] == 0) << t;
    ASSERT_EQ(shipped.stored[t] == 0, stored[t] == 0) << t;
    ASSERT_NEAR(shipped.rate[t], rate[t], 1e-12 * rate[t]) << t;
    ASSERT_NEAR(shipped.stored[t], stored[t], 1e-6 * static_cast<double>(stored[t])) << t;
    reached += rate[t] != 0 ? 1U : 0U;
  }
  EXPECT_GT(reached, 0U);
}

bool SameBits(const RedepositionTargets& a, const RedepositionTargets& b) {
  for (std::size_t t = 0; t < a.size(); ++t) {
    if (std::bit_cast<std::uint64_t>(a.rate[t]) != std::bit_cast<std::uint64_t>(b.rate[t])) return false;
    if (std::bit_cast<std::uint32_t>(a.stored[t]) != std::bit_cast<std::uint32_t>(b.stored[t])) return false;
  }
  return true;
}

TEST(RedepositionKernel, LeastCosineIsWhereTheArccosineFallsBelow90) {
  const double least = LeastCosineBelow90();
  EXPECT_LT(AcosPlain(least) / kDegree, 90);
  EXPECT_GE(AcosPlain(std::nextafter(least, 0)) / kDegree, 90);
  EXPECT_GT(least, 1e-14);
  EXPECT_LT(least, 1e-13);
  // The decision has this one edge.
  for (double x = least; x < 1; x *= 1.01) EXPECT_LT(AcosPlain(x) / kDegree, 90) << x;
  for (double x = least / 1.01; x > 1e-300; x /= 1.5) EXPECT_GE(AcosPlain(x) / kDegree, 90) << x;
}

TEST(RedepositionKernel, AgreesWithThePlainFormForAnyExponent) {
  ExpectLikePlain(RandomPairs(1, 300, 301, {}));
  ExpectLikePlain(RandomPairs(2, 200, 203, {0, 0.5, 1, 1.5, 2, 2.5, 3, 7.5, 8}));
  ExpectLikePlain(RandomPairs(3, 200, 206, {0.3, 8.5, 11, 19.99, 20, -0.4, -0.99}));
}

TEST(RedepositionKernel, EachPairAgreesWithThePlainForm) {
  const std::vector<double> exponents = {0.1, 0.7, 1.3, 2.2, 4.9, 12.6, 0.5, 1, 3};
  for (std::size_t n = 0; n < exponents.size(); ++n) {
    ExpectLikePlain(RandomPairs(static_cast<unsigned>(20 + n), 1, 2000, {exponents[n]}));
  }
}

TEST(RedepositionKernel, GrazingPairsAreSeenByBothOrByNone) {
  // Cosines around the least one that counts, at the source and at the target.
  std::mt19937 random(5);
  std::uniform_real_distribution<double> exponent(-16, -11);
  Pairs pairs;
  for (int n = 0; n < 40; ++n) pairs.AddSource({0.01 * n, 0.003 * n, 0}, {0, 0, 1}, 0.6);
  for (int n = 0; n < 2000; ++n) {
    const double lift = std::pow(10, exponent(random)) * (n % 2 == 0 ? 1 : -1);
    const std::array<double, 3> down = {-1, 0, 0};
    const std::array<double, 3> grazing = {lift, 0, -1};
    pairs.AddTarget({1 + 0.001 * n, 0.5, n % 3 == 0 ? 1.0 : lift}, n % 3 == 0 ? grazing : down);
  }
  pairs.Pack();
  ExpectLikePlain(pairs);
  const RedepositionTargets shipped = pairs.Shipped();
  std::size_t reached = 0;
  for (std::size_t t = 0; t < shipped.size(); ++t) reached += shipped.rate[t] != 0 ? 1U : 0U;
  EXPECT_GT(reached, 500U);
  EXPECT_LT(reached, 1900U);
}

TEST(RedepositionKernel, NothingReachesWhatLiesBehindOrBesides) {
  Pairs pairs;
  pairs.AddSource({0, 0, 0}, {0, 0, 1}, 1.2);
  pairs.AddTarget({0, 0, -1}, {0, 0, 1});     // behind the source
  pairs.AddTarget({0, 0, 1}, {0, 0, 1});      // looks away
  pairs.AddTarget({1, 0, 0}, {-1, 0, 0});     // in the plane of the source
  pairs.AddTarget({0.3, 0, 1}, {1, 0, 0.3});  // its own plane holds the source
  pairs.AddTarget({0, 0, 0}, {0, 0, -1});     // in the very place
  pairs.AddTarget({0, 0, 1}, {0, 0, 0});      // no normal
  pairs.AddTarget({0, 0, 2}, {0, 0, -1});
  pairs.Pack();
  const RedepositionTargets shipped = pairs.Shipped();
  for (std::size_t t = 0; t < 6; ++t) EXPECT_EQ(shipped.rate[t], 0) << t;
  const double expected = 3e17 * 2.2 / (2 * kPi15) / 4 * kAtomicVolume;
  EXPECT_NEAR(shipped.rate[6], expected, 1e-12 * expected);
  EXPECT_EQ(shipped.stored[6], static_cast<float>(shipped.rate[6]));
}

TEST(RedepositionKernel, ThreadsDoNotChangeABit) {
  const Pairs pairs = RandomPairs(9, 700, 1503, {});
  const tbb::global_control seven(tbb::global_control::max_allowed_parallelism, 7);
  RedepositionTargets one;
  tbb::task_arena(1).execute([&] { one = pairs.Shipped(); });
  for (const int threads : {2, 7}) {
    RedepositionTargets more;
    tbb::task_arena(threads).execute([&] { more = pairs.Shipped(); });
    EXPECT_TRUE(SameBits(one, more)) << threads;
  }
}

TEST(RedepositionKernel, PartsOfTheTargetsAddUpToAll) {
  const Pairs pairs = RandomPairs(10, 100, 333, {});
  const RedepositionTargets whole = pairs.Shipped();
  RedepositionTargets parts = pairs.targets;
  AddRedeposition(pairs.sources, parts, 0, 64);
  for (std::size_t t = 64; t < parts.size(); ++t) ASSERT_EQ(parts.rate[t], 0) << t;
  AddRedeposition(pairs.sources, parts, 64, 72);
  AddRedeposition(pairs.sources, parts, 72, parts.size());
  EXPECT_TRUE(SameBits(whole, parts));
}

TEST(RedepositionKernel, SourcesInTwoCallsAddUpToOneCall) {
  const Pairs pairs = RandomPairs(11, 600, 100, {});
  const RedepositionTargets whole = pairs.Shipped();
  RedepositionTargets parts = pairs.targets;
  const std::span<const RedepositionSource> sources = pairs.sources;
  AddRedeposition(sources.first(77), parts, 0, parts.size());
  AddRedeposition(sources.subspan(77), parts, 0, parts.size());
  EXPECT_TRUE(SameBits(whole, parts));
}

TEST(RedepositionKernel, EveryKindOfProcessorGivesTheSameBits) {
  const Pairs pairs = RandomPairs(12, 400, 507, {0.5, 1, 0.77, 1.9, 3, 2.5, -0.3, 13.3});
  const RedepositionTargets best = pairs.Shipped();
  const auto kinds = hwy::SupportedTargets();
  int tried = 0;
  for (auto rest = kinds; rest != 0; rest &= rest - 1) {
    hwy::SetSupportedTargetsForTest(rest & -rest);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    EXPECT_TRUE(SameBits(best, pairs.Shipped())) << hwy::TargetName(rest & -rest);
    ++tried;
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  EXPECT_GE(tried, 1);
}

TEST(RedepositionKernel, TheStatementForOnePairAgreesWithThePlainForm) {
  const Pairs pairs = RandomPairs(13, 40, 60, {0.4, 1, 26.5, -31});
  std::size_t seen = 0;
  for (std::size_t s = 0; s < pairs.sources.size(); ++s) {
    for (const PlainReceiver& r : pairs.receivers) {
      const double expected = reference::PlainGrowth(pairs.emitters[s], r);
      const double growth = RedepositionOfPair(pairs.sources[s], r.x, r.y, r.z, r.nx, r.ny, r.nz);
      ASSERT_EQ(growth == 0, expected == 0);
      ASSERT_NEAR(growth, expected, 1e-12 * std::abs(expected));
      seen += expected != 0 ? 1U : 0U;
    }
  }
  EXPECT_GT(seen, 100U);
}

TEST(RedepositionKernel, APowerOutOfRangeFails) {
  const RedepositionSource source{0, 0, 0, 0, 0, 1, 1e-12, -200};
  EXPECT_THROW(RedepositionOfPair(source, 1e3, 0, 1e-3, -1, 0, 0), RuntimeFailure);
  EXPECT_GT(RedepositionOfPair(source, 0, 0, 1, 0, 0, -1), 0);
}

TEST(RedepositionKernel, WhatTheFastFormLeavesOut) {
  const auto source = [](double exponent, double strength, double x = 0, double nz = 1) {
    return IsRegularSource({x, 0, 0, 0, 0, nz, strength, exponent});
  };
  EXPECT_TRUE(source(0.7, 1e-12));
  EXPECT_TRUE(source(-20, 1e-12));
  EXPECT_FALSE(source(20.1, 1e-12));
  EXPECT_FALSE(source(std::nan(""), 1e-12));
  EXPECT_FALSE(source(0.7, 0));
  EXPECT_FALSE(source(-2, -1e-12));
  EXPECT_FALSE(source(0.7, 1e250));
  EXPECT_FALSE(source(0.7, 1e-12, 1e60));
  EXPECT_FALSE(source(0.7, 1e-12, std::nan("")));
  EXPECT_FALSE(source(0.7, 1e-12, 0, 3));
  EXPECT_TRUE(IsRegularCell(1, 2, 3, 0, 0, 0));
  EXPECT_FALSE(IsRegularCell(1, 2, HUGE_VAL, 0, 0, 1));
  EXPECT_FALSE(IsRegularCell(1, 2, 3, std::nan(""), 0, 1));
}

}  // namespace
}  // namespace orv
