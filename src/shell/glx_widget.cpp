#include "shell/glx_widget.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QRubberBand>
#include <QSurfaceFormat>
#include <QVBoxLayout>
#include <cmath>
#include <cstring>

#include "numerics/failure.h"
#include "shell/tool_icons.h"

namespace orv {
namespace {

constexpr int kSamples = 4;
constexpr int kDepthBits = 24;
constexpr double kNotch = 120;          // of a wheel's angle
constexpr double kPixelsOfNotch = 40;   // of a touch pad that tells pixels alone
constexpr int kLongestPrintable = 126;  // ASCII

QSurfaceFormat ViewFormat() {
  QSurfaceFormat format = QSurfaceFormat::defaultFormat();
  format.setRenderableType(QSurfaceFormat::OpenGL);
  format.setProfile(QSurfaceFormat::CompatibilityProfile);
  format.setVersion(2, 1);
  format.setOption(QSurfaceFormat::DeprecatedFunctions);
  format.setDepthBufferSize(kDepthBits);
  format.setSamples(kSamples);
  return format;
}

class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flag() { flag_ = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& flag_;
};

}  // namespace

int ShiftOf(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? kShiftBit : 0) +
         (modifiers.testFlag(Qt::ControlModifier) ? kControlBit : 0) +
         (modifiers.testFlag(Qt::AltModifier) ? kAltBit : 0);
}

int ButtonsOf(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? kLeftButton : 0) + (buttons.testFlag(Qt::RightButton) ? kRightButton : 0) +
         (buttons.testFlag(Qt::MiddleButton) ? kMiddleButton : 0);
}

int CharacterOf(const QKeyEvent& event) {
  if ((event.modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier)) != 0) return 0;
  const QString text = event.text();
  return text.size() == 1 ? text.front().unicode() : 0;
}

int KeyCodeOf(const QKeyEvent& event) {
  const int key = event.key();
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) || key == Qt::Key_Space) {
    return key;
  }
  switch (key) {
    case Qt::Key_Backspace:
      return 8;
    case Qt::Key_Tab:
      return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return 13;
    case Qt::Key_Shift:
      return 16;
    case Qt::Key_Control:
      return 17;
    case Qt::Key_Alt:
      return 18;
    case Qt::Key_Escape:
      return 27;
    case Qt::Key_PageUp:
      return 33;
    case Qt::Key_PageDown:
      return 34;
    case Qt::Key_End:
      return 35;
    case Qt::Key_Home:
      return 36;
    case Qt::Key_Left:
      return 37;
    case Qt::Key_Up:
      return 38;
    case Qt::Key_Right:
      return 39;
    case Qt::Key_Down:
      return 40;
    case Qt::Key_Insert:
      return 45;
    case Qt::Key_Delete:
      return 46;
    default:
      return 0;
  }
}

void PrepareOpenGl() {
  // Lists and buffers outlive the move of the view into another window.
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
  QSurfaceFormat::setDefaultFormat(ViewFormat());
}

std::string MissingOpenGl() {
  QOpenGLContext context;
  context.setFormat(ViewFormat());
  if (!context.create()) return "no OpenGL context could be made";
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  if (!surface.isValid() || !context.makeCurrent(&surface)) return "the OpenGL context could not be made current";
  std::string missing = MissingInContext();
  context.doneCurrent();
  return missing;
}

QString ViewNotice(const std::string& missing) {
  return QStringLiteral(
             "The 3-D view cannot be shown: %1.\n\nReading workbooks, computing and writing results work without "
             "it; pictures can be drawn with \"orvvalis run ... --image FILE\".")
      .arg(QString::fromStdString(missing));
}

// The control of the scene on the widget's OpenGL.
class glxWidget::WidgetControl final : public SceneControl {
 public:
  using SceneControl::Cursor;

  explicit WidgetControl(glxWidget& widget) : SceneControl(widget.gl_, 1, 1, 1), widget_(widget) {}

  // Also between paints, for whoever reads pixels or compiles lists.
  GlApi& Gl() override {
    MakeCurrent();
    return SceneControl::Gl();
  }
  void Redraw() override {
    SceneControl::Redraw();
    widget_.AskPaint();
  }
  void Cursor(int number) override {
    SceneControl::Cursor(number);
    widget_.setCursor(ViewCursor(number, DeviceRatio()));
  }

 protected:
  bool MakeCurrent() override {
    if (!widget_.ready_) return false;
    // While drawing the frame buffer is bound, unless a question has let other windows draw.
    if (!widget_.drawing_ || QOpenGLContext::currentContext() != widget_.context()) widget_.makeCurrent();
    return true;
  }

 private:
  glxWidget& widget_;
};

glxWidget::glxWidget(QWidget* parent) : QOpenGLWidget(parent), control_(std::make_unique<WidgetControl>(*this)) {
  setObjectName("glxCtl1");
  setAccessibleName("3-D view");
  setFormat(ViewFormat());
  setUpdateBehavior(QOpenGLWidget::PartialUpdate);
  setFocusPolicy(Qt::StrongFocus);
  pace_.setSingleShot(true);
  connect(&pace_, &QTimer::timeout, this, &glxWidget::DrawNow);
}

