#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "model/demo_plot.h"
#include "model/memory_sheet.h"
#include "model/range_sending.h"
#include "shell/frm_main.h"
#include "shell/frm_warning.h"
#include "shell/settings_store.h"
#include "shell/status_panel.h"
#include "shell_gui/gui_support.h"
#include "support/workbook_writer.h"

// The real window with the example satellite, driven as a user would.
namespace orv::testing {

class MainWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    sheet_.applicationRunning = false;
    workbook_ = (folder_.path() / "telecom_satellite.xlsx").string();
    std::filesystem::copy_file(std::string(ORV_SOURCE_DIR) + "/examples/telecom_satellite.xlsx", workbook_);
    Begin();
  }
  void TearDown() override { End(); }

  // What the window takes for the running spreadsheet.
  virtual Spreadsheet& Link() { return sheet_; }

  void Begin() {
    std::string warning;
    settings_ = std::make_unique<FileSettings>((folder_.path() / "settings").string(), warning);
    warnings_ = std::make_unique<frmWarning>();
    dialogs_ = std::make_unique<QtDialogs>(nullptr, *warnings_);
    prompt_ = std::make_unique<ErrorPrompt>(*dialogs_);
    reader_ = std::make_unique<CellText>(*prompt_, Locale{});
    run_ = std::make_unique<RunContext>(*prompt_, *reader_, *settings_, clock_, settings_->OutputFolder());
    run_->record.CaseText = "test";
    window_ = std::make_unique<frmMain>(WindowServices{
        *run_, *settings_, *dialogs_, *warnings_, settings_->OutputFolder(), "/usr/bin/true", Link(), "", nullptr});
    dialogs_->SetWindow(window_.get());
    // A session after others: the question about the spreadsheet has been asked, and there is a last plot.
    window_->Source().Session().attachFailures = 1;
    EnsureDemoPlot(settings_->OutputFolder() + kLastPlotName);
  }
  void End() {
    if (dialogs_) dialogs_->SetWindow(nullptr);
    window_.reset();
    run_.reset();
    reader_.reset();
    prompt_.reset();
    dialogs_.reset();
    warnings_.reset();
    settings_.reset();
  }

  template <class Widget>
  Widget* Find(const char* name) const {
    Widget* const widget = window_->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }
  void Click(const char* name, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton, keys);
  }
  void Tool(const char* key) { QTest::mouseClick(Find<QToolButton>(key), Qt::LeftButton); }
  void Menu(const char* name) { Find<QAction>(name)->trigger(); }

  // Opens the example and computes a plot.
  void ShowPlot(int plot) {
    WhenOpen("frmToPlot", [plot](QDialog& dialog) {
      auto* const combo = dialog.findChild<QComboBox*>("Combo2");
      for (int i = 0; i < combo->count(); ++i) {
        if (combo->itemText(i).startsWith(QString::number(plot) + " ")) {
          combo->setCurrentIndex(i);
          Q_EMIT combo->activated(i);
        }
      }
      Press(dialog, "Go Plot");
    });
    window_->OpenFile(workbook_);
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return run_->record.finished && !window_->Busy(); }, 60000));
  }
  bool WholePlotShown() {
    return QTest::qWaitFor(
        [&] {
          return run_->lists.PlotLoaded == 1 && run_->lists.NumberPoints > 0 &&
                 window_->Scene().CURRINDEXI() == run_->lists.NumberPoints;
        },
        30000);
  }
  void Keep(const char* name) {
    QTest::qWait(80);  // the layout follows
    window_->View().DrawNow();
    window_->grab().save(QString::fromStdString(PictureName(name)));
  }
  std::string Panel() const { return Find<StatusPanel>("StatusBar1")->text().toStdString(); }

  TemporaryFolder folder_;
  std::string workbook_;
  SystemClock clock_;
  MemorySheet sheet_;  // the running spreadsheet: absent unless a test starts it
  std::unique_ptr<FileSettings> settings_;
  std::unique_ptr<frmWarning> warnings_;
  std::unique_ptr<QtDialogs> dialogs_;
  std::unique_ptr<ErrorPrompt> prompt_;
  std::unique_ptr<CellText> reader_;
  std::unique_ptr<RunContext> run_;
  std::unique_ptr<frmMain> window_;
};

}  // namespace orv::testing
