#include <QClipboard>

#include "shell_gui/main_window_fixture.h"

// The buttons and forms of the main window that keep something of their own.
namespace orv::testing {
namespace {

class MainWindowToolsTest : public MainWindowTest {
 protected:
  void ShowSample() {
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(WholePlotShown());
  }
  static QWidget* Form(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == name) return widget;
    }
    return nullptr;
  }
};

TEST_F(MainWindowToolsTest, FrozenStartBearsItsMark) {
  ShowSample();
  auto* const button = Find<QToolButton>("frozenstart");
  EXPECT_FALSE(button->isChecked());
  Tool("zoom");
  Tool("frozenstart");
  EXPECT_TRUE(button->isChecked());
  EXPECT_TRUE(Find<QToolButton>("zoom")->isChecked()) << "the mode keeps its mark";
  Tool("frozenstart");
  EXPECT_FALSE(button->isChecked());
  Tool("frozenstart");
  Click("Command9");
  EXPECT_FALSE(button->isChecked()) << "Reset ends it";
  EXPECT_TRUE(WholePlotShown());
}

TEST_F(MainWindowToolsTest, LightbackAndTheWhiteBoxExchangeOneBackground) {
  ShowSample();
  Menu("mnuFOptions");
  const auto& background = window_->Scene().View().options.ColourOfBackGround;
  Tool("lightback");
  EXPECT_EQ(background, (std::array<double, 3>{255, 255, 255}));
  EXPECT_TRUE(Find<QCheckBox>("Check7")->isChecked());
  EXPECT_EQ(Find<QLineEdit>("Text5(15)")->text(), "255");
  End();
  Begin();
  ShowSample();
  EXPECT_EQ(window_->Scene().View().options.ColourOfBackGround[0], 10) << "it was not saved";
  settings_->Write("Use", "Background15", "77");
  Menu("mnuFOptions");
  for (const char* field : {"Text5(15)", "Text5(16)", "Text5(17)"}) {
    auto* const edit = Find<QLineEdit>(field);
    edit->setText("255");
    Q_EMIT edit->textEdited("255");
  }
  Click("Command1");
  Tool("lightback");
  EXPECT_EQ(window_->Scene().View().options.ColourOfBackGround[0], 77) << "the stored one comes back";
}

TEST_F(MainWindowToolsTest, ZoomingOutAndInLooksUpTheDataFolder) {
  ShowSample();
  for (const char* tool : {"zminus", "zplus"}) {
    const std::string folder = (folder_.path() / tool).string();
    settings_->Write("SettingsDirs", "directory", folder);
    Tool(tool);
    EXPECT_EQ(run_->OutputFolder, settings_->folder() + "/") << "it is away for the moment";
    std::filesystem::create_directories(folder);
    Tool(tool);
    EXPECT_EQ(run_->OutputFolder, folder + "/");
  }
}

TEST_F(MainWindowToolsTest, TheCommandForPresentationsIsOnTheClipboard) {
  ShowSample();
  Menu("mnuFRunPowerPoint");
  QWidget* const frame = Form("Frame1");
  ASSERT_NE(frame, nullptr);
  EXPECT_TRUE(frame->isVisible());
  EXPECT_EQ(frame->windowTitle(), "To run in PowerPoint");
  const auto* const text = frame->findChild<QLineEdit*>("Text1");
  EXPECT_TRUE(text->text().startsWith("\"/usr/bin/true\" ")) << text->text().toStdString();
  EXPECT_EQ(text->selectedText(), text->text());
  EXPECT_EQ(QGuiApplication::clipboard()->text(), text->text());
  const QPixmap picture = frame->findChild<QLabel*>("Picture1")->pixmap();
  EXPECT_EQ(picture.width(), 320);
  QTest::qWait(60);
  frame->grab().save(QString::fromStdString(PictureName("main_presentation.png")));
}

TEST_F(MainWindowToolsTest, AMovieWindowThatIsClosedOpensAgain) {
  ShowSample();
  for (int time = 0; time < 2; ++time) {
    Tool("movieframes");
    QWidget* const video = Form("frmVideo");
    ASSERT_TRUE(video->isVisible()) << time;
    video->close();
    EXPECT_FALSE(video->isVisible());
  }
}

}  // namespace
}  // namespace orv::testing
