#include "model/directives.h"

#include "numerics/text.h"

namespace orv {
namespace {

// The line with the places where directives begin.
class DirectiveReader {
 public:
  DirectiveReader(const std::string& line, CellText& reader, std::vector<std::string>& captured)
      : line_(UpperCase(line)), reader_(reader), captured_(captured) {}

  // Finds a directive; behind() is then the text behind its word, empty when the word ends the line.
  bool Find(std::string_view prefix) {
    const std::size_t position = line_.find(prefix);
    if (position == std::string::npos) return false;
    if (position > 0 && line_[position - 1] != ' ') TellCapture(prefix, position);
    const std::size_t blank = line_.find(' ', position);
    behind_ = blank == std::string::npos ? "" : Trim(std::string_view(line_).substr(blank + 1));
    if (!behind_.empty()) kept_ = behind_;
    return true;
  }

  std::string& behind() { return behind_; }

  // The value of a one-number directive: a keyword alone means 1. A keyword that ends the line looks for its "0" in
  // the text of the directive handled before it.
  double Value(std::string_view prefix, double initial) {
    if (!Find(prefix)) return initial;
    double number = 0;
    if (!behind_.empty()) reader_.Extract1(behind_, number);
    if (number != 0) return number;
    return StartsWith(kept_, "0") ? 0 : 1;
  }

 private:
  void TellCapture(std::string_view prefix, std::size_t position) {
    const std::size_t begin = line_.rfind(' ', position) == std::string::npos ? 0 : line_.rfind(' ', position) + 1;
    const std::string word = line_.substr(begin, line_.find(' ', position) - begin);
    captured_.push_back("_The letters \"" + Trim(prefix) + "\" inside the word \"" + word +
                        "\" of the directive line are taken as a directive");
  }

  std::string line_;
  std::string behind_;
  std::string kept_;
  CellText& reader_;
  std::vector<std::string>& captured_;
};

// Numbers up to the first word that reads as zero; element 0 is their count.
std::vector<double> ReadTableList(std::string text, CellText& reader) {
  std::vector<double> list(1);
  reader.CleanNumberLine(text);
  std::string_view rest = text;
  while (!rest.empty() && list.size() <= kMaxTableList) {
    const std::size_t blank = rest.find(' ');
    const double value = reader.ReadNumber(rest.substr(0, blank));
    if (value == 0) break;
    list.push_back(value);
    rest.remove_prefix(blank == std::string_view::npos ? rest.size() : rest.find_first_not_of(' ', blank));
  }
  list[0] = static_cast<double>(list.size() - 1);
  return list;
}

}  // namespace

Directives ParseDirectives(const std::string& DirectiveLine, CellText& reader, std::vector<std::string>& captured) {
  Directives d;
  DirectiveReader line(DirectiveLine, reader, captured);
  if (line.Find("T ")) reader.Extract3(line.behind(), d.MomentOrigin[1], d.MomentOrigin[2], d.MomentOrigin[3]);
  if (line.Find("RO")) reader.Extract3(line.behind(), d.RotationFrom, d.RotationTo, d.RotationStep);
  d.NotHidden = line.Value("NO", d.NotHidden);
  d.Twall = line.Value("TW", d.Twall);
  if (line.Find("TA")) d.TableList = ReadTableList(line.behind(), reader);
  d.LogScale = line.Value("LO", d.LogScale);
  d.RectoOnly = line.Value("RE", d.RectoOnly);
  d.SpectrumMode = line.Value("SP", d.SpectrumMode);
  d.SilentMode = line.Value("SI", d.SilentMode);
  d.Haccuracy = line.Value("HA", d.Haccuracy);
  d.MomentWC = line.Value("MO", d.MomentWC);
  return d;
}

PhysicalConstants ConstantsOf(const Directives& directives) {
  PhysicalConstants constants;
  if (directives.Haccuracy == 1) {
    constants.ElementaryCharge = 1.60218e-19;
    constants.AvogadroNumber = 6.02214e+23;
  }
  return constants;
}

}  // namespace orv
