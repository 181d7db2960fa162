#include "shell/frm_to_plot.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "shell/control_parts.h"
#include "shell/form_parts.h"

namespace orv {
namespace {

constexpr int kNumberRole = Qt::UserRole;
constexpr int kPlaceRole = Qt::UserRole + 1;
constexpr int kRowsShown = 12;

const ControlEntry& Entry(std::string_view name) {
  return EntryOf(kSelectionControls, name);
}

std::string Tip(std::string_view name) {
  return std::string(Entry(name).tip);
}

// All words in any order.
QRegularExpression WordsOf(const QString& text) {
  QString pattern;
  for (const QString& word : text.split(' ', Qt::SkipEmptyParts)) {
    pattern += "(?=.*" + QRegularExpression::escape(word) + ")";
  }
  return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

}  // namespace

frmToPlot::frmToPlot(ToPlotForm& form, MainState& main, QWidget* parent) : QDialog(parent), form_(form), main_(main) {
  setObjectName("frmToPlot");
  setModal(true);
  auto* columns = new QHBoxLayout;
  columns->addWidget(BuildList(), 5);
  auto* right = new QVBoxLayout;
  right->addWidget(BuildOptions());
  right->addWidget(BuildDirectives());
  right->addStretch(1);
  columns->addLayout(right, 4);
  BuildButtons();
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(Command1_);
  buttons->addWidget(Command3_);
  buttons->addStretch(1);
  buttons->addWidget(Command10_);
  buttons->addWidget(Command2_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(columns, 1);
  layout->addLayout(buttons);
  BuildKeys();
  Refresh();
}

// The combo shows what is chosen; the list below it is the same list, narrowed by what is typed.
QWidget* frmToPlot::BuildList() {
  auto* part = new QWidget(this);
  matches_.setSourceModel(&items_);
  Combo2_ = MakeCombo(part, "Combo2", "The plot that is chosen");
  Combo2_->setModel(&items_);
  Combo2_->setMaxVisibleItems(25);
  Combo2_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  Combo2_->setMinimumContentsLength(30);
  Combo2_->installEventFilter(this);
  filter_ = MakeEdit(part, "Text2", "", "Number or words of a plot. Enter chooses, arrow down goes to the list");
  filter_->setPlaceholderText("Type a number or words to search");
  filter_->setClearButtonEnabled(true);
  filter_->installEventFilter(this);
  list_ = new QListView(part);
  SetUp(*list_, "List1", "A click chooses, a double click plots");
  list_->setModel(&matches_);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setUniformItemSizes(true);
  list_->setTextElideMode(Qt::ElideRight);
  list_->setMinimumHeight(kRowsShown * (list_->fontMetrics().lineSpacing() + 2));
  list_->installEventFilter(this);
  noMatch_ = MakeLabel(part, "Label4", "No plot holds these words");

  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeLabel(part, "Label2", WithKey(Entry("Combo2").caption, 'p'), Combo2_));
  layout->addWidget(Combo2_);
  layout->addWidget(MakeLabel(part, "Label3", "&Search", filter_));
  layout->addWidget(filter_);
  layout->addWidget(list_, 1);
  layout->addWidget(noMatch_);
  noMatch_->hide();

  connect(Combo2_, &QComboBox::activated, this, [this](int item) { ChooseItem(item); });
  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
    matches_.setFilterRegularExpression(WordsOf(text));
    noMatch_->setVisible(matches_.rowCount() == 0);
    if (text.isEmpty()) {
      ShowChosenItem();
    } else if (matches_.rowCount() > 0) {
      list_->setCurrentIndex(matches_.index(FirstMatch(), 0));
    }
  });
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& row) { ChooseItem(ItemAt(row)); });
  connect(list_, &QListView::doubleClicked, this, [this](const QModelIndex& row) {
    ChooseItem(ItemAt(row));
    GoPlot();
  });
  return part;
}

QWidget* frmToPlot::BuildOptions() {
  auto* part = new QGroupBox("Memorised plots", this);
  auto* layout = new QVBoxLayout(part);
  for (int button = 0; button < kMemorisedPlots; ++button) {
    QRadioButton* option = MakeOption(part, ArrayName("Option1", button), "8");
    // An empty button is as high as one with a caption.
    option->setMinimumHeight(option->sizeHint().height());
    option->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    option->installEventFilter(this);
    connect(option, &QRadioButton::clicked, this, [this, button] { ChooseButton(button); });
    Option1_[static_cast<std::size_t>(button)] = option;
    layout->addWidget(option);
  }
  return part;
}

