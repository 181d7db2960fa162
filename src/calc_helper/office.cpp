#include "calc_helper/office.h"

#include <com/sun/star/bridge/UnoUrlResolver.hpp>
#include <com/sun/star/bridge/XUnoUrlResolver.hpp>
#include <com/sun/star/container/XEnumeration.hpp>
#include <com/sun/star/container/XEnumerationAccess.hpp>
#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/frame/Desktop.hpp>
#include <com/sun/star/frame/XFrame.hpp>
#include <com/sun/star/frame/XModel2.hpp>
#include <com/sun/star/frame/XTitle.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XFunctionAccess.hpp>
#include <com/sun/star/sheet/XSpreadsheetView.hpp>
#include <cppuhelper/bootstrap.hxx>
#include <osl/file.hxx>
#include <rtl/bootstrap.hxx>

#include "calc_helper/failure.h"
#include "calc_helper/uno_text.h"

namespace orv::calc_helper {

using star::uno::Any;
using star::uno::UNO_QUERY;

namespace {

// Field `wanted` of the texts between the separators.
std::string Field(const std::string& text, std::size_t wanted, char separator) {
  std::size_t begin = 0;
  for (; wanted > 0; --wanted) {
    begin = text.find(separator, begin);
    if (begin == std::string::npos) return {};
    ++begin;
  }
  return text.substr(begin, text.find(separator, begin) - begin);
}

int Number(const std::string& text) {
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9' || number > 100'000'000) return 0;
    number = number * 10 + (c - '0');
  }
  return number;
}

// The selection tells the cursor only while one cell is selected; what a view stores about itself always does: behind
// the third ";" one field a sheet, "column/row/...", with "+" for "/" in large sheets.
void TakeCursor(Book& book, const Reference<star::frame::XController>& controller) {
  rtl::OUString data;
  controller->getViewData() >>= data;
  const auto index = static_cast<std::size_t>(book.edges.Sheet);
  const std::string cursor = Field(Utf8(data), 3 + index, ';');
  const char separator = cursor.find('+') != std::string::npos ? '+' : '/';
  book.column = Number(Field(cursor, 0, separator));
  book.row = Number(Field(cursor, 1, separator));
}

std::string FrameTitle(const Reference<star::frame::XController>& controller) {
  if (!controller.is()) return {};
  const Reference<star::frame::XTitle> title(controller->getFrame(), UNO_QUERY);
  return title.is() ? Utf8(title->getTitle()) : std::string();
}

}  // namespace

void Office::Connect() {
  if (remote_.is() && !Alive()) Drop();
  if (remote_.is()) return;
  try {
    if (!local_.is()) {
      rtl::Bootstrap::set("URE_MORE_TYPES", Wide(ORV_OFFICE_TYPES));
      local_ = cppu::defaultBootstrap_InitialComponentContext();
    }
    const auto resolver = star::bridge::UnoUrlResolver::create(local_);
    remote_.set(resolver->resolve(Wide("uno:" + door_ + ";urp;StarOffice.ComponentContext")), UNO_QUERY);
    if (remote_.is()) desktop_ = star::frame::Desktop::create(remote_);
  } catch (const star::uno::Exception& exception) {
    Drop();
    throw Failure{kNoProgram, Utf8(exception.Message)};
  }
  if (!desktop_.is()) throw Failure{kNoProgram, "The office program offers no desktop."};
  LookUpSeparator();
}

void Office::Drop() {
  desktop_.clear();
  remote_.clear();
}

bool Office::Alive() {
  if (!desktop_.is()) return false;
  try {
    desktop_->getCurrentFrame();
    return true;
  } catch (const star::uno::Exception&) {
    return false;
  }
}

Reference<star::lang::XComponent> Office::FrontComponent() {
  Reference<star::lang::XComponent> front = desktop_->getCurrentComponent();
  if (front.is()) return front;
  // No window has had the focus yet: the first spreadsheet that has a window.
  const auto all = desktop_->getComponents()->createEnumeration();
  while (all->hasMoreElements()) {
    const Reference<star::frame::XModel> model(all->nextElement(), UNO_QUERY);
    const Reference<star::sheet::XSpreadsheetDocument> document(model, UNO_QUERY);
    if (document.is() && model->getCurrentController().is()) return {model, UNO_QUERY};
  }
  return front;
}

Book Office::Front() {
  Book book;
  const Reference<star::lang::XComponent> front = FrontComponent();
  book.document.set(front, UNO_QUERY);
  book.model.set(front, UNO_QUERY);
  if (!book.is() || !book.model.is()) throw Failure{kNoObject, "No spreadsheet is in front."};
  const Reference<star::frame::XController> controller = book.model->getCurrentController();
  const Reference<star::sheet::XSpreadsheetView> view(controller, UNO_QUERY);
  if (!view.is()) throw Failure{kNoObject, "The spreadsheet has no window."};
  book.sheet = view->getActiveSheet();
  const Reference<star::sheet::XCellRangeAddressable> range(book.sheet, UNO_QUERY);
  if (!range.is()) throw Failure{kNoObject, "The window shows no sheet."};
  book.edges = range->getRangeAddress();
  TakeCursor(book, controller);
  return book;
}

void Office::LookUpSeparator() {
  const Reference<star::sheet::XFunctionAccess> functions(
      remote_->getServiceManager()->createInstanceWithContext("com.sun.star.sheet.FunctionAccess", remote_), UNO_QUERY);
  if (!functions.is()) return;
  rtl::OUString text;
  const Any tenth(0.1);
  functions->callFunction("CONCATENATE", star::uno::Sequence<Any>(&tenth, 1)) >>= text;
  separator_ = text.indexOf(',') >= 0 ? "," : ".";
}

std::vector<std::string> Captions(const Book& book) {
  const Reference<star::frame::XController> front = book.model->getCurrentController();
  std::vector<std::string> captions = {FrameTitle(front)};
  const Reference<star::frame::XModel2> windows(book.model, UNO_QUERY);
  if (!windows.is()) return captions;
  const auto controllers = windows->getControllers();
  while (controllers->hasMoreElements()) {
    const Reference<star::frame::XController> controller(controllers->nextElement(), UNO_QUERY);
    if (controller.is() && controller != front) captions.push_back(FrameTitle(controller));
  }
  return captions;
}

std::string Title(const Book& book) {
  const Reference<star::frame::XTitle> title(book.document, UNO_QUERY);
  return title.is() ? Utf8(title->getTitle()) : std::string();
}

std::string Folder(const Book& book) {
  rtl::OUString path;
  if (osl::FileBase::getSystemPathFromFileURL(book.model->getURL(), path) != osl::FileBase::E_None) return {};
  const std::string file = Utf8(path);
  const std::size_t slash = file.find_last_of('/');
  if (slash == std::string::npos) return {};
  return file.substr(0, slash == 0 ? 1 : slash);
}

std::string SheetName(const Book& book) {
  const Reference<star::container::XNamed> named(book.sheet, UNO_QUERY);
  return named.is() ? Utf8(named->getName()) : std::string();
}

}  // namespace orv::calc_helper
