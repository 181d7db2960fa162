#include "view/point_lists.h"

#include <algorithm>

namespace orv {
namespace {

// Extremes of the entries 0 to last of a row; false when there are none.
bool Extremes(std::span<const float> row, int last, double& minimum, double& maximum) {
  if (last < 0) return false;
  const auto [least, most] = std::minmax_element(row.begin(), row.begin() + last + 1);
  minimum = *least;
  maximum = *most;
  return true;
}

}  // namespace

double SeparatedMaximum(double minimum, double maximum) {
  if (minimum != maximum) return maximum;
  return maximum == 0 ? 1 : maximum * 1.01;
}

void PointLists::Clear() {
  // The tables are kept as they are unless something was written to them: their pages cost a little to give back.
  const auto renew = [](ListTable& table, int last) {
    if (last != kNoEntry) table.Clear();
  };
  renew(PointList, NumberPoints);
  renew(TraceList, std::max(TraceCount, VectorCount - 1));
  renew(EventList, EventCount);
  renew(PanelAngleList1, PanelCount1);
  renew(PanelAngleList2, PanelCount2);
  renew(ValueTable, ValueCount);
  NumberPoints = TraceCount = EventCount = PanelCount1 = PanelCount2 = ValueCount = kNoEntry;
  TraceMin = 0;
  TraceMax = kNoEntry;
  OutlineCount = VectorCount = 0;
  VectorsShown = false;
  ValueAxis = 0;
  ValueMin = ValueMax = PlotValueMin = PlotValueMax = 0;
  EventTwoState = PenUpMode = 0;
  FactorScale = 1;
  EarthOn = TimePlot = MoonView = false;
  MaravoFactor = 0;
  IndexPlot = 0;
  Title.clear();
  legend = LegendRange{};
  rotation = AutoRotation{};
  PlotLoaded = PlotNormalised = 0;
  Scaled = false;
  FreeScale = true;
}

void PointLists::FindPlotValues() {
  if (Extremes(PointList.row(0), NumberPoints, PlotValueMin, PlotValueMax)) {
    PlotValueMax = SeparatedMaximum(PlotValueMin, PlotValueMax);
  }
}

void PointLists::FindValueRange() {
  if (Extremes(ValueTable.row(1), ValueCount, ValueMin, ValueMax)) {
    ValueMax = SeparatedMaximum(ValueMin, ValueMax);
  }
}

}  // namespace orv
