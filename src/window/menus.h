#pragma once

#include <array>
#include <string_view>

// The menus of the main window.
namespace orv {

enum class MenuAction {
  None,
  Menu,  // opens what stands below it
  OpenWorkbook,
  RecentWorkbooks,  // filled when it opens
  SaveImage,
  SaveImageWithTimeStamp,
  MovieFrames,
  RunPowerPoint,
  OpenDoor,
  ShowOptions,
  Print,
  Exit,
  Interactive,
  Grid,
  Camera,
  ResetCamera,
  Perspective,
  Top,
  Left,
  Front,
  Contents,
  Manual,
  About,
  OpenFolder,
  UpdateExcel
};

struct MenuEntry {
  std::string_view name;
  std::string_view parent;  // empty: in the menu bar
  std::string_view caption;
  MenuAction action = MenuAction::None;
};

inline constexpr std::array<MenuEntry, 34> kMenus = {{
    {"mnuFile", "", "&File", MenuAction::Menu},
    {"mnuFOpen", "mnuFile", "&Open", MenuAction::OpenWorkbook},
    {"mnuFRecent", "mnuFile", "&Recent workbooks", MenuAction::RecentWorkbooks},
    {"mnuFOpenDoor", "mnuFile", "Open the door of &LibreOffice", MenuAction::OpenDoor},
    {"mnuFSave", "mnuFile", "&SaveImage", MenuAction::SaveImage},
    {"mnuFSaveAs", "mnuFile", "SaveImage&WithTimeStamp", MenuAction::SaveImageWithTimeStamp},
    {"mnuFMovieSaveAs", "mnuFile", "&MovieFrames", MenuAction::MovieFrames},
    {"mnuFRunPowerPoint", "mnuFile", "&To run in PowerPoint", MenuAction::RunPowerPoint},
    {"mnuFOptions", "mnuFile", "&Options", MenuAction::ShowOptions},
    {"mnuFPrint", "mnuFile", "&Print", MenuAction::Print},
    {"mnuFExit", "mnuFile", "E&xit", MenuAction::Exit},
    {"mnuEdit", "", "&Edit", MenuAction::Menu},
    {"mnuEMove", "mnuEdit", "&Move"},
    {"mnuERotate", "mnuEdit", "&Rotate"},
    {"mnuEScale", "mnuEdit", "&Scale"},
    {"mnuEDelete", "mnuEdit", "&Delete"},
    {"mnuEProperties", "mnuEdit", "&Properties"},
    {"mnuOptions", "", "&OptionsInteractive", MenuAction::Menu},
    {"mnuOinteractive", "mnuOptions", "&Interactive", MenuAction::Interactive},
    {"mnuView", "", "&View", MenuAction::Menu},
    {"mnuVGrids", "mnuView", "&Grid", MenuAction::Grid},
    {"mnuVCam", "mnuView", "&Camera", MenuAction::Camera},
    {"mnuVReset", "mnuView", "&Reset", MenuAction::ResetCamera},
    {"mnuVView", "mnuView", "&View", MenuAction::Menu},
    {"mnuVVPerspective", "mnuVView", "&Perspecdtive", MenuAction::Perspective},
    {"mnuVVTop", "mnuVView", "&Top", MenuAction::Top},
    {"mnuVVLeft", "mnuVView", "&Left", MenuAction::Left},
    {"mnuVVFront", "mnuVView", "&Front", MenuAction::Front},
    {"mnuHelp", "", "&Help", MenuAction::Menu},
    {"mnuHContents", "mnuHelp", "&Contents", MenuAction::Contents},
    {"mnuHManual", "mnuHelp", "&Manual", MenuAction::Manual},
    {"mnuHAbout", "mnuHelp", "&About", MenuAction::About},
    {"mnuOpenFolder", "", "&Folder", MenuAction::OpenFolder},
    {"mnuUpdateExcel", "", "&UpdateExcel", MenuAction::UpdateExcel},
}};

// Hidden when the program was started with a plot file.
inline constexpr std::array<std::string_view, 4> kMenusHiddenInFileMode = {"mnuFile", "mnuEdit", "mnuView", "mnuHelp"};

}  // namespace orv
