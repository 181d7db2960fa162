#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/cell_text.h"
#include "model/plot_file.h"
#include "view/point_lists.h"

namespace orv {

inline constexpr std::size_t kInterfaceCharacters = 65000;  // of one text; the user is told of longer ones

// Rows of a text whose items could not be taken as they are.
struct ItemFaults {
  LineNote noNumber;
  LineNote tooLarge;
  LineNote beyond;
};

// How another program feeds the view: texts as a spreadsheet copies them, rows ended by CR LF (LF alone serves too),
// items separated by tabs, in UTF-8; any other is taken for Windows-1252. The first points, values or events behind a
// plot of the program's own begin an empty plot; the calls may come in any order and be repeated. Each asks for a
// paint, which scales the plot anew.
//
// Items are read as cells are: what is no number is 0. Numbers too large for the view are 0 too, and rows beyond 2^20
// are left out; both are logged. Failure 5 for a factor that is no number.
class ClassInterface {
 public:
  // `paint`: what the lists hold has changed.
  ClassInterface(PointLists& lists, CellText& reader, std::function<void()> paint)
      : lists_(lists), reader_(reader), paint_(std::move(paint)) {}

  // The specification that tells what is plotted, and whether row 0 of the points is a time in days. Behind another
  // specification the next points, values or events begin an empty plot.
  void InterFaceXls(const std::string& Selection, int FlagOptionToPlot);

  // Points: items 1 to 3 of each row are x, y, z, multiplied by FactorScale. A factor other than 1 is the scale of the
  // real size, with the Earth; with 0 the points stay as they are.
  void GlrayonXls(const std::string& text, double FactorScale);

  // Values or times of the points: item 1 of each row. flag: 1 when they are times.
  void GlrayonXlsT(const std::string& text, int flag);

  // Events: item 1 is the time, item 2 the state: 1 when its last letter is S or 1, 0 when it is E or 0; any other
  // number is the state of the row before. Times are not scaled.
  void GlEventsXls(const std::string& text, double FactorScale);

  const std::string& Selection() const { return Selection_; }
  int FlagOptionToPlot() const { return FlagOptionToPlot_; }

 private:
  void CheckLength(const std::string& text);
  bool OwnPlot() const;
  // Empties the lists unless they hold what earlier calls gave for the same plot.
  void TakeLists();
  void NamePlot();
  void FinishValues();
  // Tells what was amiss with the items, and asks for the paint.
  void Publish(const std::string& routine, const ItemFaults& faults);

  PointLists& lists_;
  CellText& reader_;
  std::function<void()> paint_;
  std::string Selection_;
  int FlagOptionToPlot_ = 0;
  int timesGiven_ = 0;
  bool newPlot_ = false;  // another specification came since the lists were filled
  std::string title_;     // of the plot that these calls fill; empty before the first
};

}  // namespace orv
