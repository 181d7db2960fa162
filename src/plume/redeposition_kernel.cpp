#include "plume/redeposition_kernel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "numerics/angles.h"
#include "numerics/failure.h"

// Compiled once for each kind of processor.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "plume/redeposition_kernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef ORV_REDEPOSITION_TILE
#define ORV_REDEPOSITION_TILE
namespace orv {

constexpr std::size_t kSourceChunk = 256;  // stays in the first cache
constexpr int kMostHalves = 16;            // exponents up to 8 in steps of one half have a power of their own

// Some targets and what they receive from.
struct RedepositionTile {
  std::span<const RedepositionSource> sources;
  const RedepositionTargets* columns;
  double* rate;
  float* stored;
  std::size_t first;  // targets, whole vectors
  std::size_t last;
  double leastCosine;
};

}  // namespace orv
#endif

HWY_BEFORE_NAMESPACE();
namespace orv {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D = hn::CappedTag<double, 8>;
using V = hn::Vec<D>;
using DI = hn::RebindToSigned<D>;
using DF = hn::Rebind<float, D>;

// Products and sums stay apart: a fused multiply-add, which not every processor has, would change the last digit.
HWY_INLINE V Plus(V a, V b, V c) {
  return hn::Add(hn::Mul(a, b), c);
}

// Polynomials of 8 and 11 coefficients, by neighbours, so that the processor finds work side by side.
HWY_INLINE V Polynomial8(D d, V x, const double* c) {
  const auto pair = [&](std::size_t k) { return Plus(hn::Set(d, c[k + 1]), x, hn::Set(d, c[k])); };
  const V x2 = hn::Mul(x, x);
  return Plus(Plus(pair(6), x2, pair(4)), hn::Mul(x2, x2), Plus(pair(2), x2, pair(0)));
}
HWY_INLINE V Polynomial11(D d, V x, const double* c) {
  const auto pair = [&](std::size_t k) { return Plus(hn::Set(d, c[k + 1]), x, hn::Set(d, c[k])); };
  const V x2 = hn::Mul(x, x);
  const V x4 = hn::Mul(x2, x2);
  const V high = Plus(hn::Set(d, c[10]), x2, pair(8));
  return Plus(Plus(high, x4, Plus(pair(6), x2, pair(4))), x4, Plus(pair(2), x2, pair(0)));
}

constexpr double kRoundingShift = 6755399441055744.0;  // 1.5 * 2^52: the sum's low bits are the whole number

// log2 of a normal positive number: exponent plus the series of ((1 + s) / (1 - s)) of the mantissa.
HWY_INLINE V Log2(D d, V x) {
  static constexpr double kSeries[] = {0x1.71547652b82fep+1, 0x1.ec709dc3a047dp-1, 0x1.2776c50ee39a4p-1,
                                       0x1.a61762d699b46p-2, 0x1.484afb77d8797p-2, 0x1.0ca160eda205bp-2,
                                       0x1.c46df723fd2ebp-3, 0x1.b594042f590e9p-3};
  const DI di;
  const auto bits = hn::BitCast(di, x);
  const auto rootOfHalf = hn::Set(di, 0x3FE6A09E667F3BCD);
  const auto exponent = hn::ShiftRight<52>(hn::Sub(bits, rootOfHalf));
  const V m = hn::BitCast(d, hn::Sub(bits, hn::ShiftLeft<52>(exponent)));
  const V shift = hn::Set(d, kRoundingShift);
  const V e = hn::Sub(hn::BitCast(d, hn::Add(exponent, hn::BitCast(di, shift))), shift);
  const V one = hn::Set(d, 1.0);
  const V s = hn::Div(hn::Sub(m, one), hn::Add(m, one));
  return Plus(s, Polynomial8(d, hn::Mul(s, s), kSeries), e);
}

// 2^y for results that are normal numbers.
HWY_INLINE V Exp2(D d, V y) {
  static constexpr double kSeries[] = {1,
                                       0x1.62e42fefa3a19p-1,
                                       0x1.ebfbdff82c598p-3,
                                       0x1.c6b08d703ce49p-5,
                                       0x1.3b2ab6fba1ddap-7,
                                       0x1.5d87fe9d7a584p-10,
                                       0x1.430913096fd9fp-13,
                                       0x1.ffcb54062e698p-17,
                                       0x1.62bfd47773353p-20,
                                       0x1.b675bca4eeebbp-24,
                                       0x1.e6063f7217bc6p-28};
  const DI di;
  const V shift = hn::Set(d, kRoundingShift);
  const V sum = hn::Add(y, shift);
  const V rest = hn::Sub(y, hn::Sub(sum, shift));
  const V p = Polynomial11(d, rest, kSeries);
  return hn::BitCast(d, hn::Add(hn::BitCast(di, p), hn::ShiftLeft<52>(hn::BitCast(di, sum))));
}

// x^(halves / 2) for halves of 0 or more, any power by logarithms otherwise.
HWY_INLINE V PowerOf(D d, V x, int halves, double exponent) {
  if (halves < 0) return Exp2(d, hn::Mul(hn::Set(d, exponent), Log2(d, x)));
  V p = halves % 2 != 0 ? hn::Sqrt(x) : hn::Set(d, 1.0);
  for (int k = halves / 2; k > 0; --k) p = hn::Mul(p, x);
  return p;
}

// One vector of targets against some sources in their order.
HWY_INLINE void AddToVector(const RedepositionTile& tile, std::span<const RedepositionSource> sources,
                            const int* halves, std::size_t t) {
  const D d;
  const DF df;
  const RedepositionTargets& columns = *tile.columns;
  const V tx = hn::LoadU(d, columns.x.data() + t);
  const V ty = hn::LoadU(d, columns.y.data() + t);
  const V tz = hn::LoadU(d, columns.z.data() + t);
  const V tnx = hn::LoadU(d, columns.nx.data() + t);
  const V tny = hn::LoadU(d, columns.ny.data() + t);
  const V tnz = hn::LoadU(d, columns.nz.data() + t);
  const V weight = hn::LoadU(d, columns.weight.data() + t);
  const V least = hn::Set(d, tile.leastCosine);
  const V zero = hn::Zero(d);
  V rate = hn::LoadU(d, tile.rate + t);
  V stored = hn::PromoteTo(d, hn::LoadU(df, tile.stored + t));
  for (std::size_t n = 0; n < sources.size(); ++n) {
    const RedepositionSource& source = sources[n];
    const V nx = hn::Set(d, source.nx);
    const V ny = hn::Set(d, source.ny);
    const V nz = hn::Set(d, source.nz);
    const V rx = hn::Sub(tx, hn::Set(d, source.x));
    const V ry = hn::Sub(ty, hn::Set(d, source.y));
    const V rz = hn::Sub(tz, hn::Set(d, source.z));
    // Pairs behind the plane of the source or of the target, before the root and the divisions.
    const V ahead = Plus(rz, nz, Plus(ry, ny, hn::Mul(rx, nx)));
    const V behind = Plus(rz, tnz, Plus(ry, tny, hn::Mul(rx, tnx)));
    const auto maybe = hn::And(hn::Gt(ahead, zero), hn::Lt(behind, zero));
    if (hn::AllFalse(d, maybe)) continue;

    const V d2 = Plus(rz, rz, Plus(ry, ry, hn::Mul(rx, rx)));
    const V f = hn::Div(hn::Set(d, 1.0), hn::Sqrt(d2));
    const V ux = hn::Mul(rx, f);
    const V uy = hn::Mul(ry, f);
    const V uz = hn::Mul(rz, f);
    const V cs = Plus(uz, nz, Plus(uy, ny, hn::Mul(ux, nx)));
    const V ct = hn::Neg(Plus(uz, tnz, Plus(uy, tny, hn::Mul(ux, tnx))));
    const auto seen = hn::And(hn::Ge(cs, least), hn::Ge(ct, least));
    const V power = PowerOf(d, cs, halves[n], source.exponent);
    const V factor = hn::Mul(hn::Mul(hn::Set(d, source.strength), power), hn::Mul(ct, hn::Mul(f, f)));
    const V arrives = hn::IfThenElseZero(seen, hn::Mul(factor, weight));
    rate = hn::Add(rate, arrives);
    stored = hn::PromoteTo(d, hn::DemoteTo(df, hn::Add(stored, arrives)));
  }
  hn::StoreU(rate, d, tile.rate + t);
  hn::StoreU(hn::DemoteTo(df, stored), df, tile.stored + t);
}

void AddToTile(const RedepositionTile& tile) {
  const std::size_t lanes = hn::Lanes(D());
  std::array<int, kSourceChunk> halves{};
  for (std::size_t begin = 0; begin < tile.sources.size(); begin += kSourceChunk) {
    const auto sources = tile.sources.subspan(begin, std::min(kSourceChunk, tile.sources.size() - begin));
    for (std::size_t n = 0; n < sources.size(); ++n) {
      const double twice = 2 * sources[n].exponent;
      const bool own = twice >= 0 && twice <= kMostHalves && twice == std::floor(twice);
      halves[n] = own ? static_cast<int>(twice) : -1;
    }
    for (std::size_t t = tile.first; t < tile.last; t += lanes) AddToVector(tile, sources, halves.data(), t);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace orv
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace orv {
namespace {

HWY_EXPORT(AddToTile);

constexpr std::size_t kVector = 8;       // targets, the widest vector
constexpr std::size_t kTileVectors = 8;  // of one task
constexpr double kMostExponent = 20;     // cosines of 90 degrees to this power are far from the smallest number
constexpr double kMostStrength = 1e200;
constexpr double kMostCoordinate = 1e50;
constexpr double kMostNormal2 = 4;

bool Sees(double cosine) {
  return AcosPlain(cosine) / kDegree < 90;
}

}  // namespace

void RedepositionTargets::Resize(std::size_t count) {
  size_ = count;
  const std::size_t padded = (count + kVector - 1) / kVector * kVector;
  for (std::vector<double>* column : {&x, &y, &z, &nx, &ny, &nz, &rate}) column->assign(padded, 0);
  weight.assign(padded, 1);
  stored.assign(padded, 0);
}

double LeastCosineBelow90() {
  double low = 0;  // not seen
  double high = 1e-10;
  for (double middle = 5e-11; middle > low && middle < high; middle = low + (high - low) / 2) {
    (Sees(middle) ? high : low) = middle;
  }
  return high;
}

double RedepositionOfPair(const RedepositionSource& source, double x, double y, double z, double nx, double ny,
                          double nz) {
  const double rx = x - source.x;
  const double ry = y - source.y;
  const double rz = z - source.z;
  const double d2 = rx * rx + ry * ry + rz * rz;
  if (d2 == 0) return 0;
  const double f = 1 / std::sqrt(d2);
  const double ux = rx * f;
  const double uy = ry * f;
  const double uz = rz * f;
  const double cs = ux * source.nx + uy * source.ny + uz * source.nz;
  const double ct = -(ux * nx + uy * ny + uz * nz);
  if (!Sees(cs) || !Sees(ct)) return 0;
  return Finite(Divide(source.strength * Power(cs, source.exponent) * ct, d2));
}

bool IsRegularCell(double x, double y, double z, double nx, double ny, double nz) {
  return std::abs(x) < kMostCoordinate && std::abs(y) < kMostCoordinate && std::abs(z) < kMostCoordinate &&
         nx * nx + ny * ny + nz * nz <= kMostNormal2;
}

bool IsRegularSource(const RedepositionSource& source) {
  return IsRegularCell(source.x, source.y, source.z, source.nx, source.ny, source.nz) &&
         std::abs(source.exponent) <= kMostExponent && source.strength > 1 / kMostStrength &&
         source.strength < kMostStrength;
}

void AddRedeposition(std::span<const RedepositionSource> sources, RedepositionTargets& targets, std::size_t first,
                     std::size_t last) {
  const double leastCosine = LeastCosineBelow90();
  const std::size_t firstVector = first / kVector;
  const std::size_t lastVector = (last + kVector - 1) / kVector;
  tbb::parallel_for(tbb::blocked_range<std::size_t>(firstVector, lastVector, kTileVectors),
                    [&](const tbb::blocked_range<std::size_t>& range) {
                      const RedepositionTile tile{sources,
                                                  &targets,
                                                  targets.rate.data(),
                                                  targets.stored.data(),
                                                  range.begin() * kVector,
                                                  range.end() * kVector,
                                                  leastCosine};
                      HWY_DYNAMIC_DISPATCH(AddToTile)(tile);
                    });
}

}  // namespace orv
#endif  // HWY_ONCE
