#pragma once

#include <QProcess>
#include <QWidget>
#include <memory>
#include <string>

#include "view/movie.h"
#include "window/video_export.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QScrollBar;
class QSpinBox;

namespace orv {

// The window of the movie. It shows the movie's form and makes a video of the pictures saved last.
class frmVideo : public QWidget {
  Q_OBJECT

 public:
  explicit frmVideo(Movie& movie, QWidget* parent = nullptr);
  ~frmVideo() override;

  // Copies the movie's form into the controls. Hides the window after "End Video", and never shows it.
  void Refresh();
  // The folder of the pictures, to be told when a movie is prepared.
  void SetFolder(const std::string& folder) { folder_ = folder; }

  // Begins the video of the pictures saved last under a name with ".mp4" or ".webm". An older file stays until the
  // new one is whole. False when nothing was begun; the window tells why.
  bool SaveVideo(const std::string& file);
  bool Encoding() const { return process_ != nullptr; }
  void StopVideo();

 protected:
  // Ends the movie, as "End Video".
  void closeEvent(QCloseEvent* event) override;

 Q_SIGNALS:
  // After each command and move of a bar.
  void Changed();
  void VideoEnded(bool whole);

 private:
  void Build();
  void ChooseVideo();
  void StartEncoder();
  void ReadProgress();
  void EncoderEnded(int code, bool normal);
  void EndEncoding(bool whole, const std::string& text);
  void Tell(const std::string& text);
  void ShowEncoding();
  int Speed() const;

  Movie& movie_;
  std::string folder_;
  MovieFrames frames_;  // saved last
  VideoOrder order_;
  std::size_t encoder_ = 0;  // place of the encoder that is tried
  std::string program_;
  QByteArray said_;  // what the program complained of
  std::unique_ptr<QProcess> process_;
  bool stopped_ = false;

  QScrollBar* HScroll1_ = nullptr;
  QScrollBar* HScroll2_ = nullptr;
  QLabel* Text2_ = nullptr;
  QLabel* Text3_ = nullptr;
  QPushButton* Command1_ = nullptr;
  QPushButton* Command2_ = nullptr;
  QPushButton* Command3_ = nullptr;
  QPushButton* Command4_ = nullptr;
  QSpinBox* speed_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* message_ = nullptr;
};

}  // namespace orv
