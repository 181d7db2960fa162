#include "numerics/installation.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "numerics/paths.h"

namespace orv {
namespace {

class InstallationTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("orv_installation_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
               testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  void Make(const std::string& name) {
    const std::filesystem::path file = folder_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "x";
  }
  std::string At(const std::string& name) const { return TextOf(folder_ / name); }

  std::filesystem::path folder_;
};

TEST_F(InstallationTest, AnInstalledProgramFindsItsShare) {
  Make("usr/bin/orvvalis");
  Make("usr/share/orvvalis/docs/README.md");
  Make("usr/docs/README.md");
  EXPECT_EQ(FindInstalled(At("usr/bin/orvvalis"), "docs/README.md"), At("usr/share/orvvalis/docs/README.md"));
}

TEST_F(InstallationTest, ABuiltProgramFindsTheTree) {
  Make("tree/build/release/orvvalis");
  Make("tree/textures/earth.jpg");
  EXPECT_EQ(FindInstalled(At("tree/build/release/orvvalis"), "textures"), At("tree/textures"));
  EXPECT_EQ(FindInstalled(At("tree/build/release/orvvalis"), "absent"), "");
}

TEST_F(InstallationTest, TheRunningProgramIsAFile) {
  EXPECT_TRUE(std::filesystem::is_regular_file(PathOf(ProgramFile()))) << ProgramFile();
}

}  // namespace
}  // namespace orv
