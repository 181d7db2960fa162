#define GL_GLEXT_PROTOTYPES
#include "view/offscreen_control.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "view/system_gl.h"

namespace orv {

namespace {

constexpr double kMostBytes = 1 << 30;  // of the frame buffer
constexpr int kBytesOfSample = 8;       // colour and depth
constexpr const char* kNoContext = "No picture can be drawn: ";

bool HasWord(const char* list, const char* word) {
  return list != nullptr && std::strstr(list, word) != nullptr;
}

// The system's display without a screen. It belongs to the whole process and is never terminated, as other controls
// may draw on it.
EGLDisplay OpenDisplay() {
  const char* known = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  if (HasWord(known, "EGL_MESA_platform_surfaceless")) {
    const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE) return display;
  }
  const EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE) return display;
  return EGL_NO_DISPLAY;
}

}  // namespace

// A context without a surface and the frame buffer that it draws into.
class OffscreenControl::Context {
 public:
  Context() = default;
  ~Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  // Each: empty, or what is missing.
  std::string Open();
  std::string MakeFrame(const OffscreenWish& wish);
  bool MakeCurrent();

  SystemGl gl;
  int samples = 1;

 private:
  std::string CheckSize(int width, int height) const;
  bool TryFrame(int width, int height, int sampleCount);

  EGLDisplay display_ = EGL_NO_DISPLAY;
  EGLContext context_ = EGL_NO_CONTEXT;
  GLuint frame_ = 0;
  std::array<GLuint, 2> stores_{};  // colour, depth
};

OffscreenControl::Context::~Context() {
  if (context_ == EGL_NO_CONTEXT) return;
  // All that the context owns ends with it.
  if (eglGetCurrentContext() == context_) eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  eglDestroyContext(display_, context_);
}

std::string OffscreenControl::Context::Open() {
  display_ = OpenDisplay();
  if (display_ == EGL_NO_DISPLAY) return "this system offers no EGL to draw without a window";
  if (!HasWord(eglQueryString(display_, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context")) {
    return "the EGL of this system draws on windows alone";
  }
  if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) return "the EGL of this system has no OpenGL";
  const std::array<EGLint, 5> wish{EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
  EGLConfig config = nullptr;
  EGLint found = 0;
  if (eglChooseConfig(display_, wish.data(), &config, 1, &found) != EGL_TRUE || found == 0) {
    return "the EGL of this system has no configuration with OpenGL";
  }
  context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
  if (context_ == EGL_NO_CONTEXT) return "no OpenGL context could be made";
  if (!MakeCurrent()) return "the OpenGL context could not be made current";
  return MissingInContext();
}

bool OffscreenControl::Context::MakeCurrent() {
  if (eglGetCurrentContext() != context_) {
    eglBindAPI(EGL_OPENGL_API);
    if (eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) != EGL_TRUE) return false;
  }
  if (frame_ != 0) glBindFramebuffer(GL_FRAMEBUFFER, frame_);
  return true;
}

std::string OffscreenControl::Context::CheckSize(int width, int height) const {
  GLint store = 0;
  std::array<GLint, 2> viewport{};
  glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &store);
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport.data());
  const int widest = std::min(store, viewport[0]);
  const int highest = std::min(store, viewport[1]);
  const double bytes = static_cast<double>(width) * height * kBytesOfSample;
  if (width <= widest && height <= highest && bytes <= kMostBytes) return {};
  const std::string limit = width <= widest && height <= highest
                                ? std::to_string(static_cast<int>(kMostBytes / kBytesOfSample)) + " pixels"
                                : std::to_string(widest) + " x " + std::to_string(highest);
  return "a size of " + std::to_string(width) + " x " + std::to_string(height) + " is above the limit of " + limit;
}

