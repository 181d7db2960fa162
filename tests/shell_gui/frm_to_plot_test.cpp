#include "shell/frm_to_plot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QRadioButton>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "forms_support.h"

namespace orv::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class FrmToPlotTest : public FormFixture {
 protected:
  FrmToPlotTest() { form.Open(" Model: sample", run, std::nullopt); }

  void Show() {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  std::string Stored(const std::string& key) const { return FormFixture::Stored("UseOrv", key); }
  QListView& List() { return Child<QListView>(window, "List1"); }
  QLineEdit& Search() { return Child<QLineEdit>(window, "Text2"); }
  QRadioButton& Option(int k) { return Child<QRadioButton>(window, ArrayNameOf(k)); }
  static QString ArrayNameOf(int k) { return "Option1(" + QString::number(k) + ")"; }
  std::string ComboText() { return Child<QComboBox>(window, "Combo2").currentText().toStdString(); }
  QPoint PlaceOf(const QString& start) {
    const QAbstractItemModel& rows = *List().model();
    for (int row = 0; row < rows.rowCount(); ++row) {
      const QModelIndex index = rows.index(row, 0);
      if (!index.data().toString().startsWith(start)) continue;
      List().scrollTo(index);
      return List().visualRect(index).center();
    }
    throw std::runtime_error("no row " + start.toStdString());
  }
  void ClickItem(const QString& start) {
    const QPoint place = PlaceOf(start);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
  }

  MainState main;
  ToPlotForm form{settings, prompt};
  frmToPlot window{form, main};
};

TEST_F(FrmToPlotTest, OpensWithPlot13AndNothingMemorised) {
  Show();
  EXPECT_EQ(window.objectName(), "frmToPlot");
  EXPECT_EQ(window.windowTitle(), "Selection To Plot Model: sample");
  EXPECT_EQ(ComboText(), "13 Density (m-3)");
  EXPECT_EQ(Child<QComboBox>(window, "Combo2").count(), static_cast<int>(form.Items().size()));
  EXPECT_EQ(List().currentIndex().data().toString(), "13 Density (m-3)");
  for (int k = 0; k < kMemorisedPlots; ++k) {
    EXPECT_EQ(Option(k).text(), "");
    EXPECT_FALSE(Option(k).isEnabled());
    EXPECT_FALSE(Option(k).isChecked());
  }
  EXPECT_TRUE(Search().hasFocus());
  EXPECT_EQ(Child<QPushButton>(window, "Command10").text().remove('&'), "Go Plot");
  EXPECT_THAT(Child<QPushButton>(window, "Command1").toolTip().toStdString(),
              HasSubstr("delete all memorized plots, with Right click delete also the saved default options"));
  EXPECT_THAT(Child<QLabel>(window, "Label1").text().toStdString(),
              StartsWith("Special Features: Levels lines: L  primitive_n\n     Compatibility"));
}

TEST_F(FrmToPlotTest, AClickInTheListChoosesAndMemorises) {
  Show();
  ClickItem("22 ");
  EXPECT_EQ(form.IndexPlotRequest(), 22);
  EXPECT_THAT(ComboText(), StartsWith("22 "));
  EXPECT_THAT(Option(0).text().toStdString(), StartsWith("22 "));
  EXPECT_TRUE(Option(0).isEnabled());
  EXPECT_THAT(Stored("PlotsUsed0"), StartsWith("22 "));
  ClickItem("22 ");
  EXPECT_EQ(Option(1).text(), "") << "memorised already";
}

TEST_F(FrmToPlotTest, TheComboChoosesByKeys) {
  Show();
  auto& combo = Child<QComboBox>(window, "Combo2");
  combo.setFocus();
  QTest::keyClick(&combo, Qt::Key_Down);
  EXPECT_EQ(form.IndexPlotRequest(), 14);
  EXPECT_THAT(Option(0).text().toStdString(), StartsWith("14 "));
}

TEST_F(FrmToPlotTest, TypingNarrowsTheListAndEnterChooses) {
  Show();
  const int all = List().model()->rowCount();
  QTest::keyClicks(&Search(), "dens");
  EXPECT_GT(List().model()->rowCount(), 0);
  EXPECT_LT(List().model()->rowCount(), all);
  for (int row = 0; row < List().model()->rowCount(); ++row) {
    EXPECT_THAT(List().model()->index(row, 0).data().toString().toLower().toStdString(), HasSubstr("dens"));
  }
  EXPECT_EQ(form.IndexPlotRequest(), 0) << "a search is no choice";
  Screenshot(window, "frmToPlot_search");
  Search().clear();
  QTest::keyClicks(&Search(), "70");
  QTest::keyClick(&Search(), Qt::Key_Return);
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(form.IndexPlotRequest(), 70);
  EXPECT_EQ(Search().text(), "");
  EXPECT_EQ(List().model()->rowCount(), all);
  QTest::keyClick(&Search(), Qt::Key_Return);
  EXPECT_EQ(window.result(), QDialog::Accepted) << "without a search Enter plots";
  EXPECT_EQ(Stored("PlotsUsedLastSelected"), "70");
}

TEST_F(FrmToPlotTest, ASearchWithoutAMatchChangesNothing) {
  Show();
  QTest::keyClicks(&Search(), "(*zz");
  EXPECT_EQ(List().model()->rowCount(), 0);
  EXPECT_TRUE(Child<QLabel>(window, "Label4").isVisible());
  QTest::keyClick(&Search(), Qt::Key_Return);
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(form.IndexPlotRequest(), 0);
  EXPECT_EQ(ComboText(), "13 Density (m-3)");
}

TEST_F(FrmToPlotTest, TheListIsReachedByTheArrowAndPlotsByEnter) {
  Show();
  QTest::keyClicks(&Search(), "9");
  QTest::keyClick(&Search(), Qt::Key_Down);
  EXPECT_TRUE(List().hasFocus());
  EXPECT_THAT(List().currentIndex().data().toString().toStdString(), StartsWith("9 "));
  QTest::keyClick(&List(), Qt::Key_Space);
  EXPECT_EQ(form.IndexPlotRequest(), 9);
  EXPECT_TRUE(window.isVisible());
  QTest::keyClick(&List(), Qt::Key_Return);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(window.result(), QDialog::Accepted);
}

TEST_F(FrmToPlotTest, ADoubleClickPlots) {
  Show();
  const QPoint place = PlaceOf("15 ");
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(window.result(), QDialog::Accepted);
  EXPECT_EQ(form.Choice().IndexPlotRequest, 15);
  EXPECT_EQ(form.PlotRunState(), 1);
  EXPECT_EQ(main.command8Tip, "Mean data only");
}

TEST_F(FrmToPlotTest, GoPlotTakesThePreselection) {
  Show();
  Click(window, "Command10");
  EXPECT_EQ(window.result(), QDialog::Accepted);
  EXPECT_EQ(form.Choice().IndexPlotRequest, 13);
  EXPECT_THAT(Stored("PlotsUsed0"), StartsWith("13 "));
}

TEST_F(FrmToPlotTest, EscapeAndCancelChooseNothing) {
  Show();
  ClickItem("22 ");
  QTest::keyClick(&Search(), Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(form.Choice().IndexPlotRequest, 0);
  EXPECT_EQ(Stored("PlotsUsedLastSelected"), "absent");
  Show();
  ClickItem("22 ");
  Click(window, "Command2");
  EXPECT_EQ(window.result(), QDialog::Rejected);
  EXPECT_EQ(form.Choice().IndexPlotRequest, 0);
}

TEST_F(FrmToPlotTest, ButtonsChooseByClickAndByAlt) {
  Show();
  Click(window, "Command3");
  EXPECT_THAT(Option(0).text().toStdString(), StartsWith("8 "));
  EXPECT_THAT(Option(7).text().toStdString(), StartsWith("22 "));
  EXPECT_THAT(Stored("PlotsUsedDefault5"), StartsWith("70 "));
  ClickBox(window, ArrayNameOf(2));
  EXPECT_EQ(form.IndexPlotRequest(), 10);
  EXPECT_TRUE(Option(2).isChecked());
  EXPECT_THAT(ComboText(), StartsWith("10 ")) << "its item is chosen too";
  QTest::keyClick(&window, Qt::Key_6, Qt::AltModifier);
  EXPECT_EQ(form.IndexPlotRequest(), 70);
  EXPECT_TRUE(Option(5).isChecked());
  EXPECT_FALSE(Option(2).isChecked());
  Screenshot(window, "frmToPlot");
  ClickItem("13 ");
  EXPECT_FALSE(Option(5).isChecked()) << "the choice made last wins";
  ClickBox(window, ArrayNameOf(6));
  QTest::mouseDClick(&Option(6), Qt::LeftButton, {}, QPoint(8, Option(6).height() / 2));
  EXPECT_EQ(window.result(), QDialog::Accepted);
  EXPECT_EQ(form.Choice().IndexPlotRequest, 19);
}

TEST_F(FrmToPlotTest, ClearKeepsTheDefaultsUnlessByTheRightButton) {
  Show();
  Click(window, "Command3");
  ClickBox(window, ArrayNameOf(1));
  ClickItem("13 ");
  ClickItem("14 ");
  Click(window, "Command1");
  for (int k = 0; k < kMemorisedPlots; ++k) EXPECT_EQ(Option(k).text(), "");
  EXPECT_FALSE(Option(1).isChecked());
  EXPECT_THAT(Stored("PlotsUsedDefault0"), StartsWith("8 "));
  Click(window, "Command3");
  EXPECT_THAT(Option(0).text().toStdString(), StartsWith("8 "));
  Click(window, "Command1", Qt::RightButton);
  EXPECT_EQ(Option(0).text(), "");
  EXPECT_EQ(Stored("PlotsUsedDefault0"), "");
  EXPECT_EQ(Stored("PlotsUsed0"), "");
}

TEST_F(FrmToPlotTest, ThePressedRightButtonCanBeDrawnAway) {
  Show();
  Click(window, "Command3");
  auto& clear = Child<QPushButton>(window, "Command1");
  QTest::mousePress(&clear, Qt::RightButton);
  QTest::mouseRelease(&clear, Qt::RightButton, {}, QPoint(-40, -40));
  EXPECT_THAT(Option(0).text().toStdString(), StartsWith("8 "));
}

TEST_F(FrmToPlotTest, TheLogarithmBoxesHoldTogether) {
  Show();
  auto& log = Child<QCheckBox>(window, "Check1");
  auto& margins = Child<QCheckBox>(window, "Check2");
  ClickBox(window, "Check2");
  EXPECT_TRUE(log.isChecked());
  EXPECT_TRUE(margins.isChecked());
  EXPECT_EQ(form.LogScale(), 2);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "2");
  ClickBox(window, "Check2");
  EXPECT_EQ(form.LogScale(), 1);
  ClickBox(window, "Check1");
  EXPECT_EQ(form.LogScale(), 0);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "0");
}

