#include "shell/qt_dialogs.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMessageBox>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "numerics/failure.h"
#include "shell/form_parts.h"
#include "shell/frm_warning.h"

namespace orv {
namespace {

constexpr std::chrono::milliseconds kPace{20};  // between two times that events are let through
constexpr int kLongestShown = 3000;             // characters of a box; the rest stands in its details
constexpr int kMostLinesShown = 35;

struct Choice {
  QMessageBox::StandardButton button;
  Answer answer;
};

std::vector<Choice> ChoicesOf(Buttons buttons) {
  switch (buttons) {
    case Buttons::Ok:
      return {{QMessageBox::Ok, Answer::Ok}};
    case Buttons::OkCancel:
      return {{QMessageBox::Ok, Answer::Ok}, {QMessageBox::Cancel, Answer::Cancel}};
    case Buttons::AbortRetryIgnore:
      return {{QMessageBox::Abort, Answer::Abort},
              {QMessageBox::Retry, Answer::Retry},
              {QMessageBox::Ignore, Answer::Ignore}};
    case Buttons::RetryCancel:
      return {{QMessageBox::Retry, Answer::Retry}, {QMessageBox::Cancel, Answer::Cancel}};
    case Buttons::YesNo:
      return {{QMessageBox::Yes, Answer::Yes}, {QMessageBox::No, Answer::No}};
  }
  return {};
}

// What closing a box stands for.
Answer ClosedAnswer(Buttons buttons) {
  switch (buttons) {
    case Buttons::Ok:
      return Answer::Ok;
    case Buttons::OkCancel:
    case Buttons::RetryCancel:
      return Answer::Cancel;
    default:
      return Answer::None;
  }
}

QMessageBox::Icon IconOf(Icon icon) {
  switch (icon) {
    case Icon::Information:
      return QMessageBox::Information;
    case Icon::Question:
      return QMessageBox::Question;
    case Icon::Warning:
      return QMessageBox::Warning;
    case Icon::Critical:
      return QMessageBox::Critical;
    case Icon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

// Escape must never press Abort, which would end the program: it leaves the box without a button.
class MessageBox : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void closeEvent(QCloseEvent* event) override {
    reject();
    event->setAccepted(!isVisible());
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      reject();
    } else {
      QMessageBox::keyPressEvent(event);
    }
  }
};

void SetShownText(QMessageBox& box, const QString& text) {
  box.setTextFormat(Qt::PlainText);
  qsizetype end = std::min<qsizetype>(text.size(), kLongestShown);
  qsizetype lineEnd = -1;
  for (int line = 0; line < kMostLinesShown; ++line) {
    lineEnd = text.indexOf('\n', lineEnd + 1);
    if (lineEnd < 0) break;
  }
  if (lineEnd >= 0) end = std::min(end, lineEnd);
  if (end == text.size()) {
    box.setText(text);
    return;
  }
  box.setText(text.left(end) + " ...");
  box.setDetailedText(text);
}

// Keeps the OpenGL of whoever asks while other windows draw.
class KeptOpenGl {
 public:
  KeptOpenGl() : context_(QOpenGLContext::currentContext()) {
    if (context_ == nullptr) return;
    surface_ = context_->surface();
    context_->functions()->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &frame_);
  }
  ~KeptOpenGl() {
    if (context_ == nullptr) return;
    context_->makeCurrent(surface_);
    context_->functions()->glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(frame_));
  }
  KeptOpenGl(const KeptOpenGl&) = delete;
  KeptOpenGl& operator=(const KeptOpenGl&) = delete;

 private:
  QOpenGLContext* context_;
  QSurface* surface_ = nullptr;
  GLint frame_ = 0;
};

}  // namespace

// In the list of what is open, while it lives.
class QtDialogs::Opened {
 public:
  Opened(QtDialogs& dialogs, QDialog& dialog) : dialogs_(dialogs), dialog_(dialog) {
    dialogs_.open_.push_back(&dialog);
  }
  ~Opened() { dialogs_.open_.remove(&dialog_); }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

 private:
  QtDialogs& dialogs_;
  QDialog& dialog_;
};

