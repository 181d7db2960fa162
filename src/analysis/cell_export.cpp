#include "analysis/cell_export.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <ostream>

#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kCornerSlots = 12;

std::string EndingOf(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos ? "" : LowerCase(name.substr(dot));
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  return "\"" + ReplaceAll(text, "\"", "\"\"") + "\"";
}

// Calls visit(p, i, j) for every cell that the arrays hold, primitive by primitive.
template <class Visit>
void ForEachCell(const RunContext& run, Visit&& visit) {
  const CellBlock& data = run.cells.CellData;
  for (int p = 1; p <= run.cells.numberPrimWithVolumic; ++p) {
    const int n = std::min(run.cells.CountI(p), data.cellsI());
    const int m = std::min(run.cells.CountJ(p), data.cellsJ());
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) visit(p, i, j);
    }
  }
}

std::string MaterialOf(const RunContext& run, int p) {
  // The inner shells of a volume are of the material of its outermost one, the last row of the model.
  return Trim(run.model.ModelCells(std::min(p, run.model.NumberOfPrimitives), 1));
}

std::array<std::string, 20> CornerNames() {
  std::array<std::string, 20> names;
  std::size_t k = 0;
  for (int corner = 1; corner <= 4; ++corner) {
    for (const char* axis : {"x", "y", "z"}) names[k++] = "c" + std::to_string(corner) + axis;
  }
  for (const char* angle : {"indicatrix", "azimuth"}) {
    for (int corner = 1; corner <= 4; ++corner) names[k++] = "c" + std::to_string(corner) + angle;
  }
  return names;
}

}  // namespace

bool IsExportName(const std::string& name) {
  const std::string ending = EndingOf(name);
  return ending == ".csv" || ending == ".json" || ending == ".vtp";
}

void WriteCsv(const RunContext& run, std::ostream& out) {
  const auto corners = CornerNames();
  out << "primitive,name,material,i,j";
  for (int q = 1; q <= kLastPlot; ++q) out << ",q" << q;
  for (const std::string& name : corners) out << ',' << name;
  out << "\nnumber,,,,";
  for (int q = 1; q <= kLastPlot; ++q) out << ',' << CsvField(LabelOf(run.ResultLabels, q));
  for (std::size_t k = 0; k < corners.size(); ++k) out << (k < kCornerSlots ? ",(m)" : ",(deg)");
  out << '\n';
  ForEachCell(run, [&](int p, int i, int j) {
    out << p << ',' << CsvField(run.PrimitiveNames[static_cast<std::size_t>(p)]) << ',' << CsvField(MaterialOf(run, p))
        << ',' << i << ',' << j;
    for (int q = 1; q <= kLastPlot; ++q) out << ',' << ExactText(run.cells.CellData(p, i, j, q));
    for (int slot = 1; slot <= 20; ++slot) out << ',' << ExactText(run.cells.CellCorners(p, i, j, slot));
    out << '\n';
  });
}

namespace {

std::string Base64(const std::vector<unsigned char>& bytes) {
  static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t k = 0; k < bytes.size(); k += 3) {
    const std::size_t left = std::min<std::size_t>(3, bytes.size() - k);
    std::uint32_t group = 0;
    for (std::size_t b = 0; b < 3; ++b) group = (group << 8U) | (b < left ? bytes[k + b] : 0U);
    for (std::size_t c = 0; c < 4; ++c) {
      out.push_back(c <= left ? kAlphabet[(group >> (18U - 6U * c)) & 63U] : '=');
    }
  }
  return out;
}

// One array of a VTK file: a length in bytes, then the numbers, in base64.
template <class Number>
void WriteArray(std::ostream& out, const char* type, const std::string& name, int components,
                const std::vector<Number>& values) {
  const std::uint64_t size = values.size() * sizeof(Number);
  std::vector<unsigned char> bytes(sizeof size + size);
  std::memcpy(bytes.data(), &size, sizeof size);
  if (size != 0) std::memcpy(bytes.data() + sizeof size, values.data(), size);
  out << "<DataArray type=\"" << type << "\" Name=\"" << name << "\" NumberOfComponents=\"" << components
      << "\" format=\"binary\">" << Base64(bytes) << "</DataArray>\n";
}

std::string XmlText(const std::string& text) {
  return ReplaceAll(ReplaceAll(ReplaceAll(text, "&", "&amp;"), "<", "&lt;"), "\"", "&quot;");
}

struct CellPlace {
  int p, i, j;
};

}  // namespace

void WriteVtp(const RunContext& run, std::ostream& out) {
  // The thruster's own cells are a source point, not surfaces.
  std::vector<CellPlace> places;
  ForEachCell(run, [&](int p, int i, int j) {
    if (p != run.thruster.ThrusterPrimitive) places.push_back({p, i, j});
  });
  const std::size_t cells = places.size();
  std::vector<double> points;
  std::vector<std::int64_t> connectivity;
  std::vector<std::int64_t> offsets;
  std::vector<std::int32_t> primitives;
  points.reserve(cells * kCornerSlots);
  for (const CellPlace& c : places) {
    for (int slot = 1; slot <= kCornerSlots; ++slot) points.push_back(run.cells.CellCorners(c.p, c.i, c.j, slot));
    for (int corner = 0; corner < 4; ++corner) connectivity.push_back(static_cast<std::int64_t>(connectivity.size()));
    offsets.push_back(static_cast<std::int64_t>(connectivity.size()));
    primitives.push_back(c.p);
  }
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<VTKFile type=\"PolyData\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n"
         "<PolyData>\n<Piece NumberOfPoints=\""
      << cells * 4 << "\" NumberOfVerts=\"0\" NumberOfLines=\"0\" NumberOfStrips=\"0\" NumberOfPolys=\"" << cells
      << "\">\n<Points>\n";
  WriteArray(out, "Float64", "Points", 3, points);
  out << "</Points>\n<Polys>\n";
  WriteArray(out, "Int64", "connectivity", 1, connectivity);
  WriteArray(out, "Int64", "offsets", 1, offsets);
  out << "</Polys>\n<CellData>\n";
  WriteArray(out, "Int32", "primitive", 1, primitives);
  std::vector<double> values(cells);
  for (int q = 1; q <= kLastPlot; ++q) {
    const std::string label = LabelOf(run.ResultLabels, q);
    if (label.empty()) continue;
    bool any = false;
    for (std::size_t k = 0; k < cells; ++k) {
      values[k] = run.cells.CellData(places[k].p, places[k].i, places[k].j, q);
      any = any || values[k] != 0;
    }
    if (any) WriteArray(out, "Float64", XmlText(label), 1, values);
  }
  out << "</CellData>\n</Piece>\n</PolyData>\n</VTKFile>\n";
}

void ExportRun(RunContext& run, const std::vector<TerminalDialogs::Message>& messages, const std::string& name) {
  const std::string ending = EndingOf(name);
  if (!IsExportName(name)) {
    Raise(FailureNumber::BadFileName, "The ending of \"" + name + "\" is none of .csv, .json, .vtp");
  }
  ResultFile file(name);
  if (ending == ".csv") WriteCsv(run, file.stream());
  if (ending == ".json") WriteJson(run, messages, file.stream());
  if (ending == ".vtp") WriteVtp(run, file.stream());
  file.Commit();
}

}  // namespace orv
