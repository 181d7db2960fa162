#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <thread>

#include "calc_link/test_office.h"
#include "model/file_workbook.h"
#include "numerics/failure.h"
#include "support/spreadsheet_contract.h"

namespace orv::testing {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

double Took(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

// Of the machine that it is meant for; instrumented code is not measured.
#ifdef __SANITIZE_ADDRESS__
constexpr double kTableLimit = 40'000;
#else
constexpr double kTableLimit = 4000;
#endif

int Failure(const std::function<void()>& operation) {
  return static_cast<int>(NumberOf(operation));
}

// One office for all tests of the program, and another where decimals are printed with a comma: starting takes seconds.
class Offices : public ::testing::Environment {
 public:
  TestOffice& Get(bool comma) {
    std::unique_ptr<TestOffice>& office = comma ? comma_ : point_;
    if (!office) office = std::make_unique<TestOffice>(comma ? "de-DE" : "en-US");
    return *office;
  }
  void TearDown() override {
    point_.reset();
    comma_.reset();
  }

 private:
  std::unique_ptr<TestOffice> point_;
  std::unique_ptr<TestOffice> comma_;
};

Offices& SharedOffices() {
  static auto* const offices = static_cast<Offices*>(::testing::AddGlobalTestEnvironment(new Offices));
  return *offices;
}
[[maybe_unused]] const Offices& kRegistered = SharedOffices();

// The parts of a workbook with the lists of contents that the office insists on, other than this system's readers.
std::string WholeXlsx(const TestBook& book) {
  const std::string types = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
  std::string list =
      "<?xml version=\"1.0\"?><Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
      "Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/><Default "
      "Extension=\"xml\" ContentType=\"application/xml\"/>";
  const auto add = [&](const std::string& part, const std::string& type) {
    list += "<Override PartName=\"/xl/" + part + ".xml\" ContentType=\"" + types + type + "+xml\"/>";
  };
  add("workbook", "sheet.main");
  add("sharedStrings", "sharedStrings");
  for (std::size_t k = 1; k <= book.sheets.size(); ++k) add("worksheets/sheet" + std::to_string(k), "worksheet");
  return Zip(WithPart(XlsxParts(book), "[Content_Types].xml", list + "</Types>"));
}

std::string WholeOds(const TestBook& book) {
  std::string list =
      "<?xml version=\"1.0\"?><manifest:manifest xmlns:manifest=\"urn:oasis:names:tc:opendocument:xmlns:manifest:1.0\" "
      "manifest:version=\"1.3\">";
  for (const char* entry :
       {"/\" manifest:media-type=\"application/vnd.oasis.opendocument.spreadsheet",
        "content.xml\" manifest:media-type=\"text/xml", "settings.xml\" manifest:media-type=\"text/xml"}) {
    list += "<manifest:file-entry manifest:full-path=\"" + std::string(entry) + "\"/>";
  }
  std::vector<ZipPart> parts = WithPart(OdsParts(book), "META-INF/manifest.xml", list + "</manifest:manifest>");
  // The office leaves out the element for a tab.
  for (ZipPart& part : parts) part.content = ReplaceAll(part.content, "<text:tab/>", "&#9;");
  return Zip(parts);
}

// A link whose documents are closed behind it.
class ClosingLink : public CalcLink {
 public:
  explicit ClosingLink(TestOffice& office) : CalcLink(office.Settings()), office_(office) {}
  ~ClosingLink() override { office_.Do("close"); }

 private:
  TestOffice& office_;
};

Store CalcWith(const std::string& name, const std::string& file, std::string (*bytes)(const TestBook&)) {
  return {name, true, true, [=](const TestBook& book, const Locale& locale, const TemporaryFolder& folder) {
            const bool comma = locale.decimalSeparator == ",";
            TestOffice& office = SharedOffices().Get(comma);
            office.Do("close");
            office.Open(folder.Write((comma ? "comma_" : "") + file, bytes(book)));  // no two offices open one file
            return std::make_unique<ClosingLink>(office);
          }};
}

INSTANTIATE_TEST_SUITE_P(RunningCalc, SpreadsheetContract,
                         ::testing::Values(CalcWith("Xlsx", "book.xlsx", WholeXlsx),
                                           CalcWith("Ods", "book.ods", WholeOds)),
                         [](const ::testing::TestParamInfo<Store>& store) { return store.param.name; });

// A copy of an example, so that the office leaves its lock elsewhere.
std::filesystem::path Copy(const std::string& name, const TemporaryFolder& folder) {
  std::filesystem::copy(std::filesystem::path(ORV_SOURCE_DIR) / "examples" / name, folder.path() / name,
                        std::filesystem::copy_options::overwrite_existing);
  return folder.path() / name;
}

class CalcLinkTest : public ::testing::Test {
 protected:
  ~CalcLinkTest() override { office.Do("close"); }

  std::filesystem::path Example(const std::string& name) const { return Copy(name, folder_); }

  TestOffice& office = SharedOffices().Get(false);
  CalcLink link{office.Settings()};
  TemporaryFolder folder_;
};

TEST_F(CalcLinkTest, ReadsTheSameFromTheFilesAndFromCalc) {
  for (const char* name : {"telecom_satellite.xlsx", "telecom_satellite.ods", "primitive_gallery.xlsx"}) {
    FileWorkbook file(Example(name), {});
    file.Attach();
    office.Open(Example(name));
    link.Attach();
    EXPECT_EQ(link.WorkbookPath(), file.WorkbookPath());
    EXPECT_EQ(link.SheetName(), file.SheetName());
    EXPECT_EQ(link.ActiveCell(), file.ActiveCell());
    EXPECT_EQ(link.RangeText("A1:Z400"), file.RangeText("A1:Z400"));
    for (int row = 1; row <= 80; ++row) {
      for (int column = 1; column <= 4; ++column) {
        ASSERT_EQ(link.Formula({row, column}), file.Formula({row, column})) << name << " row " << row << ", " << column;
      }
    }
    for (const char* part : {"Orvdata", "DatabaseOrvValis", "Table      9"}) {
      link.Find(part);
      file.Find(part);
      EXPECT_EQ(link.ActiveCell(), file.ActiveCell()) << part;
    }
    office.Do("close");
  }
}

TEST_F(CalcLinkTest, LeavesTheDocumentAsItWas) {
  office.Open(Example("telecom_satellite.ods"));
  office.Do("select\tB10:D12");
  office.Do("type\tA300\tsomething of the user");
  for (const bool saved : {false, true}) {
    if (saved) office.Do("saved");
    const std::string before = office.Do("state");
    ASSERT_EQ(before.find("modified " + std::string(saved ? "0" : "1")), 0U) << before;
    link.Attach();
    EXPECT_EQ(link.ActiveCell(), (CellPosition{10, 2}));
    link.Find("DatabaseOrvValis");
    link.Activate({500, 7});
    link.RangeText("A1:U1000");
    EXPECT_FALSE(link.PrintsDecimalComma({300, 1}));
    EXPECT_EQ(link.Value({300, 1}), "something of the user");
    link.Snapshot();
    link.Release();
    EXPECT_EQ(office.Do("state"), before);
  }
}

TEST_F(CalcLinkTest, FollowsTheUser) {
  office.Open(Example("telecom_satellite.ods"));
  const SheetSnapshot first = link.Snapshot();
  EXPECT_EQ(first.applicationName, "Calc");
  EXPECT_EQ(first.workbookName, "telecom_satellite.ods");
  EXPECT_EQ(first.sheetName, "Model");
  EXPECT_EQ(first.windowCount, 1);
  EXPECT_TRUE(first.windowCaption.starts_with("telecom_satellite.ods")) << first.windowCaption;
  EXPECT_NE(first.formula.find("Orvdata"), std::string::npos);

  office.Do("type\tB200\t=MAX(A2:C60;1)");
  office.Do("select\tB200");
  EXPECT_EQ(link.Snapshot().formula, "=MAX(A2:C60,1)");
  EXPECT_EQ(link.Snapshot().activeCell, (CellPosition{200, 2}));
  office.Do("sheet\tParameters");
  EXPECT_EQ(link.Snapshot().sheetName, "Parameters");
  office.Do("new\tscalc");
  EXPECT_NE(link.Snapshot().windowCaption, first.windowCaption);
  EXPECT_EQ(link.Snapshot().formula, "");
}

TEST_F(CalcLinkTest, KeepsToTheSheetThatItIsAttachedTo) {
  office.Open(Example("telecom_satellite.ods"));
  link.Attach();
  const std::string value = link.Value({8, 2});
  office.Do("sheet\tParameters");
  link.Snapshot();
  EXPECT_EQ(link.SheetName(), "Model");
  EXPECT_EQ(link.Value({8, 2}), value);
  link.Attach();
  EXPECT_EQ(link.SheetName(), "Parameters");
}

TEST_F(CalcLinkTest, FindsNoSpreadsheetInAnEmptyOffice) {
  link.Attach();
  EXPECT_EQ(Failure([&] { link.SheetName(); }), 91);
  EXPECT_EQ(Failure([&] { link.ActiveCell(); }), 91);
  EXPECT_EQ(Failure([&] { link.Snapshot(); }), 91);
  office.Do("new\tscalc");
  link.Attach();
  EXPECT_EQ(link.WorkbookPath(), "");
  EXPECT_EQ(link.RangeText("A1:B1"), "\t\r\n");
  office.Do("close");
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
}

TEST_F(CalcLinkTest, PrintsFormulasAsTheOtherSpreadsheetsDo) {
  const std::vector<std::pair<std::string, std::string>> formulas = {
      {"=SUM(A1:B2;3)&\"a;b|c\"", "=SUM(A1:B2,3)&\"a;b|c\""},
      {"=$'Sheet Two'.$A$1", "='Sheet Two'!$A$1"},
      {"=SUM({1;2|3;4})", "=SUM({1,2;3,4})"},
      {"=IF(A1>0;\"=x\";#N/A)", "=IF(A1>0,\"=x\",#N/A)"},
      {"=MAX(A1~B2)", "=MAX(A1,B2)"},
      {"=SUM(A1:B2!B1:C3)", "=SUM(A1:B2 B1:C3)"},
      {"=CONCAT(A1:A3)", "=CONCAT(A1:A3)"},
      {"=1/0", "=1/0"},
      {"=nosuch(1;2)", "=nosuch(1,2)"},
      {"'=text", "=text"}};
  office.Open(folder_.Write("two.ods", WholeOds(TestBook{{{"Sheet1", {}, {}}, {"Sheet Two", {}, {}}}, 0})));
  int row = 10;
  for (const auto& [typed, printed] : formulas) office.Do("type\tC" + std::to_string(++row) + "\t" + typed);
  link.Attach();
  row = 10;
  for (const auto& [typed, printed] : formulas) EXPECT_EQ(link.Formula({++row, 3}), printed) << typed;
  EXPECT_EQ(link.Value({18, 3}), "#DIV/0!");
  EXPECT_EQ(link.Value({19, 3}), "#NAME?");
  link.Find("'sheet two'!$a");
  EXPECT_EQ(link.ActiveCell(), (CellPosition{12, 3}));
  EXPECT_EQ(Failure([&] { link.Find("('sheet two'"); }), 91);
}

TEST_F(CalcLinkTest, CopiesALargeTableInAFewSeconds) {
  office.Do("new\tscalc");
  office.Do("fill\t64000\t15");
  link.Attach();
  std::string text;
  const double milliseconds = Took([&] { text = link.RangeText("A1:O64000"); });
  std::cout << "64,000 x 15 cells in " << milliseconds << " ms, " << text.size() << " bytes\n";
  RecordProperty("milliseconds", static_cast<int>(milliseconds));
  EXPECT_LT(milliseconds, kTableLimit);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 64000);
  EXPECT_TRUE(text.starts_with("1.25\t1.39285714285714\t1.53571428571429\t"));
  EXPECT_TRUE(text.ends_with("\t80002\r\n")) << text.substr(text.size() - 40);
  double look = 1e9;
  for (int k = 0; k < 50; ++k) look = std::min(look, Took([&] { link.Snapshot(); }));
  std::cout << "a snapshot in " << look << " ms at best\n";
  EXPECT_LT(look, 40);
  EXPECT_EQ(link.RangeText("N63999:Q64002"),
            "80000.6071428571\t80000.75\t\t\r\n80001.8571428571\t80002\t\t\r\n\t\t\t\r\n\t\t\t\r\n");
  EXPECT_EQ(link.RangeText("O64000:IV64300").substr(0, 8), "80002\t\t\t");
}

TEST(CalcLinkAlone, TellsAtOnceThatThereIsNoOffice) {
  CalcLinkSettings settings;
  settings.helper = BuiltHelper();
  settings.door = CalcDoorOf("orvtest-nobody-opens-this");
  CalcLink link(settings);
  try {
    link.Attach();
    FAIL() << "attached to nothing";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::CannotCreateObject);
    EXPECT_NE(failure.description().find("connect to pipe"), std::string::npos) << failure.description();
  }
  double best = 1e9;
  for (int k = 0; k < 20; ++k) {
    best = std::min(best, Took([&] { EXPECT_EQ(Failure([&] { link.Attach(); }), 429); }));
  }
  std::cout << "absent in " << best << " ms at best\n";
  EXPECT_LT(best, 20);
  EXPECT_EQ(Failure([&] { link.Snapshot(); }), 429);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
}

