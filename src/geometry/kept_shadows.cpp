#include "geometry/kept_shadows.h"

#include <algorithm>

namespace orv {
namespace {

constexpr int kDistance = 18;
constexpr int kShadow = 20;

template <class Work>
void ForEachCell(int countI, int countJ, Work&& work) {
  for (int i = 1; i <= countI; ++i) {
    for (int j = 1; j <= countJ; ++j) work(i, j);
  }
}

}  // namespace

KeptShadows::KeptShadows(const Cells& cells) {
  const CellBlock& data = cells.CellData;
  primitives_.resize(static_cast<std::size_t>(data.primitives()) + 1);
  for (int k = 1; k <= data.primitives(); ++k) {
    Primitive& kept = primitives_[static_cast<std::size_t>(k)];
    kept.countI = std::min(cells.CountI(k), data.cellsI());
    kept.countJ = std::min(cells.CountJ(k), data.cellsJ());
    ForEachCell(kept.countI, kept.countJ, [&](int i, int j) {
      kept.values.push_back(data(k, i, j, kDistance));
      kept.values.push_back(data(k, i, j, kShadow));
    });
  }
}

bool KeptShadows::Fits(const Cells& cells) const {
  if (static_cast<int>(primitives_.size()) != cells.CellData.primitives() + 1) return false;
  for (int k = 1; k <= cells.CellData.primitives(); ++k) {
    const Primitive& kept = primitives_[static_cast<std::size_t>(k)];
    if (std::min(cells.CountI(k), cells.CellData.cellsI()) != kept.countI) return false;
    if (std::min(cells.CountJ(k), cells.CellData.cellsJ()) != kept.countJ) return false;
  }
  return true;
}

void KeptShadows::PutBack(Cells& cells) const {
  for (std::size_t k = 1; k < primitives_.size(); ++k) {
    const Primitive& kept = primitives_[k];
    std::size_t place = 0;
    ForEachCell(kept.countI, kept.countJ, [&](int i, int j) {
      cells.CellData(k, i, j, kDistance) = kept.values[place++];
      cells.CellData(k, i, j, kShadow) = kept.values[place++];
    });
  }
}

}  // namespace orv
