#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "analysis/cell_export.h"
#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "numerics/text.h"

namespace orv {
namespace {

using Json = nlohmann::ordered_json;

Json VectorOf(const Vector3& v) {
  return Json::array({v(1), v(2), v(3)});
}

Json ValueOf(const GeneralValue& value) {
  if (value.isEmpty()) return nullptr;
  if (value.isText()) return value.text();
  return value.number();
}

Json DirectivesOf(const RunContext& run) {
  const Directives& d = run.model.directives;
  return {{"line", run.model.DirectiveLine},
          {"MomentOrigin", d.MomentOrigin},
          {"RotationFrom", d.RotationFrom},
          {"RotationTo", d.RotationTo},
          {"RotationStep", d.RotationStep},
          {"NotHidden", d.NotHidden},
          {"Twall", d.Twall},
          {"TableList", d.TableList},
          {"LogScale", run.plot.LogScale},
          {"RectoOnly", d.RectoOnly},
          {"SpectrumMode", d.SpectrumMode},
          {"SilentMode", d.SilentMode},
          {"Haccuracy", d.Haccuracy},
          {"MomentWC", d.MomentWC}};
}

Json HeaderOf(const RunContext& run, int p) {
  Json header = Json::array();
  for (int c = 1; c <= 10; ++c) header.push_back(run.cells.CellData(p, 0, 0, c));
  header.push_back(run.cells.CellData(p, 0, 0, 23));
  return header;
}

Json StripsOf(const RunContext& run, int p) {
  Json strips = Json::array();
  const int count = std::min(Cells::LoopCount(run.cells.BorderCorners(p, 0, 0)), run.cells.BorderCorners.strips());
  for (int s = 1; s <= count; ++s) {
    Json strip = Json::array();
    for (int n = 1; n <= 20; ++n) strip.push_back(run.cells.BorderCorners(p, s, n));
    strips.push_back(std::move(strip));
  }
  return strips;
}

Json SummariesOf(RunContext& run, int p) {
  Json list = Json::array();
  for (int q = 1; q <= kLastPlot; ++q) {
    const QuantitySummary s = SummariseQuantity(run, p, q);
    if (s.AllZero()) continue;
    Json entry = {{"quantity", q}, {"label", LabelOf(run.ResultLabels, q)},
                  {"min", s.Min},  {"max", s.Max},
                  {"sum", s.Sum},  {"integral", s.Integral}};
    if (s.twoSided) entry["sides"] = {{s.MinFirst, s.MaxFirst}, {s.MinSecond, s.MaxSecond}};
    list.push_back(std::move(entry));
  }
  return list;
}

Json PrimitivesOf(RunContext& run) {
  Json list = Json::array();
  for (int p = 1; p <= run.cells.numberPrimWithVolumic; ++p) {
    const int row = std::min(p, run.model.NumberOfPrimitives);
    list.push_back({{"number", p},
                    {"name", run.PrimitiveNames[static_cast<std::size_t>(p)]},
                    {"material", Trim(run.model.ModelCells(row, 1))},
                    {"specification", run.model.ModelCells(row, 2)},
                    {"header", HeaderOf(run, p)},
                    {"area", PrimitiveArea(run, p)},
                    {"strips", StripsOf(run, p)},
                    {"summaries", SummariesOf(run, p)}});
  }
  return list;
}

Json ThrusterOf(const RunContext& run) {
  const ThrusterState& t = run.thruster;
  Json data = Json::object();
  for (int slot = slot::First; slot <= slot::Last; ++slot) {
    if (!t.ThrusterData(slot).isEmpty()) data[std::to_string(slot)] = ValueOf(t.ThrusterData(slot));
  }
  return {{"primitive", t.ThrusterPrimitive},
          {"name", t.ThrusterName},
          {"area", t.ThrusterArea},
          {"position", VectorOf(t.frame.ThrusterPosition)},
          {"axiT", VectorOf(t.frame.axiT)},
          {"AxAzimuth", VectorOf(t.frame.AxAzimuth)},
          {"axDeclin", VectorOf(t.frame.axDeclin)},
          {"PlumeLimitAngle", t.PlumeLimitAngle},
          {"ThrusterData", std::move(data)}};
}

Json MaterialsOf(const RunContext& run) {
  const Materials& m = run.materials;
  Json table = Json::array();
  for (int k = 1; k <= m.NumberOfMaterials; ++k) {
    Json slots = Json::object();
    for (int slot = 1; slot <= kMaterialSlots; ++slot) {
      const GeneralValue& value = m.MaterialTable(k, slot);
      if (!value.isEmpty()) slots[std::to_string(slot)] = ValueOf(value);
    }
    table.push_back({{"name", m.MaterialNames[static_cast<std::size_t>(k)]}, {"slots", std::move(slots)}});
  }
  return {{"used", std::vector<std::string>(m.MaterialsUsed.begin() + 1, m.MaterialsUsed.end())},
          {"table", std::move(table)},
          {"databaseRowsUsed", std::vector<int>(run.rowsUsed.rows().begin() + 1, run.rowsUsed.rows().end())}};
}

// Angles and weights of the automatic rotation.
Json RotationOf(const RunContext& run) {
  const auto& table = run.rotation.tables.RotPercentTable;
  Json rows = Json::array();
  const int count = static_cast<int>(std::clamp(table(-1, 2), 0.0, 360.0));
  for (int k = 1; k <= count; ++k) rows.push_back({table(k, 1), table(k, 2)});
  return {{"primitive", run.rotation.RotatingPrimitive},      {"name", run.rotation.RotatingName},
          {"axis", run.geometry.rotation.RotationAxisLetter}, {"shift", table(-1, 1)},
          {"steps", run.rotation.tables.RotationSteps},       {"table", std::move(rows)}};
}

// One object a step of the turn: its angle and the sums of quantities 22 to 81.
Json RotationSumsOf(const RunContext& run) {
  const auto& sums = run.stores.RotationSums;
  Json steps = Json::array();
  if (sums.values().size() <= 4) return steps;
  for (int s = 1; s <= static_cast<int>(sums(0, 0)); ++s) {
    Json step = {{"angle", sums(s, 0)}};
    for (int q = 22; q <= 81; ++q) {
      if (sums(s, q) != 0) step[std::to_string(q)] = sums(s, q);
    }
    steps.push_back(std::move(step));
  }
  return steps;
}

Json HeatFluxMaxOf(const RunContext& run) {
  Json list = Json::array();
  const auto& table = run.stores.HeatFluxMaxTable;
  for (int p = 1; p <= std::min<int>(run.cells.numberPrimWithVolumic, static_cast<int>(table.bounds(0).upper)); ++p) {
    list.push_back(table(p));
  }
  return list;
}

// Smallest and largest rate of every step, slot and primitive where any is not 0.
Json RedepositionExtremaOf(const RunContext& run) {
  Json list = Json::array();
  const auto& extrema = run.stores.RedepositionExtrema;
  if (extrema.values().empty() || run.plot.RedepositionOn == 0) return list;
  const int primitives = std::min<int>(run.cells.numberPrimWithVolumic, static_cast<int>(extrema.bounds(3).upper));
  for (int p = 1; p <= primitives; ++p) {
    for (int slot = 1; slot <= 15; ++slot) {
      for (int s = static_cast<int>(extrema.bounds(0).lower); s <= static_cast<int>(extrema.bounds(0).upper); ++s) {
        const auto low = static_cast<double>(extrema(s, 1, slot, p));
        const auto high = static_cast<double>(extrema(s, 2, slot, p));
        if (high == 0) continue;
        list.push_back({{"primitive", p}, {"slot", slot}, {"step", s}, {"min", low}, {"max", high}});
      }
    }
  }
  return list;
}

Json PlasmaOf(const RunContext& run) {
  if (run.record.PlasmaText.empty()) return nullptr;
  const RadioLink& link = run.record.plasma;
  return {{"meanDensity", link.meanDensity},
          {"area", link.area},
          {"integral", {link.meanIntegral, link.maxIntegral, link.minIntegral}},
          {"integralOfSquare", {link.meanSquare, link.maxSquare, link.minSquare}},
          {"K1", RadioLink::K1(link.meanIntegral)},
          {"K2", RadioLink::K2(link.meanSquare)},
          {"phaseShiftDeg", RadioLink::PhaseShiftDeg(RadioLink::K1(link.meanIntegral), RadioLink::K2(link.meanSquare))},
          {"text", SoftBlanks(run.record.PlasmaText)}};
}

}  // namespace

void WriteJson(RunContext& run, const std::vector<TerminalDialogs::Message>& messages, std::ostream& out) {
  Json root;
  root["program"] = {{"name", "OrvValis"}, {"version", ORV_VERSION}};
  root["case"] = {{"line", run.record.CaseLine}, {"name", run.record.CaseText}, {"traceFile", run.record.TraceFile}};
  root["workbook"] = {{"name", run.model.WorkbookName},     {"sheet", run.model.SheetName},
                      {"folder", run.model.WorkbookFolder}, {"model", run.model.ModelTitle},
                      {"modelId", run.model.ModelId},       {"database", run.model.DatabaseTitle}};
  root["plot"] = {{"number", run.plot.IndexPlot},
                  {"label", LabelOf(run.ResultLabels, static_cast<int>(run.plot.IndexPlot))},
                  {"options", run.plot.PlotOptionText}};
  root["directives"] = DirectivesOf(run);
  root["thruster"] = ThrusterOf(run);
  root["materials"] = MaterialsOf(run);
  root["shadow"] = {{"status", run.record.ShadowStatusText}};
  root["primitives"] = PrimitivesOf(run);
  root["rotation"] = RotationOf(run);
  root["rotationSums"] = RotationSumsOf(run);
  root["heatFluxMax"] = HeatFluxMaxOf(run);
  root["sputtering"] = run.record.SputterText;
  root["redepositionExtrema"] = RedepositionExtremaOf(run);
  root["plasma"] = PlasmaOf(run);
  root["files"] = run.record.files;
  root["filesSkipped"] = run.record.filesSkipped;
  Json shown = Json::array();
  for (const auto& m : messages) {
    shown.push_back({{"kind", m.kind}, {"title", m.title}, {"text", m.text}, {"answer", m.answer}});
  }
  root["messages"] = std::move(shown);
  Json phases = Json::object();
  for (const auto& [name, seconds] : run.record.phaseSeconds) phases[name] = seconds;
  root["seconds"] = std::move(phases);
  out << root.dump(1, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace orv
