#include "shell/tool_icons.h"

#include <QPainter>
#include <QPalette>
#include <gmock/gmock.h>

#include "gui_support.h"

namespace orv {
namespace {

// Sets the palette of the application while it lives.
class Theme {
 public:
  explicit Theme(bool dark) : old_(QGuiApplication::palette()) {
    QPalette palette(dark ? QColor(45, 45, 48) : QColor(239, 239, 239));
    QGuiApplication::setPalette(palette);
  }
  ~Theme() { QGuiApplication::setPalette(old_); }

 private:
  QPalette old_;
};

int InkOf(const QImage& image) {
  int ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ink += image.pixelColor(x, y).alpha() > 100 ? 1 : 0;
  }
  return ink;
}

const std::vector<std::string> kOtherKeys{"dolly", "orbit",  "pitch", "yaw",       "roll",
                                          "move",  "rotate", "scale", "arcrotate", "demo"};

TEST(ToolIconsTest, EachKeyHasAPictureOfItsOwn) {
  std::vector<QImage> seen;
  std::vector<std::string> keys = ToolIconKeys();
  EXPECT_EQ(keys.size(), 12U);
  keys.insert(keys.end(), kOtherKeys.begin(), kOtherKeys.end());
  for (const std::string& key : keys) {
    const QIcon icon = ToolIcon(key);
    ASSERT_FALSE(icon.isNull()) << key;
    const QImage image = icon.pixmap(QSize(24, 24), 1.0).toImage();
    ASSERT_EQ(image.size(), QSize(24, 24));
    const int ink = InkOf(image);
    EXPECT_GT(ink, 24 * 24 / 20) << key;
    EXPECT_LT(ink, 24 * 24 * 6 / 10) << key;
    for (const QImage& other : seen) EXPECT_NE(image, other) << key;
    seen.push_back(image);
  }
  EXPECT_TRUE(ToolIcon("no key").isNull());
}

TEST(ToolIconsTest, TwiceTheRatioHasTwiceThePixels) {
  const QPixmap picture = ToolIcon("zoom").pixmap(QSize(24, 24), 2.0);
  EXPECT_EQ(picture.size(), QSize(48, 48));
  const QImage small = ToolIcon("zoom").pixmap(QSize(24, 24), 1.0).toImage();
  const QImage stretched = small.scaled(48, 48);
  EXPECT_NE(picture.toImage(), stretched) << "painted anew, not enlarged";
  EXPECT_NEAR(InkOf(picture.toImage()), 4 * InkOf(small), InkOf(small));
}

TEST(ToolIconsTest, TheyTakeTheColoursOfTheTheme) {
  const QIcon icon = ToolIcon("stop");
  const auto darkest = [&](QIcon::Mode mode) {
    int level = 255;
    int brightest = 0;
    const QImage image = icon.pixmap(QSize(24, 24), 1.0, mode).toImage();
    for (int y = 0; y < 24; ++y) {
      for (int x = 0; x < 24; ++x) {
        if (image.pixelColor(x, y).alpha() < 250) continue;
        level = std::min(level, image.pixelColor(x, y).lightness());
        brightest = std::max(brightest, image.pixelColor(x, y).lightness());
      }
    }
    return std::pair(level, brightest);
  };
  {
    const Theme light(false);
    EXPECT_LT(darkest(QIcon::Normal).second, 90);
    EXPECT_GT(darkest(QIcon::Disabled).first, darkest(QIcon::Normal).second);
  }
  const Theme dark(true);
  EXPECT_GT(darkest(QIcon::Normal).first, 170) << "the same icon";
}

TEST(CursorPicturesTest, EachNumberHasOne) {
  for (int number = kFirstCursorPicture; number <= kLastCursorPicture; ++number) {
    for (const double ratio : {1.0, 2.0}) {
      const QPixmap picture = CursorPicture(number, ratio);
      EXPECT_EQ(picture.width(), static_cast<int>(kCursorSide * ratio)) << number;
      EXPECT_GT(InkOf(picture.toImage()), kCursorSide * kCursorSide / 20) << number;
    }
  }
  EXPECT_TRUE(CursorPicture(199, 1).isNull());
  EXPECT_TRUE(CursorPicture(213, 1).isNull());
  EXPECT_TRUE(CursorPicture(0, 1).isNull());
  EXPECT_EQ(ViewCursor(500, 1).shape(), Qt::ArrowCursor);
}

// All pictures on light and dark grounds, to be looked at.
TEST(ToolIconsTest, ContactSheet) {
  std::vector<std::string> keys = ToolIconKeys();
  keys.insert(keys.end(), kOtherKeys.begin(), kOtherKeys.end());
  constexpr int kCell = 66;
  const int columns = static_cast<int>(keys.size());
  QImage sheet(columns * kCell, 7 * kCell, QImage::Format_RGB32);
  QPainter painter(&sheet);
  int row = 0;
  for (const bool dark : {false, true}) {
    const Theme theme(dark);
    for (const int side : {24, 48}) {
      painter.fillRect(0, row * kCell, sheet.width(), kCell, QGuiApplication::palette().color(QPalette::Button));
      for (int column = 0; column < columns; ++column) {
        const QIcon icon = ToolIcon(keys[static_cast<std::size_t>(column)]);
        painter.drawPixmap(column * kCell + 8, row * kCell + 8, icon.pixmap(QSize(side, side), 1.0));
      }
      ++row;
    }
  }
  painter.fillRect(0, row * kCell, sheet.width(), kCell, QGuiApplication::palette().color(QPalette::Button));
  for (int column = 0; column < columns; ++column) {
    const QIcon icon = ToolIcon(keys[static_cast<std::size_t>(column)]);
    painter.drawPixmap(column * kCell + 8, row * kCell + 8, icon.pixmap(QSize(24, 24), 1.0, QIcon::Disabled));
  }
  ++row;
  for (const QColor& ground : {QColor(Qt::white), QColor(0, 0, 60)}) {
    painter.fillRect(0, row * kCell, sheet.width(), kCell, ground);
    for (int number = kFirstCursorPicture; number <= kLastCursorPicture; ++number) {
      QPixmap picture = CursorPicture(number, number % 2 + 1);
      picture.setDevicePixelRatio(1);
      painter.drawPixmap((number - kFirstCursorPicture) * kCell + 1, row * kCell + 1, picture);
    }
    ++row;
  }
  painter.end();
  EXPECT_TRUE(sheet.save(QString::fromStdString(testing::PictureName("icons.png"))));
}

}  // namespace
}  // namespace orv
