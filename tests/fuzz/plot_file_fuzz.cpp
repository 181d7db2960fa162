#include <string>
#include <vector>

#include "fuzz/plot_checks.h"
#include "model/plot_file.h"
#include "numerics/paths.h"
#include "support/workbook_writer.h"

// A plot file: read, written again and read again.
namespace orv::testing {
namespace {

PlotReading Read(const std::string& name, const Locale& locale, PointLists& lists) {
  FuzzDialogs dialogs(Answer::Ignore, kMostPlotBoxes);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  const PlotReading reading = ReadPlotFile({name, name + ".demo", 0}, lists, reader);
  Require(reading.source == PlotReading::Source::PlotFile, "the file itself is read");
  Require(lists.PlotLoaded == 0 || !reading.complete, "a plot that was read is handed over");
  CheckLists(lists);
  return reading;
}

// The lines behind the header.
std::vector<std::string> Lines(const std::string& name) {
  PlotFileLines lines(name);
  std::vector<std::string> texts;
  std::string_view line;
  lines.Next(line);
  while (lines.Next(line)) {
    RequireText(line, "a line is a text");
    Require(line.size() <= 3 * PlotFileLines::kMaxLineBytes, "a line is bounded");
    Require(line.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos, "a line is one line");
    texts.emplace_back(line);
  }
  return texts;
}

// The file of a header and lines. An option that no code page has makes it UTF-8, so that every character comes back.
void Write(const std::string& name, PlotHeader header, const std::vector<std::string>& lines) {
  header.options += " \u2192";
  PlotFileWriter writer(name, header);
  for (const std::string& line : lines) writer.WriteLine(line);
  writer.Commit();
}

void WriteAndReadAgain(const std::string& name, const Locale& locale, const PlotReading& first,
                       const PointLists& lists) {
  FuzzDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  const std::vector<std::string> lines = Lines(name);
  Require(static_cast<long long>(lines.size()) == first.lines, "every line is counted");
  PlotHeader header = first.header;
  if (!header.hasOptions) {
    double scale = 1;
    RangeTexts ranges;
    ParseSpecification(header.specification, scale, header.options, ranges, reader);
  }
  PointLists again;
  const PlotReading fromLines = ReadPlotLines(header, lines, "lines", again, reader);
  Require(fromLines.lines == first.lines, "lines make what their file makes");
  CheckSame(lists, again);

  const std::string copy = name + ".copy";
  Write(copy, header, lines);
  const PlotReading second = Read(copy, locale, again);
  Require(second.lines == first.lines && second.header.specification == FieldText(header.specification),
          "what was written is read");
  if (second.header.scale == header.scale && second.header.specification == header.specification)
    CheckSame(lists, again);

  PointLists third;
  Write(copy, second.header, lines);
  const PlotReading last = Read(copy, locale, third);
  Require(last.header.scale == second.header.scale, "a scale that was written once stays");
  CheckSame(again, third);
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  const TemporaryFolder folder;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string name = TextOf(folder.Write("plot.txt", bytes));
  IsPlotFile(bytes);
  const Locale& locale = FuzzLocales()[size % 3];
  PointLists lists;
  const PlotReading reading = Read(name, locale, lists);
  if (reading.complete) WriteAndReadAgain(name, locale, reading, lists);
  return 0;
}
