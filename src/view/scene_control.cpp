#include "view/scene_control.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr double kPixelsOfPoint = 4.0 / 3;
constexpr int kLights = 8;
constexpr int kMaterialInForce = 0;
constexpr int kGridSteps = 10;       // from the centre to the range
constexpr double kLightText = 0.45;  // brightness
constexpr char kOverlayFont[] = "DejaVu Sans";

Matrix4 TranslationMatrix(double x, double y, double z) {
  Matrix4 m = IdentityMatrix();
  m[12] = x;
  m[13] = y;
  m[14] = z;
  return m;
}

double Brightness(const Rgba& colour) {
  return 0.299 * static_cast<double>(colour.red) + 0.587 * static_cast<double>(colour.green) +
         0.114 * static_cast<double>(colour.blue);
}

// Set while it lives.
class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flag() { flag_ = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& flag_;
};

bool UsableRatio(double ratio) {
  return std::isfinite(ratio) && ratio > 0;
}

}  // namespace

SceneControl::SceneControl(GlApi& gl, int width, int height, double deviceRatio, FontFinder fonts)
    : gl_(gl),
      width_(std::max(width, 1)),
      height_(std::max(height, 1)),
      deviceRatio_(UsableRatio(deviceRatio) ? deviceRatio : 1),
      texts_(std::move(fonts)) {
  camera_.Viewport(width_, height_);
}

// Fonts and texts.

FontHandle SceneControl::FontSet(const std::string& name, bool bold, bool italic, double size) {
  const Font wish{name, bold, italic, size, texts_.Face(name, bold, italic)};
  NoteMissingFonts();
  const auto found = std::ranges::find(fonts_, wish);
  if (found != fonts_.end()) return static_cast<FontHandle>(found - fonts_.begin());
  fonts_.push_back(wish);
  return static_cast<FontHandle>(fonts_.size()) - 1;
}

const SceneControl::Font& SceneControl::FontOf(FontHandle font) const {
  static const Font kNone;
  return font >= 0 && font < static_cast<FontHandle>(fonts_.size()) ? fonts_[static_cast<std::size_t>(font)] : kNone;
}

void SceneControl::NoteMissingFonts() {
  if (fontsMissingTold_ || texts_.Message().empty()) return;
  fontsMissingTold_ = true;
  TellMessage(texts_.Message());
}

void SceneControl::TellMessage(const std::string& message) {
  if (log_) {
    log_(message);
  } else {
    untold_.push_back(message);
  }
}

void SceneControl::LogTo(std::function<void(const std::string&)> log) {
  log_ = std::move(log);
  if (!log_) return;
  for (const std::string& message : untold_) log_(message);
  untold_.clear();
}

double SceneControl::TextPixels(FontHandle font, double size) const {
  const double unitsPerPixel = 2 * sceneRange_ / std::min(width_, height_);
  return std::max(size / unitsPerPixel, FontOf(font).points * kPixelsOfPoint * deviceRatio_);
}

// A dark border around light letters; dark ones need none, a light border would blur them on a dark ground.
std::optional<TextHalo> SceneControl::HaloFor(const Rgba& colour, double pixels) const {
  if (Brightness(colour) < kLightText) return std::nullopt;
  return TextHalo{{0, 0, 0, 0.5F * colour.alpha}, std::clamp(pixels / 14, 1.0, 3.0)};
}

bool SceneControl::Project(double x, double y, double z, WindowPoint& point) const {
  const std::array<double, 4> eye = Transform(painting_ ? modelview_ : ModelviewMatrix(), {x, y, z, 1});
  const std::array<double, 4> clip = Transform(painting_ ? projection_ : camera_.ProjectionMatrix(), eye);
  if (!(clip[3] > 0) || !(std::abs(clip[2]) <= clip[3])) return false;
  point.x = (clip[0] / clip[3] + 1) / 2 * width_;
  point.y = (1 - clip[1] / clip[3]) / 2 * height_;
  point.depth = (clip[2] / clip[3] + 1) / 2;
  return std::isfinite(point.x) && std::isfinite(point.y);
}

void SceneControl::Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
                          const Rgba& colour) {
  WindowPoint point;
  if (text.empty() || !Project(x, y, z, point)) return;
  // Far outside, where no letter reaches into the view.
  if (std::abs(point.x) > 1e6 || point.x > width_ || point.y < -kLargestText || point.y > height_ + kLargestText)
    return;
  const double pixels = TextPixels(font, size);
  const TextPicture picture = texts_.Render(FontOf(font).face, text, pixels, colour, HaloFor(colour, pixels));
  gl_.DrawPicture(std::round(point.x) - picture.originX, std::round(point.y) - picture.originY, point.depth,
                  picture.width, picture.height, picture.rgba);
}

// The flat layer.

int SceneControl::OverlayFace() {
  const int face = texts_.Face(kOverlayFont, false, false);
  NoteMissingFonts();
  return face;
}

double SceneControl::OverlayPixels() const {
  return overlayPoints_ * kPixelsOfPoint * deviceRatio_;
}

