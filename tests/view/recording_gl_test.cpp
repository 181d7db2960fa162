#include "view/recording_gl.h"

#include <gmock/gmock.h>

#include "numerics/failure.h"
#include "view/camera.h"

namespace orv {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::vector<ColouredVertex> kTriangle{
    {{0, 0, 0}, {255, 0, 0, 255}}, {{1, 0, 0}, {0, 255, 0, 255}}, {{0, 1, 0}, {0, 0, 255, 0}}};

TEST(RecordingGlTest, KeepsImmediateDrawingWithItsState) {
  RecordingGl gl;
  gl.Enable(GL_CULL_FACE);
  gl.CullFace(GL_FRONT);
  gl.LineWidth(2.5F);
  gl.Begin(GL_LINE_LOOP);
  gl.Color({1, 0.5F, 0, 0.6F});
  gl.Point({1, 2, 3});
  gl.Point({4, 5, 6});
  gl.End();
  gl.Disable(GL_CULL_FACE);
  ASSERT_THAT(gl.Primitives(), SizeIs(1));
  const DrawnPrimitive& drawn = gl.Primitives()[0];
  EXPECT_EQ(drawn.primitive, GLenum{GL_LINE_LOOP});
  EXPECT_THAT(drawn.vertices,
              ElementsAre(DrawnVertex{{1, 2, 3}, {1, 0.5F, 0, 0.6F}}, DrawnVertex{{4, 5, 6}, {1, 0.5F, 0, 0.6F}}));
  EXPECT_EQ(drawn.list, 0U);
  EXPECT_TRUE(drawn.state.On(GL_CULL_FACE));
  EXPECT_EQ(drawn.state.cullFace, GLenum{GL_FRONT});
  EXPECT_EQ(drawn.state.lineWidth, 2.5F);
  EXPECT_FALSE(gl.State().On(GL_CULL_FACE));
  EXPECT_THAT(gl.Errors(), IsEmpty());
}

TEST(RecordingGlTest, CompilesWithoutDrawingAndDrawsAtEachCall) {
  RecordingGl gl;
  const GLuint list = gl.GenLists(1);
  gl.NewList(list);
  gl.PointSize(4);
  gl.DrawVertices(GL_TRIANGLES, kTriangle);
  gl.EndList();
  EXPECT_THAT(gl.Primitives(), IsEmpty());
  EXPECT_EQ(gl.State().pointSize, 1);
  gl.StartPaint();
  gl.CallList(list);
  gl.CallList(list);
  EXPECT_EQ(gl.Count(GlOperation::CallList), 2U);
  EXPECT_THAT(gl.Calls(), SizeIs(2));
  ASSERT_THAT(gl.PrimitivesIn(list), SizeIs(2));
  EXPECT_EQ(gl.Primitives()[0].state.pointSize, 4);
  EXPECT_EQ(gl.Primitives()[1].vertices[2], (DrawnVertex{{0, 1, 0}, {0, 0, 1, 0}}));
  EXPECT_THAT(gl.Errors(), IsEmpty());
}

TEST(RecordingGlTest, AListCallsTheOtherAsItIsWhenDrawn) {
  RecordingGl gl;
  const GLuint outer = gl.GenLists(2);
  const GLuint inner = outer + 1;
  gl.NewList(outer);
  gl.Translate(10, 0, 0);
  gl.CallList(inner);
  gl.EndList();
  gl.NewList(inner);
  gl.DrawVertices(GL_POINTS, kTriangle);
  gl.EndList();
  gl.CallList(outer);
  ASSERT_THAT(gl.PrimitivesIn(inner), SizeIs(1));
  EXPECT_THAT(gl.PrimitivesIn(outer), IsEmpty());
  EXPECT_THAT(gl.Primitives()[0].InEye(1), ElementsAre(11, 0, 0));
  EXPECT_EQ(gl.ListLength(outer), 2U);
  gl.DeleteLists(inner, 1);
  EXPECT_FALSE(gl.HasList(inner));
  gl.CallList(outer);
  EXPECT_THAT(gl.Errors(), SizeIs(1));
}

TEST(RecordingGlTest, CarriesOutMatrices) {
  RecordingGl gl;
  Matrix4 half{0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1};
  gl.LoadMatrix(GL_PROJECTION, half);
  gl.PushMatrix();
  gl.Translate(0, 0, 5);
  gl.Rotate(90, 0, 0, 2);
  gl.DrawVertices(GL_POINTS, kTriangle);
  gl.PopMatrix();
  gl.Rotate(90, 0, 1, 0);
  gl.DrawVertices(GL_POINTS, kTriangle);
  gl.Rotate(90, 0, 0, 0);
  ASSERT_THAT(gl.Primitives(), SizeIs(2));
  const auto near = [](double value) { return DoubleNear(value, 1e-12); };
  EXPECT_THAT(gl.Primitives()[0].InEye(1), ElementsAre(near(0), near(1), near(5)));
  EXPECT_THAT(gl.Primitives()[0].OnDevice(1), ElementsAre(near(0), near(0.5), near(2.5)));
  EXPECT_THAT(gl.Primitives()[1].InEye(1), ElementsAre(near(0), near(0), near(-1)));
  EXPECT_THAT(gl.Errors(), IsEmpty());
}

TEST(RecordingGlTest, TellsWhatAnOpenGlWouldRefuse) {
  RecordingGl gl;
  gl.End();
  gl.Point({0, 0, 0});
  gl.EndList();
  gl.PopMatrix();
  gl.CallList(77);
  EXPECT_THAT(gl.Errors(), SizeIs(5));
  gl.StartPaint();
  gl.Begin(GL_POINTS);
  gl.Enable(GL_BLEND);
  gl.Begin(GL_POINTS);
  gl.DrawVertices(GL_POINTS, kTriangle);
  EXPECT_THAT(gl.Errors(), SizeIs(3));
}

TEST(RecordingGlTest, AListThatCallsItselfEnds) {
  RecordingGl gl;
  const GLuint list = gl.GenLists(1);
  gl.NewList(list);
  gl.DrawVertices(GL_POINTS, kTriangle);
  gl.CallList(list);
  gl.EndList();
  gl.CallList(list);
  EXPECT_THAT(gl.Primitives(), SizeIs(64));
  EXPECT_THAT(gl.Errors(), SizeIs(1));
}

TEST(RecordingGlTest, EmptyPrimitivesDrawNothing) {
  RecordingGl gl;
  gl.Begin(GL_LINE_STRIP);
  gl.End();
  EXPECT_THAT(gl.Primitives(), IsEmpty());
  EXPECT_EQ(gl.Count(GlOperation::Begin), 1U);
}

TEST(RecordingGlTest, KeepsPicturesAndRectangles) {
  RecordingGl gl;
  const std::vector<std::uint8_t> picture(2 * 3 * 4, 7);
  gl.DrawPicture(5, 6, 0.25, 2, 3, picture);
  gl.FillRectangle(1, 2, 8, 4, {1, 0, 0, 1});
  ASSERT_THAT(gl.Pictures(), SizeIs(1));
  EXPECT_EQ(gl.Pictures()[0].rgba, picture);
  EXPECT_EQ(gl.Pictures()[0].depth, 0.25);
  ASSERT_THAT(gl.Rectangles(), SizeIs(1));
  EXPECT_EQ(gl.Rectangles()[0].width, 8);
}

TEST(RecordingGlTest, ReadsTheClearColourInPaddedRows) {
  RecordingGl gl;
  gl.ClearColor({1, 0.5F, 0, 1});
  std::vector<std::uint8_t> rows(4 * 2 * 2, 9);
  gl.ReadPixels(0, 0, 1, 2, std::span(rows).first(8));
  EXPECT_THAT(std::span(rows).first(9), ElementsAre(255, 128, 0, 9, 255, 128, 0, 9, 9));
}

TEST(RecordingGlTest, TexturesAreKeptUntilTheyAreDeleted) {
  RecordingGl gl;
  const std::vector<std::uint8_t> rgb{1, 2, 3, 4, 5, 6};
  const GLuint texture = gl.MakeTexture(2, 1, rgb);
  ASSERT_NE(texture, 0U);
  EXPECT_EQ(gl.Textures().at(texture).rgb, rgb);
  gl.BindTexture(texture);
  gl.LoadMatrix(GL_TEXTURE, IdentityMatrix());
  gl.Translate(1, 0, 0);
  gl.Sphere(3, 8, 6, true);
  ASSERT_EQ(gl.Spheres().size(), 1U);
  EXPECT_EQ(gl.Spheres()[0].radius, 3);
  EXPECT_TRUE(gl.Spheres()[0].textured);
  EXPECT_EQ(gl.Spheres()[0].state.textureName, texture);
  EXPECT_EQ(gl.Spheres()[0].InEye(), (std::array<double, 3>{1, 0, 0}));
  EXPECT_TRUE(gl.Errors().empty());
  gl.DeleteTexture(texture);
  EXPECT_TRUE(gl.Textures().empty());
  gl.BindTexture(texture);
  EXPECT_EQ(gl.Errors().size(), 1U);
  EXPECT_EQ(gl.MakeTexture(0, 1, rgb), 0U);
  EXPECT_THROW(gl.MakeTexture(2, 2, rgb), RuntimeFailure);
}

}  // namespace
}  // namespace orv
