#include <QClipboard>
#include <QDesktopServices>
#include <QDropEvent>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QRubberBand>

#include "shell_gui/main_window_fixture.h"

// The menus of the main window, one by one, and the files they make.
namespace orv::testing {
namespace {

// Stands for the file manager.
class FolderTaker : public QObject {
  Q_OBJECT

 public:
  explicit FolderTaker(const char* method) { QDesktopServices::setUrlHandler("file", this, method); }
  ~FolderTaker() override { QDesktopServices::unsetUrlHandler("file"); }

  std::string taken;

 public Q_SLOTS:
  void Take(const QUrl& url) { taken = url.toLocalFile().toStdString(); }
};

class MainWindowMenusTest : public MainWindowTest {
 protected:
  void ShowSample() {
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(WholePlotShown());
  }
  Camera& Eye() { return window_->View().Control().Camera(); }
  std::string Told() const { return Find<QLabel>("StatusBar2")->text().toStdString(); }
  void SaveImagesTo(const std::filesystem::path& folder) {
    auto* const directory = Find<QLineEdit>("Text6");
    directory->setText(QString::fromStdString(folder.string()));
    Q_EMIT directory->textEdited(directory->text());
  }
  // Files of the folder whose names begin so.
  std::vector<std::filesystem::path> Images(const std::string& start) const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      if (entry.path().filename().string().starts_with(start)) found.push_back(entry.path());
    }
    return found;
  }
  QImage SavedImage() const {
    return QImage(QString::fromStdString((folder_.path() / "ImageOrvValisSaved.bmp").string()));
  }
  // Answers the print dialog; `file` takes the place of the paper.
  static void PrintTo(const std::string& file) {
    WhenOpen("PrintDialog", [file](QDialog& dialog) {
      QPrinter* const printer = qobject_cast<QPrintDialog*>(&dialog)->printer();
      printer->setOutputFormat(QPrinter::PdfFormat);
      printer->setOutputFileName(QString::fromStdString(file));
      dialog.done(QDialog::Accepted);
    });
  }
};

TEST_F(MainWindowMenusTest, TheViewIsSeenFromEverySide) {
  ShowSample();
  struct Row {
    const char* menu;
    Vec3 position;
    Vec3 up;
  };
  for (const Row& row : {Row{"mnuVCam", {100, 100, 100}, {0, 0, 1}}, Row{"mnuVVTop", {0, 0, 100}, {0, 1, 0}},
                         Row{"mnuVVLeft", {-100, 0, 0}, {0, 0, 1}}, Row{"mnuVVFront", {0, -100, 0}, {0, 0, 1}}}) {
    SCOPED_TRACE(row.menu);
    const Image before = window_->View().Picture();
    Menu(row.menu);
    EXPECT_EQ(Eye().Position(), row.position);
    EXPECT_EQ(Eye().Up(), row.up);
    EXPECT_EQ(Eye().LookAt(), (Vec3{0, 0, 0}));
    EXPECT_NE(window_->View().Picture(), before);
  }
  Menu("mnuVReset");
  EXPECT_EQ(Eye().Position(), (Vec3{10, 10, 10}));
  EXPECT_EQ(Eye().Up(), (Vec3{0, 1, 0}));
}

TEST_F(MainWindowMenusTest, GridAndPerspectiveBearTheirMarks) {
  ShowSample();
  const Image plain = window_->View().Picture();
  auto* const grid = Find<QAction>("mnuVGrids");
  auto* const perspective = Find<QAction>("mnuVVPerspective");
  EXPECT_FALSE(grid->isChecked());
  EXPECT_FALSE(perspective->isChecked());
  Menu("mnuVGrids");
  EXPECT_TRUE(window_->Scene().View().grid);
  EXPECT_TRUE(grid->isChecked());
  EXPECT_NE(window_->View().Picture(), plain);
  Menu("mnuVGrids");
  EXPECT_FALSE(grid->isChecked());
  EXPECT_EQ(window_->View().Picture(), plain);
  Menu("mnuVVPerspective");
  EXPECT_EQ(Eye().Projection(), kPerspective);
  EXPECT_TRUE(perspective->isChecked());
  Menu("mnuVVPerspective");
  EXPECT_EQ(Eye().Projection(), kOrthographic);
  EXPECT_FALSE(perspective->isChecked());
}

