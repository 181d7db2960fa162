#include "shell_gui/main_window_fixture.h"

// The window and the spreadsheet that runs: a sheet in memory stands for it.
namespace orv::testing {
namespace {

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

}  // namespace
}  // namespace orv::testing
