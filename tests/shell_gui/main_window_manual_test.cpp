#include <QListView>
#include <QScrollArea>
#include <algorithm>

#include "shell_gui/main_window_fixture.h"
#include "support/golden_image.h"

// The pictures of the window in the manual. ORV_UPDATE_GOLDEN=1 renews them.
namespace orv::testing {
namespace {

constexpr int kWidth = 1180;
constexpr int kHeight = 860;

// Letters differ a little between systems.
constexpr GoldenTolerance kLikeTheManual{48, 0.03, 2};

Image ImageOf(const QPixmap& pixmap) {
  const QImage rows = pixmap.toImage().convertToFormat(QImage::Format_RGB888);
  Image image;
  image.width = rows.width();
  image.height = rows.height();
  for (int y = 0; y < rows.height(); ++y) {
    const uchar* const row = rows.constScanLine(y);
    image.rgb.insert(image.rgb.end(), row, row + std::ptrdiff_t{3} * rows.width());
  }
  return image;
}

class MainWindowManualTest : public MainWindowTest {
 protected:
  static void ExpectPicture(QWidget& widget, const std::string& name) {
    QTest::qWait(100);  // the layout follows
    const std::string file = std::string(ORV_SOURCE_DIR) + "/docs/images/window_" + name + ".png";
    EXPECT_TRUE(MatchesFile(file, ImageOf(widget.grab()), kLikeTheManual)) << name;
  }
  static QWidget* TopLevel(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == name && widget->isVisible()) return widget;
    }
    return nullptr;
  }
  // A click on the wing that stands in the plume.
  void PickACell() {
    const QSize size = window_->View().size();
    for (int row = 15; row < 26; ++row) {
      QTest::mouseClick(&window_->View(), Qt::LeftButton, {}, QPoint(size.width() * 12 / 26, size.height() * row / 26));
      if (Find<QLabel>("StatusBar2")->text().contains("wing")) return;
    }
    ADD_FAILURE() << "no cell of a wing was found";
  }
};

TEST_F(MainWindowManualTest, ShowsWhatTheManualShows) {
  WhenOpen("frmToPlot", [](QDialog& dialog) {
    QTest::mouseClick(ButtonOf(dialog, "Default options"), Qt::LeftButton);
    auto* const list = dialog.findChild<QListView*>("List1");
    for (int row = 0; row < list->model()->rowCount(); ++row) {
      const QModelIndex index = list->model()->index(row, 0);
      if (!index.data().toString().startsWith("13 ")) continue;
      list->scrollTo(index);
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
    }
    ExpectPicture(dialog, "selection");
    Press(dialog, "Go Plot");
  });
  window_->resize(kWidth, kHeight);
  window_->OpenFile(workbook_, true);
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->record.finished && !window_->Busy(); }, 60000));
  ASSERT_TRUE(WholePlotShown());
  Click("StatusBar1", Qt::ControlModifier);  // the recto side
  ASSERT_TRUE(WholePlotShown());
  PickACell();
  window_->View().DrawNow();
  ExpectPicture(*window_, "main");

  Menu("mnuFOptions");
  auto* const extended = Find<QCheckBox>("Check2");
  QTest::mouseClick(extended, Qt::LeftButton, {}, QPoint(8, extended->height() / 2));
  ExpectPicture(*Find<QWidget>("Options")->findChild<QScrollArea*>()->widget(), "options");
  QTest::mouseClick(ButtonOf(*window_, "Close"), Qt::LeftButton);

  Tool("movieframes");
  ASSERT_TRUE(WaitFor([] { return TopLevel("frmVideo") != nullptr; }));
  QWidget& movie = *TopLevel("frmVideo");
  QTest::mouseClick(ButtonOf(movie, "Start/Restart Video"), Qt::LeftButton);
  const auto shows = [&movie](const QString& text) {
    const QList<QLabel*> labels = movie.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) { return label->text().contains(text); });
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return shows("5 / 20"); }, 20000));
  ExpectPicture(movie, "movie");
  movie.close();
}

TEST_F(MainWindowManualTest, ShowsTheWarningsOfTheManual) {
  frmWarning warnings;
  warnings.Add(
      "_Cell C9, model row 1 (\"Earth_panel rect size wide 2.2 cells 8 8 T 0 0 2.6\"): \"wide\" is no number and reads "
      "as 0");
  warnings.Add(
      "_ string: 2.0 2,6x cells 8 8 r x -90 t 0 1.1 1.3 has 1 comma, but seems used as decimal True . Next time think "
      "to "
      "check the Excel sheet and replace all commas by dots to not get such warning");
  warnings.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&warnings));
  ExpectPicture(warnings, "warnings");
}

}  // namespace
}  // namespace orv::testing
