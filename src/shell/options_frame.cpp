#include "shell/options_frame.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "shell/control_parts.h"
#include "shell/form_parts.h"
#include "window/help_texts.h"

namespace orv {
namespace {

constexpr int kBoxColumns = 2;
constexpr int kPatchWidth = 34;
constexpr int kPatchHeight = 14;

const ControlEntry& Entry(std::string_view name, int index = kSingle) {
  return EntryOf(kOptionControls, name, index);
}

// Letters that the menus of the main window leave free.
std::string Marked(const ControlEntry& entry) {
  if (entry.name == "Command1") return WithKey(entry.caption, 'S');
  if (entry.name == "Command2") return WithKey(entry.caption, 'C');
  if (entry.name == "Command3") return WithKey(entry.caption, 'r');
  if (entry.name == "Command4") return WithKey(entry.caption, 'l');
  if (entry.name == "Command5") return WithKey(entry.caption, 'p');
  if (entry.name == "Check2") return WithKey(entry.caption, 'x');
  if (entry.name == "Check7") return WithKey(entry.caption, 'w');
  return std::string(entry.caption);
}

// A patch of the colour with a border that shows on any ground.
QIcon PatchOf(const QColor& colour, const QWidget& widget) {
  const qreal ratio = widget.devicePixelRatioF();
  QPixmap patch(QSize(kPatchWidth, kPatchHeight) * ratio);
  patch.setDevicePixelRatio(ratio);
  QPainter painter(&patch);
  painter.fillRect(QRect(0, 0, kPatchWidth, kPatchHeight), colour);
  painter.setPen(widget.palette().color(QPalette::Mid));
  painter.drawRect(QRectF(0.5, 0.5, kPatchWidth - 1, kPatchHeight - 1));
  return QIcon(patch);
}

}  // namespace

// Shows all its contents where there is room, and scrolls them where there is not.
class OptionsFrame::Area : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

  void SetWidest(int width) { widest_ = width; }
  QSize sizeHint() const override { return Wanted(); }
  QSize minimumSizeHint() const override { return {Wanted().width(), 12 * fontMetrics().height()}; }

 private:
  QSize Wanted() const {
    const QSize contents = widget() == nullptr ? QSize() : widget()->sizeHint();
    const int width = contents.width() + verticalScrollBar()->sizeHint().width();
    return {std::min(width, widest_), contents.height()};
  }

  int widest_ = QWIDGETSIZE_MAX;
};

namespace {

QGridLayout* GridIn(QWidget* part) {
  auto* grid = new QGridLayout(part);
  grid->setVerticalSpacing(4);
  return grid;
}

}  // namespace

OptionsFrame::OptionsFrame(OptionsForm& form, QWidget* parent) : QFrame(parent), form_(form) {
  SetUp(*this, "Options", {}, "Options");
  setFrameShape(QFrame::StyledPanel);
  MakeControls();
  auto* main = new QVBoxLayout;
  auto* caption = MakeLabel(this, "OptionsCaption", "Options");
  QFont bold = caption->font();
  bold.setBold(true);
  caption->setFont(bold);
  main->addWidget(caption);
  main->addWidget(BuildBoxes());
  main->addWidget(BuildFactors());
  main->addWidget(BuildSatellite());
  main->addWidget(BuildNames());
  main->addStretch(1);
  BuildButtons(*main);
  colours_ = BuildColours();
  help_ = BuildHelp();
  extension_ = new QVBoxLayout;
  extension_->addWidget(colours_);
  extension_->addWidget(help_);
  extension_->addStretch(1);
  auto* contents = new QWidget;
  auto* columns = new QHBoxLayout(contents);
  columns->addLayout(main);
  columns->addLayout(extension_);
  area_ = new Area(this);
  area_->setObjectName("OptionsArea");
  area_->setFrameShape(QFrame::NoFrame);
  area_->setFocusPolicy(Qt::NoFocus);
  area_->setWidgetResizable(true);
  area_->setWidget(contents);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(area_);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  OrderTabs();
  Refresh();
}

// --- the controls ----------------------------------------------------------------------------------------------------

QWidget* OptionsFrame::Of(std::string_view name, int index) const {
  const ControlEntry& entry = Entry(name, index);
  return controls_[static_cast<std::size_t>(&entry - kOptionControls.data())];
}

void OptionsFrame::MakeControls() {
  for (std::size_t k = 0; k < kOptionControls.size(); ++k) controls_[k] = MakeControl(kOptionControls[k]);
}