TEST_F(MainWindowMenusTest, AnImageWithTimeStampIsSavedOrTheFailureTold) {
  ShowSample();
  SaveImagesTo(folder_.path());
  Menu("mnuFSaveAs");
  ASSERT_EQ(Images("Valis").size(), 1U);
  EXPECT_EQ(Told(), "Saved " + Images("Valis").front().string());
  const QImage image(QString::fromStdString(Images("Valis").front().string()));
  EXPECT_EQ(image.width(), window_->View().Control().Width());
  SaveImagesTo(folder_.path() / "none");
  Menu("mnuFSaveAs");
  EXPECT_TRUE(Told().starts_with("Not saved: ")) << Told();
}

TEST_F(MainWindowMenusTest, ADraggedRectangleIsWhatImagesShow) {
  ShowSample();
  SaveImagesTo(folder_.path());
  Menu("mnuFSave");
  const QImage whole = SavedImage();
  QWidget* const view = &window_->View();
  const double ratio = window_->View().devicePixelRatioF();
  QTest::mousePress(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(200, 150));
  for (const QPoint place : {QPoint(220, 160), QPoint(300, 220)}) {
    QMouseEvent move(QEvent::MouseMove, QPointF(place), view->mapToGlobal(QPointF(place)), Qt::NoButton, Qt::LeftButton,
                     Qt::ShiftModifier);
    QApplication::sendEvent(view, &move);
  }
  QTest::mouseRelease(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(300, 220));
  auto* const band = Find<QRubberBand>("DragRectangle");
  EXPECT_TRUE(band->isVisible());
  EXPECT_EQ(band->geometry(), QRect(200, 150, 100, 70));
  Keep("main_rectangle.png");
  for (const char* const menu : {"mnuFSave", "mnuFSaveAs"}) Menu(menu);
  const QSize part(static_cast<int>(100 * ratio) + 1, static_cast<int>(70 * ratio));
  EXPECT_EQ(SavedImage(), whole.copy(QRect(QPoint(200, 150) * ratio, part)));
  ASSERT_EQ(Images("Valis").size(), 1U);
  EXPECT_EQ(QImage(QString::fromStdString(Images("Valis").front().string())).size(), part);
  QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(20, 20));
  EXPECT_FALSE(band->isVisible());
  Menu("mnuFSave");
  EXPECT_EQ(SavedImage().size(), whole.size());
}

TEST_F(MainWindowMenusTest, AnotherSizeOfTheViewTakesTheRectangleAway) {
  ShowSample();
  QWidget* const view = &window_->View();
  QTest::mousePress(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(200, 150));
  QMouseEvent move(QEvent::MouseMove, QPointF(300, 220), view->mapToGlobal(QPointF(300, 220)), Qt::NoButton,
                   Qt::LeftButton, Qt::ShiftModifier);
  QApplication::sendEvent(view, &move);
  QTest::mouseRelease(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(300, 220));
  auto* const band = Find<QRubberBand>("DragRectangle");
  ASSERT_TRUE(band->isVisible());
  window_->resize(window_->width() - 60, window_->height());
  EXPECT_TRUE(WaitFor([&] { return !band->isVisible(); }));
}

TEST_F(MainWindowMenusTest, TheViewIsPrinted) {
  ShowSample();
  const std::filesystem::path file = folder_.path() / "view.pdf";
  PrintTo(file.string());
  Menu("mnuFPrint");
  std::ifstream pdf(file, std::ios::binary);
  std::string head(5, ' ');
  pdf.read(head.data(), 5);
  EXPECT_EQ(head, "%PDF-");
  EXPECT_GT(std::filesystem::file_size(file), 2000U);
}

TEST_F(MainWindowMenusTest, APrinterThatFailsIsToldAndAsked) {
  ShowSample();
  std::vector<std::string> texts;
  PrintTo("/nowhere/at/all/view.pdf");
  WhenOpen("MsgBox", [&](QDialog& box) {
    texts.push_back(box.property("text").toString().toStdString());
    WhenOpen("MsgBox", [&](QDialog& next) {
      texts.push_back(next.property("text").toString().toStdString());
      Press(next, "Ignore");
    });
    Press(box, "OK");
  });
  Menu("mnuFPrint");
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0], "error Sub mnuFPrint_Click ");
  EXPECT_EQ(texts[1], "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(MainWindowMenusTest, TheResultFolderIsOpened) {
  ShowPlot(13);
  {
    const FolderTaker manager("Take");
    Menu("mnuOpenFolder");
    EXPECT_TRUE(std::filesystem::equivalent(manager.taken, folder_.path())) << manager.taken;
  }
  const FolderTaker none("NoSuchMethod");
  std::string told;
  WhenOpen("MsgBox", [&](QDialog& box) {
    told = box.property("text").toString().toStdString();
    Press(box, "OK");
  });
  Menu("mnuOpenFolder");
  EXPECT_TRUE(told.starts_with("No file manager opens \"")) << told;
}

