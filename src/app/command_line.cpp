#include "app/command_line.h"

#include <new>
#include <ostream>

#include "analysis/result_labels.h"
#include "model/workbook_contents.h"

namespace orv {
namespace {

void ListPlots(std::ostream& out) {
  for (const QuantityEntry& entry : kQuantityTable) out << entry.number << '\t' << entry.label << '\n';
  out << "90 to 94\tRedeposition of the materials in use (m/s)\n"
         "95 to 99\tCleaning of their redeposition by sputtering (m/s)\n"
         "100 to 104\tNet redeposition (m/s)\n";
}

int Run(const Arguments& arguments, const Streams& streams) {
  Session session(arguments, streams);
  const auto refuse = [&](const std::string& text, int code) {
    session.dialogs().EndProgress();
    streams.err << "orvvalis: " << text << '\n';
    return code;
  };
  try {
    LoadModel(arguments, session);
    const bool database = session.run().model.DatabaseHasTables();
    if (!database || !RunModel(arguments, session)) {
      return refuse("The sheet \"" + session.run().model.SheetName + "\" of the workbook \"" +
                        session.run().model.WorkbookName + "\" holds no database: nothing was computed.",
                    kExitWorkbook);
    }
    const bool reported = ReportRun(arguments, session, streams.out);
    std::ostream* out = arguments.quiet ? nullptr : &streams.out;
    const bool drawn =
        arguments.picture.images.empty() || DrawPictures(arguments.picture, session, session.run().lists, out);
    const bool lines = DrawLevelLinePictures(arguments, session, out);
    return reported && drawn && lines ? kExitDone : kExitOutput;
  } catch (const WorkbookError& error) {
    return refuse(error.what(), kExitWorkbook);
  } catch (const ModelNotFound& error) {
    return refuse(error.message, kExitWorkbook);
  } catch (const ModelTooLarge& error) {
    return refuse(error.message, kExitWorkbook);
  } catch (const ProgramEnd&) {
    return refuse("ended by an abort answer", kExitAborted);
  } catch (const std::bad_alloc&) {
    return refuse("the memory of this machine does not hold this model", kExitWorkbook);
  }
}

int Show(const Arguments& arguments, const Streams& streams) {
  Session session(arguments, streams);
  try {
    LoadPlot(arguments, session);
    std::ostream* out = arguments.quiet ? nullptr : &streams.out;
    return DrawPictures(arguments.picture, session, session.run().lists, out) ? kExitDone : kExitOutput;
  } catch (const WorkbookError& error) {
    session.dialogs().EndProgress();
    streams.err << "orvvalis: " << error.what() << '\n';
    return kExitWorkbook;
  } catch (const std::bad_alloc&) {
    streams.err << "orvvalis: the memory of this machine does not hold this plot\n";
    return kExitWorkbook;
  } catch (const ProgramEnd&) {
    streams.err << "orvvalis: ended by an abort answer\n";
    return kExitAborted;
  }
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv, const Streams& streams) {
  int exitCode = kExitDone;
  const std::optional<Arguments> arguments = ParseArguments(argc, argv, streams.out, streams.err, exitCode);
  if (!arguments) return exitCode;
  if (arguments->command == Arguments::Command::Plots) {
    ListPlots(streams.out);
    return kExitDone;
  }
  if (arguments->command == Arguments::Command::Window) return RunWindow(*arguments, argc, argv, streams);
  if (arguments->command == Arguments::Command::Show) return Show(*arguments, streams);
  return Run(*arguments, streams);
}

}  // namespace orv