QWidget* OptionsFrame::MakeControl(const ControlEntry& entry) {
  const QString name = QString::fromStdString(ObjectName(entry));
  const std::string tip(entry.tip);
  switch (entry.kind) {
    case ControlKind::Check: {
      QCheckBox* box = MakeCheck(this, name, Marked(entry), tip);
      connect(box, &QCheckBox::clicked, this, [this, &entry](bool on) { Change(entry, on ? "1" : "0"); });
      return box;
    }
    case ControlKind::Scroll: {
      QScrollBar* bar =
          MakeScroll(this, name, static_cast<int>(entry.minimum), static_cast<int>(entry.maximum), 0, tip);
      bar->setInvertedControls(false);
      connect(bar, &QScrollBar::valueChanged, this, [this, bar, &entry](int value) {
        Type(entry, std::to_string(value));
        if (!bar->isSliderDown()) form_.StoreTyped();
      });
      connect(bar, &QScrollBar::sliderReleased, this, [this] { form_.StoreTyped(); });
      return bar;
    }
    case ControlKind::Button: {
      QPushButton* button = MakeButton(this, name, Marked(entry), tip);
      connect(button, &QPushButton::clicked, this, [this, &entry] { Press(entry.name); });
      return button;
    }
    default: {
      QLineEdit* edit = MakeEdit(this, name, {}, tip);
      connect(edit, &QLineEdit::textEdited, this,
              [this, &entry](const QString& text) { Type(entry, text.toStdString()); });
      connect(edit, &QLineEdit::editingFinished, this, [this] { form_.StoreTyped(); });
      return edit;
    }
  }
}

QWidget* OptionsFrame::BuildBoxes() {
  auto* part = new QGroupBox("Plot", this);
  QGridLayout* grid = GridIn(part);
  int place = 0;
  const auto add = [&](QWidget* box) {
    grid->addWidget(box, place / kBoxColumns, place % kBoxColumns);
    ++place;
  };
  for (int box = 0; box < kOptionBoxes; ++box) add(Of("Check1", box));
  add(Of("Check5"));
  for (int axis = 0; axis < kOptionAxes; ++axis) add(Of("Check8", axis));
  return part;
}

QWidget* OptionsFrame::BuildFactors() {
  auto* part = new QGroupBox("Factors", this);
  QGridLayout* grid = GridIn(part);
  for (int factor = 0; factor < kOptionFactors; ++factor) {
    const std::string caption(Entry("Text4", factor).caption);
    QWidget* field = Of("Text4", factor);
    field->setMaximumWidth(field->fontMetrics().averageCharWidth() * 8);
    const int column = 2 * (factor % kBoxColumns);
    grid->addWidget(MakeLabel(part, ArrayName("Label1", factor), caption, field), factor / kBoxColumns, column);
    grid->addWidget(field, factor / kBoxColumns, column + 1);
  }
  grid->setHorizontalSpacing(8);
  return part;
}

QWidget* OptionsFrame::BuildSatellite() {
  auto* part = new QGroupBox("Satellite", this);
  QGridLayout* grid = GridIn(part);
  satelliteLabel_ = MakeLabel(part, "Label4", std::string(Entry("HScroll3").caption), Of("HScroll3"));
  // The bar must not move while the number grows.
  satelliteLabel_->setMinimumWidth(satelliteLabel_->fontMetrics().horizontalAdvance("Satellite size  32001 "));
  grid->addWidget(satelliteLabel_, 0, 0);
  grid->addWidget(Of("HScroll3"), 0, 1, 1, 2);
  grid->addWidget(Of("Check3"), 1, 0);
  grid->addWidget(Of("Check4"), 1, 1);
  grid->addWidget(Of("Check6"), 1, 2);
  return part;
}

QWidget* OptionsFrame::BuildNames() {
  auto* part = new QGroupBox("Names", this);
  QGridLayout* grid = GridIn(part);
  int row = 0;
  const auto add = [&](const char* name, const char* label, const std::string& caption) {
    QWidget* field = Of(name);
    grid->addWidget(MakeLabel(part, label, caption, field), row, 0);
    grid->addWidget(field, row, 1);
    ++row;
  };
  add("Text6", "Label5", std::string(Entry("Text6").caption));
  add("Text7", "Label6", std::string(Entry("Text7").tip));
  add("Text8", "Label7", std::string(Entry("Text8").tip));
  add("Text9", "Label8", std::string(Entry("Text9").caption));
  browse_ = MakeButton(part, "Browse", "...", "Choose the directory for the images saved");
  browse_->setMaximumWidth(browse_->fontMetrics().horizontalAdvance("......") + 8);
  grid->addWidget(browse_, 0, 2);
  connect(browse_, &QPushButton::clicked, this, &OptionsFrame::ChooseFolder);
  return part;
}

