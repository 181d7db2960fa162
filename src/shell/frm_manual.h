#pragma once

#include <QWidget>
#include <string>

class QTextBrowser;

namespace orv {

// The user's manual in a window of its own: its pages are Markdown files that link to each other.
class frmManual : public QWidget {
  Q_OBJECT

 public:
  explicit frmManual(QWidget* parent = nullptr);

  // Shows a page; false when there is no such file.
  bool Open(const std::string& file);

 private:
  QTextBrowser* pages_ = nullptr;
};

}  // namespace orv
