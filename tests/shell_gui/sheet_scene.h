#pragma once

#include <memory>

#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/class_gl.h"

namespace orv {

// A scene with a sheet of cells on a control.
struct SheetScene {
  explicit SheetScene(glxCtl& control) : scene(control, *lists, view, prompt, clock) { FillSheet(*lists, 20, 20); }

  std::unique_ptr<PointLists> lists = std::make_unique<PointLists>();
  ViewState view;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  FixedClock clock{CivilTime{}};
  ClassGl scene;
};

}  // namespace orv
