#pragma once

#include "model/workbook_contents.h"
#include "model/zip_archive.h"

namespace orv {

// Whether the archive is a workbook of the xlsx family.
bool IsXlsx(const ZipArchive& archive);

// Reads every sheet of cells with its active cell, and the active sheet, into the builder. Values are the results
// stored in the file. Throws WorkbookError for a file that is damaged or no workbook.
void ReadXlsx(ZipArchive& archive, WorkbookBuilder& builder);

// The characters that files spell as _x000D_ put in place.
std::string DecodeEscapes(std::string_view text);

}  // namespace orv
