#pragma once

#include <cstddef>
#include <span>
#include <vector>

// Atoms that leave eroded cells and settle on others: all pairs of cells, which is where a redeposition run spends its
// time. Nothing here raises or speaks.
namespace orv {

// A cell that emits: place, unit normal, and the growth rate strength cs^exponent ct / d^2 (m/s) that it brings to a
// cell at the distance d, cs and ct being the cosines at source and target. Strength in m3/s.
struct RedepositionSource {
  double x, y, z;
  double nx, ny, nz;
  double strength;
  double exponent;
};

// Cells that receive, column by column. Columns are padded to whole vectors.
class RedepositionTargets {
 public:
  // Cells up to `count`, all zero with weight 1.
  void Resize(std::size_t count);
  std::size_t size() const { return size_; }

  std::vector<double> x, y, z;
  std::vector<double> nx, ny, nz;
  std::vector<double> weight;  // share of the time that the cell spends here
  std::vector<double> rate;    // sums up what arrives, m/s
  std::vector<float> stored;   // the same, rounded to single precision behind each source

 private:
  std::size_t size_ = 0;
};

// The smallest cosine of an angle that still counts as below 90 degrees. Smaller cosines are rounding: the arccosine
// in degrees comes out as 90 or more.
double LeastCosineBelow90();

// What one source brings to a place: the plain statement. 0 when they do not see each other or share one place.
// Failures 5 and 6 when the power leaves the range of numbers.
double RedepositionOfPair(const RedepositionSource& source, double x, double y, double z, double nx, double ny,
                          double nz);

// Whether the fast form may take a source, or a target of this place and normal: numbers far from the ends of their
// range.
bool IsRegularSource(const RedepositionSource& source);
bool IsRegularCell(double x, double y, double z, double nx, double ny, double nz);

// Adds what regular sources bring to the targets `first` (a multiple of 8) to `last` - 1, each target summing its
// sources in their order, on all threads of the arena. The result depends neither on their number nor on the processor.
void AddRedeposition(std::span<const RedepositionSource> sources, RedepositionTargets& targets, std::size_t first,
                     std::size_t last);

}  // namespace orv
