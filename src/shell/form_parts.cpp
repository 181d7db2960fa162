#include "shell/form_parts.h"

#include <algorithm>

namespace orv {
namespace {

constexpr int kHintAlpha = 128;  // of 255

}  // namespace

QString ArrayName(const std::string& name, int index) {
  return QString::fromStdString(name) + '(' + QString::number(index) + ')';
}

QString ShownText(const std::string& text) {
  QString shown = QString::fromStdString(text);
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  shown.remove(QChar(0));
  return shown;
}

QString TipText(const QString& text) {
  return "<p style=\"white-space:pre-wrap\">" + text.toHtmlEscaped() + "</p>";
}

void ShowTip(QWidget& widget, const std::string& tip) {
  const QString text = QString::fromStdString(tip);
  const QString shown = tip.empty() ? QString() : TipText(text);
  if (widget.toolTip() == shown) return;
  widget.setToolTip(shown);
  widget.setAccessibleDescription(text);
}

void SetUp(QWidget& widget, const QString& name, const std::string& tip, const std::string& caption) {
  widget.setObjectName(name);
  const QString tipText = QString::fromStdString(tip);
  if (!tip.empty()) widget.setToolTip(TipText(tipText));
  QString spoken = QString::fromStdString(caption).remove('&').trimmed();
  if (spoken.isEmpty()) spoken = tip.empty() ? name : tipText;
  widget.setAccessibleName(spoken);
  if (!tip.empty()) widget.setAccessibleDescription(tipText);
}

QPushButton* MakeButton(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip) {
  auto* button = new QPushButton(QString::fromStdString(caption), parent);
  SetUp(*button, name, tip, caption);
  button->setAutoDefault(false);
  return button;
}

QCheckBox* MakeCheck(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip) {
  auto* box = new QCheckBox(QString::fromStdString(caption), parent);
  SetUp(*box, name, tip, caption);
  return box;
}

QRadioButton* MakeOption(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip) {
  auto* option = new QRadioButton(QString::fromStdString(caption), parent);
  SetUp(*option, name, tip, caption);
  return option;
}

QLabel* MakeLabel(QWidget* parent, const QString& name, const std::string& caption, QWidget* buddy) {
  auto* label = new QLabel(QString::fromStdString(caption), parent);
  label->setTextFormat(Qt::PlainText);
  SetUp(*label, name, {}, caption);
  if (buddy != nullptr) {
    label->setBuddy(buddy);
    buddy->setAccessibleName(label->accessibleName());
  }
  return label;
}

QLineEdit* MakeEdit(QWidget* parent, const QString& name, const std::string& text, const std::string& tip) {
  auto* edit = new QLineEdit(QString::fromStdString(text), parent);
  SetUp(*edit, name, tip);
  // Some dark themes leave the colour of the hint as it is on white.
  QPalette palette = edit->palette();
  QColor hint = palette.color(QPalette::Text);
  hint.setAlpha(kHintAlpha);
  palette.setColor(QPalette::PlaceholderText, hint);
  edit->setPalette(palette);
  return edit;
}

QComboBox* MakeCombo(QWidget* parent, const QString& name, const std::string& tip) {
  auto* combo = new QComboBox(parent);
  SetUp(*combo, name, tip);
  return combo;
}

QScrollBar* MakeScroll(QWidget* parent, const QString& name, int least, int most, int value, const std::string& tip) {
  auto* bar = new QScrollBar(Qt::Horizontal, parent);
  SetUp(*bar, name, tip);
  bar->setRange(least, most);
  bar->setPageStep(std::max(1, (most - least) / 20));
  bar->setValue(value);
  bar->setFocusPolicy(Qt::StrongFocus);
  bar->setInvertedControls(false);  // the arrow to the right counts up
  return bar;
}

}  // namespace orv
