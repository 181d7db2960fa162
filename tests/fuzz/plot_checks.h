#pragma once

#include <cmath>

#include "fuzz/fuzz_support.h"
#include "model/plot_reading.h"
#include "view/point_lists.h"

// What holds for the lists of any plot that was read.
namespace orv::testing {

inline void CheckTable(const ListTable& table, int last, const char* what) {
  Require(last >= kNoEntry && last < kListEntries, "a last index is one", what);
  for (int row = 0; row < table.rows(); ++row) {
    const std::span<const float> entries = table.row(row);
    for (int k = 0; k <= last; ++k) Require(std::isfinite(entries[static_cast<std::size_t>(k)]), "numbers", what);
  }
}

inline void CheckLists(const PointLists& lists) {
  CheckTable(lists.PointList, lists.NumberPoints, "points");
  CheckTable(lists.TraceList, lists.TraceCount, "trace");
  CheckTable(lists.EventList, lists.EventCount, "events");
  CheckTable(lists.PanelAngleList1, lists.PanelCount1, "panel 1");
  CheckTable(lists.PanelAngleList2, lists.PanelCount2, "panel 2");
  CheckTable(lists.ValueTable, lists.ValueCount, "values");
  Require(lists.TraceMax <= lists.TraceCount && lists.OutlineCount <= lists.TraceCount + 1, "the trace has its ends");
  Require(lists.ValueAxis >= 0 && lists.ValueAxis <= 3, "a value axis is one");
  // Of equal negative numbers the second one is set below the first.
  Require(lists.NumberPoints == kNoEntry || lists.PlotValueMin != lists.PlotValueMax, "a scale has a width");
  Require(lists.ValueCount == kNoEntry || lists.ValueMin != lists.ValueMax, "a scale of values has a width");
  Require(std::isfinite(lists.FactorScale) && lists.FactorScale != 0, "the scale is a number");
  RequireText(lists.Title, "the title is a text");
}

inline void CheckSameTable(const ListTable& a, const ListTable& b, int lastA, int lastB, const char* what) {
  Require(lastA == lastB, "the same number of entries", what);
  for (int row = 0; row < a.rows(); ++row) {
    for (int k = 0; k <= lastA; ++k) {
      const auto at = static_cast<std::size_t>(k);
      Require(a.row(row)[at] == b.row(row)[at], "the same entries", what);
    }
  }
}

inline void CheckSame(const PointLists& a, const PointLists& b) {
  CheckSameTable(a.PointList, b.PointList, a.NumberPoints, b.NumberPoints, "points");
  CheckSameTable(a.TraceList, b.TraceList, a.TraceCount, b.TraceCount, "trace");
  CheckSameTable(a.EventList, b.EventList, a.EventCount, b.EventCount, "events");
  CheckSameTable(a.PanelAngleList1, b.PanelAngleList1, a.PanelCount1, b.PanelCount1, "panel 1");
  CheckSameTable(a.PanelAngleList2, b.PanelAngleList2, a.PanelCount2, b.PanelCount2, "panel 2");
  CheckSameTable(a.ValueTable, b.ValueTable, a.ValueCount, b.ValueCount, "values");
  Require(a.TraceMax == b.TraceMax && a.OutlineCount == b.OutlineCount && a.ValueAxis == b.ValueAxis, "same trace");
  Require(a.PlotValueMin == b.PlotValueMin && a.PlotValueMax == b.PlotValueMax, "the same extremes");
  Require(a.PenUpMode == b.PenUpMode && a.EarthOn == b.EarthOn && a.TimePlot == b.TimePlot, "the same switches");
  Require(a.MoonView == b.MoonView && a.MaravoFactor == b.MaravoFactor, "the same options");
  Require(a.FactorScale == b.FactorScale, "the same scale");
}

// Boxes of one reading: a person closes them.
inline constexpr long kMostPlotBoxes = 20;

}  // namespace orv::testing
