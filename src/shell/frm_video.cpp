#include "shell/frm_video.h"

#include <QCloseEvent>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <filesystem>
#include <functional>

#include "numerics/paths.h"
#include "shell/form_parts.h"

namespace orv {
namespace {

constexpr int kProgressSteps = 1000;
constexpr qsizetype kMostSaid = 1 << 16;
constexpr int kEndMs = 3000;  // for a program that is told to end
constexpr const char* kSaveCaption = "Save as &video";
constexpr const char* kSaveTip = "Makes an MP4 or WebM file of the frames saved last, with the program ffmpeg";

void SetBar(QScrollBar& bar, int value) {
  const QSignalBlocker quiet(&bar);
  bar.setValue(value);
}

QFrame* Line(QWidget* parent) {
  auto* line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Sunken);
  return line;
}

}  // namespace

frmVideo::frmVideo(Movie& movie, QWidget* parent) : QWidget(parent, Qt::Window), movie_(movie) {
  setObjectName("frmVideo");
  setWindowTitle("Movie sequence");
  Build();
  movie_.Form_Load();
  Refresh();

  connect(HScroll1_, &QScrollBar::valueChanged, this, [this](int value) {
    movie_.HScroll1_Change(value);
    Refresh();
    Q_EMIT Changed();
  });
  connect(HScroll2_, &QScrollBar::valueChanged, this, [this](int value) {
    movie_.HScroll2_Change(value);
    Refresh();
    Q_EMIT Changed();
  });
  const auto command = [this](QPushButton* button, const std::function<void()>& click) {
    connect(button, &QPushButton::clicked, this, [this, click] {
      click();
      Refresh();
      Q_EMIT Changed();
    });
  };
  command(Command1_, [this] { movie_.Command1_Click(); });
  command(Command2_, [this] { movie_.Command2_Click(); });
  command(Command3_, [this] { movie_.Command3_Click(); });
  connect(Command4_, &QPushButton::clicked, this, &frmVideo::ChooseVideo);
}

frmVideo::~frmVideo() {
  if (!process_) return;
  process_->disconnect(this);
  process_->kill();
  process_->waitForFinished(kEndMs);
  QFile::remove(QString::fromStdString(UnfinishedName(order_.file)));
}

void frmVideo::Build() {
  HScroll1_ = MakeScroll(this, "HScroll1", 0, kMostMovieFrames, kDefaultMovieFrames);
  HScroll2_ = MakeScroll(this, "HScroll2", 0, kLongestInterval, 9);
  // The right arrow adds.
  for (QScrollBar* bar : {HScroll1_, HScroll2_}) bar->setInvertedControls(false);
  Text2_ = MakeLabel(this, "Text2", "");
  Text3_ = MakeLabel(this, "Text3", "");
  Command1_ = MakeButton(this, "Command1", "&Start/Restart Video");
  Command2_ = MakeButton(this, "Command2", "&Pause Video", "Holds the movie; Start goes on with the next frame");
  Command3_ = MakeButton(this, "Command3", "&End Video", "Ends the movie and closes this window");
  Command4_ = MakeButton(this, "Command4", kSaveCaption, kSaveTip);
  speed_ = new QSpinBox(this);
  SetUp(*speed_, "Spin1", "How many times faster than the frames were taken the video runs", "Speed of the video");
  speed_->setRange(1, kFastestVideo);
  speed_->setSuffix(" x");
  progress_ = new QProgressBar(this);
  SetUp(*progress_, "ProgressBar1", {}, "Progress of the video");
  progress_->setRange(0, kProgressSteps);
  progress_->setFormat("%p %");
  message_ = MakeLabel(this, "Label4", "");
  message_->setWordWrap(true);
  message_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

  HScroll1_->setMinimumWidth(HScroll1_->fontMetrics().averageCharWidth() * 34);
  const QString longest = " 60.1 seconds between Frames ";
  Text2_->setMinimumWidth(Text2_->fontMetrics().horizontalAdvance(longest));
  auto* bars = new QGridLayout;
  bars->addWidget(MakeLabel(this, "Label2", "&Number of frames", HScroll1_), 0, 0);
  bars->addWidget(HScroll1_, 0, 1);
  bars->addWidget(Text3_, 0, 2);
  bars->addWidget(MakeLabel(this, "Label1", "Pe&riod ", HScroll2_), 1, 0);
  bars->addWidget(HScroll2_, 1, 1);
  bars->addWidget(Text2_, 1, 2);
  bars->setColumnStretch(1, 1);
  bars->setHorizontalSpacing(12);
  auto* commands = new QHBoxLayout;
  for (QPushButton* button : {Command1_, Command2_, Command3_}) commands->addWidget(button, 1);
  auto* video = new QHBoxLayout;
  video->addWidget(Command4_);
  video->addWidget(MakeLabel(this, "Label3", "a&t", speed_));
  video->addWidget(speed_);
  video->addWidget(progress_, 1);
  video->addStretch(0);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(bars);
  layout->addSpacing(4);
  layout->addLayout(commands);
  layout->addWidget(Line(this));
  layout->addLayout(video);
  layout->addWidget(message_);
  layout->addStretch(1);
  ShowEncoding();
  message_->hide();
}

