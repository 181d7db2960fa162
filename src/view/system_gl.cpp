#define GL_GLEXT_PROTOTYPES
#include "view/system_gl.h"

#include <GL/glext.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

#include "numerics/failure.h"

namespace orv {

namespace {

// Shorter arrays cost less inside the list around them.
constexpr std::size_t kShortestBuffer = 256;
constexpr int kDeepestCall = 64;

double ContextVersion() {
  const auto* text = reinterpret_cast<const char*>(glGetString(GL_VERSION));
  return text == nullptr ? 0 : std::atof(text);
}

// The part that holds for plain and for smoothed drawing.
std::array<float, 2> CommonRange(GLenum plain, GLenum smooth) {
  std::array<float, 2> a{1, 1};
  std::array<float, 2> b{1, 1};
  glGetFloatv(plain, a.data());
  glGetFloatv(smooth, b.data());
  const float low = std::max(a[0], b[0]);
  return {low, std::max(low, std::min(a[1], b[1]))};
}

float Clamped(float value, const std::array<float, 2>& range) {
  return value > range[0] ? std::min(value, range[1]) : range[0];  // also for a value that is no number
}

void ArraysOn(const ColouredVertex* first) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(first);
  glEnableClientState(GL_VERTEX_ARRAY);
  glEnableClientState(GL_COLOR_ARRAY);
  glVertexPointer(3, GL_FLOAT, sizeof(ColouredVertex), bytes + offsetof(ColouredVertex, position));
  glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(ColouredVertex), bytes + offsetof(ColouredVertex, colour));
}

void ArraysOff() {
  glDisableClientState(GL_COLOR_ARRAY);
  glDisableClientState(GL_VERTEX_ARRAY);
}

}  // namespace

std::string MissingInContext() {
  const double version = ContextVersion();
  if (version <= 0) return "no OpenGL context is current";
  if (version < 1.5) return "OpenGL 1.5 or later is needed";
  if (version >= 3.2) {
    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    if ((profile & GL_CONTEXT_CORE_PROFILE_BIT) != 0) return "the OpenGL context lacks the compatibility profile";
  }
  return {};
}

const SystemGl::Limits& SystemGl::Known() {
  if (limitsKnown_) return limits_;
  limitsKnown_ = true;
  const double version = ContextVersion();
  limits_.buffers = version >= 1.5;
  limits_.frameBuffers = version >= 3.0;
  limits_.lineWidth = CommonRange(GL_ALIASED_LINE_WIDTH_RANGE, GL_SMOOTH_LINE_WIDTH_RANGE);
  limits_.pointSize = CommonRange(GL_ALIASED_POINT_SIZE_RANGE, GL_SMOOTH_POINT_SIZE_RANGE);
  return limits_;
}

GLuint SystemGl::GenLists(int count) {
  return glGenLists(count);
}

void SystemGl::NewList(GLuint list) {
  Forget(list);
  compiling_ = list;
  openList_ = list;
  stretches_.clear();
  glNewList(list, GL_COMPILE);
}

void SystemGl::EndList() {
  if (compiling_ == 0) return;
  CloseStretch();
  if (stretches_.size() > 1) lists_[compiling_] = std::move(stretches_);
  stretches_.clear();
  compiling_ = 0;
}

void SystemGl::CloseStretch() {
  glEndList();
  stretches_.push_back({StretchKind::SystemList, openList_, 0, 0});
}

void SystemGl::OpenStretch() {
  openList_ = glGenLists(1);
  glNewList(openList_, GL_COMPILE);
}

void SystemGl::CallList(GLuint list) {
  if (compiling_ != 0) {
    // Which stretches the called list has shows when it is drawn.
    CloseStretch();
    stretches_.push_back({StretchKind::Call, list, 0, 0});
    OpenStretch();
    return;
  }
  const auto found = lists_.find(list);
  if (found == lists_.end()) {
    glCallList(list);
    return;
  }
  if (callDepth_ >= kDeepestCall) return;
  ++callDepth_;
  for (const Stretch& stretch : found->second) DrawStretch(stretch);
  --callDepth_;
}

