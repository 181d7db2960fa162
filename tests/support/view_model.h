#pragma once

#include <cmath>
#include <numbers>

#include "view/point_lists.h"

// Point lists made from formulas, for tests and benchmarks of the view.
namespace orv {

// A wavy sheet of n x m cells as an analysis fills it: centres with values, outlines of six entries.
inline void FillSheet(PointLists& lists, int n, int m) {
  lists.Clear();
  const auto height = [](double x, double y) { return 0.3 * std::sin(3 * x) * std::cos(2 * y); };
  int point = 0;
  int entry = 0;
  const double dx = 2.0 / n;
  const double dy = 2.0 / m;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < m; ++j) {
      const double x = -1 + (i + 0.5) * dx;
      const double y = -1 + (j + 0.5) * dy;
      lists.PointList(0, point) = static_cast<float>(0.5 + 0.5 * std::sin(2 * x + y));
      lists.PointList(1, point) = static_cast<float>(x);
      lists.PointList(2, point) = static_cast<float>(y);
      lists.PointList(3, point) = static_cast<float>(height(x, y));
      lists.PointList(4, point) = kPenUp;
      ++point;
      const double corners[5][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
      for (const auto& corner : corners) {
        const double cx = x + corner[0] * dx / 2;
        const double cy = y + corner[1] * dy / 2;
        lists.TraceList(0, entry) = static_cast<float>(cx);
        lists.TraceList(1, entry) = static_cast<float>(cy);
        lists.TraceList(2, entry) = static_cast<float>(height(cx, cy));
        lists.TraceList(3, entry) = 0;
        ++entry;
      }
      lists.TraceList(3, entry++) = kPenUp;
    }
  }
  lists.NumberPoints = point - 1;
  lists.TraceCount = lists.TraceMax = entry - 1;
  lists.OutlineCount = entry;
  lists.PenUpMode = 1;
  lists.FactorScale = 1.01;
  lists.IndexPlot = 13;
  lists.Title = "OrvValis  M13   sheet";
  lists.FindPlotValues();
  lists.legend.LegendMin = lists.legend.ScaleMin = 1e12;
  lists.legend.LegendMax = lists.legend.ScaleMax = 5e15;
  lists.legend.unit = "1/m3";
}

// The lower half of a sphere, open at the top, of n x m cells; their fronts lie outside.
inline void FillBowl(PointLists& lists, int n, int m) {
  lists.Clear();
  int point = 0;
  int entry = 0;
  const auto place = [&](ListTable& table, int row, int index, double turn, double height) {
    const double angle = 2 * std::numbers::pi * turn / n;
    const double latitude = -std::numbers::pi / 2 * (1 - height / m);
    table(row, index) = static_cast<float>(std::cos(latitude) * std::cos(angle));
    table(row + 1, index) = static_cast<float>(std::cos(latitude) * std::sin(angle));
    table(row + 2, index) = static_cast<float>(std::sin(latitude));
  };
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < m; ++j) {
      lists.PointList(0, point) = static_cast<float>(0.5 + 0.5 * std::sin(6 * std::numbers::pi * i / n) * j / m);
      place(lists.PointList, 1, point, i + 0.5, j + 0.5);
      lists.PointList(4, point++) = kPenUp;
      const int corners[5][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
      for (const auto& corner : corners) {
        place(lists.TraceList, 0, entry, i + corner[0], j + corner[1]);
        lists.TraceList(3, entry++) = 0;
      }
      lists.TraceList(3, entry++) = kPenUp;
    }
  }
  lists.NumberPoints = point - 1;
  lists.TraceCount = lists.TraceMax = entry - 1;
  lists.OutlineCount = entry;
  lists.PenUpMode = 1;
  lists.FactorScale = 1.01;
  lists.IndexPlot = 13;
  lists.Title = "OrvValis  M13   bowl";
  lists.FindPlotValues();
}

// A winding curve of n points whose value is the time, with `events` of the first kind.
inline void FillCurve(PointLists& lists, int n, int events = 0) {
  lists.Clear();
  for (int i = 0; i < n; ++i) {
    const double t = static_cast<double>(i) / n;
    const double turn = 2 * std::numbers::pi * 12 * t;
    lists.PointList(0, i) = static_cast<float>(t);
    lists.PointList(1, i) = static_cast<float>((0.3 + 0.7 * t) * std::cos(turn));
    lists.PointList(2, i) = static_cast<float>((0.3 + 0.7 * t) * std::sin(turn));
    lists.PointList(3, i) = static_cast<float>(2 * t - 1);
  }
  lists.NumberPoints = n - 1;
  for (int e = 0; e < events; ++e) {
    lists.EventList(0, 2 * e) = static_cast<float>((e + 0.3) / events);
    lists.EventList(0, 2 * e + 1) = static_cast<float>((e + 0.6) / events);
    lists.EventList(1, 2 * e) = 1;
    lists.EventList(1, 2 * e + 1) = 0;
  }
  lists.EventCount = 2 * events - 1;
  lists.FindPlotValues();
}

// A wave of n values over the times 0 .. 1 as bars along z.
inline void FillValues(PointLists& lists, int n) {
  for (int i = 0; i < n; ++i) {
    const double t = static_cast<double>(i) / (n - 1);
    lists.ValueTable(0, i) = static_cast<float>(t);
    lists.ValueTable(1, i) = static_cast<float>(3 * std::sin(2 * std::numbers::pi * 2 * t));
  }
  lists.ValueCount = n - 1;
  lists.ValueAxis = 3;
  lists.FindValueRange();
}

}  // namespace orv
