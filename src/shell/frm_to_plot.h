#pragma once

#include <QDialog>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <array>

#include "window/main_state.h"
#include "window/plot_selection.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QRadioButton;

namespace orv {

// The selection of the plot. Its form is filled by Open before each exec, which shows what then stands there. Accepted
// when a plot was taken.
class frmToPlot : public QDialog {
  Q_OBJECT

 public:
  frmToPlot(ToPlotForm& form, MainState& main, QWidget* parent = nullptr);

  // Copies the form into the controls.
  void Refresh();

 public Q_SLOTS:
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildList();
  QWidget* BuildOptions();
  QWidget* BuildDirectives();
  void BuildButtons();
  void BuildKeys();
  void FillItems();
  void ShowChosenItem();
  void ShowOptions();
  void ShowCut();
  bool FilterKey(int key);
  bool ListKey(int key);
  int ItemAt(const QModelIndex& row) const;
  int FirstMatch() const;
  void ChooseItem(int item);
  void ChooseButton(int button);
  void GoPlot();
  void Clear(bool rightButton);

  ToPlotForm& form_;
  MainState& main_;
  QStandardItemModel items_;
  QSortFilterProxyModel matches_;
  QComboBox* Combo2_ = nullptr;
  QLineEdit* filter_ = nullptr;
  QListView* list_ = nullptr;
  QLabel* noMatch_ = nullptr;
  std::array<QRadioButton*, kMemorisedPlots> Option1_{};
  QCheckBox* Check1_ = nullptr;
  QCheckBox* Check2_ = nullptr;
  QLineEdit* Text1_ = nullptr;
  QLabel* cut_ = nullptr;
  QPushButton* Command10_ = nullptr;
  QPushButton* Command1_ = nullptr;
  QPushButton* Command3_ = nullptr;
  QPushButton* Command2_ = nullptr;
};

// Asks for the plot of a full run by the window.
class WindowSelection : public PlotSelection {
 public:
  WindowSelection(ToPlotForm& form, MainState& main, QWidget* parent) : form_(form), main_(main), parent_(parent) {}

  PlotChoice Select(const std::string& caption, const RunContext& run) override;

  bool shown = false;  // the window was open since somebody last set this

 private:
  ToPlotForm& form_;
  MainState& main_;
  QWidget* parent_;
};

}  // namespace orv
