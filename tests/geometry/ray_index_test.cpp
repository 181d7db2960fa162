#include "geometry/ray_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "reference/plain_ray_tracing.h"
#include "support/random_strips.h"

#ifndef ORV_RANDOM_MODELS
#define ORV_RANDOM_MODELS 4000
#endif

namespace orv {
namespace {

using testing::Chance;
using testing::Corners;

std::array<double, 12> Flat(const Corners& corners) {
  std::array<double, 12> flat{};
  for (std::size_t n = 0; n < 4; ++n) {
    flat[3 * n] = corners[n].x;
    flat[3 * n + 1] = corners[n].y;
    flat[3 * n + 2] = corners[n].z;
  }
  return flat;
}

std::uint64_t BitsOf(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// Quadrilaterals that are no outline round their middle: folded, with two corners on opposite sides of the thruster,
// and with a half that has no area and a corner far away.
TEST(RayIndexTest, CornersThatAreNoOutline) {
  const auto found = [](const Corners& corners, const Sight& ray) {
    const std::vector<Sight> sample(100, ray);
    const RayIndex index({SightStrip({}, Flat(corners))}, sample, 1e5);
    bool hit = false;
    index.FindHits(ray, 1, 1, [&hit](std::uint32_t, double) { hit = true; });
    EXPECT_NE(HitsStrip(SightStrip({}, Flat(corners)), ray).halves, 0U);
    return hit;
  };
  const double third = 1e4 / 3;
  EXPECT_TRUE(
      found({third * Sight{2, 2, -3}, third * Sight{2, -2, -2}, third * Sight{-1, 3, 3}, third * Sight{1, -1, -1}},
            third * Sight{1, 2, 1}));
  EXPECT_TRUE(found({Sight{2, 1, 0}, {0, 0, 2}, {-3, 2, 2}, {0, 0, -3}}, {-1, 1, -1}));
  EXPECT_TRUE(found({Sight{2, 1, 0}, {0, 0, 2}, {-3, 2, 2}, {0, 0, -3}}, {-1.5, 1.25, -1}));
  EXPECT_TRUE(found({Sight{-1, -2, 1}, {-4, -2, 4}, {-3, -2, 1}, {1e60, -2, -2}}, {-6, -4, 2}));
}

// The index finds exactly the strips that a test of all of them finds, and the test is the plain one, bit by bit.
TEST(RayIndexTest, FindsEveryStripThatARayHits) {
  std::size_t hits = 0;
  std::size_t beyond = 0;
  for (std::uint32_t seed = 0; seed < ORV_RANDOM_MODELS; ++seed) {
    Chance chance(seed);
    chance.grid = chance.OneIn(2);
    const double size = std::array{3.0, 3.0, 1.0, 0.01, 1e4}[static_cast<std::size_t>(chance.Below(5))];
    const Sight o = chance.OneIn(3) ? Sight{} : chance.Point(size * (chance.OneIn(4) ? 1000 : 1));
    std::vector<Corners> quads;
    std::vector<SightStrip> strips;
    const int count = 1 + chance.Below(20);
    for (int s = 0; s < count; ++s) {
      quads.push_back(chance.Quadrilateral(o, size));
      strips.emplace_back(o, Flat(quads.back()));
      strips.back().primitive = 1 + s / 4;
      strips.back().column = s / 4 == 1 ? 0 : s % 4 + 1;
    }
    std::vector<Sight> rays;
    rays.reserve(150);
    for (int n = 0; n < 150; ++n) rays.push_back(chance.End(o, quads, size) - o);
    const std::vector<Sight> sample(rays.begin(), rays.begin() + chance.Below(30));
    const RayIndex index(strips, sample, chance.OneIn(2) ? 150 : 20000);
    for (const Sight& ray : rays) {
      const int ownPrimitive = chance.Below(4);
      const int ownColumn = chance.Below(5);
      std::vector<std::pair<std::uint32_t, std::uint64_t>> found;
      index.FindHits(ray, ownPrimitive, ownColumn,
                     [&](std::uint32_t s, double t) { found.emplace_back(s, BitsOf(t)); });
      std::sort(found.begin(), found.end());
      std::vector<std::pair<std::uint32_t, std::uint64_t>> expected;
      for (std::uint32_t s = 0; s < strips.size(); ++s) {
        if (strips[s].primitive == ownPrimitive && (strips[s].column == 0 || strips[s].column == ownColumn)) continue;
        std::array<reference::PlainVector, 5> p{};
        for (std::size_t n = 0; n < 4; ++n) p[n + 1] = {quads[s][n].x, quads[s][n].y, quads[s][n].z};
        double t = 0;
        if (reference::PlainQuadHit({ray.x, ray.y, ray.z}, {o.x, o.y, o.z}, p, t) == 1) {
          expected.emplace_back(s, BitsOf(t));
        }
      }
      ASSERT_EQ(found, expected) << "seed " << seed << " ray " << ray.x << ' ' << ray.y << ' ' << ray.z;
      hits += found.size();
      beyond += found.empty() ? 1 : 0;
    }
  }
  EXPECT_GT(hits, ORV_RANDOM_MODELS * 30);
  EXPECT_GT(beyond, ORV_RANDOM_MODELS * 30);
}

// Rays of every length and direction in a model that the routine sees as huge, so that the squares are small.
TEST(RayIndexTest, FineSquaresMissNothing) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    Chance chance(1000 + seed);
    std::vector<SightStrip> strips;
    const Sight o = chance.Any(1);
    for (int s = 0; s < 40; ++s) {
      const Sight p = chance.Any(3);
      const Sight e1 = chance.Any(s % 2 == 0 ? 0.05 : 4);
      const Sight e2 = chance.Any(s % 3 == 0 ? 0.05 : 4);
      strips.emplace_back(o, Flat({p, p + e1, p + e1 + e2, p + e2}));
      strips.back().primitive = 1;
      strips.back().column = s + 1;
    }
    std::vector<Sight> rays;
    rays.reserve(3000);
    for (int n = 0; n < 3000; ++n) rays.push_back(chance.Any(5));
    const RayIndex index(strips, rays, 2e5);
    std::size_t hits = 0;
    for (const Sight& ray : rays) {
      std::vector<std::uint32_t> found;
      index.FindHits(ray, 0, 0, [&found](std::uint32_t s, double) { found.push_back(s); });
      std::sort(found.begin(), found.end());
      std::vector<std::uint32_t> expected;
      for (std::uint32_t s = 0; s < strips.size(); ++s) {
        if (HitsStrip(strips[s], ray).halves != 0) expected.push_back(s);
      }
      ASSERT_EQ(found, expected) << "seed " << seed;
      hits += found.size();
    }
    EXPECT_GT(hits, 300U);
  }
}

}  // namespace
}  // namespace orv
