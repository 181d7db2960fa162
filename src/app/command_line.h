#pragma once

#include "app/arguments.h"
#include "app/session.h"

namespace orv {

// The phases of the command line, each in a file of its own.

// Opens the workbook and reads model and database. Throws WorkbookError or ModelNotFound.
void LoadModel(const Arguments& arguments, Session& session);

// Runs the computation. False when nothing could be computed for want of a database.
bool RunModel(const Arguments& arguments, Session& session);

// Prints the summary, writes the exports. False when a file could not be written.
bool ReportRun(const Arguments& arguments, Session& session, std::ostream& out);

// Reads a plot file, or the ranges of a workbook, into the lists of the view. Throws WorkbookError when there is no
// plot in it.
void LoadPlot(const Arguments& arguments, Session& session);

// Draws the plot of the lists into the picture files that were asked for. False when one could not be made; the user
// was told why.
bool DrawPictures(const PictureArguments& arguments, Session& session, PointLists& lists, std::ostream* out);

// Draws the level lines that were asked for. False when a file could not be made; the user was told why.
bool DrawLevelLinePictures(const Arguments& arguments, Session& session, std::ostream* out);

// The window, until it is closed; returns the exit code of the program.
int RunWindow(const Arguments& arguments, int argc, const char* const* argv, const Streams& streams);

// The whole program; returns its exit code.
int RunCommandLine(int argc, const char* const* argv, const Streams& streams);

}  // namespace orv
