#include "shell/frm_video.h"

#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardPaths>
#include <gmock/gmock.h>
#include <map>

#include "forms_support.h"
#include "support/workbook_writer.h"

namespace orv::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct SteppedClock : Clock {
  CivilTime Local() const override { return {2031, 4, 5, 6, 7, 8}; }
  double Seconds() const override { return now; }
  double now = 5000;
};

class FrmVideoTest : public ::testing::Test {
 protected:
  FrmVideoTest() : path_(qgetenv("PATH")) {
    window.SetFolder(folder.path().string());
    EXPECT_TRUE(movie.mnuFMovieSaveAs(folder.path().string()));
    window.Refresh();
    window.show();
  }
  ~FrmVideoTest() override { qputenv("PATH", path_); }

  // Saves frames as the timer of the main window does.
  void Record(int count) {
    Child<QScrollBar>(window, "HScroll1").setValue(count);
    Click(window, "Command1");
    for (int k = 0; k < count + 2; ++k) {
      steps.now += 1.5;
      if (movie.MovieSaveAs()) window.Refresh();
    }
  }
  bool SaveFrame(const std::string& name, const std::string& directory) {
    QImage picture(33, 21, QImage::Format_RGB32);
    picture.fill(QColor::fromHsv(static_cast<int>(40 * ++saved_) % 360, 200, 200));
    return picture.save(QString::fromStdString(directory + "/" + name));
  }
  // A program "ffmpeg" that is this script; the only one that is found.
  void Install(const std::string& script) {
    const std::string file = folder.Write("bin_ffmpeg", "#!/bin/sh\n" + script).string();
    std::filesystem::create_directories(folder.path() / "bin");
    std::filesystem::rename(file, folder.path() / "bin" / "ffmpeg");
    std::filesystem::permissions(folder.path() / "bin" / "ffmpeg", std::filesystem::perms::owner_all);
    qputenv("PATH", QByteArray::fromStdString((folder.path() / "bin").string()));
  }
  bool WaitForEnd() {
    return WaitFor([&] { return !window.Encoding(); });
  }
  std::string Message() { return Child<QLabel>(window, "Label4").text().toStdString(); }
  std::string Text(const char* name) { return Child<QLabel>(window, name).text().toStdString(); }
  std::string Contents(const std::filesystem::path& file) {
    QFile in(QString::fromStdString(file.string()));
    return in.open(QIODevice::ReadOnly) ? in.readAll().toStdString() : "absent";
  }
  std::string Target() const { return (folder.path() / "movie.mp4").string(); }

  TemporaryFolder folder;
  SteppedClock steps;
  Movie movie{steps, [this](const std::string& n, const std::string& d) { return SaveFrame(n, d); }};
  frmVideo window{movie};

 private:
  QByteArray path_;
  int saved_ = 0;
};

// Writes its arguments into the file that is to be made, and reports as the program does.
constexpr const char* kRecorder =
    "for last; do :; done\n"
    "printf '%s\\n' \"$@\" > \"$last\"\n"
    "echo out_time_us=1000000; echo progress=continue; echo progress=end\n";

TEST_F(FrmVideoTest, ShowsTheFormOfTheMovie) {
  EXPECT_EQ(window.objectName(), "frmVideo");
  EXPECT_EQ(window.windowTitle(), "Movie sequence");
  EXPECT_FALSE(window.isModal());
  EXPECT_EQ(Child<QScrollBar>(window, "HScroll1").value(), 20);
  EXPECT_EQ(Child<QScrollBar>(window, "HScroll1").maximum(), 1000);
  EXPECT_EQ(Child<QScrollBar>(window, "HScroll2").value(), 9);
  EXPECT_EQ(Child<QScrollBar>(window, "HScroll2").maximum(), 600);
  EXPECT_EQ(Text("Text2"), "1. seconds between Frames");
  EXPECT_EQ(Text("Text3"), movie.Form().Text3);
  EXPECT_EQ(Text("Label1"), "Pe&riod ");
  EXPECT_EQ(Text("Label2"), "&Number of frames");
  for (const auto& [name, caption] : std::map<QString, QString>{
           {"Command1", "Start/Restart Video"}, {"Command2", "Pause Video"}, {"Command3", "End Video"}}) {
    EXPECT_EQ(Child<QPushButton>(window, name).text().remove('&'), caption);
  }
  EXPECT_EQ(Child<QPushButton>(window, "Command1").toolTip(), "<p style=\"white-space:pre-wrap\">Start Video</p>");
  EXPECT_THAT(Child<QScrollBar>(window, "HScroll1").toolTip().toStdString(), HasSubstr("(default is 20)"));
}