bool OffscreenControl::Context::TryFrame(int width, int height, int sampleCount) {
  while (glGetError() != GL_NO_ERROR) {
  }
  glGenFramebuffers(1, &frame_);
  glBindFramebuffer(GL_FRAMEBUFFER, frame_);
  glGenRenderbuffers(2, stores_.data());
  const std::array<GLenum, 2> formats{GL_RGBA8, GL_DEPTH_COMPONENT24};
  const std::array<GLenum, 2> places{GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT};
  for (std::size_t i = 0; i < 2; ++i) {
    glBindRenderbuffer(GL_RENDERBUFFER, stores_[i]);
    // 0 samples: plain pixels.
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, sampleCount > 1 ? sampleCount : 0, formats[i], width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, places[i], GL_RENDERBUFFER, stores_[i]);
  }
  glBindRenderbuffer(GL_RENDERBUFFER, 0);
  if (glGetError() == GL_NO_ERROR && glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE) return true;
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  glDeleteFramebuffers(1, &frame_);
  glDeleteRenderbuffers(2, stores_.data());
  frame_ = 0;
  return false;
}

std::string OffscreenControl::Context::MakeFrame(const OffscreenWish& wish) {
  const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
  if (version == nullptr || std::atof(version) < 3.0) return "OpenGL 3.0 or later is needed to draw without a window";
  if (std::string missing = CheckSize(wish.width, wish.height); !missing.empty()) return missing;
  GLint most = 0;
  glGetIntegerv(GL_MAX_SAMPLES, &most);
  const double plainBytes = static_cast<double>(wish.width) * wish.height * kBytesOfSample;
  int count = std::clamp(wish.samples, 1, std::max(most, 1));
  while (count > 1 && plainBytes * count > kMostBytes) count /= 2;
  for (; count >= 1; count /= 2) {
    if (!TryFrame(wish.width, wish.height, count)) continue;
    GLint given = 0;
    glGetIntegerv(GL_SAMPLES, &given);
    samples = std::max(given, 1);
    return {};
  }
  return "the system has no memory for a picture of this size";
}

OffscreenControl::Made OffscreenControl::Make(const OffscreenWish& wish, FontFinder fonts) {
  if (wish.width <= 0 || wish.height <= 0) {
    return {nullptr, kNoContext + ("a size of " + std::to_string(wish.width)) + " x " + std::to_string(wish.height) +
                         " is no picture."};
  }
  auto context = std::make_unique<Context>();
  std::string missing = context->Open();
  if (missing.empty()) missing = context->MakeFrame(wish);
  if (!missing.empty()) return {nullptr, kNoContext + missing + "."};
  return {std::unique_ptr<OffscreenControl>(new OffscreenControl(std::move(context), wish, std::move(fonts))), {}};
}

OffscreenControl::OffscreenControl(std::unique_ptr<Context> context, const OffscreenWish& wish, FontFinder fonts)
    : SceneControl(context->gl, wish.width, wish.height, wish.deviceRatio, std::move(fonts)),
      context_(std::move(context)) {}

OffscreenControl::~OffscreenControl() = default;

bool OffscreenControl::MakeCurrent() {
  return context_->MakeCurrent();
}

int OffscreenControl::Samples() const {
  return context_->samples;
}

Image OffscreenControl::Picture() {
  if (!MakeCurrent()) return {};
  Image image{Width(), Height(), {}};
  const std::size_t rowBytes = BitmapRowBytes(image.width);
  const std::size_t imageRow = static_cast<std::size_t>(image.width) * 3;
  const auto height = static_cast<std::size_t>(image.height);
  std::vector<std::uint8_t> rows(rowBytes * height);
  context_->gl.ReadPixels(0, 0, image.width, image.height, rows);
  image.rgb.resize(imageRow * height);
  for (std::size_t y = 0; y < height; ++y) {
    std::memcpy(image.rgb.data() + y * imageRow, rows.data() + (height - 1 - y) * rowBytes, imageRow);
  }
  return image;
}

}  // namespace orv