void SystemGl::DrawStretch(const Stretch& stretch) {
  switch (stretch.kind) {
    case StretchKind::SystemList:
      glCallList(stretch.name);
      break;
    case StretchKind::Call:
      CallList(stretch.name);
      break;
    case StretchKind::Array:
      glBindBuffer(GL_ARRAY_BUFFER, stretch.name);
      ArraysOn(nullptr);
      glBindBuffer(GL_ARRAY_BUFFER, 0);
      glDrawArrays(stretch.primitive, 0, stretch.count);
      ArraysOff();
      break;
  }
}

void SystemGl::DeleteLists(GLuint list, int count) {
  for (int i = 0; i < count; ++i) Forget(list + static_cast<GLuint>(i));
  glDeleteLists(list, count);
}

void SystemGl::Forget(GLuint list) {
  const auto found = lists_.find(list);
  if (found == lists_.end()) return;
  for (const Stretch& stretch : found->second) {
    if (stretch.kind == StretchKind::Array) glDeleteBuffers(1, &stretch.name);
    if (stretch.kind == StretchKind::SystemList && stretch.name != list) glDeleteLists(stretch.name, 1);
  }
  lists_.erase(found);
}

void SystemGl::Begin(GLenum primitive) {
  glBegin(primitive);
}
void SystemGl::End() {
  glEnd();
}
void SystemGl::Color(const Rgba& colour) {
  glColor4f(colour.red, colour.green, colour.blue, colour.alpha);
}
void SystemGl::Point(const Vertex& position) {
  glVertex3f(position.x, position.y, position.z);
}

void SystemGl::DrawVertices(GLenum primitive, std::span<const ColouredVertex> vertices) {
  if (vertices.empty()) return;
  if (compiling_ == 0) {
    ArraysOn(vertices.data());
    glDrawArrays(primitive, 0, static_cast<GLsizei>(vertices.size()));
    ArraysOff();
    return;
  }
  if (vertices.size() >= kShortestBuffer && Known().buffers && AddArray(primitive, vertices)) return;
  glBegin(primitive);
  for (const ColouredVertex& vertex : vertices) {
    glColor4ubv(vertex.colour.data());
    glVertex3fv(&vertex.position.x);
  }
  glEnd();
}

bool SystemGl::AddArray(GLenum primitive, std::span<const ColouredVertex> vertices) {
  GLuint buffer = 0;
  glGenBuffers(1, &buffer);
  glBindBuffer(GL_ARRAY_BUFFER, buffer);
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size_bytes()), vertices.data(), GL_STATIC_DRAW);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  if (glGetError() == GL_OUT_OF_MEMORY) {
    glDeleteBuffers(1, &buffer);
    return false;
  }
  CloseStretch();
  stretches_.push_back({StretchKind::Array, buffer, primitive, static_cast<GLsizei>(vertices.size())});
  OpenStretch();
  return true;
}

void SystemGl::Enable(GLenum capability) {
  glEnable(capability);
}
void SystemGl::Disable(GLenum capability) {
  glDisable(capability);
}
void SystemGl::ShadeModel(GLenum model) {
  glShadeModel(model);
}
void SystemGl::CullFace(GLenum side) {
  glCullFace(side);
}
void SystemGl::BlendFunc(GLenum source, GLenum destination) {
  glBlendFunc(source, destination);
}
void SystemGl::LineWidth(float pixels) {
  glLineWidth(Clamped(pixels, Known().lineWidth));
}
void SystemGl::PointSize(float pixels) {
  glPointSize(Clamped(pixels, Known().pointSize));
}
float SystemGl::WidestLine() {
  return Known().lineWidth[1];
}