TEST_F(FrmVideoTest, TheBarsSetFramesAndInterval) {
  QSignalSpy changed(&window, &frmVideo::Changed);
  auto& frames = Child<QScrollBar>(window, "HScroll1");
  auto& interval = Child<QScrollBar>(window, "HScroll2");
  QTest::keyClick(&frames, Qt::Key_Right);
  EXPECT_EQ(movie.MovieCount(), 21);
  EXPECT_THAT(Text("Text3"), HasSubstr("/ 21 Frames"));
  interval.setValue(0);
  EXPECT_EQ(movie.MovieInterval(), 0.1);
  EXPECT_THAT(Text("Text2"), HasSubstr("1 seconds between Frames"));
  frames.setValue(0);
  EXPECT_EQ(movie.MovieCount(), 20) << "0 stands for 20";
  EXPECT_EQ(changed.count(), 3);
}

TEST_F(FrmVideoTest, StartPauseRestartEnd) {
  QSignalSpy changed(&window, &frmVideo::Changed);
  auto& start = Child<QPushButton>(window, "Command1");
  Click(window, "Command1");
  EXPECT_EQ(movie.MovieFrame(), 1);
  EXPECT_TRUE(movie.MovieSaveAs());
  window.Refresh();
  EXPECT_THAT(Text("Text3"), StartsWith("1 / 20 Frames"));
  Click(window, "Command2");
  EXPECT_EQ(start.property("Tag").toString(), "ReStart");
  EXPECT_EQ(start.toolTip(), "<p style=\"white-space:pre-wrap\">Restart Video</p>");
  steps.now += 100;
  EXPECT_FALSE(movie.MovieSaveAs());
  Screenshot(window, "frmVideo");
  Click(window, "Command1");
  EXPECT_EQ(start.property("Tag").toString(), "");
  EXPECT_EQ(start.toolTip(), "<p style=\"white-space:pre-wrap\">Start Video</p>");
  steps.now += 1.5;
  EXPECT_TRUE(movie.MovieSaveAs());
  EXPECT_EQ(movie.MovieFrame(), 3);
  Click(window, "Command3");
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(movie.Flag());
  EXPECT_EQ(changed.count(), 4);
}

TEST_F(FrmVideoTest, ClosingTheWindowEndsTheMovie) {
  for (const bool running : {false, true}) {
    const bool prepared = movie.Flag() || movie.mnuFMovieSaveAs(folder.path().string());
    EXPECT_TRUE(prepared);
    window.show();
    if (running) Click(window, "Command1");
    QSignalSpy changed(&window, &frmVideo::Changed);
    window.close();
    EXPECT_FALSE(movie.Flag());
    EXPECT_EQ(movie.MovieFrame(), 0);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(changed.count(), 1);
  }
}

TEST_F(FrmVideoTest, WithoutFramesThereIsNoVideo) {
  Install(kRecorder);
  Click(window, "Command4");
  EXPECT_EQ(Message(), NoFramesText());
  EXPECT_FALSE(window.SaveVideo(Target()));
  EXPECT_FALSE(window.Encoding());
}

TEST_F(FrmVideoTest, AMissingProgramIsTold) {
  Record(2);
  qputenv("PATH", "/nowhere");
  Click(window, "Command4");
  EXPECT_THAT(Message(), StartsWith("No program ffmpeg was found on this computer."));
  EXPECT_THAT(Message(), HasSubstr(folder.path().string()));
  auto& label = Child<QLabel>(window, "Label4");
  EXPECT_TRUE(label.isVisible());
  EXPECT_TRUE(WaitFor([&] { return label.height() >= label.heightForWidth(label.width()); })) << "nothing is cut off";
  EXPECT_FALSE(window.SaveVideo(Target()));
  Screenshot(window, "frmVideo_missing");
}

TEST_F(FrmVideoTest, SavesTheFramesOfTheLastMovie) {
  Record(3);
  EXPECT_EQ(movie.MovieFrame(), 0) << "the movie is over";
  Install(kRecorder);
  Child<QSpinBox>(window, "Spin1").setValue(5);
  QSignalSpy ended(&window, &frmVideo::VideoEnded);
  ASSERT_TRUE(window.SaveVideo(Target()));
  EXPECT_EQ(Child<QPushButton>(window, "Command4").text().remove('&'), "Stop video");
  EXPECT_TRUE(Child<QProgressBar>(window, "ProgressBar1").isVisible());
  EXPECT_FALSE(window.SaveVideo(Target())) << "one at a time";
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Message(), "Saved \"" + Target() + "\"");
  const std::string told = Contents(Target());
  EXPECT_THAT(told, HasSubstr("-framerate\n50/10\n"));
  EXPECT_THAT(told, HasSubstr("-i\n" + (folder.path() / "Valis20310405_22028%d.bmp\n").string()));
  EXPECT_THAT(told, HasSubstr("scale=34:22:"));
  EXPECT_FALSE(std::filesystem::exists(Target() + ".part"));
  EXPECT_EQ(ended.count(), 1);
  EXPECT_TRUE(ended.at(0).at(0).toBool());
  EXPECT_EQ(Child<QPushButton>(window, "Command4").text().remove('&'), "Save as video");
  EXPECT_FALSE(Child<QProgressBar>(window, "ProgressBar1").isVisible());
}

