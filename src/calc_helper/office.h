#pragma once

#include <com/sun/star/frame/XController.hpp>
#include <com/sun/star/frame/XDesktop2.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <com/sun/star/table/CellRangeAddress.hpp>
#include <com/sun/star/uno/XComponentContext.hpp>
#include <string>
#include <vector>

namespace orv::calc_helper {

namespace star = com::sun::star;
using star::uno::Reference;

// A spreadsheet document with the sheet in front and the cell that its cursor is on, counted from 0.
struct Book {
  Reference<star::sheet::XSpreadsheetDocument> document;
  Reference<star::frame::XModel> model;
  Reference<star::sheet::XSpreadsheet> sheet;
  star::table::CellRangeAddress edges;  // of the sheet
  int row = 0;
  int column = 0;

  bool is() const { return document.is(); }
};

// The connection to a running office program. It is only ever looked at: nothing is started, no listener is registered,
// nothing in a document is changed.
class Office {
 public:
  // "pipe,name=NAME" or "socket,host=HOST,port=PORT".
  explicit Office(std::string door) : door_(std::move(door)) {}

  // Failure 429 when no office program listens at the door.
  void Connect();
  void Drop();
  // Whether the office still answers.
  bool Alive();

  // The document in front; failure 91 when there is none or when it holds no spreadsheet.
  Book Front();
  // What stands between the digits of 0.1 where the office turns it into a text.
  const std::string& decimalSeparator() const { return separator_; }
  void LookUpSeparator();

 private:
  Reference<star::lang::XComponent> FrontComponent();

  std::string door_;
  std::string separator_ = ".";
  Reference<star::uno::XComponentContext> local_;
  Reference<star::uno::XComponentContext> remote_;
  Reference<star::frame::XDesktop2> desktop_;
};

// The titles of the windows that show the document, the one in front first.
std::vector<std::string> Captions(const Book& book);
// The name of the document, and the folder of its file: empty for one that was never saved.
std::string Title(const Book& book);
std::string Folder(const Book& book);
std::string SheetName(const Book& book);

}  // namespace orv::calc_helper
