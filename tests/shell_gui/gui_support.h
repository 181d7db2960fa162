#pragma once

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "view/image_file.h"

namespace orv::testing {

// Lets events through until it holds; false after five seconds.
inline bool WaitFor(const std::function<bool()>& holds) {
  return QTest::qWaitFor(holds, 5000);
}

// Pictures of the tests, for whoever wants to look at them: ORV_PICTURES names the folder, else they are kept beside
// the program's working folder.
inline std::string PictureName(const std::string& name) {
  const char* wish = std::getenv("ORV_PICTURES");
  const std::filesystem::path folder = wish != nullptr ? wish : "shell_gui_pictures";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return (folder / name).string();
}

// The dialog of that name that is open; null when there is none.
inline QDialog* OpenDialog(const QString& name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget->objectName() == name) return qobject_cast<QDialog*>(widget);
  }
  return nullptr;
}

// Runs `act` on the dialog of that name as soon as it is open. The test fails by its time limit when it never is.
inline void WhenOpen(const QString& name, const std::function<void(QDialog&)>& act) {
  auto* timer = new QTimer(qApp);
  timer->setInterval(10);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, name, act] {
    QDialog* dialog = OpenDialog(name);
    if (dialog == nullptr) return;
    timer->stop();
    timer->deleteLater();
    act(*dialog);
  });
  timer->start();
}

// The button with that caption, "&" left aside.
inline QPushButton* ButtonOf(const QWidget& parent, const QString& caption) {
  for (QPushButton* button : parent.findChildren<QPushButton*>()) {
    if (button->text().remove('&') == caption) return button;
  }
  return nullptr;
}

inline void Press(QDialog& dialog, const QString& caption) {
  if (QPushButton* button = ButtonOf(dialog, caption)) QTest::mouseClick(button, Qt::LeftButton);
}

inline QImage AsQImage(const Image& image) {
  if (image.rgb.empty()) return {};
  return QImage(image.rgb.data(), image.width, image.height, image.width * 3, QImage::Format_RGB888).copy();
}

}  // namespace orv::testing