void frmVideo::Refresh() {
  const VideoForm& form = movie_.Form();
  SetBar(*HScroll1_, form.HScroll1);
  SetBar(*HScroll2_, form.HScroll2);
  Text2_->setText(QString::fromStdString(form.Text2));
  Text3_->setText(QString::fromStdString(form.Text3));
  for (QWidget* control : std::initializer_list<QWidget*>{Text2_, HScroll2_}) ShowTip(*control, form.Text2Tip);
  for (QWidget* control : std::initializer_list<QWidget*>{Text3_, HScroll1_}) ShowTip(*control, form.Text3Tip);
  ShowTip(*Command1_, form.Command1Tip);
  Command1_->setProperty("Tag", QString::fromStdString(form.Command1Tag));
  if (movie_.MovieFrame() > 1) {
    frames_ = {folder_, movie_.BaseName(), movie_.MovieFrame() - 1, movie_.MovieInterval()};
  }
  if (!form.visible && isVisible()) hide();
}

void frmVideo::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  if (!movie_.Flag()) return;
  movie_.Command3_Click();
  Refresh();
  Q_EMIT Changed();
}

// --- the video -------------------------------------------------------------------------------------------------------

void frmVideo::Tell(const std::string& text) {
  message_->setText(QString::fromStdString(text));
  message_->setVisible(!text.empty());
  message_->setAccessibleName(message_->text());
  // A long message makes the window higher.
  layout()->activate();
  const int wanted = layout()->totalHeightForWidth(width());
  if (wanted > height()) resize(width(), wanted);
}

void frmVideo::ShowEncoding() {
  Command4_->setText(Encoding() ? "Stop &video" : kSaveCaption);
  Command4_->setAccessibleName(Command4_->text().remove('&'));
  speed_->setEnabled(!Encoding());
  progress_->setVisible(Encoding());
}

int frmVideo::Speed() const {
  return speed_->value();
}

void frmVideo::ChooseVideo() {
  if (Encoding()) {
    StopVideo();
    return;
  }
  if (FramesPresent(frames_) == 0) {
    Tell(NoFramesText());
    return;
  }
  if (QStandardPaths::findExecutable(kVideoProgram).isEmpty()) {
    Tell(NoProgramText(frames_));
    return;
  }
  auto* dialog = new QFileDialog(this, "Save as video", QString::fromStdString(frames_.folder));
  dialog->setObjectName("SaveVideo");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters({"MP4 video (*.mp4)", "WebM video (*.webm)"});
  dialog->setDefaultSuffix("mp4");
  dialog->selectFile(QString::fromStdString(frames_.base) + ".mp4");
  connect(dialog, &QFileDialog::filterSelected, dialog,
          [dialog](const QString& filter) { dialog->setDefaultSuffix(filter.contains("webm") ? "webm" : "mp4"); });
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) { SaveVideo(file.toStdString()); });
  dialog->open();
}

