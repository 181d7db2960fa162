#include "view/recording_gl.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numerics/failure.h"
#include "view/camera.h"

namespace orv {

namespace {

constexpr std::size_t kDeepestCall = 64;
constexpr std::size_t kMatrixStack = 32;

std::array<double, 4> Four(const Rgba& c) {
  return {c.red, c.green, c.blue, c.alpha};
}
std::array<double, 4> Four(const std::array<float, 4>& v) {
  return {v[0], v[1], v[2], v[3]};
}

Rgba ColourOf(const std::array<double, 4>& v) {
  return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]), static_cast<float>(v[3])};
}

Rgba ColourOf(const std::array<std::uint8_t, 4>& bytes) {
  const auto part = [&](std::size_t i) { return static_cast<float>(bytes[i]) / 255.0F; };
  return {part(0), part(1), part(2), part(3)};
}

std::array<double, 4> Homogeneous(const Vertex& v) {
  return {v.x, v.y, v.z, 1};
}

Matrix4 TranslationMatrix(double x, double y, double z) {
  Matrix4 m = IdentityMatrix();
  m[12] = x;
  m[13] = y;
  m[14] = z;
  return m;
}

// By Rodrigues' formula; an axis without length turns nothing.
Matrix4 RotationMatrix(double angleDeg, double x, double y, double z) {
  const double length = std::sqrt(x * x + y * y + z * z);
  if (!(length > 0)) return IdentityMatrix();
  const std::array<double, 3> u{x / length, y / length, z / length};
  const double angle = angleDeg * std::numbers::pi / 180;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  Matrix4 m = IdentityMatrix();
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      m[column * 4 + row] = u[row] * u[column] * (1 - c) + (row == column ? c : 0);
    }
  }
  m[4] -= u[2] * s;
  m[8] += u[1] * s;
  m[1] += u[2] * s;
  m[9] -= u[0] * s;
  m[2] -= u[1] * s;
  m[6] += u[0] * s;
  return m;
}

}  // namespace

std::array<double, 3> DrawnPrimitive::InEye(std::size_t vertex) const {
  const std::array<double, 4> eye = Transform(state.modelview, Homogeneous(vertices.at(vertex).position));
  return {eye[0], eye[1], eye[2]};
}

std::array<double, 3> DrawnPrimitive::OnDevice(std::size_t vertex) const {
  const Matrix4 whole = Product(state.projection, state.modelview);
  const std::array<double, 4> clip = Transform(whole, Homogeneous(vertices.at(vertex).position));
  return {clip[0] / clip[3], clip[1] / clip[3], clip[2] / clip[3]};
}

void RecordingGl::StartPaint() {
  calls_.clear();
  primitives_.clear();
  spheres_.clear();
  pictures_.clear();
  rectangles_.clear();
  errors_.clear();
}

std::size_t RecordingGl::Count(GlOperation operation) const {
  return static_cast<std::size_t>(
      std::ranges::count_if(calls_, [operation](const GlCall& call) { return call.operation == operation; }));
}

std::vector<DrawnPrimitive> RecordingGl::PrimitivesOf(GLenum primitive) const {
  std::vector<DrawnPrimitive> found;
  std::ranges::copy_if(primitives_, std::back_inserter(found),
                       [primitive](const DrawnPrimitive& drawn) { return drawn.primitive == primitive; });
  return found;
}

std::vector<DrawnPrimitive> RecordingGl::PrimitivesIn(GLuint list) const {
  std::vector<DrawnPrimitive> found;
  std::ranges::copy_if(primitives_, std::back_inserter(found),
                       [list](const DrawnPrimitive& drawn) { return drawn.list == list; });
  return found;
}

std::size_t RecordingGl::ListLength(GLuint list) const {
  const auto found = lists_.find(list);
  return found == lists_.end() ? 0 : found->second.size();
}

// What a list may hold: compiled while one is open, else carried out.
void RecordingGl::Take(const GlCall& call) {
  calls_.push_back(call);
  if (compiling_ != 0) {
    compiled_.push_back(call);
  } else {
    Execute(call);
  }
}

GLuint RecordingGl::GenLists(int count) {
  calls_.push_back({GlOperation::GenLists, {}, {static_cast<double>(count)}});
  const GLuint first = nextList_;
  nextList_ += static_cast<GLuint>(std::max(count, 0));
  for (GLuint list = first; list < nextList_; ++list) lists_[list];
  return count > 0 ? first : 0;
}