QtDialogs::QtDialogs(QWidget* window, frmWarning& warning) : window_(window), warning_(warning) {}

QtDialogs::~QtDialogs() = default;

void QtDialogs::CheckEnd() const {
  if (endRequested_) throw ProgramEnd{};
}

void QtDialogs::RequestEnd() {
  endRequested_ = true;
  const std::list<QDialog*> open = open_;
  for (QDialog* dialog : open) dialog->reject();
}

int QtDialogs::Run(QDialog& dialog) {
  CheckEnd();
  int result = 0;
  {
    const KeptOpenGl kept;
    const Opened opened(*this, dialog);
    result = dialog.exec();
  }
  CheckEnd();
  return result;
}

Answer QtDialogs::Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) {
  MessageBox box(window_);
  box.setObjectName("MsgBox");
  box.setWindowTitle(QString::fromStdString(title));
  box.setIcon(IconOf(icon));
  SetShownText(box, ShownText(text));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  const std::vector<Choice> choices = ChoicesOf(buttons);
  for (const Choice& choice : choices) box.addButton(choice.button);
  box.setDefaultButton(choices.front().button);
  Run(box);
  const QMessageBox::StandardButton clicked = box.standardButton(box.clickedButton());
  for (const Choice& choice : choices) {
    if (choice.button == clicked) return choice.answer;
  }
  return ClosedAnswer(buttons);
}

std::string QtDialogs::Input(const std::string& prompt, const std::string& title, const std::string& initial) {
  QDialog box(window_);
  box.setObjectName("InputBox");
  box.setWindowTitle(QString::fromStdString(title));
  auto* edit = MakeEdit(&box, "Text1", initial);
  auto* label = MakeLabel(&box, "Label1", "", edit);
  label->setText(ShownText(prompt));
  label->setWordWrap(true);
  label->setMinimumWidth(380);
  edit->setAccessibleName(label->text());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &box);
  connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
  auto* layout = new QVBoxLayout(&box);
  layout->addWidget(label);
  layout->addWidget(edit);
  layout->addWidget(buttons);
  edit->selectAll();
  edit->setFocus();
  return Run(box) == QDialog::Accepted ? edit->text().toStdString() : std::string();
}

void QtDialogs::Pause(const std::string& text, const std::string& title) {
  CheckEnd();
  QDialog box(window_);
  box.setObjectName("CORRECTION");
  box.setWindowTitle(QString::fromStdString(title));
  box.setModal(false);
  auto* label = MakeLabel(&box, "Label1", "");
  label->setText(ShownText(text));
  label->setWordWrap(true);
  label->setMinimumWidth(320);
  auto* proceed = MakeButton(&box, "Command1", "Continuer");
  proceed->setDefault(true);
  auto* layout = new QVBoxLayout(&box);
  layout->addWidget(label);
  layout->addWidget(proceed, 0, Qt::AlignRight);
  connect(proceed, &QPushButton::clicked, &box, &QDialog::accept);
  {
    const KeptOpenGl kept;
    const Opened opened(*this, box);
    QEventLoop loop;
    connect(&box, &QDialog::finished, &loop, &QEventLoop::quit);
    box.show();
    box.raise();
    loop.exec();
  }
  CheckEnd();
}

void QtDialogs::Log(const std::string& text) {
  warning_.Add(text);
  Q_EMIT Logged(ShownText(text));
}

void QtDialogs::Status(const std::string& text) {
  Q_EMIT StatusChanged(ShownText(text));
}

void QtDialogs::Progress(const std::string& phase, double share) {
  CheckEnd();
  const auto now = std::chrono::steady_clock::now();
  const double part = std::clamp(share, 0.0, 1.0);
  const std::string left = timeLeft_(phase, part, now);
  // Not from within an event that was let through.
  if (lettingThrough_ || (now - lastThrough_ < kPace && part < 1)) return;
  Q_EMIT ProgressChanged(QString::fromStdString(phase + left), part);
  lettingThrough_ = true;
  {
    const KeptOpenGl kept;
    QCoreApplication::processEvents();
  }
  lettingThrough_ = false;
  lastThrough_ = std::chrono::steady_clock::now();
  CheckEnd();
}

}  // namespace orv
