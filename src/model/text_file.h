#pragma once

#include <string_view>

#include "model/workbook_contents.h"

namespace orv {

// Whether bytes can be a text: a byte order mark, or no control characters but tabs, line ends and form feeds.
bool IsText(std::string_view bytes);

// Reads a tab-separated text as the one sheet `sheetName`: UTF-8, Windows-1252 when it is not valid UTF-8, or UTF-16
// with its byte order mark; lines end with CR LF, LF or CR. A cell in double quotes, as spreadsheets export those with
// tabs, line breaks or quotes, loses them. Cells are texts: a leading "=" makes no formula here, as nothing would have
// computed it.
void ReadText(std::string_view bytes, const std::string& sheetName, WorkbookBuilder& builder);

}  // namespace orv
