#pragma once

#include <GL/gl.h>
#include <array>
#include <cstdint>
#include <span>
#include <string>

// The OpenGL that the scene speaks: one operation for each call it needs. The system's OpenGL stands behind it, or a
// recording for tests.
namespace orv {

struct Rgba {
  float red = 0;
  float green = 0;
  float blue = 0;
  float alpha = 1;
  friend bool operator==(const Rgba&, const Rgba&) = default;
};

struct Vertex {
  float x = 0;
  float y = 0;
  float z = 0;
  friend bool operator==(const Vertex&, const Vertex&) = default;
};

// Position and colour, as vertex arrays take them.
struct ColouredVertex {
  Vertex position;
  std::array<std::uint8_t, 4> colour{};
  friend bool operator==(const ColouredVertex&, const ColouredVertex&) = default;
};

// Column by column, as OpenGL takes it.
using Matrix4 = std::array<double, 16>;

class GlApi {
 public:
  virtual ~GlApi() = default;

  // Display lists. NewList compiles without execution.
  virtual GLuint GenLists(int count) = 0;
  virtual void NewList(GLuint list) = 0;
  virtual void EndList() = 0;
  virtual void CallList(GLuint list) = 0;
  virtual void DeleteLists(GLuint list, int count) = 0;

  // Immediate drawing.
  virtual void Begin(GLenum primitive) = 0;
  virtual void End() = 0;
  virtual void Color(const Rgba& colour) = 0;
  virtual void Point(const Vertex& position) = 0;
  // The vertices in their order as one array, each with its colour; also inside a list. The current colour is
  // undefined afterwards.
  virtual void DrawVertices(GLenum primitive, std::span<const ColouredVertex> vertices) = 0;

  // State.
  virtual void Enable(GLenum capability) = 0;
  virtual void Disable(GLenum capability) = 0;
  virtual void ShadeModel(GLenum model) = 0;
  virtual void CullFace(GLenum side) = 0;
  virtual void BlendFunc(GLenum source, GLenum destination) = 0;
  virtual void LineWidth(float pixels) = 0;  // clamped to what the system draws
  virtual void PointSize(float pixels) = 0;
  // Widest line that the system draws itself.
  virtual float WidestLine() = 0;
  virtual void ClearColor(const Rgba& colour) = 0;
  virtual void ClearDepth(double depth) = 0;
  virtual void Clear(GLbitfield mask) = 0;
  virtual void Viewport(int x, int y, int width, int height) = 0;

  // Matrices: GL_MODELVIEW unless told.
  virtual void LoadMatrix(GLenum stack, const Matrix4& matrix) = 0;
  virtual void PushMatrix() = 0;
  virtual void PopMatrix() = 0;
  virtual void Translate(double x, double y, double z) = 0;
  virtual void Rotate(double angleDeg, double x, double y, double z) = 0;

  // Light and material.
  virtual void Light(GLenum light, GLenum name, const std::array<float, 4>& value) = 0;
  virtual void Material(GLenum face, GLenum name, const std::array<float, 4>& value) = 0;  // GL_SHININESS: value[0]
  virtual void ColorMaterial(GLenum face, GLenum mode) = 0;

  // The shared quadric: made once, a failure is printed as "Quad Error: " and the text of GLU. Sphere draws with it
  // about the origin, poles on the z axis, with texture coordinates when `textured`.
  virtual void MakeQuadric() = 0;
  virtual void DeleteQuadric() = 0;
  virtual void Sphere(double radius, int slices, int stacks, bool textured) = 0;

  // Textures: a picture of red, green, blue, rows from the top, no padding, repeated sideways and smoothed at every
  // size. Its first row lies at t = 1, its first column at s = 0. 0 when the system cannot take it. Binding 0 unbinds.
  virtual GLuint MakeTexture(int width, int height, std::span<const std::uint8_t> rgb) = 0;
  virtual void BindTexture(GLuint texture) = 0;
  virtual void DeleteTexture(GLuint texture) = 0;

  // Selection.
  virtual void LoadName(GLuint name) = 0;

  // A picture of text: premultiplied RGBA, rows from the top, drawn with its top left corner at window position (x, y),
  // y counted from the top, depth in 0 (near) .. 1; the depth test as it stands.
  virtual void DrawPicture(double x, double y, double depth, int width, int height,
                           std::span<const std::uint8_t> rgba) = 0;
  // A filled rectangle of the window, y counted from the top, in front of everything.
  virtual void FillRectangle(double x, double y, double width, double height, const Rgba& colour) = 0;

  // The frame buffer: rows from the bottom, `channels` 3 (red, green, blue), rows padded to a multiple of 4 bytes.
  virtual void ReadPixels(int x, int y, int width, int height, std::span<std::uint8_t> rgb) = 0;
  // x, y, width, height of the viewport in force.
  virtual std::array<int, 4> ViewportInForce() = 0;
};

}  // namespace orv
