#include <QMessageBox>
#include <iterator>

#include "shell_gui/main_window_fixture.h"

// The window and the spreadsheet that runs: a sheet in memory stands for it.
namespace orv::testing {
namespace {

std::string WholeFile(const std::filesystem::path& name) {
  std::ifstream in(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class MainWindowLinkTest : public MainWindowTest {
 protected:
  // Two curves, and cells that name them.
  void FillSheet() {
    for (int row = 1; row <= 20; ++row) {
      for (int column = 1; column <= 3; ++column) sheet_.Set({row, column}, std::to_string(row * column));
      for (int column = 5; column <= 7; ++column) sheet_.Set({row, column}, std::to_string(row + column * row * row));
    }
    sheet_.SetFormula({25, 1}, "=MAX(A1:C20)", "60");
    sheet_.SetFormula({26, 1}, "=MAX(E1:G9)", "588");
    sheet_.applicationRunning = true;
    GoTo({25, 1});
  }
  void GoTo(CellPosition cell) {
    sheet_.Attach();
    sheet_.Activate(cell);
  }
  void ShowWindow() {
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  }
  // Waits until so many points are shown; the last index of a range of n rows is n - 1.
  bool Shows(int lastPoint) {
    return QTest::qWaitFor([&] { return !window_->Busy() && run_->lists.NumberPoints == lastPoint; }, 5000);
  }
  void SwitchInteractiveOn() { Menu("mnuOinteractive"); }
  // Answers the box of that title by a button.
  static void Answer(const QString& title, const QString& button, bool& seen) {
    auto* const timer = new QTimer(qApp);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, title, button, &seen] {
      for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* const dialog = qobject_cast<QDialog*>(widget);
        if (dialog == nullptr || !dialog->isVisible() || dialog->windowTitle() != title) continue;
        timer->stop();
        timer->deleteLater();
        seen = true;
        Press(*dialog, button);
        return;
      }
    });
    timer->start();
  }
};

TEST_F(MainWindowLinkTest, AtTheStartTheRunningSpreadsheetIsPlotted) {
  FillSheet();
  ShowWindow();
  EXPECT_TRUE(Shows(19)) << run_->lists.NumberPoints;
  EXPECT_EQ(window_->Source().Source(), PlotSource::Spreadsheet);
  EXPECT_EQ(Find<QComboBox>("Combo1")->itemText(0), "=MAX(A1:C20)");
}

TEST_F(MainWindowLinkTest, WithoutASpreadsheetTheUserIsAskedOnceAndSeesTheSample) {
  window_->Source().Session().attachFailures = 0;
  std::filesystem::remove(settings_->OutputFolder() + kLastPlotName);
  bool asked = false;
  bool told = false;
  Answer("Excel not running!", "Cancel", asked);
  Answer("Demo default", "OK", told);
  ShowWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return asked && told && !window_->Busy(); }, 5000)) << asked << told;
  EXPECT_TRUE(Shows(kDemoPoints - 1)) << run_->lists.NumberPoints;
  EXPECT_EQ(window_->Source().Session().ExcelState, 2);
  EXPECT_EQ(window_->Source().Source(), PlotSource::Demo);
}

TEST_F(MainWindowLinkTest, InteractiveTheViewFollowsTheActiveCell) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  SwitchInteractiveOn();
  GoTo({26, 1});
  EXPECT_TRUE(Shows(8)) << run_->lists.NumberPoints;
  GoTo({25, 1});
  EXPECT_TRUE(Shows(19)) << run_->lists.NumberPoints;
}

TEST_F(MainWindowLinkTest, ASpreadsheetThatGoesAwayLeavesTheViewAndComesBack) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  SwitchInteractiveOn();
  GoTo({26, 1});
  ASSERT_TRUE(Shows(8));
  sheet_.Release();
  sheet_.applicationRunning = false;
  const auto tells = [&](const char* part) {
    return QTest::qWaitFor([&] { return Find<QLabel>("StatusBar2")->text().contains(part); }, 5000);
  };
  EXPECT_TRUE(tells("not running")) << Find<QLabel>("StatusBar2")->text().toStdString();
  EXPECT_EQ(run_->lists.NumberPoints, 8);
  sheet_.applicationRunning = true;
  GoTo({25, 1});
  EXPECT_TRUE(Shows(19)) << run_->lists.NumberPoints;
}

TEST_F(MainWindowLinkTest, UpdateExcelLeavesAChosenFileForTheSpreadsheet) {
  ShowPlot(13);
  FillSheet();
  QTest::qWait(200);
  EXPECT_TRUE(run_->record.finished);
  Menu("mnuUpdateExcel");
  EXPECT_TRUE(Shows(19)) << run_->lists.NumberPoints;
  EXPECT_EQ(window_->Source().Source(), PlotSource::Spreadsheet);
}

TEST_F(MainWindowLinkTest, UpdateExcelWaitsForABusySpreadsheet) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  GoTo({26, 1});
  sheet_.busyOperations = 1;
  Menu("mnuUpdateExcel");
  EXPECT_TRUE(Shows(8)) << "by the timer, though interactivity is off: " << run_->lists.NumberPoints;
}

