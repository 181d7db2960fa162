#pragma once

#include <vector>

#include "view/camera.h"
#include "view/plot_chunks.h"
#include "view/point_lists.h"

namespace orv {

inline constexpr int kDots = 0;            // "Recto&Verso dots"
inline constexpr int kDotsAndBorders = 1;  // "R&V dots&borders"
inline constexpr int kRectoSide = 2;       // "RECTO side"
inline constexpr int kVersoSide = 3;       // "VERSO side"
inline constexpr int kBothSides = 4;       // "Recto&Verso sides"

// A line wider than the system draws becomes a strip of this half width that faces the camera.
struct WideLine {
  Vec3 towardsCamera{};
  double halfWidth = 0;  // scene units; 0: the system draws the line
  friend bool operator==(const WideLine&, const WideLine&) = default;
};

// How a line of a width in pixels is drawn.
WideLine WideLineOf(GlApi& gl, double pixels, const Vec3& towardsCamera, double unitsPerPixel);

// Line pairs as triangles that face the camera.
void WidenLines(std::vector<ColouredVertex>& pairs, const WideLine& wide);

// The outlines of TraceList: closed lines or faces, each whole and in one colour.
class OutlinePass {
 public:
  // Finds the outlines of the lists.
  void Take(const PointLists& lists);

  // Number of the first outline that begins at or behind an entry, and of those that end at or before one.
  int FirstFrom(int entry) const;
  int CountUpTo(int entry) const;

  // Appends the outlines first .. last of a mode to `lines` (pairs) or `faces` (triangles). Colours by cell; the cell
  // of an outline is a sixth of its first entry.
  void Append(const PointLists& lists, int mode, int first, int last,
              std::span<const std::array<std::uint8_t, 4>> colours, std::vector<ColouredVertex>& vertices) const;

  // The separate line pairs behind the outlines, up to the entry `last`.
  static void AppendPairs(const PointLists& lists, int last, std::span<const std::array<std::uint8_t, 4>> colours,
                          std::vector<ColouredVertex>& vertices);

  static GLenum Primitive(int mode) { return mode >= kRectoSide ? GL_TRIANGLES : GL_LINES; }

 private:
  struct Outline {
    int first = 0;
    int count = 0;
  };
  std::vector<Outline> outlines_;
};

}  // namespace orv
