#pragma once

#include <QImage>
#include <QLabel>
#include <QOpenGLWidget>
#include <QTimer>
#include <functional>
#include <memory>

#include "view/capture.h"
#include "view/image_file.h"
#include "view/scene_control.h"
#include "view/system_gl.h"

class QKeyEvent;
class QRubberBand;

namespace orv {

inline constexpr int kShiftBit = 1;
inline constexpr int kControlBit = 2;
inline constexpr int kAltBit = 4;

inline constexpr int kLeftButton = 1;
inline constexpr int kRightButton = 2;
inline constexpr int kMiddleButton = 4;

int ShiftOf(Qt::KeyboardModifiers modifiers);
int ButtonsOf(Qt::MouseButtons buttons);
// The classic number of a key: letters and digits their capitals, 37 to 40 the arrows, 33 and 34 the pages, 13 Enter,
// 27 Escape; 0 for a key without one.
int KeyCodeOf(const QKeyEvent& event);
// The character that a key types; 0 for none and with Alt, Control or Meta, which call menus.
int CharacterOf(const QKeyEvent& event);

// What the user does in the view. Places are device pixels from the left and the top.
class ViewListener {
 public:
  virtual ~ViewListener() = default;
  // `Button` is the one that went down or up; of a move all that are down.
  virtual void MouseDown(int /*Button*/, int /*Shift*/, double /*x*/, double /*y*/) {}
  virtual void MouseMove(int /*Button*/, int /*Shift*/, double /*x*/, double /*y*/) {}
  virtual void MouseUp(int /*Button*/, int /*Shift*/, double /*x*/, double /*y*/) {}
  // Comes in place of the second MouseDown; a MouseUp follows.
  virtual void DblClick(int /*Button*/, int /*Shift*/, double /*x*/, double /*y*/) {}
  // Notches, upwards positive; parts of one from a touch pad.
  virtual void Wheel(double /*notches*/, int /*Shift*/, double /*x*/, double /*y*/) {}
  // A key that is taken sets its KeyCode to 0; others go on to the window.
  virtual void KeyDown(int& /*KeyCode*/, int /*Shift*/) {}
  virtual void KeyUp(int& /*KeyCode*/, int /*Shift*/) {}
  virtual void KeyPress(int& /*KeyAscii*/) {}
  // The view has another size.
  virtual void Resized() {}
  // A user has abandoned in a question that arose in a paint or an event of the view.
  virtual void ProgramEnded() {}
};

// To be called before QApplication is made: the OpenGL that the view needs is the default of every window.
void PrepareOpenGl();
// Whether windows can have that OpenGL: empty, or a sentence why not. Needs a QGuiApplication.
std::string MissingOpenGl();

// The window's glxCtl. The scene is drawn into the widget's frame buffer by an event of its own, not by the paint
// event: a question that arises while drawing may run its event loop there. A paint event shows the last picture.
class glxWidget : public QOpenGLWidget {
  Q_OBJECT

 public:
  explicit glxWidget(QWidget* parent = nullptr);
  ~glxWidget() override;

  SceneControl& Control();

  // Who draws; init, InitGL and Reshape are raised as soon as there is an OpenGL. Both outlive the widget or are taken
  // away with nullptr.
  void SetEvents(GlEvents* events);
  void SetListener(ViewListener* listener) { listener_ = listener; }

  // While held the scene is not drawn, since its lists are being filled; the last picture stays, also in a window that
  // changes its size.
  void Hold(bool held);
  bool Held() const { return held_; }

  // Draws at once what waits to be drawn.
  void DrawNow();
  // The picture that the view shows, drawn anew when a paint is awaited; empty without OpenGL.
  Image Picture();
  // Writes what Picture shows, or the dragged part of it, as a bitmap; see SaveBMP of the capture. False when there is
  // none or it cannot be written.
  bool SavePicture(const std::string& Name, const std::string& DIReCT,
                   const std::optional<CaptureRegion>& dragged = std::nullopt);
  // Marks a part of the view, or takes the mark away. It is no part of a picture.
  void ShowRectangle(const std::optional<CaptureRegion>& rectangle);

  // Why there is no view; empty while there is one.
  const std::string& Missing() const { return missing_; }

  QSize minimumSizeHint() const override { return {160, 120}; }
  QSize sizeHint() const override { return {800, 600}; }

 Q_SIGNALS:
  void Drawn();

 protected:
  void initializeGL() override;
  void resizeGL(int width, int height) override;
  void paintGL() override;
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  bool BringUpToDate();
  class WidgetControl;
  struct Place {
    double x, y;
  };

  void AskPaint();
  void Attach();
  void ShowNotice();
  void TakeSize();
  void ShowStandIn();
  Place PlaceOf(const QPointF& position) const;
  void Guarded(const std::function<void()>& action);

  SystemGl gl_;
  std::unique_ptr<WidgetControl> control_;
  GlEvents* events_ = nullptr;
  ViewListener* listener_ = nullptr;
  QLabel* notice_ = nullptr;
  QRubberBand* band_ = nullptr;
  std::string missing_;
  bool ready_ = false;     // its OpenGL is there
  bool attached_ = false;  // the events know it
  bool drawn_ = false;     // the frame buffer holds a picture
  bool drawing_ = false;
  bool held_ = false;
  QImage heldPicture_;
  QTimer pace_;  // of wishes for a paint
};

// The place of the view in a window: the view itself, or a notice why there is none. A window without OpenGL must not
// hold an OpenGL widget, or nothing of it would show.
class GlxPlace : public QWidget {
  Q_OBJECT

 public:
  explicit GlxPlace(QWidget* parent = nullptr) : GlxPlace(MissingOpenGl(), parent) {}
  GlxPlace(const std::string& missing, QWidget* parent);
  ~GlxPlace() override;

  glxWidget& View() { return *view_; }

 private:
  std::unique_ptr<glxWidget> view_;
};

// Text for the user when the view cannot be shown.
QString ViewNotice(const std::string& missing);

}  // namespace orv