TEST_F(MainWindowLinkTest, ATypedSpecificationPlotsRangesOfAChosenWorkbook) {
  window_->OpenFile(std::string(ORV_SOURCE_DIR) + "/examples/range_plots.xlsx");
  ShowWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window_->Busy() && run_->lists.PlotLoaded == 1; }, 5000));
  auto* const combo = Find<QComboBox>("Combo1");
  combo->lineEdit()->selectAll();
  QTest::keyClicks(combo->lineEdit(), "=MAX(A5:C30)");
  QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
  EXPECT_TRUE(Shows(25)) << run_->lists.NumberPoints;
  EXPECT_EQ(combo->itemText(0), "=MAX(A5:C30)");
  EXPECT_EQ(window_->Source().Source(), PlotSource::Workbook);
}

TEST_F(MainWindowLinkTest, ACancelledSelectionKeepsTheModelThatIsShown) {
  ShowPlot(13);
  const std::string id = run_->model.ModelId;
  const std::string gallery = std::string(ORV_SOURCE_DIR) + "/examples/primitive_gallery.xlsx";
  WhenOpen("frmToPlot", [](QDialog& dialog) { dialog.reject(); });
  window_->OpenFile(gallery);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window_->Busy(); }, 10000));
  EXPECT_EQ(run_->model.ModelId, id);
  EXPECT_TRUE(run_->record.finished);
  EXPECT_EQ(window_->Source().File(), workbook_);
}

TEST_F(MainWindowLinkTest, APlotFileThatWasOpenedIsNotReplacedByAnotherPlot) {
  const std::filesystem::path mine = folder_.path() / "my_plot.txt";
  EnsureDemoPlot(mine.string());
  const std::string bytes = WholeFile(mine);
  const std::filesystem::path last = settings_->OutputFolder() + kLastPlotName;
  std::filesystem::remove(last);
  window_->OpenFile(mine.string());
  ShowWindow();
  ASSERT_TRUE(Shows(kDemoPoints - 1)) << run_->lists.NumberPoints;
  FillSheet();
  Menu("mnuUpdateExcel");
  ASSERT_TRUE(Shows(19)) << run_->lists.NumberPoints;
  EXPECT_TRUE(WholeFile(mine) == bytes);
  EXPECT_NE(WholeFile(last).find("=MAX(A1:C20)"), std::string::npos);
}

TEST_F(MainWindowLinkTest, APlotFileThatIsGoneStaysTheChoice) {
  const std::filesystem::path mine = folder_.path() / "my_plot.txt";
  EnsureDemoPlot(mine.string());
  std::filesystem::remove(settings_->OutputFolder() + kLastPlotName);
  window_->OpenFile(mine.string());
  std::filesystem::rename(mine, folder_.path() / "away");
  bool told = false;
  Answer("Demo default", "OK", told);
  ShowWindow();
  ASSERT_TRUE(Shows(kDemoPoints - 1)) << run_->lists.NumberPoints;
  EXPECT_TRUE(told);
  EXPECT_EQ(window_->Source().Source(), PlotSource::Demo);
  std::ofstream(mine) << "From: \tBook\tSheet\t=MAX(A1:C3)\t1\t\tDate \n1\t2\t3\n2\t3\t4\n3\t4\t5\n";
  Menu("mnuUpdateExcel");
  EXPECT_TRUE(Shows(2)) << run_->lists.NumberPoints;
  EXPECT_EQ(window_->Source().Source(), PlotSource::PlotFile);
}

TEST_F(MainWindowLinkTest, ABusySpreadsheetStillGoesBeforeAFileChosenEarlier) {
  window_->OpenFile(std::string(ORV_SOURCE_DIR) + "/examples/range_plots.xlsx");
  ShowWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window_->Busy() && run_->lists.PlotLoaded == 1; }, 5000));
  ASSERT_EQ(window_->Source().Source(), PlotSource::Workbook);
  FillSheet();
  sheet_.busyOperations = 1;
  Menu("mnuUpdateExcel");
  EXPECT_TRUE(Shows(19)) << run_->lists.NumberPoints;
  EXPECT_EQ(window_->Source().Source(), PlotSource::Spreadsheet);
}

TEST_F(MainWindowLinkTest, AnotherMainKeywordIsFollowedAtOnce) {
  FillSheet();
  sheet_.SetFormula({27, 1}, "=SUM(E1:G12)", "1");
  sheet_.Set({28, 1}, "=sum(E1:G14) \"PENUP\"");
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  SwitchInteractiveOn();
  GoTo({30, 1});
  QTest::qWait(600);
  Menu("mnuFOptions");
  auto* const field = Find<QLineEdit>("Text9");
  field->selectAll();
  QTest::keyClicks(field, "sum");
  GoTo({27, 1});
  EXPECT_TRUE(Shows(11)) << run_->lists.NumberPoints;
  GoTo({28, 1});
  EXPECT_TRUE(Shows(13)) << "a text, its word in small letters: " << run_->lists.NumberPoints;
}

