#include "shell/frm_warning.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

#include "shell/form_parts.h"

namespace orv {
namespace {

constexpr int kPaceMs = 100;  // a run may log thousands of messages a second

}  // namespace

frmWarning::frmWarning(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmWarning");
  setWindowTitle("Warnings");
  resize(720, 420);

  text_ = new QPlainTextEdit(this);
  SetUp(*text_, "Text1", {}, "Messages, the newest first");
  text_->setReadOnly(true);
  text_->setUndoRedoEnabled(false);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setPlaceholderText("No message so far");

  search_ = MakeEdit(this, "Text2", "", "Enter finds the next place, Shift+Enter the one before");
  search_->setPlaceholderText("Search");
  search_->setClearButtonEnabled(true);
  auto* next = MakeButton(this, "Command1", "&Next", "Find the next place (F3)");
  auto* before = MakeButton(this, "Command2", "&Previous", "Find the place before (Shift+F3)");
  auto* copy = MakeButton(this, "Command3", "&Copy", "Copy the selected lines, or all");
  auto* clear = MakeButton(this, "Command4", "C&lear", "Remove all messages");
  auto* close = MakeButton(this, "Command5", "Cl&ose", "Close this window; messages are kept");
  state_ = MakeLabel(this, "Label1", "");

  auto* tools = new QHBoxLayout;
  tools->addWidget(search_, 1);
  tools->addWidget(next);
  tools->addWidget(before);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(state_, 1);
  buttons->addWidget(copy);
  buttons->addWidget(clear);
  buttons->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(tools);
  layout->addWidget(text_, 1);
  layout->addLayout(buttons);

  pace_.setSingleShot(true);
  pace_.setInterval(kPaceMs);
  connect(&pace_, &QTimer::timeout, this, &frmWarning::TakeIn);
  connect(search_, &QLineEdit::textChanged, this, [this] {
    text_->moveCursor(QTextCursor::Start);
    FindNext(false);
  });
  connect(next, &QPushButton::clicked, this, [this] { FindNext(false); });
  connect(before, &QPushButton::clicked, this, [this] { FindNext(true); });
  connect(copy, &QPushButton::clicked, this, &frmWarning::Copy);
  connect(clear, &QPushButton::clicked, this, &frmWarning::Clear);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  TellCount();
}

void frmWarning::Add(const std::string& text) {
  newest_ = ShownText(text);
  waiting_.append(newest_);
  ++count_;
  if (waiting_.size() > kMostWarningLines) TakeIn();
  if (isVisible() && !pace_.isActive()) pace_.start();
}

// One change of the document for all that came since the last.
void frmWarning::TakeIn() {
  if (waiting_.isEmpty()) return;
  std::reverse(waiting_.begin(), waiting_.end());
  const QString block = waiting_.join('\n') + '\n';
  waiting_.clear();
  QTextCursor cursor(text_->document());
  cursor.movePosition(QTextCursor::Start);
  cursor.insertText(block);
  Trim();
  if (isVisible() && !text_->textCursor().hasSelection()) text_->moveCursor(QTextCursor::Start);
  TellCount();
}

// The oldest lines go, or a long day would fill the memory.
void frmWarning::Trim() {
  QTextDocument& document = *text_->document();
  if (document.blockCount() <= kMostWarningLines) return;
  QTextCursor cursor(document.findBlockByNumber(kMostWarningLines - 1));
  cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
}

QString frmWarning::Text() {
  TakeIn();
  return text_->toPlainText().replace('\n', "\r\n");
}

void frmWarning::Clear() {
  waiting_.clear();
  newest_.clear();
  count_ = 0;
  text_->clear();
  TellCount();
}

void frmWarning::Copy() {
  TakeIn();
  const QTextCursor cursor = text_->textCursor();
  QString text =
      cursor.hasSelection() ? cursor.selectedText().replace(QChar::ParagraphSeparator, '\n') : text_->toPlainText();
  QGuiApplication::clipboard()->setText(text);
}

// From the place found last, and round at the end.
void frmWarning::FindNext(bool backward) {
  TakeIn();
  const QString wanted = search_->text();
  if (wanted.isEmpty()) {
    TellCount();
    return;
  }
  const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  bool found = text_->find(wanted, flags);
  if (!found) {
    const QTextCursor old = text_->textCursor();
    text_->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    found = text_->find(wanted, flags);
    if (!found) text_->setTextCursor(old);
  }
  if (found) {
    TellFound();
  } else {
    state_->setText("\"" + wanted + "\" was not found");
  }
}

void frmWarning::TellFound() {
  state_->setText("Line " + QString::number(text_->textCursor().blockNumber() + 1));
}

void frmWarning::TellCount() {
  state_->setText(count_ == 1 ? QString("1 message") : QString::number(count_) + " messages");
}

void frmWarning::showEvent(QShowEvent* event) {
  TakeIn();
  QWidget::showEvent(event);
}

void frmWarning::keyPressEvent(QKeyEvent* event) {
  const bool backward = event->modifiers().testFlag(Qt::ShiftModifier);
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_F3 || (enter && search_->hasFocus())) {
    FindNext(backward);
  } else if (event->matches(QKeySequence::Find)) {
    search_->setFocus();
    search_->selectAll();
  } else if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace orv