void SceneControl::StatusPrint(const std::string& text, double column, double line) {
  const double pixels = OverlayPixels();
  const int face = OverlayFace();
  const TextPicture picture = texts_.Render(face, text, pixels, foreColour_, std::nullopt);
  if (picture.width == 0) return;
  const double baseline = std::round(line * deviceRatio_ + texts_.Measure(face, text, pixels).ascent);
  gl_.DrawPicture(std::round(column * deviceRatio_) - picture.originX, baseline - picture.originY, 0, picture.width,
                  picture.height, picture.rgba);
}

void SceneControl::StatusSquare(double column, double line, double width, double height) {
  gl_.FillRectangle(column * deviceRatio_, line * deviceRatio_, width * deviceRatio_, height * deviceRatio_,
                    foreColour_);
}

double SceneControl::StatusWidth(const std::string& text) {
  return texts_.Measure(OverlayFace(), text, OverlayPixels()).width / deviceRatio_;
}

// Light, material, grid.

void SceneControl::Materials(int slot, const SurfaceMaterial& material) {
  materials_[slot] = material;
  if (slot != kMaterialInForce) return;
  gl_.Material(material.face, GL_AMBIENT, material.ambient);
  gl_.Material(material.face, GL_DIFFUSE, material.diffuse);
  gl_.Material(material.face, GL_SPECULAR, material.specular);
  gl_.Material(material.face, GL_SHININESS, {material.shininess, 0, 0, 0});
}

void SceneControl::Lights(int number, const Light& light) {
  if (number < 0 || number >= kLights) return;
  lights_[number] = light;
  ApplyLight(number, light);
}

void SceneControl::ApplyLight(int number, const Light& light) {
  const GLenum name = GL_LIGHT0 + static_cast<GLenum>(number);
  gl_.Light(name, GL_AMBIENT, light.ambient);
  gl_.Light(name, GL_DIFFUSE, light.diffuse);
  gl_.Light(name, GL_SPECULAR, light.specular);
  gl_.Light(name, GL_POSITION, light.position);
  if (light.enabled) {
    gl_.Enable(name);
  } else {
    gl_.Disable(name);
  }
}

void SceneControl::SceneRange(double range) {
  if (!std::isfinite(range) || !(range > 0)) return;
  sceneRange_ = range;
  camera_.SetSceneRange(range);
  if (painting_) LoadMatrices();
}

void SceneControl::DrawGrid() {
  const std::array<std::uint8_t, 4> soft{140, 150, 165, 90};
  const auto range = static_cast<float>(sceneRange_);
  std::vector<ColouredVertex> lines;
  for (int i = -kGridSteps; i <= kGridSteps; ++i) {
    const float at = range * static_cast<float>(i) / kGridSteps;
    lines.push_back({{at, -range, 0}, soft});
    lines.push_back({{at, range, 0}, soft});
    lines.push_back({{-range, at, 0}, soft});
    lines.push_back({{range, at, 0}, soft});
  }
  gl_.Disable(GL_LIGHTING);
  gl_.Enable(GL_BLEND);
  gl_.BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  gl_.LineWidth(static_cast<float>(deviceRatio_));
  gl_.DrawVertices(GL_LINES, lines);
  gl_.Disable(GL_BLEND);
}

// The events.

void SceneControl::Attach(GlEvents& events) {
  if (!MakeCurrent()) return;
  events.init();
  events.InitGL();
  int result = 0;
  events.Reshape(width_, height_, result);
  sizeChanged_ = false;
  Redraw();
}

void SceneControl::Resize(int width, int height, double deviceRatio) {
  const int newWidth = std::max(width, 1);
  const int newHeight = std::max(height, 1);
  const double newRatio = UsableRatio(deviceRatio) ? deviceRatio : deviceRatio_;
  if (newWidth == width_ && newHeight == height_ && newRatio == deviceRatio_) return;
  width_ = newWidth;
  height_ = newHeight;
  deviceRatio_ = newRatio;
  camera_.Viewport(width_, height_);
  sizeChanged_ = true;
  Redraw();
}

Matrix4 SceneControl::ModelviewMatrix() const {
  const Matrix4 view = camera_.ViewMatrix();
  const Vec3& target = camera_.LookAt();
  const std::array<double, 4> centre = Transform(view, {target[0], target[1], target[2], 1});
  const Matrix4 turn = Product(TranslationMatrix(centre[0], centre[1], centre[2]), trackball_.Matrix());
  return Product(Product(turn, TranslationMatrix(-centre[0], -centre[1], -centre[2])), view);
}

void SceneControl::LoadMatrices() {
  projection_ = camera_.ProjectionMatrix();
  modelview_ = ModelviewMatrix();
  gl_.LoadMatrix(GL_PROJECTION, projection_);
  gl_.LoadMatrix(GL_MODELVIEW, modelview_);
}

void SceneControl::Paint(GlEvents& events) {
  if (!MakeCurrent()) return;
  redrawAsked_ = false;
  if (sizeChanged_) {
    sizeChanged_ = false;
    int result = 0;
    events.Reshape(width_, height_, result);
  }
  gl_.Viewport(0, 0, width_, height_);
  gl_.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  LoadMatrices();
  for (const auto& [number, light] : lights_) ApplyLight(number, light);
  {
    const Flag painting(painting_);
    events.Draw();
    events.DrawGDI();
  }
  events.Painted();
}

}  // namespace orv
