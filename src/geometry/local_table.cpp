#include "geometry/local_table.h"

#include <algorithm>

#include "numerics/failure.h"

namespace orv {

void LocalTable::Reserve(int primitive, int countI, int countJ) {
  if (primitive < 0) return;
  const auto index = static_cast<std::size_t>(primitive);
  if (pages_.size() <= index) pages_.resize(index + 1);
  Page& page = pages_[index];
  const int rows = std::max(countI, 0);
  const int columns = std::max(countJ, 0);
  if (page.countI == rows && page.countJ == columns) return;
  page.countI = rows;
  page.countJ = columns;
  page.values.assign(
      static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns) * static_cast<std::size_t>(columns_), 0.0F);
}

const LocalTable::Page* LocalTable::PageOf(int primitive, int i, int j, int column) const {
  if (primitive < 0 || static_cast<std::size_t>(primitive) >= pages_.size()) return nullptr;
  const Page& page = pages_[static_cast<std::size_t>(primitive)];
  const bool held = i >= 1 && i <= page.countI && j >= 1 && j <= page.countJ && column >= 1 && column <= columns_;
  return held ? &page : nullptr;
}

void LocalTable::Set(int primitive, int i, int j, int column, double value) {
  const Page* held = PageOf(primitive, i, j, column);
  if (held == nullptr) return;
  pages_[static_cast<std::size_t>(primitive)].values[Offset(*held, i, j, column)] = static_cast<float>(value);
}

float LocalTable::operator()(int primitive, int i, int j, int column) const {
  if (primitive < 0 || i < 0 || j < 0 || column < 0 || column > columns_) Raise(FailureNumber::SubscriptOutOfRange);
  const Page* held = PageOf(primitive, i, j, column);
  return held == nullptr ? 0.0F : held->values[Offset(*held, i, j, column)];
}

}  // namespace orv
