#pragma once

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <chrono>
#include <list>
#include <string>

#include "numerics/time_left.h"
#include "numerics/user_dialogs.h"

class QEventLoop;

namespace orv {

class frmWarning;

// UserDialogs of the window: message boxes, an input box, the window CORRECTION, frmWarning, the status line. For the
// thread of the window alone.
class QtDialogs : public QObject, public UserDialogs {
  Q_OBJECT

 public:
  // `window` is what boxes stand in front of; it may be null. Both outlive this object, or set the window to null.
  QtDialogs(QWidget* window, frmWarning& warning);
  ~QtDialogs() override;
  void SetWindow(QWidget* window) { window_ = window; }

  // Answer::None for a box that was closed by the pointer or Escape where no button stands for that.
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override;
  std::string Input(const std::string& prompt, const std::string& title, const std::string& initial) override;
  void Pause(const std::string& text, const std::string& title) override;
  void Log(const std::string& text) override;
  void Status(const std::string& text) override;
  // Lets events through.
  void Progress(const std::string& phase, double share) override;
  bool Attended() const override { return true; }

  // The window was closed while work goes on: what is open closes, and that call, or the next one that asks or tells
  // of progress, throws ProgramEnd.
  void RequestEnd();
  bool EndRequested() const { return endRequested_; }
  // For work that begins anew.
  void WithdrawEnd() { endRequested_ = false; }

  // Whether a box or the pause waits for an answer.
  bool Waiting() const { return !open_.empty(); }

 Q_SIGNALS:
  void StatusChanged(const QString& text);
  // The phase with the time left, the share 0 to 1.
  void ProgressChanged(const QString& text, double share);
  void Logged(const QString& text);

 private:
  class Opened;

  void CheckEnd() const;
  int Run(QDialog& dialog);

  QPointer<QWidget> window_;
  frmWarning& warning_;
  std::list<QDialog*> open_;
  bool endRequested_ = false;
  bool lettingThrough_ = false;
  std::chrono::steady_clock::time_point lastThrough_;
  TimeLeft timeLeft_;
};

}  // namespace orv
