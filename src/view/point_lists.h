#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "numerics/zero_pages.h"

// What a plot is made of: plain tables that the producers fill (analysis, range plots, other programs) and the scene
// reads. No physics and no OpenGL.
namespace orv {

inline constexpr int kListEntries = 1 << 20;  // of each row
inline constexpr int kNoEntry = -1;           // last index of an empty list
inline constexpr int kOutlineEntries = 6;     // five points of a closed outline and one break
inline constexpr float kPenUp = -1;

// Rows of 2^20 single-precision numbers, index from 0, all 0 at first; memory is taken where it is written.
class ListTable {
 public:
  explicit ListTable(int rows) : rows_(rows) { Clear(); }

  // Failure 9 outside the table.
  template <class Row, class Index>
  float& operator()(Row row, Index index) {
    return data()[Offset(ToIndex(row), ToIndex(index))];
  }
  template <class Row, class Index>
  float operator()(Row row, Index index) const {
    return data()[Offset(ToIndex(row), ToIndex(index))];
  }

  std::span<float> row(int r) { return {data() + Offset(r, 0), kListEntries}; }
  std::span<const float> row(int r) const { return {data() + Offset(r, 0), kListEntries}; }
  int rows() const { return rows_; }

  // All entries 0 again; the memory goes back to the system.
  void Clear() { pages_ = ZeroPages(static_cast<std::size_t>(rows_) * kListEntries / 2); }

 private:
  std::size_t Offset(std::ptrdiff_t row, std::ptrdiff_t index) const {
    if (row < 0 || row >= rows_ || index < 0 || index >= kListEntries) Raise(FailureNumber::SubscriptOutOfRange);
    return static_cast<std::size_t>(row) * kListEntries + static_cast<std::size_t>(index);
  }
  float* data() { return reinterpret_cast<float*>(pages_.data()); }
  const float* data() const { return reinterpret_cast<const float*>(pages_.data()); }

  int rows_;
  ZeroPages pages_;
};

using Point3 = std::array<float, 3>;

// x' = rotation x + translation, the matrix row by row.
struct RigidMotion {
  std::array<double, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1};
  std::array<double, 3> translation{};
};

// A primitive that the playback of a turn moves: a stretch of PointList and one of the outlines.
struct TurningPrimitive {
  int start = 0;  // first entry of PointList
  int count = 0;  // entries, in the order of the cells
  int outlineStart = 0;
  int outlineEntries = 0;
  std::vector<std::vector<Point3>> positions;  // by frame 0 .. frames, then by cell; frame 0 as the lists were filled
  std::vector<RigidMotion> motions;            // by frame, from the place in frame 0
};

// The turn of a rotating primitive: one frame for each step, frame 0 for the mean of the turn.
struct AutoRotation {
  bool present = false;      // the lists hold the turning primitive and its frames
  int AutoRotPrimitive = 0;  // number of the primitive in the model
  int frames = 0;            // last frame
  TurningPrimitive main;     // main.start is AutoRotStart, main.count AutoRotCount
  std::vector<TurningPrimitive> extra;
  bool hasValues = false;                  // the plot has a value for each frame
  std::vector<std::vector<float>> values;  // by frame, then by cell; on the same scale as row 0 of PointList
  std::vector<float> minimum, maximum;     // of the values of a frame
};

// Bounds of the colours and how the legend tells them. Of a logarithmic plot all four are logarithms.
struct LegendRange {
  double LegendMin = 0;
  double LegendMax = 1;
  double ScaleMin = 0;  // the same as the legend's unless the values were normalised again
  double ScaleMax = 1;
  double LogScale = 0;
  double HasNonPositive = 0;
  std::string unit;  // of the plain value, empty for none
};

struct PointLists {
  // Rows: value or time; x, y, z; pen flag (-1: no vertex, the line breaks).
  ListTable PointList{5};
  // Outlines: x, y, z, pen flag. Attitude: time, quaternion w, x, y, z.
  ListTable TraceList{5};
  ListTable EventList{2};        // time, state
  ListTable PanelAngleList1{2};  // time, degrees
  ListTable PanelAngleList2{2};
  ListTable ValueTable{2};  // time, value

  // Last indices; kNoEntry: empty.
  int NumberPoints = kNoEntry;
  int TraceCount = kNoEntry;
  int EventCount = kNoEntry;
  int PanelCount1 = kNoEntry;
  int PanelCount2 = kNoEntry;
  int ValueCount = kNoEntry;

  int TraceMin = 0;  // first and last entry of TraceList to draw now
  int TraceMax = kNoEntry;
  int OutlineCount = 0;       // entries of TraceList that belong to outlines; behind them stand separate line pairs
  int VectorCount = 0;        // entries at the end of TraceList that show vectors on cells
  bool VectorsShown = false;  // TraceCount includes them

  int ValueAxis = 0;  // 1, 2, 3: bars along x, y, z
  double ValueMin = 0;
  double ValueMax = 0;
  double PlotValueMin = 0;  // extremes of row 0 of PointList
  double PlotValueMax = 0;

  int EventTwoState = 0;
  int PenUpMode = 0;
  double FactorScale = 1;
  bool EarthOn = false;   // a range plot with a scale of its own
  bool TimePlot = false;  // row 0 of PointList is a time in days
  bool MoonView = false;
  double MaravoFactor = 0;
  double IndexPlot = 0;  // quantity shown, 0 for other plots
  std::string Title;
  LegendRange legend;
  AutoRotation rotation;

  // Hand-over to the scene.
  int PlotLoaded = 0;      // 0: the next Draw normalises the lists
  int PlotNormalised = 0;  // 1: the lists were scaled
  double FirstDraw = 0;    // 1: a plot is awaited, the camera keeps still
  int KeepScale = 0;       // 1: a plot of the data shown before, on its scale; the scene answers with 2
  bool Scaled = false;     // the lists are in scene units
  bool FreeScale = true;   // each axis has a scale of its own: the plot was given with the scale 1

  // Empties every list and takes the switches back; the hand-over flags ask for a new normalisation.
  void Clear();

  // Extremes of row 0 of PointList over all entries; equal ones are set apart (0: maximum 1, else maximum * 1.01).
  void FindPlotValues();
  // The same for ValueTable.
  void FindValueRange();
};

// The second of two equal bounds moved so that a scale has a width.
double SeparatedMaximum(double minimum, double maximum);

}  // namespace orv
