#pragma once

#include <GL/glu.h>
#include <unordered_map>
#include <vector>

#include "view/gl_api.h"

namespace orv {

// The system's OpenGL, compatibility profile. Every operation needs the context of this object to be current; what it
// keeps on the system's side ends with that context.
//
// A display list is a sequence of stretches: lists of the system, vertex arrays in buffers of the system, and calls of
// other lists. Arrays stay out of the system's own lists because compiling those goes through every vertex once more
// (600,000 vertices: 60 ms, a buffer 1 ms), and both draw alike.
class SystemGl : public GlApi {
 public:
  GLuint GenLists(int count) override;
  void NewList(GLuint list) override;
  void EndList() override;
  void CallList(GLuint list) override;
  void DeleteLists(GLuint list, int count) override;

  void Begin(GLenum primitive) override;
  void End() override;
  void Color(const Rgba& colour) override;
  void Point(const Vertex& position) override;
  void DrawVertices(GLenum primitive, std::span<const ColouredVertex> vertices) override;

  void Enable(GLenum capability) override;
  void Disable(GLenum capability) override;
  void ShadeModel(GLenum model) override;
  void CullFace(GLenum side) override;
  void BlendFunc(GLenum source, GLenum destination) override;
  void LineWidth(float pixels) override;
  void PointSize(float pixels) override;
  float WidestLine() override;
  void ClearColor(const Rgba& colour) override;
  void ClearDepth(double depth) override;
  void Clear(GLbitfield mask) override;
  void Viewport(int x, int y, int width, int height) override;

  void LoadMatrix(GLenum stack, const Matrix4& matrix) override;
  void PushMatrix() override;
  void PopMatrix() override;
  void Translate(double x, double y, double z) override;
  void Rotate(double angleDeg, double x, double y, double z) override;

  void Light(GLenum light, GLenum name, const std::array<float, 4>& value) override;
  void Material(GLenum face, GLenum name, const std::array<float, 4>& value) override;
  void ColorMaterial(GLenum face, GLenum mode) override;

  SystemGl() = default;
  ~SystemGl() override;
  SystemGl(const SystemGl&) = delete;
  SystemGl& operator=(const SystemGl&) = delete;

  // Needs no current context to be deleted.
  void MakeQuadric() override;
  void DeleteQuadric() override;
  void Sphere(double radius, int slices, int stacks, bool textured) override;

  GLuint MakeTexture(int width, int height, std::span<const std::uint8_t> rgb) override;
  void BindTexture(GLuint texture) override;
  void DeleteTexture(GLuint texture) override;

  void LoadName(GLuint name) override;

  void DrawPicture(double x, double y, double depth, int width, int height,
                   std::span<const std::uint8_t> rgba) override;
  void FillRectangle(double x, double y, double width, double height, const Rgba& colour) override;

  // Also from a frame buffer with several samples for a pixel. Failure 9 when `rgb` is too short.
  void ReadPixels(int x, int y, int width, int height, std::span<std::uint8_t> rgb) override;
  std::array<int, 4> ViewportInForce() override;

 private:
  enum class StretchKind { SystemList, Array, Call };
  struct Stretch {
    StretchKind kind;
    GLuint name;  // of the system's list, the buffer, or the list to call
    GLenum primitive;
    GLsizei count;
  };
  // What the context can do, asked for once.
  struct Limits {
    std::array<float, 2> lineWidth{1, 1};
    std::array<float, 2> pointSize{1, 1};
    bool buffers = false;
    bool frameBuffers = false;
  };

  const Limits& Known();
  void CloseStretch();
  void OpenStretch();
  bool AddArray(GLenum primitive, std::span<const ColouredVertex> vertices);
  void DrawStretch(const Stretch& stretch);
  void Forget(GLuint list);

  GLUquadric* quadric_ = nullptr;
  Limits limits_;
  bool limitsKnown_ = false;
  std::unordered_map<GLuint, std::vector<Stretch>> lists_;  // those of more than one stretch
  GLuint compiling_ = 0;
  GLuint openList_ = 0;  // the system's list being compiled
  std::vector<Stretch> stretches_;
  int callDepth_ = 0;
};

// Whether the system draws with the fixed functions that the view needs; otherwise the text says what is missing.
// Needs a current context.
std::string MissingInContext();

}  // namespace orv
