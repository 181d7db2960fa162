#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/report.h"
#include "analysis/run_fixture.h"
#include "numerics/text.h"

namespace orv::testing {

inline std::string Bytes(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

inline void WriteBytes(const std::string& name, const std::string& bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}

// The lines of a result file as UTF-8. Every line must end with CR LF.
inline std::vector<std::string> LinesOf(const std::string& name) {
  std::string bytes = Bytes(name);
  const bool utf8 = bytes.rfind("\xEF\xBB\xBF", 0) == 0;
  bytes = utf8 ? bytes.substr(3) : Utf8FromWindows1252(bytes);
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < bytes.size();) {
    const std::size_t end = bytes.find("\r\n", begin);
    if (end == std::string::npos) {
      ADD_FAILURE() << "a line without CR LF: " << bytes.substr(begin);
      break;
    }
    lines.push_back(bytes.substr(begin, end - begin));
    EXPECT_EQ(lines.back().find_first_of("\r\n"), std::string::npos);
    begin = end + 2;
  }
  return lines;
}

// A line cut at blanks, several in a row taken as one, as a spreadsheet opens it.
inline std::vector<std::string> ColumnsOf(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> columns;
  std::string column;
  while (std::getline(in, column, ' ')) {
    if (!column.empty()) columns.push_back(column);
  }
  return columns;
}

// Index of the first line from `from` on that holds the part; the number of lines when there is none.
inline std::size_t LineWith(const std::vector<std::string>& lines, const std::string& part, std::size_t from = 0) {
  while (from < lines.size() && lines[from].find(part) == std::string::npos) ++from;
  return from;
}

// Hard blanks in place of blanks.
inline std::string Hard(const std::string& text) {
  return ReplaceAll(text, " ", kHardBlank);
}

// Runs that leave their files in the test's folder.
class ReportFixture : public RunFixture {
 protected:
  std::string Folder() const { return folder.path().string() + "/"; }

  // A run of the model, then values by the test, then the reports.
  void Compute(double plot = 13, const std::string& options = "") {
    run.record.files.clear();
    run.record.filesSkipped.clear();
    Load();
    run.model.WorkbookFolder = Folder();
    ASSERT_TRUE(Run(plot, options));
  }
  std::vector<std::string> Report(double plot = 13, const std::string& options = "") {
    Compute(plot, options);
    WriteReports(run);
    return LinesOf(run.record.PlotReportFile);
  }

  // Gives every cell of a primitive the value.
  void FillCells(int p, int q, double value) {
    for (int i = 1; i <= run.cells.CountI(p); ++i) {
      for (int j = 1; j <= run.cells.CountJ(p); ++j) run.cells.CellData(p, i, j, q) = value;
    }
  }
  // Files in the folder, without those of a program's own bookkeeping.
  std::vector<std::string> FilesIn() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string Lock(const std::string& name) const { return Folder() + ".~lock." + name + "#"; }
};

inline const char* const kTurningWing =
    "silver\tWing rect2sides size -1 1 -2 2 1 1 0.05 cells 4 8 T 0 0 2 AutomaticRotation X R Z 90 T 0 0 1";

}  // namespace orv::testing
