#pragma once

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The pages of the manual, taken apart as far as the tests need it.
namespace orv::testing {

// A fenced block: ```info ... ```
struct Fence {
  std::string info;
  std::string text;
  int line = 0;  // of its first fence mark

  bool Is(const std::string& language) const { return info == language || info.starts_with(language + " "); }
  bool Has(const std::string& word) const { return (" " + info + " ").find(" " + word + " ") != std::string::npos; }
};

struct Link {
  std::string target;
  bool picture = false;
  int line = 0;
};

struct Page {
  std::string name;  // from the folder of the tree: docs/results.md
  std::string text;
  std::vector<std::string> prose;  // lines outside the fences, the others empty
  std::vector<Fence> fences;
  std::vector<Link> links;
  std::set<std::string> anchors;

  std::filesystem::path folder() const { return (std::filesystem::path(ORV_SOURCE_DIR) / name).parent_path(); }
};

inline std::string WholeFile(const std::filesystem::path& name) {
  std::ifstream in(name, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

// Blanks and line ends as single blanks.
inline std::string Squeezed(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (!blank) result += c;
    if (blank && !result.empty() && result.back() != ' ') result += ' ';
  }
  while (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

// The name under which a heading can be linked to: small letters, blanks as hyphens, other signs left out.
inline std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const char c : heading) {
    const auto letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) != 0 || c == '-' || c == '_' || letter > 127) {
      anchor += static_cast<char>(std::tolower(letter));
    } else if (c == ' ') {
      anchor += '-';
    }
  }
  return anchor;
}

// A line without what stands in `code`.
inline std::string WithoutCode(const std::string& line) {
  std::string result;
  bool code = false;
  for (const char c : line) {
    if (c == '`') code = !code;
    if (!code && c != '`') result += c;
  }
  return result;
}

// [text](target) and ![text](target); a link round a picture counts too.
inline void FindLinks(const std::string& line, int number, std::vector<Link>& links) {
  for (std::size_t middle = line.find("]("); middle != std::string::npos; middle = line.find("](", middle + 1)) {
    const std::size_t end = line.find(')', middle);
    if (end == std::string::npos) return;
    const std::size_t begin = line.rfind('[', middle);
    const bool picture = begin != std::string::npos && begin > 0 && line[begin - 1] == '!';
    links.push_back({line.substr(middle + 2, end - middle - 2), picture, number});
  }
}

inline Page ReadPage(const std::string& name) {
  Page page;
  page.name = name;
  page.text = WholeFile(std::filesystem::path(ORV_SOURCE_DIR) / name);
  std::istringstream lines(page.text);
  int number = 0;
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    page.prose.emplace_back();
    if (line.starts_with("```")) {
      inside = !inside;
      if (inside) page.fences.push_back({Squeezed(line.substr(3)), "", number});
    } else if (inside) {
      page.fences.back().text += line + "\n";
    } else {
      page.prose.back() = line;
      FindLinks(WithoutCode(line), number, page.links);
      if (line.starts_with("#")) page.anchors.insert(AnchorOf(line.substr(line.find_first_not_of('#') + 1)));
    }
  }
  return page;
}

// The pages that a user reads, the first page first.
inline std::vector<std::string> PageNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(ORV_SOURCE_DIR) / "docs")) {
    if (entry.path().extension() == ".md") names.push_back("docs/" + entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  names.insert(names.begin(), {"README.md", "examples/README.md"});
  return names;
}

inline std::vector<Page> AllPages() {
  std::vector<Page> pages;
  for (const std::string& name : PageNames()) pages.push_back(ReadPage(name));
  return pages;
}

// The cells of the rows of a page's tables, without the blanks round them. "\|" is a bar within a cell.
inline std::vector<std::vector<std::string>> TableRows(const Page& page) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : page.prose) {
    if (!line.starts_with("|")) continue;
    std::vector<std::string> cells(1);
    for (std::size_t i = 1; i < line.size(); ++i) {
      if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '|') {
        cells.back() += line[++i];
      } else if (line[i] == '|') {
        cells.emplace_back();
      } else {
        cells.back() += line[i];
      }
    }
    cells.pop_back();  // behind the last bar
    for (std::string& cell : cells) cell = Squeezed(cell);
    rows.push_back(std::move(cells));
  }
  return rows;
}

}  // namespace orv::testing
