// Plays the user of a Calc that a test has started: one command a line on the input, its words separated by tabs, one
// answer a line. Started with the name of the pipe.
#include <com/sun/star/bridge/UnoUrlResolver.hpp>
#include <com/sun/star/bridge/XUnoUrlResolver.hpp>
#include <com/sun/star/container/XEnumeration.hpp>
#include <com/sun/star/container/XEnumerationAccess.hpp>
#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/document/XUndoManagerSupplier.hpp>
#include <com/sun/star/frame/Desktop.hpp>
#include <com/sun/star/frame/XController.hpp>
#include <com/sun/star/frame/XDesktop2.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <com/sun/star/sheet/XSpreadsheetView.hpp>
#include <com/sun/star/sheet/XSpreadsheets.hpp>
#include <com/sun/star/table/XCell.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <com/sun/star/util/XModifiable.hpp>
#include <com/sun/star/view/XSelectionSupplier.hpp>
#include <cppuhelper/bootstrap.hxx>
#include <iostream>
#include <osl/file.hxx>
#include <rtl/bootstrap.hxx>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "calc_helper/uno_text.h"

namespace {

namespace star = com::sun::star;
using orv::calc_helper::Utf8;
using orv::calc_helper::Wide;
using star::uno::Any;
using star::uno::Reference;
using star::uno::Sequence;
using star::uno::UNO_QUERY;
using star::uno::UNO_QUERY_THROW;

constexpr int kMostTries = 500;
constexpr unsigned kPauseMicroseconds = 20'000;

class Driver {
 public:
  explicit Driver(const std::string& pipe) {
    rtl::Bootstrap::set("URE_MORE_TYPES", Wide(ORV_OFFICE_TYPES));
    const auto local = cppu::defaultBootstrap_InitialComponentContext();
    const auto resolver = star::bridge::UnoUrlResolver::create(local);
    const Reference<star::uno::XComponentContext> remote(
        resolver->resolve(Wide("uno:pipe,name=" + pipe + ";urp;StarOffice.ComponentContext")), UNO_QUERY_THROW);
    desktop_ = star::frame::Desktop::create(remote);
  }

  std::string Do(const std::vector<std::string>& words) {
    const std::string& what = words.at(0);
    if (what == "open") return Open(FileUrl(words.at(1)));
    if (what == "new") return Open("private:factory/" + words.at(1));
    if (what == "close") return Close();
    if (what == "select") return Select(words.at(1));
    if (what == "sheet") return ShowSheet(words.at(1));
    if (what == "type") return Type(words.at(1), words.at(2));
    if (what == "fill") return Fill(std::stoi(words.at(1)), std::stoi(words.at(2)));
    if (what == "saved") return MarkSaved();
    if (what == "state") return State();
    return "unknown";
  }

 private:
  static std::string FileUrl(const std::string& path) {
    rtl::OUString url;
    osl::FileBase::getFileURLFromSystemPath(Wide(path), url);
    return Utf8(url);
  }

  // The office answers before its new window is the one in front.
  std::string Open(const std::string& url) {
    const Reference<star::lang::XComponent> component = desktop_->loadComponentFromURL(Wide(url), "_blank", 0, {});
    document_.set(component, UNO_QUERY);
    if (!document_.is()) return "not loaded";
    for (int tries = 0; desktop_->getCurrentComponent() != component; ++tries) {
      if (tries == kMostTries) return "not in front";
      usleep(kPauseMicroseconds);
    }
    return "ok";
  }
  std::string Close() {
    std::vector<Reference<star::util::XCloseable>> open;
    const auto all = desktop_->getComponents()->createEnumeration();
    while (all->hasMoreElements()) open.emplace_back(all->nextElement(), UNO_QUERY);
    for (const auto& document : open) {
      if (document.is()) document->close(true);
    }
    document_.clear();
    return "ok";
  }

  Reference<star::frame::XController> Controller() const {
    return Reference<star::frame::XModel>(document_, UNO_QUERY_THROW)->getCurrentController();
  }
  Reference<star::sheet::XSpreadsheetView> View() const { return {Controller(), UNO_QUERY_THROW}; }
  Reference<star::sheet::XSpreadsheet> Sheet() const { return View()->getActiveSheet(); }

  std::string Select(const std::string& range) {
    const Reference<star::view::XSelectionSupplier> selection(Controller(), UNO_QUERY_THROW);
    return selection->select(Any(Sheet()->getCellRangeByName(Wide(range)))) ? "ok" : "refused";
  }
  std::string ShowSheet(const std::string& name) {
    const Reference<star::sheet::XSpreadsheetDocument> book(document_, UNO_QUERY_THROW);
    Reference<star::sheet::XSpreadsheet> sheet(book->getSheets()->getByName(Wide(name)), UNO_QUERY_THROW);
    View()->setActiveSheet(sheet);
    return "ok";
  }
  std::string Type(const std::string& cell, const std::string& text) {
    Sheet()->getCellRangeByName(Wide(cell))->getCellByPosition(0, 0)->setFormula(Wide(text));
    return "ok";
  }
  std::string Fill(int rows, int columns) {
    Sequence<Sequence<Any>> data(rows);
    for (int row = 0; row < rows; ++row) {
      Sequence<Any> line(columns);
      for (int column = 0; column < columns; ++column) line.getArray()[column] <<= (row + 1) * 1.25 + column / 7.0;
      data.getArray()[row] = line;
    }
    const auto range = Sheet()->getCellRangeByPosition(0, 0, columns - 1, rows - 1);
    Reference<star::sheet::XCellRangeData>(range, UNO_QUERY_THROW)->setDataArray(data);
    return "ok";
  }
  std::string MarkSaved() {
    Reference<star::util::XModifiable>(document_, UNO_QUERY_THROW)->setModified(false);
    return "ok";
  }

  // Everything that a user would notice of a change.
  std::string State() const {
    const auto undo = Reference<star::document::XUndoManagerSupplier>(document_, UNO_QUERY_THROW)->getUndoManager();
    rtl::OUString view;
    Controller()->getViewData() >>= view;
    const Reference<star::sheet::XCellRangeAddressable> selected(
        Reference<star::frame::XModel>(document_, UNO_QUERY_THROW)->getCurrentSelection(), UNO_QUERY_THROW);
    const auto range = selected->getRangeAddress();
    std::ostringstream out;
    out << "modified " << int{Reference<star::util::XModifiable>(document_, UNO_QUERY_THROW)->isModified()} << ", undo "
        << undo->getAllUndoActionTitles().getLength() << ", selected " << range.Sheet << ' ' << range.StartColumn << ' '
        << range.StartRow << ' ' << range.EndColumn << ' ' << range.EndRow << ", view " << Utf8(view);
    return out.str();
  }

  Reference<star::frame::XDesktop2> desktop_;
  Reference<star::lang::XComponent> document_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    Driver driver(argv[1]);
    std::cout << "ready" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
      std::vector<std::string> words;
      std::istringstream in(line);
      for (std::string word; std::getline(in, word, '\t');) words.push_back(word);
      try {
        std::cout << driver.Do(words) << std::endl;
      } catch (const star::uno::Exception& exception) {
        std::cout << "failed: " << Utf8(exception.Message) << std::endl;
      }
    }
  } catch (const star::uno::Exception& exception) {
    std::cout << "failed: " << Utf8(exception.Message) << std::endl;
  }
  _exit(0);
}
