#include "view/movie.h"

#include <algorithm>
#include <utility>

#include "numerics/date_format.h"
#include "numerics/number_format.h"

namespace orv {
namespace {

constexpr double kPause = 100000;  // seconds
constexpr const char* kFramesTip =
    "Before or During a movie process, use this scrollbar to increase the number of Frames (default is 20)";
constexpr const char* kIntervalTip =
    "Before or During a movie process, use this scrollbar to change the rate of the Frames (in seconds), default is 1 "
    "s";
constexpr const char* kStartTip = "Start Video";
constexpr const char* kRestartTip = "Restart Video";
constexpr const char* kRestartTag = "ReStart";

// The field of the window as the movie leaves it: its own text, or what somebody else wrote there meanwhile.
void Keep(const std::string& field, const std::string& shown, std::string& kept) {
  if (field != shown) kept = field;
}

}  // namespace

std::string TimeStampName(const CivilTime& time) {
  const int seconds = (time.hour * 60 + time.minute) * 60 + time.second;
  return "Valis" + FormatDate(time, "yyyyMMdd") + "_" + std::to_string(seconds);
}

std::string TimeStampImage(const CivilTime& time) {
  return WithoutIllegalCharacters(TimeStampName(time) + ".bmp");
}

std::string WithoutIllegalCharacters(const std::string& name) {
  constexpr std::string_view kIllegal = "\\/:*?\"<>|";
  std::string out;
  std::ranges::copy_if(name, std::back_inserter(out), [&](char c) {
    const auto code = static_cast<unsigned char>(c);
    return code >= 0x20 && code != 0x7F && kIllegal.find(c) == std::string_view::npos;
  });
  return out;
}

std::string ImageFolder(const std::string& Text6, const std::string& workbookFolder, const std::string& pictures) {
  if (!Text6.empty()) return Text6;
  return workbookFolder.empty() ? pictures : workbookFolder;
}

Movie::Movie(const Clock& clock, Save save) : clock_(clock), save_(std::move(save)) {}

// --- the series ------------------------------------------------------------------------------------------------------

void Movie::TakeName() {
  baseName_ = WithoutIllegalCharacters(TimeStampName(clock_.Local()));
}

bool Movie::mnuFMovieSaveAs(const std::string& directory) {
  if (flag_) {
    Finish();
    update();
    return false;
  }
  TakeName();
  directory_ = directory;
  flag_ = true;
  form_.visible = true;
  return true;
}

bool Movie::MovieSaveAs() {
  if (MovieFrame_ <= 0) return false;
  if (MovieFrame_ > MovieCount_) {
    Finish();
    update();
    return true;
  }
  const double now = clock_.Seconds();
  // A movie that was just started is due at once, however young the clock is.
  if (MovieNext_ != 0 && !(MovieNext_ + MovieInterval_ < now)) return false;
  const std::string name = baseName_ + FormatNumber(MovieFrame_, "#") + ".bmp";
  ++MovieFrame_;
  if (save_) save_(name, directory_);
  MovieNext_ = now;
  update();
  return true;
}

void Movie::Finish() {
  MovieFrame_ = 0;
  MovieNext_ = 0;
  flag_ = false;
  form_.Command1Tag.clear();
  form_.Command1Tip = kStartTip;
}

bool Movie::ShowTexts(MovieFields& fields) {
  const MovieFields before = fields;
  if (MovieFrame_ <= 0 && !showing_) return false;
  if (showing_) {
    Keep(fields.Text3, shown_.Text3, kept_.Text3);
    Keep(fields.Text10, shown_.Text10, kept_.Text10);
    Keep(fields.Text3Tip, shown_.Text3Tip, kept_.Text3Tip);
    Keep(fields.Text10Tip, shown_.Text10Tip, kept_.Text10Tip);
  } else {
    kept_ = fields;
  }
  showing_ = MovieFrame_ > 0;
  shown_ = {FramesText(), IntervalText(), kFramesTip, kIntervalTip};
  fields = showing_ ? shown_ : kept_;
  return fields != before;
}

// --- frmVideo --------------------------------------------------------------------------------------------------------

std::string Movie::FramesText() const {
  return FormatNumber(MovieFrame_ - 1, "#") + " / " + NumberText(MovieCount_) + " Frames ";
}

std::string Movie::IntervalText() const {
  return FormatNumber(MovieInterval_, "#.##") + " seconds between Frames";
}

void Movie::update() {
  form_.Text3 = FramesText();
  form_.Text2 = IntervalText();
  form_.Text3Tip = kFramesTip;
  form_.Text2Tip = kIntervalTip;
}

void Movie::Form_Load() {
  form_.Command1Tip = kStartTip;
  HScroll1_Change(form_.HScroll1);
  HScroll2_Change(form_.HScroll2);
  update();
}

void Movie::HScroll1_Change(int value) {
  form_.HScroll1 = std::clamp(value, 0, kMostMovieFrames);
  MovieCount_ = form_.HScroll1 == 0 ? kDefaultMovieFrames : form_.HScroll1;
  update();
}

void Movie::HScroll2_Change(int value) {
  form_.HScroll2 = std::clamp(value, 0, kLongestInterval);
  MovieInterval_ = (form_.HScroll2 + 1) / 10.0;
  update();
}

void Movie::Command1_Click() {
  form_.Command1Tip = kStartTip;
  const bool resumes = form_.Command1Tag == kRestartTag && MovieFrame_ > 0;
  form_.Command1Tag.clear();
  if (resumes) {
    MovieNext_ = clock_.Seconds();
  } else {
    // After the end of a series the next one must not take its names.
    if (!flag_) TakeName();
    flag_ = true;
    HScroll1_Change(form_.HScroll1);
    HScroll2_Change(form_.HScroll2);
    MovieFrame_ = 1;
    MovieNext_ = 0;
  }
  update();
}

void Movie::Command2_Click() {
  MovieNext_ = clock_.Seconds() + kPause;
  form_.Command1Tag = kRestartTag;
  form_.Command1Tip = kRestartTip;
  update();
}

void Movie::Command3_Click() {
  MovieCount_ = MovieFrame_;
  update();
  Finish();
  form_.visible = false;
}

}  // namespace orv
