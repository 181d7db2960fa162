#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <string>

// Controls of the windows by their names, which tests and accessibility tools find them by.
namespace orv {

// Name of a control of an array: "Check1(0)".
QString ArrayName(const std::string& name, int index);

// Line ends of message texts as Qt shows them.
QString ShownText(const std::string& text);

// As rich text a long tip is broken into lines; its blanks stay.
QString TipText(const QString& text);

// The tip of a widget, wrapped where it is long; nothing happens when it has that tip already.
void ShowTip(QWidget& widget, const std::string& tip);

// Gives a widget its name, its tip and what a screen reader says: the caption, else the tip, else the name.
void SetUp(QWidget& widget, const QString& name, const std::string& tip = {}, const std::string& caption = {});

QPushButton* MakeButton(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip = {});
QCheckBox* MakeCheck(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip = {});
QRadioButton* MakeOption(QWidget* parent, const QString& name, const std::string& caption, const std::string& tip = {});
// A label; with a buddy its caption is also what a screen reader says of that control.
QLabel* MakeLabel(QWidget* parent, const QString& name, const std::string& caption, QWidget* buddy = nullptr);
QLineEdit* MakeEdit(QWidget* parent, const QString& name, const std::string& text = {}, const std::string& tip = {});
QComboBox* MakeCombo(QWidget* parent, const QString& name, const std::string& tip = {});
// A horizontal bar from `least` to `most` at `value`.
QScrollBar* MakeScroll(QWidget* parent, const QString& name, int least, int most, int value,
                       const std::string& tip = {});

}  // namespace orv