// A line for each colour: its name, the patch, the three numbers.
QWidget* OptionsFrame::BuildColours() {
  auto* part = new QGroupBox("Colours", this);
  QGridLayout* grid = GridIn(part);
  for (int triple = 0; triple < kOptionTriples; ++triple) {
    const std::string caption(Entry("Text5", 3 * triple).caption);
    QPushButton* patch = MakeButton(part, ArrayName("Patch", triple), "", "Choose the " + caption);
    patch->setIconSize({kPatchWidth, kPatchHeight});
    connect(patch, &QPushButton::clicked, this, [this, triple] { ChooseColour(triple); });
    patches_[static_cast<std::size_t>(triple)] = patch;
    grid->addWidget(MakeLabel(part, ArrayName("Label2", triple), caption), triple, 0);
    grid->addWidget(patch, triple, 1);
    for (int component = 0; component < 3; ++component) {
      QWidget* field = Of("Text5", 3 * triple + component);
      field->setAccessibleName(
          QString::fromStdString(caption + ", " + std::string(Entry("Text5", 3 * triple + component).tip)));
      field->setMaximumWidth(field->fontMetrics().averageCharWidth() * 7);
      grid->addWidget(field, triple, 2 + component);
    }
  }
  grid->addWidget(Of("Check7"), kOptionTriples, 0);
  return part;
}

QWidget* OptionsFrame::BuildHelp() {
  auto* part = new QGroupBox("Excel link", this);
  auto* text = MakeLabel(part, "Label9", LinkHelp());
  text->setWordWrap(true);
  text->setMinimumWidth(text->fontMetrics().averageCharWidth() * 44);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* layout = new QVBoxLayout(part);
  layout->addWidget(text);
  layout->addWidget(Of("Command5"), 0, Qt::AlignRight);
  return part;
}

void OptionsFrame::BuildButtons(QVBoxLayout& column) {
  auto* line = new QHBoxLayout;
  line->addWidget(Of("Check2"));
  line->addStretch(1);
  line->addWidget(Of("Command4"));
  column.addLayout(line);
  auto* buttons = new QHBoxLayout;
  for (const char* name : {"Command3", "Command1", "Command2"}) buttons->addWidget(Of(name), 1);
  column.addLayout(buttons);
}

// As the eye walks: the main column, then the colours, then the help.
void OptionsFrame::OrderTabs() {
  QWidget* before = Of("Check1", 0);
  const auto next = [&](QWidget* control) {
    setTabOrder(before, control);
    before = control;
  };
  for (int box = 1; box < kOptionBoxes; ++box) next(Of("Check1", box));
  next(Of("Check5"));
  for (int axis = 0; axis < kOptionAxes; ++axis) next(Of("Check8", axis));
  for (int factor = 0; factor < kOptionFactors; ++factor) next(Of("Text4", factor));
  for (const char* name : {"HScroll3", "Check3", "Check4", "Check6", "Text6"}) next(Of(name));
  next(browse_);
  for (const char* name : {"Text7", "Text8", "Text9", "Check2", "Command4", "Command3", "Command1", "Command2"}) {
    next(Of(name));
  }
  for (int triple = 0; triple < kOptionTriples; ++triple) {
    next(patches_[static_cast<std::size_t>(triple)]);
    for (int component = 0; component < 3; ++component) next(Of("Text5", 3 * triple + component));
  }
  next(Of("Check7"));
  next(Of("Command5"));
}

// --- the form into the controls --------------------------------------------------------------------------------------

void OptionsFrame::Refresh() {
  for (std::size_t k = 0; k < kOptionControls.size(); ++k) ShowControl(kOptionControls[k], controls_[k]);
  auto* check3 = static_cast<QCheckBox*>(Of("Check3"));
  check3->setText(QString::fromStdString(form_.Check3Caption()));
  check3->setAccessibleName(check3->text());
  satelliteLabel_->setText(QString::fromStdString(form_.SatelliteLabel()));
  colours_->setVisible(form_.Extended());
  help_->setVisible(form_.HelpShown());
  ShowPatches();
  TakeRoom();
}

