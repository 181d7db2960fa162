#include "fuzz/book_parts.h"
#include "fuzz/workbook_checks.h"

// The parts of an ods file: the content, and others behind lines "@@NAME".
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv::testing;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string bytes = ZipOfText(OdsParts({}), "content.xml", text);
  ReadAndCheck(bytes, FuzzLocales()[size % 2]);
  return 0;
}