QWidget* frmToPlot::BuildDirectives() {
  auto* part = new QGroupBox("Scale and directives", this);
  Check1_ = MakeCheck(part, "Check1", WithKey(Entry("Check1").caption, 'L'), Tip("Check1"));
  Check2_ = MakeCheck(part, "Check2", WithKey(Entry("Check2").caption, 'A'));
  Text1_ = MakeEdit(part, "Text1", "", "A letter and a number, such as L 3; the first 64 characters count");
  std::string lines;
  for (const std::string_view line : kDirectiveNotice) lines += (lines.empty() ? "" : "\n") + std::string(line);
  QLabel* notice = MakeLabel(part, "Label1", lines);
  notice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  notice->setWordWrap(true);
  cut_ = MakeLabel(part, "Label6", "");
  auto* layout = new QVBoxLayout(part);
  layout->addWidget(Check1_);
  layout->addWidget(Check2_);
  layout->addSpacing(6);
  layout->addWidget(MakeLabel(part, "Label5", "D&irectives", Text1_));
  layout->addWidget(Text1_);
  layout->addWidget(cut_);
  layout->addWidget(notice);
  connect(Check1_, &QCheckBox::clicked, this, [this](bool on) {
    form_.ChangeCheck1(on);
    Refresh();
  });
  connect(Check2_, &QCheckBox::clicked, this, [this](bool on) {
    form_.ChangeCheck2(on);
    Refresh();
  });
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& text) {
    form_.ChangeDirectives(text.toStdString());
    ShowCut();
  });
  return part;
}

void frmToPlot::BuildButtons() {
  const auto make = [this](const char* name, char letter) {
    return MakeButton(this, name, WithKey(Entry(name).caption, letter), Tip(name));
  };
  Command1_ = make("Command1", 'e');
  Command3_ = make("Command3", 'D');
  Command10_ = make("Command10", 'G');
  Command2_ = make("Command2", 'C');
  Command10_->setDefault(true);
  Command1_->installEventFilter(this);
  connect(Command1_, &QPushButton::clicked, this, [this] { Clear(false); });
  connect(Command3_, &QPushButton::clicked, this, [this] {
    form_.DefaultOptions();
    Refresh();
  });
  connect(Command10_, &QPushButton::clicked, this, [this] { GoPlot(); });
  connect(Command2_, &QPushButton::clicked, this, &frmToPlot::reject);
}

// Alt and a figure chooses a memorised plot; Tab walks as the eye does.
void frmToPlot::BuildKeys() {
  for (int button = 0; button < kMemorisedPlots; ++button) {
    auto* key = new QShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + button)), this);
    connect(key, &QShortcut::activated, this, [this, button] { ChooseButton(button); });
  }
  QWidget* before = filter_;
  const auto next = [&](QWidget* control) {
    setTabOrder(before, control);
    before = control;
  };
  next(list_);
  next(Combo2_);
  for (QRadioButton* option : Option1_) next(option);
  for (QWidget* control :
       std::initializer_list<QWidget*>{Check1_, Check2_, Text1_, Command1_, Command3_, Command10_, Command2_}) {
    next(control);
  }
}

void frmToPlot::showEvent(QShowEvent* event) {
  filter_->clear();
  Refresh();
  filter_->setFocus();
  QDialog::showEvent(event);
  if (list_->currentIndex().isValid()) list_->scrollTo(list_->currentIndex(), QAbstractItemView::PositionAtCenter);
}

// --- the form into the controls --------------------------------------------------------------------------------------

void frmToPlot::Refresh() {
  setWindowTitle(QString::fromStdString(form_.Title()));
  FillItems();
  ShowChosenItem();
  ShowOptions();
  Check1_->setChecked(form_.Check1());
  Check2_->setChecked(form_.Check2());
  const QString directives = QString::fromStdString(form_.Directives());
  if (Text1_->text() != directives) Text1_->setText(directives);
  ShowCut();
  Command10_->setEnabled(form_.ListIndex() >= 0 || form_.ButtonOn() >= 0);
}

void frmToPlot::FillItems() {
  const std::vector<PlotItem>& wanted = form_.Items();
  bool same = static_cast<std::size_t>(items_.rowCount()) == wanted.size();
  for (int k = 0; same && k < items_.rowCount(); ++k) {
    same = items_.item(k)->text().toStdString() == wanted[static_cast<std::size_t>(k)].text;
  }
  if (same) return;
  const QSignalBlocker quiet(Combo2_);
  items_.clear();
  for (const PlotItem& plot : wanted) {
    auto* item = new QStandardItem(QString::fromStdString(plot.text));
    item->setData(plot.number, kNumberRole);
    item->setData(items_.rowCount(), kPlaceRole);
    item->setToolTip(item->text());
    items_.appendRow(item);
  }
}

