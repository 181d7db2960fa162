#pragma once

#include <QAbstractButton>
#include <QLineEdit>
#include <gtest/gtest.h>
#include <stdexcept>

#include "analysis/run_context.h"
#include "gui_support.h"
#include "support/scripted_dialogs.h"

// Forms of the window, driven by clicks and keys.
namespace orv::testing {

// A picture of a window, for whoever wants to look at it: ORV_SCREENSHOTS names the folder.
inline void Screenshot(QWidget& window, const std::string& name) {
  const char* folder = std::getenv("ORV_SCREENSHOTS");
  if (folder == nullptr) return;
  QTest::qWait(60);
  std::filesystem::create_directories(folder);
  const std::string file = std::string(folder) + "/" + name + ".png";
  EXPECT_TRUE(window.grab().save(QString::fromStdString(file))) << file;
}

template <class Control>
Control& Child(const QWidget& window, const QString& name) {
  auto* control = window.findChild<Control*>(name);
  if (control == nullptr) throw std::runtime_error("no control " + name.toStdString());
  return *control;
}

inline void Click(const QWidget& window, const QString& name, Qt::MouseButton button = Qt::LeftButton) {
  QTest::mouseClick(&Child<QPushButton>(window, name), button);
}

// Where a box is that answers a click.
inline void ClickBox(const QWidget& window, const QString& name) {
  auto& box = Child<QAbstractButton>(window, name);
  QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
}

inline void Retype(QLineEdit& edit, const char* text) {
  edit.setFocus();
  edit.selectAll();
  QTest::keyClicks(&edit, text);
}

struct FormFixture : ::testing::Test {
  std::string Stored(const std::string& section, const std::string& key) const {
    return settings.Read(section, key, "absent");
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  MemorySettings settings;
  FixedClock clock{{2031, 4, 5, 6, 7, 8}};
  RunContext run{prompt, reader, settings, clock, "/"};
};

}  // namespace orv::testing