TEST_F(MainWindowMenusTest, TheColoursGrowTheWindow) {
  // Small letters, that all has room on the display.
  const QFont usual = QApplication::font();
  QFont small = usual;
  small.setPointSize(6);
  End();
  QApplication::setFont(small);
  Begin();
  window_->resize(760, 700);
  ShowSample();
  Menu("mnuFOptions");
  QTest::qWait(50);
  const int width = window_->width();
  const int view = window_->View().width();
  const auto tick = [&] {
    auto* const box = Find<QCheckBox>("Check2");
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    QTest::qWait(50);
  };
  tick();
  EXPECT_TRUE(Find<QPushButton>("Patch(5)")->isVisible());
  const int grown = window_->width();
  EXPECT_GE(grown - width, Find<QPushButton>("Patch(5)")->parentWidget()->minimumSizeHint().width())
      << "the window, not the frame alone";
  EXPECT_EQ(window_->View().width(), view) << "the view keeps its room";
  Keep("main_colours.png");
  tick();
  EXPECT_EQ(window_->width(), width);
  tick();
  Menu("mnuFOptions");
  QTest::qWait(50);
  EXPECT_EQ(window_->width(), width) << "closed the frame needs nothing";
  Menu("mnuFOptions");
  QTest::qWait(50);
  EXPECT_EQ(window_->width(), grown);
  window_->resize(1270, 700);
  tick();
  tick();
  EXPECT_LE(window_->frameGeometry().right(), window_->screen()->availableGeometry().right())
      << "as far as there is room";
  QApplication::setFont(usual);
}

TEST_F(MainWindowMenusTest, TheRoomOfTheOptionsIsGivenBack) {
  window_->resize(800, 700);
  ShowSample();
  ASSERT_EQ(window_->width(), 800) << "a narrow window is narrow enough";
  const QRect space = window_->screen()->availableGeometry();
  auto* const box = Find<QCheckBox>("Check2");
  const auto toggle = [&] {
    Menu("mnuFOptions");
    QTest::qWait(50);
  };
  for (const int width : {800, 1180, 600}) {
    window_->resize(width, 700);
    QTest::qWait(20);
    const int plain = window_->width();  // the parts need some
    for (const bool extended : {true, true, false}) {
      toggle();
      if (box->isChecked() != extended) QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
      QTest::qWait(50);
      EXPECT_EQ(box->isChecked(), extended);
      EXPECT_LE(window_->width(), space.width());
      EXPECT_GE(window_->View().width(), 300);
      if (extended) Keep(("main_options_" + std::to_string(width) + ".png").c_str());
      toggle();
      EXPECT_EQ(window_->width(), plain) << width << (extended ? " with the colours" : "");
      toggle();
      QTest::mouseClick(ButtonOf(*window_, "Close"), Qt::LeftButton);
      QTest::qWait(50);
      EXPECT_EQ(window_->width(), plain) << width << " by the button";
    }
  }
}

TEST_F(MainWindowMenusTest, AWorkbookIsDroppedAndComesBackAsARecentOne) {
  ShowSample();
  const auto cancel = [] { WhenOpen("frmToPlot", [](QDialog& dialog) { Press(dialog, "Cancel"); }); };
  cancel();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(workbook_))});
  QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(window_.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(window_.get(), &drop);
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return window_->Source().WorkbookRead() == workbook_ && !window_->Busy(); }, 20000));
  EXPECT_EQ(RecentWorkbooks(*settings_), std::vector<std::string>{workbook_});

  auto* const recent = Find<QMenu>("mnuFRecent");
  Q_EMIT recent->aboutToShow();
  ASSERT_EQ(recent->actions().size(), 1);
  EXPECT_EQ(recent->actions().front()->text().toStdString(), workbook_);
  bool asked = false;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    asked = true;
    Press(dialog, "Cancel");
  });
  recent->actions().front()->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return asked && !window_->Busy(); }, 20000));
}

}  // namespace
}  // namespace orv::testing

#include "main_window_menus_test.moc"