TEST_F(FrmToPlotTest, DirectivesAreKeptWholeAndCutForTheRun) {
  Show();
  auto& box = Child<QLineEdit>(window, "Text1");
  auto& note = Child<QLabel>(window, "Label6");
  QTest::keyClicks(&box, "L 3");
  EXPECT_EQ(Stored("PlotsUsedDirective"), "L 3");
  EXPECT_FALSE(note.isVisible());
  QTest::keyClicks(&box, QString(70, 'x'));
  EXPECT_EQ(Stored("PlotsUsedDirective").size(), 73U);
  EXPECT_EQ(form.Choice().PlotOptionText.size(), 64U);
  EXPECT_TRUE(note.isVisible());
}

TEST_F(FrmToPlotTest, MaterialPlotsTellTheMainWindow) {
  Show();
  ClickItem("90 ");
  Click(window, "Command10");
  EXPECT_EQ(main.panelTip, "RECTO");
  EXPECT_EQ(form.PlotRunState(), 2);
}

TEST_F(FrmToPlotTest, AReplotTellsWhatIsMissing) {
  form.Open(" Model: sample", run, ComputedPlots{13, 0});
  Show();
  ClickItem("95 ");
  Click(window, "Command10");
  EXPECT_EQ(main.panel, "NO DATA: cleaning process not performed ");
  EXPECT_EQ(form.PlotRunState(), 1);
}