void SystemGl::ClearColor(const Rgba& colour) {
  glClearColor(colour.red, colour.green, colour.blue, colour.alpha);
}
void SystemGl::ClearDepth(double depth) {
  glClearDepth(depth);
}
void SystemGl::Clear(GLbitfield mask) {
  glClear(mask);
}
void SystemGl::Viewport(int x, int y, int width, int height) {
  glViewport(x, y, width, height);
}

void SystemGl::LoadMatrix(GLenum stack, const Matrix4& matrix) {
  glMatrixMode(stack);
  glLoadMatrixd(matrix.data());
  if (stack != GL_MODELVIEW) glMatrixMode(GL_MODELVIEW);
}
void SystemGl::PushMatrix() {
  glPushMatrix();
}
void SystemGl::PopMatrix() {
  glPopMatrix();
}
void SystemGl::Translate(double x, double y, double z) {
  glTranslated(x, y, z);
}
void SystemGl::Rotate(double angleDeg, double x, double y, double z) {
  glRotated(angleDeg, x, y, z);
}

void SystemGl::Light(GLenum light, GLenum name, const std::array<float, 4>& value) {
  glLightfv(light, name, value.data());
}
void SystemGl::Material(GLenum face, GLenum name, const std::array<float, 4>& value) {
  glMaterialfv(face, name, value.data());
}
void SystemGl::ColorMaterial(GLenum face, GLenum mode) {
  glColorMaterial(face, mode);
}
namespace {

extern "C" void PrintQuadricError(GLenum error) {
  const GLubyte* const text = gluErrorString(error);
  std::cerr << "Quad Error: " << (text != nullptr ? reinterpret_cast<const char*>(text) : "") << '\n';
}

}  // namespace

SystemGl::~SystemGl() {
  if (quadric_ != nullptr) gluDeleteQuadric(quadric_);
}
void SystemGl::MakeQuadric() {
  if (quadric_ != nullptr) return;
  quadric_ = gluNewQuadric();
  if (quadric_ != nullptr) gluQuadricCallback(quadric_, GLU_ERROR, reinterpret_cast<void (*)()>(PrintQuadricError));
}
void SystemGl::DeleteQuadric() {
  if (quadric_ != nullptr) gluDeleteQuadric(quadric_);
  quadric_ = nullptr;
}
void SystemGl::Sphere(double radius, int slices, int stacks, bool textured) {
  if (quadric_ == nullptr) return;
  gluQuadricTexture(quadric_, textured ? GL_TRUE : GL_FALSE);
  gluSphere(quadric_, radius, slices, stacks);
}

GLuint SystemGl::MakeTexture(int width, int height, std::span<const std::uint8_t> rgb) {
  if (width <= 0 || height <= 0) return 0;
  const std::size_t rowBytes = static_cast<std::size_t>(width) * 3;
  const auto rows = static_cast<std::size_t>(height);
  if (rgb.size() < rowBytes * rows) Raise(FailureNumber::SubscriptOutOfRange);
  std::vector<std::uint8_t> upwards;
  upwards.reserve(rowBytes * rows);
  for (std::size_t row = rows; row-- > 0;) {
    const auto from = rgb.subspan(row * rowBytes, rowBytes);
    upwards.insert(upwards.end(), from.begin(), from.end());
  }
  GLuint texture = 0;
  glGenTextures(1, &texture);
  glBindTexture(GL_TEXTURE_2D, texture);
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
  glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
  // Brings the picture to a size that the system takes.
  const GLint failure =
      gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, width, height, GL_RGB, GL_UNSIGNED_BYTE, upwards.data());
  glPopClientAttrib();
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glBindTexture(GL_TEXTURE_2D, 0);
  if (failure == 0) return texture;
  glDeleteTextures(1, &texture);
  return 0;
}
void SystemGl::BindTexture(GLuint texture) {
  glBindTexture(GL_TEXTURE_2D, texture);
}
void SystemGl::DeleteTexture(GLuint texture) {
  glDeleteTextures(1, &texture);
}

void SystemGl::LoadName(GLuint name) {
  glLoadName(name);
}

