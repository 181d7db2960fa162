#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "calc_link/test_office.h"

// The program itself on the same model in files and in a running Calc.
namespace orv::testing {
namespace {

std::string Whole(const std::filesystem::path& name) {
  std::ifstream in(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class ProgramOnCalc : public ::testing::Test {
 protected:
  std::filesystem::path Example(const std::string& name) const {
    std::filesystem::copy(std::filesystem::path(ORV_SOURCE_DIR) / "examples" / name, folder_.path() / name);
    return folder_.path() / name;
  }
  std::string In(const std::string& name) const { return (folder_.path() / name).string(); }

  // The .csv export of a run whose model is told by `source`.
  std::string Export(const std::string& source, const std::string& name) const {
    const std::string command = std::string(ORV_PROGRAM) + " run " + source + " --plot 13 --case same --quiet --out " +
                                In(name) + " --settings " + In("settings") + " --export " + In(name + ".csv") + " > " +
                                In(name + ".log") + " 2>&1 </dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << Whole(In(name + ".log"));
    return Whole(In(name + ".csv"));
  }
  std::string Linked(const TestOffice& office) const { return "--link --door " + office.pipe(); }

  const TemporaryFolder folder_;
};

TEST_F(ProgramOnCalc, ExportsTheSameFromFilesAndFromCalc) {
  const std::filesystem::path xlsx = Example("telecom_satellite.xlsx");
  const std::filesystem::path ods = Example("telecom_satellite.ods");
  const std::string expected = Export(xlsx.string(), "from_xlsx");
  EXPECT_GT(std::count(expected.begin(), expected.end(), '\n'), 1000);
  EXPECT_TRUE(Export(ods.string(), "from_ods") == expected);
  for (const char* locale : {"en-US", "de-DE"}) {
    TestOffice office(locale);
    for (const std::filesystem::path& file : {xlsx, ods}) {
      office.Open(file);
      const std::string name = std::string(locale) + file.extension().string();
      EXPECT_TRUE(Export(Linked(office), name) == expected) << name;
      office.Do("close");
    }
  }
}

TEST_F(ProgramOnCalc, OfAnotherModelIsAnotherExport) {
  const std::string first = Export(Example("telecom_satellite.xlsx").string(), "first");
  const std::filesystem::path gallery = Example("primitive_gallery.ods");
  const std::string expected = Export(gallery.string(), "gallery");
  EXPECT_FALSE(first == expected);
  TestOffice office;
  office.Open(gallery);
  EXPECT_TRUE(Export(Linked(office), "linked") == expected);
}

TEST_F(ProgramOnCalc, TellsHowToOpenTheDoor) {
  const std::string command = std::string(ORV_PROGRAM) + " run --link --door orvtest-nobody --plot 13 --settings " +
                              In("settings") + " > " + In("log") + " 2>&1 </dev/null";
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_NE(Whole(In("log")).find("soffice \"--accept=pipe,name=orvtest-nobody;urp;\""), std::string::npos)
      << Whole(In("log"));
}

}  // namespace
}  // namespace orv::testing
