#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "numerics/angles.h"

// Redeposition as it reads: one source cell after the other, one target cell after the other. It is slow, and what the
// shipped form is compared with.
namespace orv::reference {

struct PlainEmitter {
  double x, y, z;     // place
  double nx, ny, nz;  // normal
  double atomsPerSecond;
  double beta;          // exponent of the cosine law
  double atomicVolume;  // m3
};

struct PlainReceiver {
  double x, y, z;
  double nx, ny, nz;
  double weight = 1;
};

// The growth rate of the target by the source, m/s; 0 when they do not see each other.
inline double PlainGrowth(const PlainEmitter& source, const PlainReceiver& target) {
  const double rx = target.x - source.x;
  const double ry = target.y - source.y;
  const double rz = target.z - source.z;
  const double d = std::sqrt(rx * rx + ry * ry + rz * rz);
  if (d == 0) return 0;
  const double f = 1 / d;
  const double ux = rx * f;
  const double uy = ry * f;
  const double uz = rz * f;
  const double cs = ux * source.nx + uy * source.ny + uz * source.nz;
  const double ct = -ux * target.nx + -uy * target.ny + -uz * target.nz;
  if (!(AcosPlain(cs) / kDegree < 90)) return 0;
  if (!(AcosPlain(ct) / kDegree < 90)) return 0;
  const double c = (source.beta + 1) / (2 * kPi15);
  return source.atomsPerSecond * c * std::pow(cs, source.beta) * ct / (d * d) * source.atomicVolume;
}

// Adds the growth of every target by every source to rate[target], and to stored[target] with single precision.
inline void PlainRedeposition(const std::vector<PlainEmitter>& sources, const std::vector<PlainReceiver>& targets,
                              std::vector<double>& rate, std::vector<float>& stored) {
  for (const PlainEmitter& source : sources) {
    for (std::size_t t = 0; t < targets.size(); ++t) {
      const double growth = PlainGrowth(source, targets[t]) * targets[t].weight;
      rate[t] = rate[t] + growth;
      stored[t] = static_cast<float>(static_cast<double>(stored[t]) + growth);
    }
  }
}

}  // namespace orv::reference