TEST_F(FrmToPlotTest, ItReopensWithTheItemsOfAnotherModel) {
  Show();
  QTest::keyClicks(&Search(), "dens");
  window.reject();
  run.materials.MaterialsUsed = {"1", "gold"};
  form.Open(" Model: other", run, std::nullopt);
  Show();
  EXPECT_EQ(Search().text(), "");
  EXPECT_EQ(window.windowTitle(), "Selection To Plot Model: other");
  EXPECT_EQ(List().model()->rowCount(), static_cast<int>(form.Items().size()));
  EXPECT_NO_THROW(PlaceOf("90 Redeposition gold"));
}

TEST_F(FrmToPlotTest, TheWheelOverTheComboChoosesNothing) {
  Show();
  auto& combo = Child<QComboBox>(window, "Combo2");
  QWheelEvent event(QPointF(5, 5), combo.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), {}, {}, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(&combo, &event);
  EXPECT_EQ(form.IndexPlotRequest(), 0);
  EXPECT_EQ(ComboText(), "13 Density (m-3)");
}

TEST_F(FrmToPlotTest, AllControlsAreReachedByTab) {
  Show();
  Click(window, "Command3");
  Search().setFocus();
  std::vector<std::string> met;
  for (int k = 0; k < 30; ++k) {
    met.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    if (QApplication::focusWidget() == &Search()) break;
  }
  EXPECT_THAT(met, ::testing::IsSupersetOf({"Text2", "List1", "Combo2", "Option1(0)", "Check1", "Check2", "Text1",
                                            "Command1", "Command3", "Command10", "Command2"}));
  EXPECT_EQ(met.front(), "Text2");
  EXPECT_EQ(met.back(), "Command2");
}

TEST_F(FrmToPlotTest, ARunAsksByTheWindow) {
  WindowSelection selection(form, main, nullptr);
  EXPECT_FALSE(selection.shown);
  WhenOpen("frmToPlot", [](QDialog& dialog) { Click(dialog, "Command10"); });
  EXPECT_EQ(selection.Select(" Model: m", run).IndexPlotRequest, 13);
  EXPECT_TRUE(selection.shown);
  WhenOpen("frmToPlot", [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(selection.Select(" Model: m", run).IndexPlotRequest, 0);
}

}  // namespace
}  // namespace orv::testing
