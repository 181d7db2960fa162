#include <gtest/gtest.h>

#include "system/manual_pages.h"

namespace orv::testing {
namespace {

namespace fs = std::filesystem;

bool IsElsewhere(const std::string& target) {
  return target.starts_with("http://") || target.starts_with("https://");
}

TEST(ManualLinksTest, EveryLinkLeadsToAFileAndAHeading) {
  std::size_t tried = 0;
  for (const Page& page : AllPages()) {
    for (const Link& link : page.links) {
      if (IsElsewhere(link.target)) continue;
      ++tried;
      const std::size_t mark = link.target.find('#');
      const std::string file = link.target.substr(0, mark);
      const fs::path target = file.empty() ? fs::path(ORV_SOURCE_DIR) / page.name : page.folder() / file;
      const std::string where = page.name + ":" + std::to_string(link.line) + ": " + link.target;
      EXPECT_TRUE(fs::exists(target)) << where;
      if (mark == std::string::npos) continue;
      const Page other = ReadPage(fs::relative(target, ORV_SOURCE_DIR).string());
      EXPECT_EQ(other.anchors.count(link.target.substr(mark + 1)), 1U) << where;
    }
  }
  EXPECT_GT(tried, 100U);
}

TEST(ManualLinksTest, EveryPictureOfTheManualIsShown) {
  std::set<fs::path> shown;
  for (const Page& page : AllPages()) {
    for (const Link& link : page.links) {
      if (link.picture) shown.insert(fs::weakly_canonical(page.folder() / link.target));
    }
  }
  std::size_t pictures = 0;
  const fs::path folder = fs::weakly_canonical(fs::path(ORV_SOURCE_DIR) / "docs" / "images");
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    ++pictures;
    EXPECT_EQ(shown.count(entry.path()), 1U) << entry.path() << " stands on no page";
  }
  EXPECT_GT(pictures, 20U);
}

TEST(ManualLinksTest, TheFirstPageListsEveryPage) {
  const Page index = ReadPage("docs/README.md");
  std::set<std::string> listed;
  for (const Link& link : index.links) listed.insert("docs/" + link.target);
  for (const std::string& name : PageNames()) {
    if (!name.starts_with("docs/") || name == index.name) continue;
    EXPECT_EQ(listed.count(name), 1U) << name;
  }
}

// Rows that follow an empty line without a head of their own are shown as text with bars.
TEST(ManualLinksTest, EveryTableHasAHead) {
  std::size_t tables = 0;
  for (const Page& page : AllPages()) {
    for (std::size_t k = 0; k < page.prose.size(); ++k) {
      const bool begins = page.prose[k].starts_with("|") && (k == 0 || !page.prose[k - 1].starts_with("|"));
      if (!begins) continue;
      ++tables;
      EXPECT_TRUE(k + 1 < page.prose.size() && page.prose[k + 1].find("---") != std::string::npos)
          << page.name << ":" << k + 1;
    }
  }
  EXPECT_GT(tables, 60U);
}

// The window shows the pages as they are: a fence that is not closed would swallow the rest.
TEST(ManualLinksTest, EveryFenceIsClosed) {
  for (const Page& page : AllPages()) {
    int marks = 0;
    std::istringstream lines(page.text);
    for (std::string line; std::getline(lines, line);) marks += line.starts_with("```") ? 1 : 0;
    EXPECT_EQ(marks % 2, 0) << page.name;
    EXPECT_FALSE(page.anchors.empty()) << page.name << " has no heading";
  }
}

}  // namespace
}  // namespace orv::testing
