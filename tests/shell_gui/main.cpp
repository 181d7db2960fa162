#include <QApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <string>
#include <vector>

#include "shell/glx_widget.h"

namespace {

// Keeps the drivers loaded that the first context brings in: a leak of a library that is gone bears no name, by which
// it could be told from one of this program.
void KeepDrivers() {
  QOffscreenSurface surface;
  surface.create();
  QOpenGLContext context;
  if (context.create()) context.makeCurrent(&surface);
  std::vector<std::string> names;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* found) {
        static_cast<std::vector<std::string>*>(found)->emplace_back(info->dlpi_name);
        return 0;
      },
      &names);
  for (const std::string& name : names) {
    if (!name.empty()) dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
  }
}

}  // namespace

int main(int count, char** arguments) {
  orv::PrepareOpenGl();
  const QApplication application(count, arguments);
  KeepDrivers();
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
