#include "shell/frm_manual.h"

#include <QAction>
#include <QTextBlock>
#include <QTextBrowser>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "gui_support.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

class FrmManualTest : public ::testing::Test {
 protected:
  static std::string PageFile(const std::string& name) { return std::string(ORV_SOURCE_DIR) + "/docs/" + name; }
  QTextBrowser& Pages() { return *window.findChild<QTextBrowser*>("ManualPages"); }
  QAction* ActionOf(const QString& caption) {
    for (QAction* action : window.findChildren<QAction*>()) {
      if (action->text() == caption) return action;
    }
    return nullptr;
  }
  // Pictures that a page names, and how many of them are there.
  std::pair<int, int> PicturesOfThePage() {
    int named = 0;
    int there = 0;
    for (QTextBlock block = Pages().document()->begin(); block.isValid(); block = block.next()) {
      for (auto at = block.begin(); !at.atEnd(); ++at) {
        const QTextImageFormat image = at.fragment().charFormat().toImageFormat();
        if (!image.isValid()) continue;
        ++named;
        const QVariant picture = Pages().document()->resource(QTextDocument::ImageResource, QUrl(image.name()));
        there += picture.value<QImage>().isNull() ? 0 : 1;
      }
    }
    return {named, there};
  }

  frmManual window;
};

TEST_F(FrmManualTest, EveryPageIsShownWithItsPictures) {
  int pages = 0;
  int pictures = 0;
  for (const auto& entry : fs::directory_iterator(PageFile(""))) {
    if (entry.path().extension() != ".md") continue;
    ++pages;
    ASSERT_TRUE(window.Open(entry.path().string()));
    const QString text = Pages().toPlainText();
    EXPECT_GT(text.size(), 200) << entry.path();
    EXPECT_FALSE(text.contains("```")) << entry.path() << " has a fence that is not seen as one";
    EXPECT_FALSE(text.contains("](")) << entry.path() << " has a link that is not seen as one";
    const auto [named, there] = PicturesOfThePage();
    EXPECT_EQ(named, there) << entry.path();
    pictures += there;
  }
  EXPECT_GT(pages, 20);
  EXPECT_GT(pictures, 40);
}

TEST_F(FrmManualTest, LinksLeadOnAndBack) {
  EXPECT_FALSE(window.Open(PageFile("none.md")));
  ASSERT_TRUE(window.Open(PageFile("README.md")));
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_FALSE(ActionOf("Back")->isEnabled());
  const QString first = Pages().toPlainText();
  Pages().setSource(Pages().source().resolved(QUrl("tutorial.md")));
  EXPECT_TRUE(Pages().toPlainText().startsWith("The first hour"));
  window.grab().save(QString::fromStdString(testing::PictureName("frmManual.png")));
  ActionOf("Back")->trigger();
  EXPECT_EQ(Pages().toPlainText(), first);
  ActionOf("Forward")->trigger();
  EXPECT_TRUE(Pages().toPlainText().startsWith("The first hour"));
  ActionOf("Contents")->trigger();
  EXPECT_EQ(Pages().toPlainText(), first);
}

}  // namespace
}  // namespace orv