glxWidget::~glxWidget() {
  // What the control keeps in OpenGL ends with its context.
  ready_ = false;
}

SceneControl& glxWidget::Control() {
  return *control_;
}

void glxWidget::SetEvents(GlEvents* events) {
  events_ = events;
  attached_ = false;
  drawn_ = false;
  control_->Redraw();
}

void glxWidget::Hold(bool held) {
  if (held && !held_ && drawn_) heldPicture_ = grabFramebuffer();
  if (!held) heldPicture_ = QImage();
  held_ = held;
  if (!held && control_->RedrawAsked()) AskPaint();
}

// A question of the scene may have been answered with Abort.
void glxWidget::Guarded(const std::function<void()>& action) {
  try {
    action();
  } catch (const ProgramEnd&) {
    if (listener_ != nullptr) listener_->ProgramEnded();
  }
}

// Drawing.

void glxWidget::AskPaint() {
  if (!pace_.isActive()) pace_.start();
}

void glxWidget::TakeSize() {
  const qreal ratio = devicePixelRatioF();
  const QSize pixels = size() * ratio;  // as the frame buffer rounds it
  control_->Resize(pixels.width(), pixels.height(), ratio);
}

void glxWidget::Attach() {
  attached_ = true;
  drawn_ = false;
  TakeSize();
  control_->Attach(*events_);
}

void glxWidget::DrawNow() {
  if (!ready_ || events_ == nullptr || held_ || drawing_ || !isValid()) return;
  makeCurrent();
  {
    const Flag drawing(drawing_);
    Guarded([&] {
      if (!attached_) Attach();
      TakeSize();
      control_->Paint(*events_);
    });
  }
  drawn_ = true;
  doneCurrent();
  if (control_->RedrawAsked()) AskPaint();
  update();
  Q_EMIT Drawn();
}

// What shows until the scene is drawn: the picture from before, or nothing.
void glxWidget::ShowStandIn() {
  std::array<float, 4> colour{};
  glGetFloatv(GL_COLOR_CLEAR_VALUE, colour.data());
  const QColor ground = palette().color(QPalette::Window);
  gl_.ClearColor({ground.redF(), ground.greenF(), ground.blueF(), 1});
  gl_.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  gl_.ClearColor({colour[0], colour[1], colour[2], colour[3]});
  if (!held_ || heldPicture_.isNull()) return;
  const QSize pixels = size() * devicePixelRatioF();
  const QImage picture = heldPicture_.scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
  gl_.Viewport(0, 0, pixels.width(), pixels.height());
  gl_.DrawPicture((pixels.width() - picture.width()) / 2.0, (pixels.height() - picture.height()) / 2.0, 0,
                  picture.width(), picture.height(),
                  {picture.constBits(), static_cast<std::size_t>(picture.sizeInBytes())});
}

void glxWidget::initializeGL() {
  missing_ = MissingInContext();
  ready_ = missing_.empty();
  attached_ = false;
  drawn_ = false;
  if (!ready_) {
    ShowNotice();
    return;
  }
  control_->Redraw();
}

void glxWidget::resizeGL(int, int) {
  drawn_ = false;  // the frame buffer is a new one
  if (listener_ != nullptr) listener_->Resized();
  if (!ready_) return;
  TakeSize();
  control_->Redraw();
  // Without this the view would flicker while the window is drawn larger.
  if (attached_) {
    DrawNow();
    makeCurrent();
  }
}

void glxWidget::paintGL() {
  if (!drawn_ && !drawing_ && ready_) ShowStandIn();
}

// Draws what waits to be drawn and makes the view's OpenGL current; false when there is none. The first paint of a plot
// sets its camera and asks for another one.
bool glxWidget::BringUpToDate() {
  if (!isValid()) grabFramebuffer();  // makes the OpenGL of a view that was never shown
  if (!ready_ || !isValid()) return false;
  for (int paint = 0; paint < 2 && (!drawn_ || control_->RedrawAsked()); ++paint) DrawNow();
  makeCurrent();
  return true;
}

bool glxWidget::SavePicture(const std::string& Name, const std::string& DIReCT,
                            const std::optional<CaptureRegion>& dragged) {
  if (!BringUpToDate()) return false;
  const bool saved = SaveBMP(*control_, Name, DIReCT, dragged);
  doneCurrent();
  return saved;
}

Image glxWidget::Picture() {
  if (!BringUpToDate()) return {};
  Image image{control_->Width(), control_->Height(), {}};
  const std::size_t rowBytes = BitmapRowBytes(image.width);
  const std::size_t imageRow = static_cast<std::size_t>(image.width) * 3;
  const auto height = static_cast<std::size_t>(image.height);
  std::vector<std::uint8_t> rows(rowBytes * height);
  gl_.ReadPixels(0, 0, image.width, image.height, rows);
  doneCurrent();
  image.rgb.resize(imageRow * height);
  for (std::size_t y = 0; y < height; ++y) {
    std::memcpy(image.rgb.data() + y * imageRow, rows.data() + (height - 1 - y) * rowBytes, imageRow);
  }
  return image;
}

