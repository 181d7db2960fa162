#pragma once

#include <functional>
#include <string>

#include "numerics/environment.h"

namespace orv {

inline constexpr const char* kSavedImage = "ImageOrvValisSaved.bmp";

// "Valis", date, "_" and the seconds of the day: the base of names with a time stamp.
std::string TimeStampName(const CivilTime& time);
// The same with ".bmp", without what a file name cannot hold.
std::string TimeStampImage(const CivilTime& time);
std::string WithoutIllegalCharacters(const std::string& name);
// Where pictures go: the folder of the options, else the workbook's, else the user's pictures.
std::string ImageFolder(const std::string& Text6, const std::string& workbookFolder, const std::string& pictures);

// Texts and tips of the main window that a movie takes over while it runs.
struct MovieFields {
  std::string Text3;
  std::string Text10;
  std::string Text3Tip;
  std::string Text10Tip;
  friend bool operator==(const MovieFields&, const MovieFields&) = default;
};

inline constexpr int kMostMovieFrames = 1000;   // HScroll1 of frmVideo
inline constexpr int kLongestInterval = 600;    // HScroll2, in tenths of a second less one
inline constexpr int kDefaultMovieFrames = 20;  // also what 0 stands for

// What frmVideo shows.
struct VideoForm {
  int HScroll1 = kDefaultMovieFrames;
  int HScroll2 = 9;
  std::string Text2;
  std::string Text3;
  std::string Text2Tip;
  std::string Text3Tip;
  std::string Command1Tag;
  std::string Command1Tip;
  bool visible = false;
};

// A series of numbered pictures of the view, one every few tenths of a second, and the form that rules it. The clock's
// steady seconds serve the intervals, its local time the names.
class Movie {
 public:
  // Saves a picture of the view under a name in a folder.
  using Save = std::function<bool(const std::string& Name, const std::string& DIReCT)>;

  Movie(const Clock& clock, Save save);

  // The menu and its button: ends a running movie, or takes name and folder of the next one; true when frmVideo is to
  // be shown.
  bool mnuFMovieSaveAs(const std::string& directory);
  // From the timer: one frame if it is due. True when something to show has changed.
  bool MovieSaveAs();
  // To be called at each paint and after each command: a running movie tells its progress in the fields, the first
  // call after its end brings the texts back that stood there. True when the fields were changed.
  bool ShowTexts(MovieFields& fields);

  // frmVideo.
  void Form_Load();
  void HScroll1_Change(int value);
  void HScroll2_Change(int value);
  void Command1_Click();  // start and restart
  void Command2_Click();  // pause
  void Command3_Click();  // end
  void update();
  const VideoForm& Form() const { return form_; }

  int MovieFrame() const { return MovieFrame_; }  // next number, 0 for none
  int MovieCount() const { return MovieCount_; }
  double MovieInterval() const { return MovieInterval_; }  // seconds
  double MovieNext() const { return MovieNext_; }
  bool Flag() const { return flag_; }  // between menu and end
  const std::string& BaseName() const { return baseName_; }

 private:
  void Finish();
  void TakeName();
  std::string FramesText() const;
  std::string IntervalText() const;

  const Clock& clock_;
  Save save_;
  VideoForm form_;
  int MovieFrame_ = 0;
  int MovieCount_ = kDefaultMovieFrames;
  double MovieInterval_ = 1;
  double MovieNext_ = 0;
  bool flag_ = false;
  std::string baseName_;
  std::string directory_;
  bool showing_ = false;  // the fields are the movie's
  MovieFields kept_;      // what stood in them
  MovieFields shown_;     // what the movie wrote last
};

}  // namespace orv
