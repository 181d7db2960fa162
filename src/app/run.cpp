#include "analysis/effect_phases.h"
#include "app/command_line.h"

namespace orv {
namespace {

// The selection of plots, answered by the arguments.
class ArgumentSelection : public PlotSelection {
 public:
  explicit ArgumentSelection(const Arguments& arguments) : arguments_(arguments) {}
  PlotChoice Select(const std::string&, const RunContext&) override {
    PlotChoice choice;
    choice.IndexPlotRequest = arguments_.plot;
    choice.PlotOptionText = arguments_.options;
    if (arguments_.log) choice.LogScale = *arguments_.log;
    return choice;
  }

 private:
  const Arguments& arguments_;
};

}  // namespace

bool RunModel(const Arguments& arguments, Session& session) {
  session.run().record.CaseText = arguments.caseName;
  ArgumentSelection selection(arguments);
  EffectPhases phases;
  const bool computed = a_SpaceApplication(session.run(), selection, phases);
  session.dialogs().EndProgress();
  return computed;
}

}  // namespace orv