// Bold in the list, and the text of the combo.
void frmToPlot::ShowChosenItem() {
  const QSignalBlocker quiet(Combo2_);
  Combo2_->setCurrentIndex(form_.ListIndex());
  for (int k = 0; k < items_.rowCount(); ++k) {
    QFont font = list_->font();
    font.setBold(k == form_.ListIndex());
    if (items_.item(k)->font() != font) items_.item(k)->setFont(font);
  }
  if (form_.ListIndex() < 0) {
    list_->setCurrentIndex({});
    return;
  }
  const QModelIndex row = matches_.mapFromSource(items_.index(form_.ListIndex(), 0));
  if (!row.isValid()) return;
  list_->setCurrentIndex(row);
  // A row that is clicked stays under the pointer.
  list_->scrollTo(row);
}

void frmToPlot::ShowOptions() {
  for (QRadioButton* option : Option1_) option->setAutoExclusive(false);
  for (int button = 0; button < kMemorisedPlots; ++button) {
    QRadioButton& option = *Option1_[static_cast<std::size_t>(button)];
    const QString caption = QString::fromStdString(form_.Captions()[static_cast<std::size_t>(button)]);
    option.setText(QString(caption).replace('&', "&&"));
    option.setEnabled(PlotNumberOf(caption.toStdString()) > 0);
    option.setChecked(button == form_.ButtonOn());
    const QString place = QString::number(button + 1);
    option.setAccessibleName(caption.isEmpty() ? "Memorised plot " + place + ", empty" : caption);
    option.setToolTip(caption.isEmpty() ? "Empty: takes the next new plot that is chosen"
                                        : "<qt>" + caption.toHtmlEscaped() + " (Alt+" + place + ")</qt>");
  }
  for (QRadioButton* option : Option1_) option->setAutoExclusive(true);
}

void frmToPlot::ShowCut() {
  const bool cut = form_.PlotOptionText().size() < form_.Directives().size();
  cut_->setVisible(cut);
  if (cut) cut_->setText("Only the first 64 characters count");
}

// --- what the user does ----------------------------------------------------------------------------------------------

int frmToPlot::ItemAt(const QModelIndex& row) const {
  return row.isValid() ? row.data(kPlaceRole).toInt() : -1;
}

// The row of the number that was typed, else the first.
int frmToPlot::FirstMatch() const {
  const int number = filter_->text().trimmed().toInt();
  for (int row = 0; row < matches_.rowCount(); ++row) {
    if (number > 0 && matches_.index(row, 0).data(kNumberRole).toInt() == number) return row;
  }
  return 0;
}

void frmToPlot::ChooseItem(int item) {
  form_.ChooseItem(item);
  Refresh();
}

void frmToPlot::ChooseButton(int button) {
  form_.ChooseButton(button);
  if (!filter_->text().isEmpty()) filter_->clear();
  Refresh();
}

void frmToPlot::Clear(bool rightButton) {
  form_.ClearOptions(rightButton);
  Refresh();
}

void frmToPlot::GoPlot() {
  if (form_.GoPlot(main_)) {
    QDialog::accept();
  } else {
    reject();
  }
}

void frmToPlot::reject() {
  form_.Cancel();
  QDialog::reject();
}

// Enter takes what the search has found; without a search it plots.
bool frmToPlot::FilterKey(int key) {
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (enter && !filter_->text().isEmpty()) {
    const int item = ItemAt(list_->currentIndex());
    if (matches_.rowCount() == 0 || item < 0) return true;
    ChooseItem(item);
    filter_->clear();
    return true;
  }
  if (key == Qt::Key_Down && matches_.rowCount() > 0) {
    list_->setFocus();
    if (!list_->currentIndex().isValid()) list_->setCurrentIndex(matches_.index(0, 0));
    return true;
  }
  return false;
}

bool frmToPlot::ListKey(int key) {
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (!enter && key != Qt::Key_Space) return false;
  ChooseItem(ItemAt(list_->currentIndex()));
  if (enter) GoPlot();
  return true;
}

bool frmToPlot::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched == filter_ && FilterKey(key)) return true;
    if (watched == list_ && ListKey(key)) return true;
  }
  // A wheel over the closed combo would choose, and memorise, each plot it passes.
  if (watched == Combo2_ && type == QEvent::Wheel) return true;
  if (watched == Command1_) {
    const auto* mouse = type == QEvent::MouseButtonRelease ? static_cast<QMouseEvent*>(event) : nullptr;
    if (mouse != nullptr && mouse->button() == Qt::RightButton && Command1_->rect().contains(mouse->pos())) {
      Clear(true);
      return true;
    }
    if (type == QEvent::ContextMenu) {
      if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) Clear(true);
      return true;
    }
  }
  if (type == QEvent::MouseButtonDblClick && qobject_cast<QRadioButton*>(watched) != nullptr && form_.ButtonOn() >= 0) {
    GoPlot();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

PlotChoice WindowSelection::Select(const std::string& caption, const RunContext& run) {
  form_.Open(caption, run, std::nullopt);
  frmToPlot window(form_, main_, parent_);
  shown = true;
  window.exec();
  return form_.Choice();
}

}  // namespace orv