TEST_F(MainWindowLinkTest, TheInteractiveMenusRestAfterAnUpdate) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  EXPECT_TRUE(Find<QMenu>("mnuOptions")->isEnabled());
  Menu("mnuUpdateExcel");
  EXPECT_FALSE(Find<QMenu>("mnuOptions")->menuAction()->isEnabled());
  EXPECT_FALSE(Find<QAction>("mnuOinteractive")->isEnabled());
  Menu("mnuFOptions");
  Find<QCheckBox>("Check1(7)")->click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QAction>("mnuOinteractive")->isEnabled(); }, 5000));
  EXPECT_TRUE(Find<QMenu>("mnuOptions")->menuAction()->isEnabled());
  EXPECT_TRUE(Find<QAction>("mnuOinteractive")->isChecked()) << "the box has moved the mark";
}

TEST_F(MainWindowLinkTest, AMarkThatDiffersFromTheBoxIsTold) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  std::string told;
  WhenOpen("MsgBox", [&](QDialog& dialog) {
    told = static_cast<QMessageBox&>(dialog).text().toStdString();
    Press(dialog, "OK");
  });
  auto* const mark = Find<QAction>("mnuOinteractive");
  mark->setChecked(true);
  mark->trigger();  // takes the mark away and ticks the box
  ASSERT_TRUE(QTest::qWaitFor([&] { return !told.empty(); }, 5000));
  EXPECT_EQ(told, "error Sub Check1_Click Check1(7) = 1 Then mnuOinteractive.Checked = True ");
  EXPECT_TRUE(QTest::qWaitFor([&] { return mark->isChecked(); }, 5000)) << "as the box";
  EXPECT_TRUE(Find<QCheckBox>("Check1(7)")->isChecked());
}

TEST_F(MainWindowLinkTest, ThePlotTicksTheAxisOfItsValues) {
  FillSheet();
  for (int row = 1; row <= 20; ++row) sheet_.Set({row, 9}, std::to_string(row));
  const std::string ranges = "=MAX(A1:C20)+MAX(I1:I20)+MAX(J1:K1)+MAX(J1:N1)+MAX(J1:K1)+MAX(A1:B20)";
  sheet_.SetFormula({27, 1}, ranges + "&\"valy\"", "");
  sheet_.SetFormula({28, 1}, ranges + "&\"valx valz\"", "");
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  const auto ticked = [&] {
    std::string axes;
    for (const char* name : {"Check8(0)", "Check8(1)", "Check8(2)"}) {
      axes += Find<QCheckBox>(name)->isChecked() ? '1' : '0';
    }
    return axes;
  };
  const auto ticks = [&](const char* axes) { return QTest::qWaitFor([&] { return ticked() == axes; }, 5000); };
  EXPECT_EQ(ticked(), "000");
  SwitchInteractiveOn();
  Menu("mnuFOptions");
  GoTo({27, 1});
  EXPECT_TRUE(ticks("010")) << ticked();
  GoTo({28, 1});
  EXPECT_TRUE(ticks("001")) << ticked();
  ASSERT_EQ(run_->lists.ValueAxis, 3);
  Find<QCheckBox>("Check8(0)")->click();
  EXPECT_EQ(ticked(), "100");
  EXPECT_EQ(run_->lists.ValueAxis, 1) << "the bars stand along x";
  GoTo({25, 1});
  EXPECT_TRUE(ticks("000")) << ticked();
  Find<QCheckBox>("Check8(0)")->click();
  EXPECT_TRUE(ticks("000")) << "this plot has no such values";
}

// Ends the event loops of its process for good, so it has one of its own.
using MainWindowLinkEndTest = MainWindowLinkTest;

TEST_F(MainWindowLinkEndTest, CancelEndsTheProgramWhenTheSheetHoldsNoModel) {
  sheet_.Set({1, 1}, "a letter");
  sheet_.applicationRunning = true;
  std::string asked;
  WhenOpen("MsgBox", [&](QDialog& dialog) {
    asked = static_cast<QMessageBox&>(dialog).text().toStdString();
    Press(dialog, "Cancel");
  });
  ShowWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window_->isVisible(); }, 5000));
  EXPECT_NE(asked.find("Keyword not found in the current Excel sheet: "), std::string::npos) << asked;
}

TEST_F(MainWindowLinkTest, AWorkbookFileWithoutAModelLeavesWhatIsShown) {
  FillSheet();
  ShowWindow();
  ASSERT_TRUE(Shows(19));
  int boxes = 0;
  QTimer answers;
  answers.setInterval(10);
  QObject::connect(&answers, &QTimer::timeout, &answers, [&] {
    QDialog* const box = OpenDialog("MsgBox");
    if (box == nullptr) return;
    ++boxes;
    Press(*box, "Cancel");
  });
  answers.start();
  window_->OpenFile(std::string(ORV_SOURCE_DIR) + "/examples/broken/missing_keyword.xlsx");
  ASSERT_TRUE(QTest::qWaitFor([&] { return boxes > 0 && !window_->Busy(); }, 5000));
  QTest::qWait(200);
  EXPECT_EQ(boxes, 1) << "told once";
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(run_->lists.NumberPoints, 19);
}

}  // namespace
}  // namespace orv::testing