bool frmVideo::SaveVideo(const std::string& file) {
  if (Encoding()) return false;
  order_ = {frames_, {}, Speed(), VideoName(file)};
  order_.frames.count = FramesPresent(frames_);
  const auto size = order_.frames.count > 0 ? BitmapSize(FrameFile(frames_, 1)) : std::nullopt;
  if (!size) {
    Tell(NoFramesText());
    return false;
  }
  order_.size = *size;
  program_ = QStandardPaths::findExecutable(kVideoProgram).toStdString();
  if (program_.empty()) {
    Tell(NoProgramText(order_.frames));
    return false;
  }
  encoder_ = 0;
  stopped_ = false;
  StartEncoder();
  return true;
}

void frmVideo::StartEncoder() {
  QStringList arguments;
  const std::string_view encoder = EncodersOf(FormatOf(order_.file))[encoder_];
  for (const std::string& argument : VideoArguments(order_, encoder)) arguments << QString::fromStdString(argument);
  said_.clear();
  process_ = std::make_unique<QProcess>();
  connect(process_.get(), &QProcess::readyReadStandardOutput, this, &frmVideo::ReadProgress);
  connect(process_.get(), &QProcess::readyReadStandardError, this, [this] {
    said_ += process_->readAllStandardError();
    if (said_.size() > kMostSaid) said_.remove(0, said_.size() - kMostSaid);
  });
  // Queued: the process may end within its start, and must not go while it tells so.
  connect(
      process_.get(), &QProcess::finished, this,
      [this](int code, QProcess::ExitStatus status) { EncoderEnded(code, status == QProcess::NormalExit); },
      Qt::QueuedConnection);
  connect(
      process_.get(), &QProcess::errorOccurred, this,
      [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart && process_)
          EndEncoding(false, FailedText(process_->errorString().toStdString()));
      },
      Qt::QueuedConnection);
  progress_->setValue(0);
  Tell("Saving " + std::to_string(order_.frames.count) + " frames as \"" + order_.file + "\"");
  ShowEncoding();
  process_->start(QString::fromStdString(program_), arguments, QIODevice::ReadOnly);
}

void frmVideo::ReadProgress() {
  while (process_->canReadLine()) {
    const std::string line = process_->readLine().trimmed().toStdString();
    const auto share = VideoShare(line, VideoSeconds(order_));
    if (share) progress_->setValue(static_cast<int>(*share * kProgressSteps));
  }
}

void frmVideo::StopVideo() {
  if (!process_) return;
  stopped_ = true;
  process_->kill();
}

void frmVideo::EncoderEnded(int code, bool normal) {
  if (!process_) return;
  said_ += process_->readAllStandardError();
  const std::string said = said_.toStdString();
  if (stopped_) {
    EndEncoding(false, "The video was stopped.");
    return;
  }
  if (normal && code == 0) {
    std::error_code error;
    std::filesystem::rename(PathOf(UnfinishedName(order_.file)), PathOf(order_.file), error);
    const bool whole = !error;
    EndEncoding(whole, whole ? "Saved \"" + order_.file + "\"" : FailedText(error.message()));
    return;
  }
  if (LacksEncoder(said) && encoder_ + 1 < EncodersOf(FormatOf(order_.file)).size()) {
    ++encoder_;
    StartEncoder();
    return;
  }
  EndEncoding(false, FailedText(said));
}

void frmVideo::EndEncoding(bool whole, const std::string& text) {
  if (!whole) QFile::remove(QString::fromStdString(UnfinishedName(order_.file)));
  process_.reset();
  Tell(text);
  ShowEncoding();
  Q_EMIT VideoEnded(whole);
}

}  // namespace orv