// The width that the open parts want. A frame that was never shown does not learn it by itself, and layouts within
// layouts forget what they wanted before only when they are activated.
void OptionsFrame::TakeRoom() {
  QLayout& contents = *area_->widget()->layout();
  contents.invalidate();
  contents.activate();
  area_->updateGeometry();
  layout()->invalidate();
  updateGeometry();
}

void OptionsFrame::SetWidest(int width) {
  area_->SetWidest(std::max(width - 2 * frameWidth(), 0));
  TakeRoom();
}

int OptionsFrame::ExtensionWidth() const {
  if (colours_->isHidden() && help_->isHidden()) return 0;
  return extension_->sizeHint().width() + area_->widget()->layout()->spacing();
}

void OptionsFrame::ShowControl(const ControlEntry& entry, QWidget* control) {
  if (entry.kind == ControlKind::Button) return;
  const QSignalBlocker quiet(control);
  const QString value = QString::fromStdString(form_.Value(entry.name, entry.index));
  if (entry.kind == ControlKind::Check) {
    static_cast<QCheckBox*>(control)->setChecked(value == "1");
  } else if (entry.kind == ControlKind::Scroll) {
    static_cast<QScrollBar*>(control)->setValue(value.toInt());
  } else {
    auto* edit = static_cast<QLineEdit*>(control);
    if (edit->text() == value) return;
    // Capitals for what is just typed: the cursor stays in its place.
    const bool typed = edit->hasFocus() || edit->text().size() == value.size();
    const int cursor = edit->cursorPosition();
    edit->setText(value);
    edit->setCursorPosition(typed ? cursor : 0);
  }
}

QColor OptionsFrame::ColourOf(int triple) const {
  std::array<int, 3> parts{};
  for (int k = 0; k < 3; ++k) {
    const double value = QString::fromStdString(form_.Value("Text5", 3 * triple + k)).toDouble();
    parts[static_cast<std::size_t>(k)] = static_cast<int>(std::clamp(value, 0.0, kLargestColour));
  }
  return {parts[0], parts[1], parts[2]};
}

void OptionsFrame::ShowPatches() {
  for (int triple = 0; triple < kOptionTriples; ++triple) {
    QPushButton* patch = patches_[static_cast<std::size_t>(triple)];
    const QColor colour = ColourOf(triple);
    if (patch->property("colour").value<QColor>() == colour) continue;
    patch->setProperty("colour", colour);
    patch->setIcon(PatchOf(colour, *patch));
  }
}

// --- what the user does ----------------------------------------------------------------------------------------------

void OptionsFrame::Change(const ControlEntry& entry, const std::string& text) {
  form_.Change(entry.name, entry.index, text);
  Refresh();
  Q_EMIT Changed();
}

void OptionsFrame::Type(const ControlEntry& entry, const std::string& text) {
  form_.Type(entry.name, entry.index, text);
  Refresh();
  Q_EMIT Changed();
}

void OptionsFrame::Press(std::string_view name) {
  if (name == "Command1") form_.Command1();
  if (name == "Command2") form_.Command2();
  if (name == "Command3") form_.Command3();
  if (name == "Command4") form_.Command4();
  if (name == "Command5") form_.Command5();
  Refresh();
  if (name == "Command2") setVisible(form_.Visible());
  Q_EMIT Changed();
}

void OptionsFrame::ChooseColour(int triple) {
  auto* dialog = new QColorDialog(ColourOf(triple), this);
  dialog->setObjectName("ColourDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(QString::fromStdString(std::string(Entry("Text5", 3 * triple).caption)));
  connect(dialog, &QColorDialog::colorSelected, this, [this, triple](const QColor& colour) {
    const std::array<int, 3> parts = {colour.red(), colour.green(), colour.blue()};
    for (int k = 0; k < 3; ++k) {
      form_.Change("Text5", 3 * triple + k, std::to_string(parts[static_cast<std::size_t>(k)]));
    }
    Refresh();
    Q_EMIT Changed();
  });
  dialog->open();
}

void OptionsFrame::ChooseFolder() {
  auto* dialog = new QFileDialog(this, QString::fromStdString(std::string(Entry("Text6").caption)),
                                 QString::fromStdString(form_.ImageDirectory()));
  dialog->setObjectName("FolderDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this,
          [this](const QString& folder) { Change(Entry("Text6"), folder.toStdString()); });
  dialog->open();
}

}  // namespace orv
