#pragma once

#include "model/workbook_contents.h"
#include "model/zip_archive.h"

namespace orv {

// Whether the archive is an OpenDocument file.
bool IsOds(const ZipArchive& archive);

// Reads every sheet with its active cell, and the active sheet, into the builder. Values are the results stored in the
// file. Throws WorkbookError for a file that is damaged, encrypted or no spreadsheet.
void ReadOds(ZipArchive& archive, WorkbookBuilder& builder);

}  // namespace orv
