#include <map>

#include "model/file_workbook.h"
#include "system/manual_pages.h"
#include "system/program_run.h"

namespace orv::testing {
namespace {

constexpr const char* kWholeSheet = "A1:V150";

// What stands in `code` in a cell of a table.
std::string Code(const std::string& cell) {
  const std::size_t begin = cell.find('`');
  const std::size_t end = cell.rfind('`');
  return begin == end ? "" : cell.substr(begin + 1, end - begin - 1);
}

class TutorialTest : public ProgramTest {
 protected:
  // The rows that the tutorial has typed, by their numbers: columns B and C.
  std::map<std::size_t, std::pair<std::string, std::string>> TypedRows() const {
    std::map<std::size_t, std::pair<std::string, std::string>> typed;
    for (const auto& cells : TableRows(page)) {
      if (cells.size() != 3 || cells[0].find_first_not_of("0123456789") != std::string::npos) continue;
      typed[std::stoul(cells[0])] = {Code(cells[1]), Code(cells[2])};
    }
    return typed;
  }
  static std::vector<std::string> SheetLines(const std::string& file, const std::string& sheet) {
    FileWorkbook book(Example(file), Locale());
    book.ChooseSheet(sheet);
    book.Attach();
    std::vector<std::string> lines;
    std::istringstream rows(book.RangeText(kWholeSheet));
    for (std::string line; std::getline(rows, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines.push_back(line);
    }
    return lines;
  }
  std::string Cells(const std::string& workbook, const std::vector<std::string>& more) {
    std::vector<std::string> words = {"--plot", "19", "--case", "t", "--export", File("cells.csv")};
    words.insert(words.end(), more.begin(), more.end());
    EXPECT_EQ(Run(workbook, words), kExitDone) << err;
    return ReadWhole(File("cells.csv"));
  }

  const Page page = ReadPage("docs/tutorial.md");
};

// Whoever types the rows of the page into the sheet Start has the sheet Model.
TEST_F(TutorialTest, TheTypedRowsAreTheModel) {
  const auto typed = TypedRows();
  ASSERT_EQ(typed.size(), 5U);
  for (const std::string ending : {".xlsx", ".ods"}) {
    std::vector<std::string> lines = SheetLines("tutorial" + ending, "Start");
    for (const auto& [row, cells] : typed) {
      ASSERT_LT(row, lines.size());
      EXPECT_EQ(Squeezed(lines[row - 1]), "") << "row " << row << " of the sheet Start is not empty";
      lines[row - 1] = "\t" + cells.first + "\t" + cells.second;
    }
    std::string typedSheet;
    for (const std::string& line : lines) typedSheet += line + "\n";
    const std::string own = Cells(folder.Write("typed.txt", typedSheet).string(), {});
    EXPECT_TRUE(OutHas("Primitives  5"));
    EXPECT_TRUE(own == Cells(Example("tutorial" + ending), {"--sheet", "Model"})) << ending;
  }
}

// What the page tells to change is what the other sheets hold.
TEST_F(TutorialTest, TheChangesAreThoseOfTheSheets) {
  const std::string told = Squeezed(page.text);
  for (const std::string sheet : {"Canted", "Shielded", "Titanium"}) {
    const std::vector<std::string> model = SheetLines("tutorial.ods", "Model");
    const std::vector<std::string> changed = SheetLines("tutorial.ods", sheet);
    int changes = 0;
    for (std::size_t row = 6; row < 14; ++row) {
      if (model[row] == changed[row]) continue;
      ++changes;
      std::istringstream cells(changed[row]);
      std::string index;
      std::string material;
      std::string specification;
      std::getline(cells, index, '\t');
      std::getline(cells, material, '\t');
      std::getline(cells, specification, '\t');
      EXPECT_NE(told.find("`" + material + "`"), std::string::npos) << material;
      EXPECT_NE(told.find("`" + specification + "`"), std::string::npos) << specification;
    }
    EXPECT_EQ(changes, 1) << sheet;
  }
}

}  // namespace
}  // namespace orv::testing
