#include "analysis/result_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "numerics/paths.h"
#include "numerics/settings.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

template <class Operation>
int FailureOf(Operation operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

std::string Bytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

int FilesIn(const testing::TemporaryFolder& folder) {
  return static_cast<int>(std::distance(fs::directory_iterator(folder.path()), {}));
}

TEST(FileFailure, HasTheClassicNumbers) {
  struct Row {
    int error;
    int failure;
  };
  for (const Row& row :
       {Row{ENOENT, 53}, Row{ENOTDIR, 76}, Row{EACCES, 75}, Row{EPERM, 75}, Row{EISDIR, 75}, Row{EROFS, 75},
        Row{ENOSPC, 75}, Row{EBUSY, 70}, Row{ETXTBSY, 70}, Row{EINVAL, 52}, Row{ENAMETOOLONG, 52}, Row{0, 75}}) {
    SCOPED_TRACE(row.error);
    EXPECT_EQ(FailureOf([&] { RaiseFileFailure(row.error); }), row.failure);
  }
}

TEST(ResultFile, TakesItsPlaceWhenItIsComplete) {
  const testing::TemporaryFolder folder;
  const std::string name = TextOf(folder.path() / "result.xls");
  folder.Write("result.xls", "old");
  {
    ResultFile file(name);
    file.stream() << "new";
    file.stream().flush();
    EXPECT_EQ(Bytes(folder.path() / "result.xls"), "old");
    file.Commit();
  }
  EXPECT_EQ(Bytes(folder.path() / "result.xls"), "new");
  EXPECT_EQ(FilesIn(folder), 1);
}

TEST(ResultFile, LeavesTheOldOneWholeWhenItIsNot) {
  const testing::TemporaryFolder folder;
  folder.Write("result.xls", "old");
  {
    ResultFile file(TextOf(folder.path() / "result.xls"));
    file.stream() << "half";
  }
  EXPECT_EQ(Bytes(folder.path() / "result.xls"), "old");
  EXPECT_EQ(FilesIn(folder), 1) << "the temporary file is gone";
}

TEST(ResultFile, MayBeWrittenTwiceAtATime) {
  const testing::TemporaryFolder folder;
  const std::string name = TextOf(folder.path() / "result.xls");
  ResultFile first(name);
  ResultFile second(name);
  first.stream() << "first";
  second.stream() << "second";
  first.Commit();
  second.Commit();
  EXPECT_EQ(Bytes(folder.path() / "result.xls"), "second");
}

TEST(ResultFile, TakesAnEmptyContentAndAccentsInItsName) {
  const testing::TemporaryFolder folder;
  const std::string name = TextOf(folder.path()) + "/r\xC3\xA9sultat \xC2\xA0.xls";
  ResultFile(name).Commit();
  EXPECT_TRUE(fs::exists(PathOf(name)));
}

TEST(ResultFile, RaisesWhenItCannotBeWritten) {
  const testing::TemporaryFolder folder;
  folder.Write("file", "x");
  EXPECT_EQ(FailureOf([&] { ResultFile file(TextOf(folder.path() / "missing" / "result.xls")); }), 76);
  EXPECT_EQ(FailureOf([&] { ResultFile file(TextOf(folder.path() / "file" / "result.xls")); }), 76);
  EXPECT_EQ(FailureOf([&] { ResultFile file(TextOf(folder.path() / std::string(5000, 'n'))); }), 52);
  EXPECT_EQ(FilesIn(folder), 1);
}

TEST(ResultFile, RaisesWhenItsPlaceIsTaken) {
  const testing::TemporaryFolder folder;
  fs::create_directories(folder.path() / "result.xls" / "inside");
  {
    ResultFile file(TextOf(folder.path() / "result.xls"));
    file.stream() << "x";
    EXPECT_EQ(FailureOf([&] { file.Commit(); }), 75);
  }
  EXPECT_EQ(FilesIn(folder), 1);
}

struct ReportTest : ::testing::Test {
  testing::TemporaryFolder folder;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  MemorySettings settings;
  FixedClock clock{CivilTime{2031, 4, 5, 6, 7, 8}};
  RunContext run{prompt, reader, settings, clock, TextOf(folder.path()) + "/"};
};

using PlotReport = ReportTest;

TEST_F(PlotReport, IsNamedByTitlePlotAndTime) {
  struct Row {
    std::string title;
    double plot;
    std::string expected;
  };
  for (const Row& row :
       {Row{"Sat A", 13, "OrvSat Aplot13 20310405 060708_.xls"},
        Row{"  Sat A  ", 9, "OrvSat Aplot9 20310405 060708_.xls"}, Row{"", 101, "Orvplot101 20310405 060708_.xls"},
        Row{"a/b\\c:d@e|f", 1, "Orvabcdefplot1 20310405 060708_.xls"},
        Row{std::string(96, 'x'), 19, "Orv" + std::string(44, 'x') + "plot19 20310405 060708_.xls"},
        // cut first, then cleaned
        Row{"//" + std::string(96, 'x'), 19, "Orv" + std::string(42, 'x') + "plot19 20310405 060708_.xls"}}) {
    SCOPED_TRACE(row.title);
    run.model.ModelTitle = row.title;
    run.plot.IndexPlot = row.plot;
    EXPECT_EQ(PlotReportName(run), row.expected);
  }
  std::string accents;
  for (int k = 0; k < 60; ++k) accents += "\xC3\xA9";
  run.model.ModelTitle = accents;
  EXPECT_EQ(CharacterCount(PlotReportName(run)), 3U + 44 + 6 + 1 + 8 + 1 + 6 + 5);
  EXPECT_TRUE(IsValidUtf8(PlotReportName(run)));
}

TEST_F(PlotReport, IsAskedAboutWhileASpreadsheetHoldsIt) {
  const std::string name = TextOf(folder.path() / "r.xls");
  folder.Write(".~lock.r.xls#", "");
  EXPECT_EQ(OpenReport(run, name), nullptr);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "The file " + name + " seems to be open. It should be closed now. Then you click on OK.");
  EXPECT_EQ(dialogs.boxes[0].title, "File open");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::OkCancel);

  fs::remove(folder.path() / ".~lock.r.xls#");
  EXPECT_NE(OpenReport(run, name), nullptr);
  EXPECT_EQ(dialogs.boxes.size(), 1U);
}

}  // namespace
}  // namespace orv