TEST(CalcLinkAlone, SurvivesTheEndOfTheOfficeAndComesBack) {
  const TemporaryFolder folder;
  TestOffice office;
  office.Open(Copy("telecom_satellite.xlsx", folder));
  CalcLink link(office.Settings());
  link.Attach();
  EXPECT_EQ(link.SheetName(), "Model");
  const std::string range = link.RangeText("A1:U50");
  office.Kill();
  EXPECT_EQ(Failure([&] { link.Value({8, 2}); }), 429);
  EXPECT_EQ(Failure([&] { link.Value({8, 2}); }), 91);
  EXPECT_EQ(Failure([&] { link.Snapshot(); }), 429);
  EXPECT_EQ(Failure([&] { link.Attach(); }), 429);
  EXPECT_TRUE(std::filesystem::remove(folder.path() / ".~lock.telecom_satellite.xlsx#"));  // nobody holds it any more
  office.Start();
  office.Open(folder.path() / "telecom_satellite.xlsx");
  EXPECT_EQ(link.Snapshot().sheetName, "Model");
  link.Attach();
  EXPECT_EQ(link.RangeText("A1:U50"), range);
}

TEST(CalcLinkAlone, DoesNotWaitForABusyOffice) {
  const TemporaryFolder folder;
  TestOffice office;
  office.Open(Copy("telecom_satellite.xlsx", folder));
  CalcLinkSettings settings = office.Settings();
  settings.watchDeadline = std::chrono::milliseconds(40);
  settings.runDeadline = std::chrono::milliseconds(400);
  CalcLink link(settings);
  const auto untilAttached = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (Failure([&] { link.Attach(); }) != 0 && std::chrono::steady_clock::now() < untilAttached) {
  }
  const std::string value = link.Value({8, 2});
  office.Hang(true);
  const double first = Took([&] { EXPECT_EQ(Failure([&] { link.Snapshot(); }), 50290); });
  const double more = Took([&] {
    for (int k = 0; k < 20; ++k) EXPECT_EQ(Failure([&] { link.Snapshot(); }), 50290);
  });
  EXPECT_LT(first, 1000);
  EXPECT_LT(more, 700) << "less than twenty times the deadline";
  const double run = Took([&] {
    for (int k = 0; k < 20; ++k) EXPECT_EQ(Failure([&] { link.Value({8, 2}); }), 50290);
  });
  EXPECT_LT(run, 5000) << "less than twenty times the deadline";
  office.Hang(false);
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  int failure = 50290;
  while (failure != 0 && std::chrono::steady_clock::now() < until) failure = Failure([&] { link.Value({8, 2}); });
  EXPECT_EQ(link.Value({8, 2}), value);
}

TEST(CalcLinkAlone, OpensTheDoorOfAnOfficeThatRuns) {
  const TemporaryFolder folder;
  TestOffice office;
  office.Open(Copy("telecom_satellite.xlsx", folder));
  CalcLinkSettings settings = office.Settings();
  settings.door = CalcDoorOf(office.pipe() + "b");
  CalcLink link(settings);
  EXPECT_EQ(Failure([&] { link.Attach(); }), 429);
  ASSERT_TRUE(OpenCalcDoor(settings.door, office.ProfileArguments()));
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  int failure = 429;
  while (failure != 0 && std::chrono::steady_clock::now() < until) failure = Failure([&] { link.Attach(); });
  EXPECT_EQ(link.SheetName(), "Model");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), 0) << "a process was left behind, or none is waited for";
}

}  // namespace
}  // namespace orv::testing
