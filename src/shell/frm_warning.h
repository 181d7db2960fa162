#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <string>

namespace orv {

inline constexpr int kMostWarningLines = 20000;

// The window of the logged messages, the newest first.
class frmWarning : public QWidget {
  Q_OBJECT

 public:
  explicit frmWarning(QWidget* parent = nullptr);

  void Add(const std::string& text);
  // All messages, the newest first, with the line ends of the log.
  QString Text();
  // The newest message.
  const QString& Newest() const { return newest_; }
  void Clear();

  // "Shown" while the window is open, else empty.
  std::string State() const { return isVisible() ? "Shown" : ""; }

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void TakeIn();
  void Trim();
  void FindNext(bool backward);
  void Copy();
  void TellFound();
  void TellCount();

  QPlainTextEdit* text_;
  QLineEdit* search_;
  QLabel* state_;
  QTimer pace_;
  QStringList waiting_;  // in the order in which they came
  QString newest_;
  long long count_ = 0;
};

}  // namespace orv