TEST_F(FrmVideoTest, TheDialogOffersBothFormats) {
  Record(2);
  Install(kRecorder);
  Click(window, "Command4");
  auto* dialog = qobject_cast<QFileDialog*>(OpenDialog("SaveVideo"));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->nameFilters(), QStringList({"MP4 video (*.mp4)", "WebM video (*.webm)"}));
  EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
  dialog->selectFile(QString::fromStdString((folder.path() / "chosen.webm").string()));
  QMetaObject::invokeMethod(dialog, "accept");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_THAT(Contents(folder.path() / "chosen.webm"), HasSubstr("libvpx-vp9"));
}

TEST_F(FrmVideoTest, AnotherEncoderIsTriedWhereOneIsMissing) {
  Record(2);
  Install("case \"$*\" in *libx264*|*libopenh264*) echo \"Unknown encoder 'x'\" >&2; exit 1;; esac\n" +
          std::string(kRecorder));
  ASSERT_TRUE(window.SaveVideo(Target()));
  ASSERT_TRUE(WaitForEnd());
  EXPECT_THAT(Contents(Target()), HasSubstr("-c:v\nmpeg4\n"));
}

TEST_F(FrmVideoTest, AFailureKeepsTheOlderFile) {
  Record(2);
  folder.Write("movie.mp4", "older");
  Install("for last; do :; done\necho half > \"$last\"\necho 'No space left on device' >&2\nexit 1\n");
  QSignalSpy ended(&window, &frmVideo::VideoEnded);
  ASSERT_TRUE(window.SaveVideo(Target()));
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Message(), "The video could not be made.\nNo space left on device");
  EXPECT_EQ(Contents(Target()), "older");
  EXPECT_FALSE(std::filesystem::exists(Target() + ".part"));
  EXPECT_FALSE(ended.at(0).at(0).toBool());
}

TEST_F(FrmVideoTest, AProgramThatCannotStartIsTold) {
  Record(2);
  Install("");
  std::filesystem::rename(folder.Write("x", "#!/nowhere/interpreter\n"), folder.path() / "bin" / "ffmpeg");
  std::filesystem::permissions(folder.path() / "bin" / "ffmpeg", std::filesystem::perms::owner_all);
  ASSERT_TRUE(window.SaveVideo(Target()));
  ASSERT_TRUE(WaitForEnd());
  EXPECT_THAT(Message(), StartsWith("The video could not be made.\n"));
  EXPECT_FALSE(std::filesystem::exists(Target()));
}

TEST_F(FrmVideoTest, AVideoCanBeStopped) {
  Record(2);
  Install("for last; do :; done\necho half > \"$last\"\necho out_time_us=1000000\nexec /bin/sleep 60\n");
  ASSERT_TRUE(window.SaveVideo(Target()));
  auto& bar = Child<QProgressBar>(window, "ProgressBar1");
  ASSERT_TRUE(WaitFor([&] { return bar.value() == 500; })) << "1 of 2 seconds";
  Screenshot(window, "frmVideo_saving");
  Click(window, "Command4");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Message(), "The video was stopped.");
  EXPECT_FALSE(std::filesystem::exists(Target()));
  EXPECT_FALSE(std::filesystem::exists(Target() + ".part"));
}

// With the program itself, which ./test installs; the others above put a script in its place.
TEST_F(FrmVideoTest, TheRealProgramMakesBothFormats) {
  ASSERT_FALSE(QStandardPaths::findExecutable(kVideoProgram).isEmpty());
  Record(3);
  for (const char* name : {"real.mp4", "real.webm"}) {
    ASSERT_TRUE(window.SaveVideo((folder.path() / name).string()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.Encoding(); }, 60000));
    EXPECT_THAT(Message(), StartsWith("Saved"));
    EXPECT_GT(std::filesystem::file_size(folder.path() / name), 500U);
  }
}

}  // namespace
}  // namespace orv::testing