void SystemGl::DrawPicture(double x, double y, double depth, int width, int height,
                           std::span<const std::uint8_t> rgba) {
  if (width <= 0 || height <= 0) return;
  const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
  if (rgba.size() < bytes) Raise(FailureNumber::SubscriptOutOfRange);
  const std::array<int, 4> viewport = ViewportInForce();
  glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT | GL_PIXEL_MODE_BIT);
  glDepthMask(GL_FALSE);  // its clear parts hide nothing
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
  glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
  // A picture goes through all that a plain primitive goes through.
  for (const GLenum stage : {GL_LIGHTING, GL_FOG, GL_TEXTURE_1D, GL_TEXTURE_2D, GL_ALPHA_TEST}) glDisable(stage);
  glEnable(GL_BLEND);
  glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  glPixelZoom(1, -1);  // rows from the top
  glWindowPos3d(viewport[0] + std::floor(x + 0.5), viewport[1] + viewport[3] - std::floor(y + 0.5),
                std::clamp(depth, 0.0, 1.0));
  glDrawPixels(width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
  glPopClientAttrib();
  glPopAttrib();
}

void SystemGl::FillRectangle(double x, double y, double width, double height, const Rgba& colour) {
  const std::array<int, 4> viewport = ViewportInForce();
  if (viewport[2] <= 0 || viewport[3] <= 0) return;
  glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_POLYGON_BIT | GL_TRANSFORM_BIT);
  for (const GLenum stage :
       {GL_LIGHTING, GL_FOG, GL_TEXTURE_1D, GL_TEXTURE_2D, GL_ALPHA_TEST, GL_CULL_FACE, GL_DEPTH_TEST}) {
    glDisable(stage);
  }
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glMatrixMode(GL_PROJECTION);
  glPushMatrix();
  glLoadIdentity();
  glOrtho(0, viewport[2], viewport[3], 0, -1, 1);
  glMatrixMode(GL_MODELVIEW);
  glPushMatrix();
  glLoadIdentity();
  Color(colour);
  glRectd(x, y, x + width, y + height);
  glPopMatrix();
  glMatrixMode(GL_PROJECTION);
  glPopMatrix();
  glPopAttrib();
}

void SystemGl::ReadPixels(int x, int y, int width, int height, std::span<std::uint8_t> rgb) {
  if (width <= 0 || height <= 0) return;
  const std::size_t rowBytes = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  if (rgb.size() < rowBytes * static_cast<std::size_t>(height)) Raise(FailureNumber::SubscriptOutOfRange);
  GLint samples = 0;
  GLint drawn = 0;
  GLint read = 0;
  if (Known().frameBuffers) {
    glGetIntegerv(GL_SAMPLE_BUFFERS, &samples);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawn);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
  }
  // The samples are brought together in a buffer of their own, as they cannot be read.
  const bool resolve = samples > 0 && drawn != 0 && drawn == read;
  GLuint frame = 0;
  GLuint store = 0;
  if (resolve) {
    glGenFramebuffers(1, &frame);
    glGenRenderbuffers(1, &store);
    glBindRenderbuffer(GL_RENDERBUFFER, store);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, frame);
    glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, store);
    glBlitFramebuffer(x, y, x + width, y + height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame);
  }
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_PACK_ALIGNMENT, 4);
  glPixelStorei(GL_PACK_ROW_LENGTH, 0);
  glPixelStorei(GL_PACK_SKIP_ROWS, 0);
  glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
  glReadPixels(resolve ? 0 : x, resolve ? 0 : y, width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
  glPopClientAttrib();
  if (resolve) {
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(drawn));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(read));
    glDeleteFramebuffers(1, &frame);
    glDeleteRenderbuffers(1, &store);
  }
}

std::array<int, 4> SystemGl::ViewportInForce() {
  std::array<int, 4> viewport{};
  glGetIntegerv(GL_VIEWPORT, viewport.data());
  return viewport;
}

}  // namespace orv
