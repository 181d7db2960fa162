#include <QApplication>
#include <gtest/gtest.h>

#include "shell/glx_widget.h"

int main(int count, char** arguments) {
  orv::PrepareOpenGl();
  const QApplication application(count, arguments);
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