void glxWidget::ShowRectangle(const std::optional<CaptureRegion>& rectangle) {
  if (!rectangle) {
    if (band_ != nullptr) band_->hide();
    return;
  }
  if (band_ == nullptr) {
    band_ = new QRubberBand(QRubberBand::Rectangle, this);
    band_->setObjectName("DragRectangle");
  }
  const double ratio = devicePixelRatioF();
  const int top = control_->Height() - rectangle->y - rectangle->height;
  band_->setGeometry(
      QRectF(rectangle->x / ratio, top / ratio, rectangle->width / ratio, rectangle->height / ratio).toRect());
  band_->show();
}

void glxWidget::ShowNotice() {
  if (notice_ == nullptr) {
    notice_ = new QLabel(this);
    notice_->setObjectName("glxCtl1Notice");
    notice_->setWordWrap(true);
    notice_->setAlignment(Qt::AlignCenter);
    notice_->setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(notice_);
  }
  notice_->setText(ViewNotice(missing_));
}

// Events.

bool glxWidget::event(QEvent* event) {
  if (event->type() == QEvent::ScreenChangeInternal && ready_) control_->Redraw();
  return QOpenGLWidget::event(event);
}

glxWidget::Place glxWidget::PlaceOf(const QPointF& position) const {
  const double ratio = devicePixelRatioF();
  return {position.x() * ratio, position.y() * ratio};
}

void glxWidget::mousePressEvent(QMouseEvent* event) {
  const Place at = PlaceOf(event->position());
  if (listener_ == nullptr) return;
  Guarded([&] { listener_->MouseDown(ButtonsOf(event->button()), ShiftOf(event->modifiers()), at.x, at.y); });
}

void glxWidget::mouseMoveEvent(QMouseEvent* event) {
  const Place at = PlaceOf(event->position());
  if (listener_ == nullptr) return;
  Guarded([&] { listener_->MouseMove(ButtonsOf(event->buttons()), ShiftOf(event->modifiers()), at.x, at.y); });
}

void glxWidget::mouseReleaseEvent(QMouseEvent* event) {
  const Place at = PlaceOf(event->position());
  if (listener_ == nullptr) return;
  Guarded([&] { listener_->MouseUp(ButtonsOf(event->button()), ShiftOf(event->modifiers()), at.x, at.y); });
}

void glxWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  const Place at = PlaceOf(event->position());
  if (listener_ == nullptr) return;
  Guarded([&] { listener_->DblClick(ButtonsOf(event->button()), ShiftOf(event->modifiers()), at.x, at.y); });
}

void glxWidget::wheelEvent(QWheelEvent* event) {
  const Place at = PlaceOf(event->position());
  const double notches =
      event->angleDelta().isNull() ? event->pixelDelta().y() / kPixelsOfNotch : event->angleDelta().y() / kNotch;
  event->accept();
  if (listener_ == nullptr || notches == 0) return;
  Guarded([&] { listener_->Wheel(notches, ShiftOf(event->modifiers()), at.x, at.y); });
}

void glxWidget::keyPressEvent(QKeyEvent* event) {
  bool taken = false;
  if (listener_ != nullptr) {
    Guarded([&] {
      int keyCode = KeyCodeOf(*event);
      if (keyCode != 0) {
        listener_->KeyDown(keyCode, ShiftOf(event->modifiers()));
        taken = keyCode == 0;
      }
      int ascii = CharacterOf(*event);
      if (taken || ascii == 0 || ascii > kLongestPrintable) return;
      listener_->KeyPress(ascii);
      taken = ascii == 0;
    });
  }
  if (!taken) QOpenGLWidget::keyPressEvent(event);
}

void glxWidget::keyReleaseEvent(QKeyEvent* event) {
  bool taken = false;
  if (listener_ != nullptr && !event->isAutoRepeat()) {
    Guarded([&] {
      int keyCode = KeyCodeOf(*event);
      if (keyCode == 0) return;
      listener_->KeyUp(keyCode, ShiftOf(event->modifiers()));
      taken = keyCode == 0;
    });
  }
  if (!taken) QOpenGLWidget::keyReleaseEvent(event);
}

// The place in a window.

GlxPlace::GlxPlace(const std::string& missing, QWidget* parent) : QWidget(parent) {
  setObjectName("glxPlace");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  if (missing.empty()) {
    view_ = std::make_unique<glxWidget>(this);
    layout->addWidget(view_.get());
    return;
  }
  view_ = std::make_unique<glxWidget>();
  auto* notice = new QLabel(ViewNotice(missing), this);
  notice->setObjectName("glxCtl1Notice");
  notice->setWordWrap(true);
  notice->setAlignment(Qt::AlignCenter);
  notice->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(notice);
}

GlxPlace::~GlxPlace() = default;

}  // namespace orv
