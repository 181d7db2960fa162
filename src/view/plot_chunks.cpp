#include "view/plot_chunks.h"

namespace orv {

void ChunkLists::Clear(GlApi& gl) {
  for (auto& direction : lists_) {
    for (const GLuint list : direction) {
      if (list != 0) gl.DeleteLists(list, 1);
    }
    direction.clear();
  }
}

void ChunkLists::Prepare(GlApi& gl, int low, int high, bool forward, const Emit& emit) {
  std::vector<GLuint>& lists = lists_[forward ? 1 : 0];
  for (int chunk = FirstWhole(low); chunk < EndWhole(high); ++chunk) {
    const auto place = static_cast<std::size_t>(chunk);
    if (lists.size() <= place) lists.resize(place + 1, 0);
    if (lists[place] != 0) continue;
    const int first = chunk * chunkSize_;
    const int last = first + chunkSize_ - 1;
    const GLuint name = gl.GenLists(1);
    try {
      const ListScope list(gl, name);
      // Whatever follows, a chunk leads on to it: the thing behind the last one of a plot is not there to be led to.
      if (forward) {
        emit(first, last, true);
      } else {
        emit(last, first, true);
      }
    } catch (...) {
      gl.DeleteLists(name, 1);
      throw;
    }
    lists[place] = name;
  }
}

void ChunkLists::Draw(GlApi& gl, int low, int high, bool forward, const Emit& emit) const {
  if (low > high) return;
  const int firstWhole = FirstWhole(low);
  const int endWhole = EndWhole(high);
  if (firstWhole >= endWhole) {
    if (forward) {
      emit(low, high, false);
    } else {
      emit(high, low, false);
    }
    return;
  }
  const int head = firstWhole * chunkSize_;  // low .. head - 1 stand before the chunks
  const int tail = endWhole * chunkSize_;    // tail .. high behind them
  const std::vector<GLuint>& lists = lists_[forward ? 1 : 0];
  const auto chunk = [&](int c, bool leadsOn) {
    if (leadsOn) {
      gl.CallList(lists[static_cast<std::size_t>(c)]);
    } else if (forward) {
      emit(c * chunkSize_, (c + 1) * chunkSize_ - 1, false);
    } else {
      emit((c + 1) * chunkSize_ - 1, c * chunkSize_, false);
    }
  };
  if (forward) {
    if (low < head) emit(low, head - 1, true);
    for (int c = firstWhole; c < endWhole; ++c) chunk(c, c + 1 < endWhole || tail <= high);
    if (tail <= high) emit(tail, high, false);
  } else {
    if (tail <= high) emit(high, tail, true);
    for (int c = endWhole - 1; c >= firstWhole; --c) chunk(c, c > firstWhole || low < head);
    if (low < head) emit(head - 1, low, false);
  }
}

}  // namespace orv