void RecordingGl::NewList(GLuint list) {
  calls_.push_back({GlOperation::NewList, {list}, {}});
  if (list == 0) Refuse("NewList of list 0");
  if (compiling_ != 0) Refuse("NewList inside a list");
  if (inPrimitive_) Refuse("NewList between Begin and End");
  compiling_ = list;
  compiled_.clear();
}

void RecordingGl::EndList() {
  calls_.push_back({GlOperation::EndList, {compiling_}, {}});
  if (compiling_ == 0) {
    Refuse("EndList without NewList");
    return;
  }
  lists_[compiling_] = std::move(compiled_);
  compiled_.clear();
  nextList_ = std::max(nextList_, compiling_ + 1);
  compiling_ = 0;
}

void RecordingGl::CallList(GLuint list) {
  Take({GlOperation::CallList, {list}, {}});
}

void RecordingGl::DeleteLists(GLuint list, int count) {
  calls_.push_back({GlOperation::DeleteLists, {list}, {static_cast<double>(count)}});
  for (int i = 0; i < count; ++i) lists_.erase(list + static_cast<GLuint>(i));
}

void RecordingGl::Begin(GLenum primitive) {
  Take({GlOperation::Begin, {primitive}, {}});
}
void RecordingGl::End() {
  Take({GlOperation::End, {}, {}});
}
void RecordingGl::Color(const Rgba& colour) {
  Take({GlOperation::Color, {}, Four(colour)});
}
void RecordingGl::Point(const Vertex& position) {
  Take({GlOperation::Point, {}, {position.x, position.y, position.z, 1}});
}

void RecordingGl::DrawVertices(GLenum primitive, std::span<const ColouredVertex> vertices) {
  auto copy = std::make_shared<const std::vector<ColouredVertex>>(vertices.begin(), vertices.end());
  Take({GlOperation::DrawVertices, {primitive}, {}, std::move(copy)});
}

void RecordingGl::Enable(GLenum capability) {
  Take({GlOperation::Enable, {capability}, {}});
}
void RecordingGl::Disable(GLenum capability) {
  Take({GlOperation::Disable, {capability}, {}});
}
void RecordingGl::ShadeModel(GLenum model) {
  Take({GlOperation::ShadeModel, {model}, {}});
}
void RecordingGl::CullFace(GLenum side) {
  Take({GlOperation::CullFace, {side}, {}});
}
void RecordingGl::BlendFunc(GLenum source, GLenum destination) {
  Take({GlOperation::BlendFunc, {source, destination}, {}});
}
void RecordingGl::LineWidth(float pixels) {
  Take({GlOperation::LineWidth, {}, {pixels}});
}
void RecordingGl::PointSize(float pixels) {
  Take({GlOperation::PointSize, {}, {pixels}});
}
void RecordingGl::ClearColor(const Rgba& colour) {
  Take({GlOperation::ClearColor, {}, Four(colour)});
}
void RecordingGl::ClearDepth(double depth) {
  Take({GlOperation::ClearDepth, {}, {depth}});
}
void RecordingGl::Clear(GLbitfield mask) {
  Take({GlOperation::Clear, {mask}, {}});
}

void RecordingGl::Viewport(int x, int y, int width, int height) {
  const auto value = [](int number) { return static_cast<double>(number); };
  Take({GlOperation::Viewport, {}, {value(x), value(y), value(width), value(height)}});
}

void RecordingGl::LoadMatrix(GLenum stack, const Matrix4& matrix) {
  Take({GlOperation::LoadMatrix, {stack}, {}, {}, std::make_shared<const Matrix4>(matrix)});
}
void RecordingGl::PushMatrix() {
  Take({GlOperation::PushMatrix, {}, {}});
}
void RecordingGl::PopMatrix() {
  Take({GlOperation::PopMatrix, {}, {}});
}
void RecordingGl::Translate(double x, double y, double z) {
  Take({GlOperation::Translate, {}, {x, y, z}});
}
void RecordingGl::Rotate(double angleDeg, double x, double y, double z) {
  Take({GlOperation::Rotate, {}, {angleDeg, x, y, z}});
}

