#include <map>

#include "model/file_workbook.h"
#include "support/golden_image.h"
#include "system/manual_pages.h"
#include "system/program_run.h"

namespace orv::testing {
namespace {

const std::vector<std::string>& Types() {
  static const std::vector<std::string> kTypes = {
      "thr",       "rect",       "rectfree",   "rectOriented", "rect2sides",  "cyl",         "cylellipse",
      "con",       "con2",       "disc",       "sph",          "elli",        "par",         "cylshape",
      "cylscreen", "cylshapeb",  "cylscreenb", "cylshapeX6",   "cylscreenX6", "cylshapeX6b", "cylscreenX6b",
      "cylshape4", "cylscreen4", "cylshape4b", "cylscreen4b",  "cylshape44",  "cylscreen44"};
  return kTypes;
}

// Types of one shape share a picture.
std::string PictureOf(const std::string& type) {
  return ReplaceAll(type, "screen", "shape");
}

// The pictures of the page by their names; the text of each is the specification that it shows.
std::map<std::string, std::string> Shown(const Page& page) {
  const std::string head = "](images/primitives/";
  std::map<std::string, std::string> shown;
  for (const std::string& line : page.prose) {
    const std::size_t middle = line.find(head);
    const std::size_t begin = line.find("![");
    if (middle == std::string::npos || begin == std::string::npos) continue;
    const std::size_t end = line.find(".png)", middle);
    shown[line.substr(middle + head.size(), end - middle - head.size())] = line.substr(begin + 2, middle - begin - 2);
  }
  return shown;
}

class ManualPrimitivesTest : public ProgramTest {
 protected:
  const Page page = ReadPage("docs/primitives.md");
};

TEST_F(ManualPrimitivesTest, EveryTypeIsToldAndShown) {
  const auto shown = Shown(page);
  for (const std::string& type : Types()) {
    EXPECT_NE(page.text.find("`" + type + "`"), std::string::npos) << type;
    EXPECT_EQ(shown.count(PictureOf(type)), 1U) << "no picture of " << type;
  }
}

TEST_F(ManualPrimitivesTest, TheGalleryHoldsEveryType) {
  FileWorkbook book(Example("primitive_gallery.xlsx"), Locale());
  book.Attach();
  std::set<std::string> there;
  std::istringstream rows(book.RangeText("C1:C60"));
  for (std::string row; std::getline(rows, row);) {
    std::istringstream words(row);
    std::string name;
    std::string type;
    if (words >> name >> type) there.insert(type);
  }
  for (const std::string& type : Types()) EXPECT_EQ(there.count(type), 1U) << type;
}

// Each picture is the shape of its specification in its own frame, coloured by the index i.
TEST_F(ManualPrimitivesTest, ThePicturesAreThoseOfTheProgram) {
  const auto shown = Shown(page);
  ASSERT_GT(shown.size(), 15U);
  std::filesystem::create_directories(File("set"));
  folder.Write("set/settings.json",
               R"({"Use": {"Set04.00": "1", "Set06.00": "1", "Set07.00": "1", "Set08.00": "1", "Set09.00": "1",)"
               R"( "Set10.00": "1", "Set11.00": "40", "Set12.00": "80", "Set13.00": "120", "Set14.00": "128",)"
               R"( "Set15.00": "128", "Set16.00": "128"}})");
  for (const auto& [name, specification] : shown) {
    std::size_t told = 0;  // as the text of the picture, and for the reader
    for (std::size_t at = page.text.find(specification); at != std::string::npos;
         at = page.text.find(specification, at + 1)) {
      ++told;
    }
    EXPECT_GE(told, 2U) << specification;
    ModelText model;
    model.directives = "T 0 0 0";
    model.primitives = {"T5\tOrigin thr size 0.001 0.001 cells 1 1 T 0 0 -0.01", "silver\t" + specification};
    if (specification.find(" thr ") != std::string::npos) {
      // What is not the thruster sets the size of the view.
      model.primitives = {"T5\t" + specification, "silver\tSize rectfree size 0.79 0.8 0.79 0.8 cells 1 1"};
    }
    model.AddAllYields();
    // The corners of screens that face +Y run the other way round: from +Y they are drawn as verso sides.
    const std::string sides = name.starts_with("cylshape") || name == "thr" ? "4" : "2";
    ASSERT_EQ(Run(Write(model), {"--plot", "29", "--quiet", "--case", name, "--image", File("p.png"), "--size",
                                 "480x360", "--view", "iso", "--background", "white", "--sides", sides}),
              kExitDone)
        << name << "\n"
        << err;
    EXPECT_EQ(err, "") << name;
    Image image;
    ASSERT_EQ(ReadPng(File("p.png"), image), "");
    EXPECT_TRUE(MatchesFile(std::string(ORV_SOURCE_DIR) + "/docs/images/primitives/" + name + ".png", image));
  }
}

}  // namespace
}  // namespace orv::testing
