#include <filesystem>
#include <memory>
#include <ostream>

#include "analysis/level_line_data.h"
#include "app/command_line.h"
#include "numerics/installation.h"
#include "numerics/paths.h"
#include "numerics/text.h"
#include "view/class_gl.h"
#include "view/image_file.h"
#include "view/offscreen_control.h"
#include "view/scene_bodies.h"
#include "window/level_lines.h"
#include "window/options_form.h"

namespace orv {
namespace {

// The view as the window would show it with these settings, and what the arguments change.
ViewState ViewOf(const PictureArguments& arguments, Session& session, double plot) {
  ViewState view;
  OptionsForm(session.settings(), view, session.run().prompt).Load();
  if (const auto background = ReadBackground(arguments.background)) view.options.ColourOfBackGround = *background;
  view.ColorStyle = arguments.colorStyle;
  view.ScaleMode = arguments.scaleMode;
  view.SidesMode = arguments.sides.value_or(plot < 90 ? kRectoSide : kDotsAndBorders);
  view.redrawFraction = arguments.frameFraction / 1000.0;
  view.startFraction = arguments.startFraction / 1000.0;
  return view;
}

void TurnTo(const ViewChoice& choice, ClassGl& scene, glxCtl& control) {
  if (choice.form == "iso") scene.CameraSet("ISO", 0, 0);
  if (choice.form == "isonewplus") scene.CameraSet("ISONEWPLUS", 2, 0);
  if (choice.form == "isonew" || choice.form == "realiso") {
    scene.View().realIso = choice.form == "realiso";
    scene.Cameras() = CameraCycle();
    scene.CameraSet("ISONEW", choice.number, 1);
  }
  if (choice.form == "proj") scene.Cameras().ShowProjection(choice.number, control.Camera(), control.Trackball());
  if (choice.form == "projinverse") {
    scene.Cameras().ShowProjection((12 - choice.number) % 12, control.Camera(), control.Trackball());
  }
}

void MakeFolder(const std::string& name) {
  std::error_code error;
  const std::filesystem::path folder = PathOf(name).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
}

}  // namespace

bool DrawPictures(const PictureArguments& arguments, Session& session, PointLists& lists, std::ostream* out) {
  UserDialogs& dialogs = session.dialogs();
  const auto refuse = [&](const std::string& why) {
    for (const std::string& name : arguments.images) {
      std::string text = "The picture \"";
      text.append(name).append("\" could not be drawn: ").append(why);
      dialogs.Tell(text, "Picture", Icon::Critical);
    }
    return false;
  };
  ViewState view = ViewOf(arguments, session, lists.IndexPlot);
  OffscreenWish wish;
  wish.width = arguments.width;
  wish.height = arguments.height;
  wish.deviceRatio = arguments.pixelRatio;
  OffscreenControl::Made made = OffscreenControl::Make(wish);
  if (!made.control) return refuse(made.message);
  OffscreenControl& control = *made.control;
  control.LogTo([&](const std::string& message) { dialogs.Tell(message, "Picture", Icon::Warning); });
  OrbitBodies bodies(session.run().prompt, FindInstalled(ProgramFile(), "textures"));
  ClassGl scene(control, lists, view, session.run().prompt, session.clock(), {}, &bodies);
  control.Attach(scene);
  control.Paint(scene);  // takes the plot in and sets the first view
  if (arguments.vectors) scene.ShowVectors(true);
  if (const auto choice = ReadView(arguments.view)) TurnTo(*choice, scene, control);
  control.Paint(scene);
  const Image picture = control.Picture();
  if (picture.rgb.empty()) return refuse("its OpenGL was lost");
  bool allWritten = true;
  for (const std::string& name : arguments.images) {
    MakeFolder(name);
    const std::string failure =
        UpperCase(name).ends_with(".BMP") ? WriteBitmap(name, picture) : WritePng(name, picture);
    if (!failure.empty()) {
      dialogs.Tell(failure, "Picture", Icon::Critical);
      allWritten = false;
    } else if (out != nullptr) {
      *out << "Picture     " << name << '\n';
    }
  }
  return allWritten;
}

bool DrawLevelLinePictures(const Arguments& arguments, Session& session, std::ostream* out) {
  std::string text;
  bool allWritten = true;
  const std::optional<LevelLineInput> input = FindLevelLineData(session.run(), text);
  if (!input) {
    if (text.empty() && !arguments.levelLines.empty()) {
      text = "Level lines are asked for by --options \"L n\", n the number of a primitive.";
    }
    if (arguments.levelLines.empty()) {
      TellLevelLineFault(session.dialogs(), text);
      return true;
    }
    session.dialogs().Tell(text, "Picture", Icon::Critical);
    return false;
  }
  for (const std::string& name : arguments.levelLines) {
    MakeFolder(name);
    const PictureArguments& picture = arguments.picture;
    const std::string fault = WriteLevelLines(*input, {name, picture.width, picture.height, picture.pixelRatio}, text);
    if (!fault.empty()) {
      session.dialogs().Tell(fault, "Picture", Icon::Critical);
      allWritten = false;
    } else if (out != nullptr) {
      *out << "Level lines " << name << '\n';
    }
  }
  // The frame is written all the same: no failure, but told once even when the run is quiet.
  if (!text.empty()) session.dialogs().Tell(text, "Picture", Icon::Warning);
  return allWritten;
}

}  // namespace orv