void RecordingGl::Light(GLenum light, GLenum name, const std::array<float, 4>& value) {
  Take({GlOperation::Light, {light, name}, Four(value)});
}
void RecordingGl::Material(GLenum face, GLenum name, const std::array<float, 4>& value) {
  Take({GlOperation::Material, {face, name}, Four(value)});
}
void RecordingGl::ColorMaterial(GLenum face, GLenum mode) {
  Take({GlOperation::ColorMaterial, {face, mode}, {}});
}
void RecordingGl::MakeQuadric() {
  Take({GlOperation::MakeQuadric, {}, {}});
}
void RecordingGl::DeleteQuadric() {
  Take({GlOperation::DeleteQuadric, {}, {}});
}
void RecordingGl::Sphere(double radius, int slices, int stacks, bool textured) {
  Take({GlOperation::Sphere,
        {},
        {radius, static_cast<double>(slices), static_cast<double>(stacks), textured ? 1.0 : 0.0}});
}
GLuint RecordingGl::MakeTexture(int width, int height, std::span<const std::uint8_t> rgb) {
  calls_.push_back({GlOperation::MakeTexture, {}, {static_cast<double>(width), static_cast<double>(height)}});
  if (inPrimitive_) Refuse("MakeTexture between Begin and End");
  if (width <= 0 || height <= 0) return 0;
  const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3;
  if (rgb.size() < bytes) Raise(FailureNumber::SubscriptOutOfRange);
  const auto picture = rgb.first(bytes);
  textures_[nextTexture_] = {width, height, {picture.begin(), picture.end()}};
  return nextTexture_++;
}
void RecordingGl::BindTexture(GLuint texture) {
  Take({GlOperation::BindTexture, {texture}, {}});
}
void RecordingGl::DeleteTexture(GLuint texture) {
  calls_.push_back({GlOperation::DeleteTexture, {texture}, {}});
  textures_.erase(texture);
}
void RecordingGl::LoadName(GLuint name) {
  Take({GlOperation::LoadName, {name}, {}});
}

void RecordingGl::DrawPicture(double x, double y, double depth, int width, int height,
                              std::span<const std::uint8_t> rgba) {
  if (width <= 0 || height <= 0) return;
  const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
  if (rgba.size() < bytes) Raise(FailureNumber::SubscriptOutOfRange);
  calls_.push_back({GlOperation::DrawPicture, {}, {x, y, depth}});
  if (inPrimitive_) Refuse("DrawPicture between Begin and End");
  const auto picture = rgba.first(bytes);
  pictures_.push_back({x, y, depth, width, height, {picture.begin(), picture.end()}});
}

void RecordingGl::FillRectangle(double x, double y, double width, double height, const Rgba& colour) {
  calls_.push_back({GlOperation::FillRectangle, {}, {x, y, width, height}});
  if (inPrimitive_) Refuse("FillRectangle between Begin and End");
  rectangles_.push_back({x, y, width, height, colour});
}

void RecordingGl::ReadPixels(int x, int y, int width, int height, std::span<std::uint8_t> rgb) {
  const auto value = [](int number) { return static_cast<double>(number); };
  calls_.push_back({GlOperation::ReadPixels, {}, {value(x), value(y), value(width), value(height)}});
  if (width <= 0 || height <= 0) return;
  const std::size_t rowBytes = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  if (rgb.size() < rowBytes * static_cast<std::size_t>(height)) Raise(FailureNumber::SubscriptOutOfRange);
  const auto byte = [](float part) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0F, 1.0F) * 255));
  };
  const Rgba& clear = state_.clearColour;
  const std::array<std::uint8_t, 3> pixel{byte(clear.red), byte(clear.green), byte(clear.blue)};
  for (std::size_t row = 0; row < static_cast<std::size_t>(height); ++row) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(width) * 3; ++i) rgb[row * rowBytes + i] = pixel[i % 3];
  }
}

void RecordingGl::Execute(const GlCall& call) {
  switch (call.operation) {
    case GlOperation::CallList:
      ExecuteList(call.names[0]);
      break;
    case GlOperation::Begin:
    case GlOperation::End:
    case GlOperation::Color:
    case GlOperation::Point:
    case GlOperation::DrawVertices:
      ExecuteDrawing(call);
      break;
    case GlOperation::LoadMatrix:
    case GlOperation::PushMatrix:
    case GlOperation::PopMatrix:
    case GlOperation::Translate:
    case GlOperation::Rotate:
      ExecuteMatrix(call);
      break;
    default:
      ExecuteState(call);
  }
}

void RecordingGl::ExecuteList(GLuint list) {
  const auto found = lists_.find(list);
  if (found == lists_.end()) {
    Refuse("CallList of list " + std::to_string(list) + ", which is not there");
    return;
  }
  if (callStack_.size() >= kDeepestCall) {
    Refuse("CallList deeper than " + std::to_string(kDeepestCall));
    return;
  }
  callStack_.push_back(list);
  for (const GlCall& call : found->second) Execute(call);
  callStack_.pop_back();
}

