#pragma once

#include <array>
#include <functional>
#include <vector>

#include "view/gl_api.h"

namespace orv {

// A list that is being compiled; it is ended whatever happens.
class ListScope {
 public:
  ListScope(GlApi& gl, GLuint list) : gl_(gl) { gl_.NewList(list); }
  ~ListScope() { Close(); }
  ListScope(const ListScope&) = delete;
  ListScope& operator=(const ListScope&) = delete;
  void Close() {
    if (open_) gl_.EndList();
    open_ = false;
  }

 private:
  GlApi& gl_;
  bool open_ = true;
};

// A long row of things to draw, cut into chunks that are compiled once each. A list that shows things a .. b then only
// calls the chunks that lie inside and draws the rest at both ends itself, so a plot that grows costs a chunk a step,
// not the whole plot.
class ChunkLists {
 public:
  // Draws the things first .. last, in that order (first > last: backwards). `more`: the next one follows, and a line
  // runs on to it.
  using Emit = std::function<void(int first, int last, bool more)>;

  explicit ChunkLists(int chunkSize) : chunkSize_(chunkSize) {}

  // Forgets all chunks: what they show has changed.
  void Clear(GlApi& gl);
  // Compiles the chunks inside low .. high that are not there yet. No list may be open.
  void Prepare(GlApi& gl, int low, int high, bool forward, const Emit& emit);
  // Draws low .. high; the chunks inside must have been prepared.
  void Draw(GlApi& gl, int low, int high, bool forward, const Emit& emit) const;

 private:
  int FirstWhole(int low) const { return (low + chunkSize_ - 1) / chunkSize_; }
  int EndWhole(int high) const { return (high + 1) / chunkSize_; }

  int chunkSize_;
  std::array<std::vector<GLuint>, 2> lists_;  // by direction, by chunk; 0: not compiled
};

}  // namespace orv
