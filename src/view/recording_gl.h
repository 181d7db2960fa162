#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "view/gl_api.h"

namespace orv {

enum class GlOperation {
  GenLists,
  NewList,
  EndList,
  CallList,
  DeleteLists,
  Begin,
  End,
  Color,
  Point,
  DrawVertices,
  Enable,
  Disable,
  ShadeModel,
  CullFace,
  BlendFunc,
  LineWidth,
  PointSize,
  ClearColor,
  ClearDepth,
  Clear,
  Viewport,
  LoadMatrix,
  PushMatrix,
  PopMatrix,
  Translate,
  Rotate,
  Light,
  Material,
  ColorMaterial,
  MakeQuadric,
  DeleteQuadric,
  Sphere,
  MakeTexture,
  BindTexture,
  DeleteTexture,
  LoadName,
  DrawPicture,
  FillRectangle,
  ReadPixels
};

// One call. `names` are its enumerations and list names in their order, `values` its other numbers.
struct GlCall {
  GlOperation operation{};
  std::array<GLuint, 2> names{};
  std::array<double, 4> values{};
  std::shared_ptr<const std::vector<ColouredVertex>> vertices{};  // of DrawVertices
  std::shared_ptr<const Matrix4> matrix{};                        // of LoadMatrix
};

struct DrawnVertex {
  Vertex position;
  Rgba colour;
  friend bool operator==(const DrawnVertex&, const DrawnVertex&) = default;
};

// What holds while something is drawn.
struct DrawingState {
  Matrix4 modelview{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  Matrix4 projection{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  Rgba colour{1, 1, 1, 1};
  float lineWidth = 1;  // as asked for
  float pointSize = 1;
  std::set<GLenum> enabled;
  GLenum cullFace = GL_BACK;
  GLenum shadeModel = GL_SMOOTH;
  std::array<GLenum, 2> blend{GL_ONE, GL_ZERO};
  Rgba clearColour{0, 0, 0, 0};
  double clearDepth = 1;
  Matrix4 texture{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  GLuint textureName = 0;  // bound
  GLuint name = 0;         // of the selection

  bool On(GLenum capability) const { return enabled.contains(capability); }
};

struct DrawnPrimitive {
  GLenum primitive = GL_POINTS;
  std::vector<DrawnVertex> vertices;  // as given, before the matrices
  GLuint list = 0;                    // the innermost list that it came from, 0 for none
  DrawingState state;                 // at its beginning
  // A vertex as the eye sees it (modelview), and in device coordinates -1 .. 1.
  std::array<double, 3> InEye(std::size_t vertex) const;
  std::array<double, 3> OnDevice(std::size_t vertex) const;
};

struct DrawnSphere {
  double radius;
  int slices, stacks;
  bool textured;
  DrawingState state;
  // Its centre as the eye sees it.
  std::array<double, 3> InEye() const { return {state.modelview[12], state.modelview[13], state.modelview[14]}; }
};

struct DrawnPicture {
  double x, y, depth;
  int width, height;
  std::vector<std::uint8_t> rgba;
};

struct DrawnRectangle {
  double x, y, width, height;
  Rgba colour;
};

// An OpenGL without a picture: every call is kept, lists are carried out by their meaning, and what is drawn can be
// looked at.
class RecordingGl : public GlApi {
 public:
  // Forgets the calls and what was drawn; lists, matrices and state stay.
  void StartPaint();

  // All calls of the client since StartPaint, those that a list compiled included, those that a called list carried
  // out not.
  const std::vector<GlCall>& Calls() const { return calls_; }
  std::size_t Count(GlOperation operation) const;

  // Drawn since StartPaint in their order, through lists and without; a Begin without a vertex draws nothing.
  const std::vector<DrawnPrimitive>& Primitives() const { return primitives_; }
  std::vector<DrawnPrimitive> PrimitivesOf(GLenum primitive) const;
  std::vector<DrawnPrimitive> PrimitivesIn(GLuint list) const;
  const std::vector<DrawnSphere>& Spheres() const { return spheres_; }
  // Textures that are there, by name: the pictures as given.
  struct KeptTexture {
    int width, height;
    std::vector<std::uint8_t> rgb;
  };
  const std::map<GLuint, KeptTexture>& Textures() const { return textures_; }
  const std::vector<DrawnPicture>& Pictures() const { return pictures_; }
  const std::vector<DrawnRectangle>& Rectangles() const { return rectangles_; }

  const DrawingState& State() const { return state_; }
  bool HasList(GLuint list) const { return lists_.contains(list); }
  std::size_t ListLength(GLuint list) const;
  // Calls that an OpenGL would refuse, each told in words; empty for a correct client.
  const std::vector<std::string>& Errors() const { return errors_; }

  void SetWidestLine(float pixels) { widestLine_ = pixels; }

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
  float WidestLine() override { return widestLine_; }
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
  void MakeQuadric() override;
  void DeleteQuadric() override;
  void Sphere(double radius, int slices, int stacks, bool textured) override;

  // Made at once, also while a list is compiled.
  GLuint MakeTexture(int width, int height, std::span<const std::uint8_t> rgb) override;
  void BindTexture(GLuint texture) override;
  void DeleteTexture(GLuint texture) override;
  void LoadName(GLuint name) override;
  // Drawn at once, also while a list is compiled.
  void DrawPicture(double x, double y, double depth, int width, int height,
                   std::span<const std::uint8_t> rgba) override;
  void FillRectangle(double x, double y, double width, double height, const Rgba& colour) override;
  // The clear colour everywhere.
  void ReadPixels(int x, int y, int width, int height, std::span<std::uint8_t> rgb) override;
  std::array<int, 4> ViewportInForce() override { return viewport_; }

 private:
  void Take(const GlCall& call);
  void Execute(const GlCall& call);
  void ExecuteList(GLuint list);
  void ExecuteDrawing(const GlCall& call);
  void ExecuteState(const GlCall& call);
  void ExecuteMatrix(const GlCall& call);
  void StartPrimitive(GLenum primitive);
  void EndPrimitive();
  void Refuse(const std::string& what) { errors_.push_back(what); }

  std::vector<GlCall> calls_;
  std::map<GLuint, std::vector<GlCall>> lists_;
  GLuint nextList_ = 1;
  GLuint compiling_ = 0;
  std::vector<GlCall> compiled_;

  DrawingState state_;
  std::vector<Matrix4> matrixStack_;
  bool inPrimitive_ = false;
  DrawnPrimitive open_;
  std::vector<GLuint> callStack_;

  std::vector<DrawnPrimitive> primitives_;
  std::vector<DrawnSphere> spheres_;
  std::map<GLuint, KeptTexture> textures_;
  GLuint nextTexture_ = 1;
  std::vector<DrawnPicture> pictures_;
  std::vector<DrawnRectangle> rectangles_;
  std::vector<std::string> errors_;
  std::array<int, 4> viewport_{0, 0, 1, 1};
  float widestLine_ = 10;
};

}  // namespace orv