void RecordingGl::StartPrimitive(GLenum primitive) {
  open_ = {primitive, {}, callStack_.empty() ? 0 : callStack_.back(), state_};
}

void RecordingGl::EndPrimitive() {
  if (!open_.vertices.empty()) primitives_.push_back(std::move(open_));
  open_ = {};
}

void RecordingGl::ExecuteDrawing(const GlCall& call) {
  switch (call.operation) {
    case GlOperation::Begin:
      if (inPrimitive_) Refuse("Begin between Begin and End");
      inPrimitive_ = true;
      StartPrimitive(call.names[0]);
      break;
    case GlOperation::End:
      if (!inPrimitive_) Refuse("End without Begin");
      inPrimitive_ = false;
      EndPrimitive();
      break;
    case GlOperation::Color:
      state_.colour = ColourOf(call.values);
      break;
    case GlOperation::Point:
      if (!inPrimitive_) Refuse("Point outside Begin and End");
      open_.vertices.push_back(
          {{static_cast<float>(call.values[0]), static_cast<float>(call.values[1]), static_cast<float>(call.values[2])},
           state_.colour});
      break;
    default:
      if (inPrimitive_) Refuse("DrawVertices between Begin and End");
      StartPrimitive(call.names[0]);
      for (const ColouredVertex& vertex : *call.vertices) {
        open_.vertices.push_back({vertex.position, ColourOf(vertex.colour)});
      }
      EndPrimitive();
  }
}

void RecordingGl::ExecuteMatrix(const GlCall& call) {
  if (inPrimitive_) Refuse("a matrix changed between Begin and End");
  const auto& v = call.values;
  switch (call.operation) {
    case GlOperation::LoadMatrix:
      (call.names[0] == GL_PROJECTION ? state_.projection
       : call.names[0] == GL_TEXTURE  ? state_.texture
                                      : state_.modelview) = *call.matrix;
      break;
    case GlOperation::PushMatrix:
      if (matrixStack_.size() + 1 >= kMatrixStack) Refuse("PushMatrix beyond the stack");
      matrixStack_.push_back(state_.modelview);
      break;
    case GlOperation::PopMatrix:
      if (matrixStack_.empty()) {
        Refuse("PopMatrix without PushMatrix");
        break;
      }
      state_.modelview = matrixStack_.back();
      matrixStack_.pop_back();
      break;
    case GlOperation::Translate:
      state_.modelview = Product(state_.modelview, TranslationMatrix(v[0], v[1], v[2]));
      break;
    default:
      state_.modelview = Product(state_.modelview, RotationMatrix(v[0], v[1], v[2], v[3]));
  }
}

void RecordingGl::ExecuteState(const GlCall& call) {
  const bool allowedInside = call.operation == GlOperation::Material;
  if (inPrimitive_ && !allowedInside) Refuse("state changed between Begin and End");
  const auto number = [&](std::size_t i) { return static_cast<int>(call.values[i]); };
  switch (call.operation) {
    case GlOperation::Enable:
      state_.enabled.insert(call.names[0]);
      break;
    case GlOperation::Disable:
      state_.enabled.erase(call.names[0]);
      break;
    case GlOperation::ShadeModel:
      state_.shadeModel = call.names[0];
      break;
    case GlOperation::CullFace:
      state_.cullFace = call.names[0];
      break;
    case GlOperation::BlendFunc:
      state_.blend = {call.names[0], call.names[1]};
      break;
    case GlOperation::LineWidth:
      state_.lineWidth = static_cast<float>(call.values[0]);
      break;
    case GlOperation::PointSize:
      state_.pointSize = static_cast<float>(call.values[0]);
      break;
    case GlOperation::ClearColor:
      state_.clearColour = ColourOf(call.values);
      break;
    case GlOperation::ClearDepth:
      state_.clearDepth = call.values[0];
      break;
    case GlOperation::Viewport:
      viewport_ = {number(0), number(1), number(2), number(3)};
      break;
    case GlOperation::LoadName:
      state_.name = call.names[0];
      break;
    case GlOperation::BindTexture:
      if (call.names[0] != 0 && !textures_.contains(call.names[0])) {
        Refuse("BindTexture of texture " + std::to_string(call.names[0]) + ", which is not there");
      }
      state_.textureName = call.names[0];
      break;
    case GlOperation::Sphere:
      spheres_.push_back({call.values[0], number(1), number(2), call.values[3] != 0, state_});
      break;
    default:
      break;  // lights, materials and Clear leave nothing that a drawn primitive would show here
  }
}

}  // namespace orv
