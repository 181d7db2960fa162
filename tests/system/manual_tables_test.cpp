#include <gtest/gtest.h>
#include <map>

#include "geometry/quantities.h"
#include "numerics/number_format.h"
#include "numerics/settings.h"
#include "numerics/text.h"
#include "system/manual_pages.h"
#include "system/program_run.h"
#include "window/options_table.h"

namespace orv::testing {
namespace {

namespace fs = std::filesystem;

std::string CodeOf(const std::string& text) {
  return "`" + text + "`";
}

// --- plots -----------------------------------------------------------------------------------------------------------

// What stands in the last brackets of a label, in the manual's spelling.
std::string UnitOf(const QuantityEntry& entry) {
  // Of these the label holds another unit than the quantity, or none.
  static const std::map<int, std::string> kOwn = {{5, "-"},  {6, "-"},    {7, "-"},  {14, "1/sr"}, {29, "-"},
                                                  {30, "-"}, {31, "deg"}, {20, "-"}, {21, "-"},    {59, "atoms/ion"}};
  if (const auto own = kOwn.find(entry.number); own != kOwn.end()) return own->second;
  const std::string label(entry.label);
  const std::size_t begin = label.rfind('(');
  std::string unit = Trim(label.substr(begin + 1, label.rfind(')') - begin - 1));
  unit = ReplaceAll(unit, "m-3", "1/m³");
  unit = ReplaceAll(unit, "m2", "m²");
  return unit;
}

TEST(ManualTablesTest, EveryPlotIsToldWithItsLabelMeaningAndUnit) {
  std::map<std::string, std::vector<std::string>> rows;
  for (const auto& cells : TableRows(ReadPage("docs/results.md"))) rows.emplace(cells.front(), cells);
  for (const QuantityEntry& entry : kQuantityTable) {
    const auto row = rows.find(std::to_string(entry.number));
    ASSERT_NE(row, rows.end()) << "plot " << entry.number;
    ASSERT_EQ(row->second.size(), 4U) << entry.number;
    EXPECT_EQ(row->second[1], CodeOf(std::string(entry.label)));
    EXPECT_GT(row->second[2].size(), 4U) << entry.number << " has no meaning";
    EXPECT_EQ(row->second[3], UnitOf(entry)) << entry.number;
  }
  for (const char* block : {"90 to 94", "95 to 99", "100 to 104"}) {
    ASSERT_EQ(rows.count(block), 1U) << block;
    EXPECT_EQ(rows[block][3], "m/s");
  }
}

// --- settings --------------------------------------------------------------------------------------------------------

// The page by sections: heading to text.
std::string SectionOf(const Page& page, const std::string& name) {
  const std::size_t begin = page.text.find("\n## Section " + name + "\n");
  if (begin == std::string::npos) return {};
  return page.text.substr(begin + 1, page.text.find("\n## ", begin + 1) - begin - 1);
}

TEST(ManualTablesTest, EverySettingIsToldInItsSection) {
  const Page page = ReadPage("docs/settings.md");
  for (const Setting& setting : kSettings) {
    const std::string section = SectionOf(page, std::string(setting.section));
    const std::string key = CodeOf(std::string(setting.key));
    const std::size_t place = section.find(key);
    ASSERT_NE(place, std::string::npos) << setting.section << " " << setting.key;
    if (setting.initial.empty()) continue;
    const std::string row = section.substr(place, section.find('\n', place) - place);
    EXPECT_NE(row.find(CodeOf(std::string(setting.initial))), std::string::npos) << row << " has another default";
  }
}

TEST(ManualTablesTest, EverySlotOfTheOptionsIsTold) {
  std::map<std::string, std::vector<std::string>> rows;
  for (const auto& cells : TableRows(ReadPage("docs/settings.md"))) rows[cells.front()] = cells;
  // Each slot by what it changes: from the store alone, so that the page and the program cannot part.
  const int slots = 34;
  for (int slot = 0; slot < slots; ++slot) {
    const std::string key = "Set" + FormatNumber(slot, "00.00");
    ASSERT_EQ(rows.count(CodeOf(key)), 1U) << key;
    const std::vector<std::string>& row = rows[CodeOf(key)];
    ASSERT_EQ(row.size(), 3U) << key;
    MemorySettings store;
    SaveOptions(store, Options());
    EXPECT_EQ(row[1], CodeOf(store.Read("Use", key, ""))) << key;
  }
  MemorySettings store;
  Options filled;
  filled.PanelsTrackSun = 1;
  SaveOptions(store, filled);
  EXPECT_EQ(store.Read("Use", "Set33.00", ""), "1") << "the last slot in use";
}

TEST(ManualTablesTest, EveryOptionOfTheWindowIsTold) {
  const Page window = ReadPage("docs/window.md");
  const std::string settings = Squeezed(ReadPage("docs/settings.md").text);
  for (const ControlEntry& entry : kOptionControls) {
    const std::string caption = Squeezed(Trim(std::string(entry.caption)));
    if (caption.empty() || caption == "Close help") continue;
    const bool colour = caption.starts_with("Colour of ");
    const std::string found = Squeezed(window.text) + settings;
    EXPECT_NE(found.find(colour ? "Colour of" : caption), std::string::npos) << caption;
  }
}

// --- the command line ------------------------------------------------------------------------------------------------

class ManualOptionsTest : public ProgramTest {};

TEST_F(ManualOptionsTest, EveryOptionIsTold) {
  const std::string told =
      ReadPage("docs/command_line.md").text + ReadPage("docs/pictures.md").text + ReadPage("docs/level_lines.md").text;
  std::set<std::string> options;
  for (const char* command : {"", "run", "show", "plots"}) {
    std::vector<std::string> words = {command, "--help"};
    if (words.front().empty()) words.erase(words.begin());
    ASSERT_EQ(Program(words), 0);
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t begin = line.find("--");
      if (begin == std::string::npos || line.find_first_not_of(' ') == std::string::npos) continue;
      if (line.substr(0, begin).find_first_not_of(" -h,") != std::string::npos) continue;
      options.insert(line.substr(begin, line.find_first_of(" ,=", begin) - begin));
    }
  }
  EXPECT_GT(options.size(), 20U);
  for (const std::string& option : options) EXPECT_NE(told.find(option), std::string::npos) << option;
}

// --- messages --------------------------------------------------------------------------------------------------------

// Takes back the escapes of a literal of the source.
std::string Plain(const std::string& literal) {
  std::string text;
  for (std::size_t i = 0; i < literal.size(); ++i) {
    if (literal[i] != '\\' || i + 1 == literal.size()) {
      text += literal[i];
      continue;
    }
    ++i;
    const bool blank = literal[i] == 'n' || literal[i] == 'r' || literal[i] == 't';
    text += blank ? ' ' : literal[i];
  }
  return text;
}

// The first literal of a call that is long enough to be a message, from the bracket on.
std::string FirstMessage(const std::string& source, std::size_t place) {
  constexpr std::size_t kShortest = 12;
  int depth = 0;
  for (std::size_t i = place; i < source.size(); ++i) {
    if (source[i] == '(') ++depth;
    if (source[i] == ')' && --depth == 0) return {};
    if (source[i] != '"') continue;
    std::string literal;
    for (++i; i < source.size() && source[i] != '"'; ++i) {
      literal += source[i];
      if (source[i] == '\\') literal += source[++i];
    }
    const std::string text = Squeezed(Plain(literal));
    if (text.size() >= kShortest && text.find(' ') != std::string::npos) return text;
  }
  return {};
}

// Source files whose texts no user reads in a message of the program: the recording of drawing calls serves tests.
bool IsForUsers(const fs::path& file) {
  return file.extension() == ".cpp" && file.filename() != "recording_gl.cpp" &&
         file.parent_path().filename() != "calc_helper";
}

// The beginning of every text that is shown in a box, logged, or prompted. Texts that are put together from constants
// are not seen here.
std::map<std::string, std::string> MessagesOfTheSource() {
  constexpr std::size_t kBeginning = 18;
  std::map<std::string, std::string> messages;
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(ORV_SOURCE_DIR) / "src")) {
    if (!IsForUsers(entry.path())) continue;
    const std::string source = WholeFile(entry.path());
    for (const char* call : {"Tell(", "Ask(", "Log(", "Pause(", "Input(", "prompt(", "prompt_("}) {
      for (std::size_t at = source.find(call); at != std::string::npos; at = source.find(call, at + 1)) {
        std::string text = FirstMessage(source, at + std::string(call).size() - 1);
        while (!text.empty() && (text.front() == '_' || text.front() == ' ')) text.erase(0, 1);
        if (!text.empty()) messages[Trim(text.substr(0, kBeginning))] = entry.path().filename().string();
      }
    }
  }
  return messages;
}

TEST(ManualTablesTest, EveryMessageIsExplained) {
  std::string told = Squeezed(ReadPage("docs/messages.md").text);
  told = ReplaceAll(told, "\\|", "|");
  const auto messages = MessagesOfTheSource();
  ASSERT_GT(messages.size(), 60U);
  for (const auto& [text, file] : messages) {
    EXPECT_NE(told.find(text), std::string::npos) << "messages.md does not tell \"" << text << "...\" of " << file;
  }
}

}  // namespace
}  // namespace orv::testing
