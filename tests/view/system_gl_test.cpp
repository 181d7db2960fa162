#include "view/system_gl.h"

#include <gmock/gmock.h>

#include "numerics/failure.h"
#include "view/offscreen_control.h"

namespace orv {
namespace {

using ::testing::Each;

constexpr int kWidth = 64;
constexpr int kHeight = 48;
using Pixel = std::array<int, 3>;
constexpr Pixel kBlack{0, 0, 0};
constexpr Pixel kRed{255, 0, 0};
constexpr Pixel kGreen{0, 255, 0};
constexpr Pixel kBlue{0, 0, 255};

// Window coordinates from the top left; depth 0 is in front.
Matrix4 WindowProjection() {
  return {2.0 / kWidth, 0, 0, 0, 0, -2.0 / kHeight, 0, 0, 0, 0, 2, 0, -1, 1, -1, 1};
}

std::vector<ColouredVertex> Square(float x, float y, float side, const Pixel& colour, float z = 0.5F) {
  const std::array<std::uint8_t, 4> bytes{static_cast<std::uint8_t>(colour[0]), static_cast<std::uint8_t>(colour[1]),
                                          static_cast<std::uint8_t>(colour[2]), 255};
  return {{{x, y, z}, bytes}, {{x, y + side, z}, bytes}, {{x + side, y + side, z}, bytes}, {{x + side, y, z}, bytes}};
}

// So many squares, one behind the other, that they are an array of their own.
std::vector<ColouredVertex> LongSquare(float x, float y, float side, const Pixel& colour) {
  std::vector<ColouredVertex> vertices;
  for (int i = 0; i < 100; ++i) {
    const std::vector<ColouredVertex> one = Square(x, y, side, colour);
    vertices.insert(vertices.end(), one.begin(), one.end());
  }
  return vertices;
}

class SystemGlTest : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    OffscreenControl::Made made = OffscreenControl::Make({kWidth, kHeight, 1, GetParam()});
    ASSERT_NE(made.control, nullptr) << made.message;
    control_ = std::move(made.control);
    gl_ = &control_->Gl();
    gl_->Viewport(0, 0, kWidth, kHeight);
    gl_->LoadMatrix(GL_PROJECTION, WindowProjection());
    gl_->LoadMatrix(GL_MODELVIEW, IdentityMatrix());
    gl_->Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    ASSERT_EQ(glGetError(), GLenum{GL_NO_ERROR});
  }
  void TearDown() override {
    if (control_) {
      EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    }
  }
  Pixel At(int x, int y) {
    const Image image = control_->Picture();
    const std::uint8_t* pixel = &image.rgb[static_cast<std::size_t>((y * kWidth + x) * 3)];
    return {pixel[0], pixel[1], pixel[2]};
  }

  std::unique_ptr<OffscreenControl> control_;
  GlApi* gl_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Samples, SystemGlTest, ::testing::Values(1, 4));

TEST_P(SystemGlTest, DrawsVerticesInOrder) {
  gl_->DrawVertices(GL_QUADS, Square(10, 10, 10, kRed));
  gl_->DrawVertices(GL_QUADS, {});
  EXPECT_EQ(At(15, 15), kRed);
  EXPECT_EQ(At(5, 5), kBlack);
  EXPECT_EQ(At(21, 15), kBlack);
}

TEST_P(SystemGlTest, AListDrawsAtItsCallWithItsArrays) {
  const GLuint list = gl_->GenLists(1);
  gl_->NewList(list);
  gl_->DrawVertices(GL_QUADS, LongSquare(0, 0, 10, kRed));
  gl_->Begin(GL_QUADS);
  gl_->Color({0, 1, 0, 1});
  for (const ColouredVertex& vertex : Square(5, 5, 10, kGreen)) gl_->Point(vertex.position);
  gl_->End();
  gl_->DrawVertices(GL_QUADS, LongSquare(10, 10, 10, kBlue));
  gl_->DrawVertices(GL_QUADS, Square(30, 30, 4, kRed));
  gl_->EndList();
  EXPECT_EQ(At(2, 2), kBlack);
  gl_->CallList(list);
  EXPECT_EQ(At(2, 2), kRed);
  EXPECT_EQ(At(7, 7), kGreen);
  EXPECT_EQ(At(12, 12), kBlue);  // the last one, as depth is not tested
  EXPECT_EQ(At(32, 32), kRed);
  gl_->DeleteLists(list, 1);
  gl_->Clear(GL_COLOR_BUFFER_BIT);
  gl_->CallList(list);
  EXPECT_EQ(At(2, 2), kBlack);
}

TEST_P(SystemGlTest, StateWithinAListHoldsForItsArrays) {
  const GLuint list = gl_->GenLists(1);
  gl_->NewList(list);
  gl_->PushMatrix();
  gl_->Translate(20, 0, 0);
  gl_->DrawVertices(GL_QUADS, LongSquare(0, 0, 10, kRed));
  gl_->PopMatrix();
  gl_->DrawVertices(GL_QUADS, LongSquare(0, 20, 10, kBlue));
  gl_->EndList();
  gl_->CallList(list);
  EXPECT_EQ(At(25, 5), kRed);
  EXPECT_EQ(At(5, 5), kBlack);
  EXPECT_EQ(At(5, 25), kBlue);
}

TEST_P(SystemGlTest, AListCallsOthersAsTheyAreWhenDrawn) {
  const GLuint outer = gl_->GenLists(2);
  const GLuint inner = outer + 1;
  gl_->NewList(outer);
  gl_->CallList(inner);
  gl_->EndList();
  for (const Pixel& colour : {kRed, kGreen}) {
    gl_->NewList(inner);
    gl_->DrawVertices(GL_QUADS, LongSquare(0, 0, 10, colour));
    gl_->EndList();
    gl_->CallList(outer);
    EXPECT_EQ(At(5, 5), colour);
  }
  gl_->NewList(inner);
  gl_->CallList(outer);  // round and round
  gl_->EndList();
  gl_->CallList(outer);
}

TEST_P(SystemGlTest, ArraysAndLoopsDrawTheSamePixels) {
  std::vector<ColouredVertex> vertices;
  for (int i = 0; i < 200; ++i) {
    const auto part = [&](int step, int limit) { return static_cast<float>(i * step % limit); };
    const std::vector<ColouredVertex> one = Square(part(7, 50), part(11, 40), 6.5F, {i, 255 - i, i / 2});
    vertices.insert(vertices.end(), one.begin(), one.end());
  }
  const GLuint list = gl_->GenLists(1);
  gl_->NewList(list);
  gl_->DrawVertices(GL_QUADS, vertices);
  gl_->EndList();
  gl_->CallList(list);
  const Image fromArrays = control_->Picture();
  gl_->Clear(GL_COLOR_BUFFER_BIT);
  gl_->Begin(GL_QUADS);
  for (const ColouredVertex& vertex : vertices) {
    const auto& c = vertex.colour;
    gl_->Color({static_cast<float>(c[0]) / 255, static_cast<float>(c[1]) / 255, static_cast<float>(c[2]) / 255, 1});
    gl_->Point(vertex.position);
  }
  gl_->End();
  EXPECT_EQ(control_->Picture(), fromArrays);
}

TEST_P(SystemGlTest, WidthsAndSizesAreClamped) {
  EXPECT_GE(gl_->WidestLine(), 1);
  for (const float asked : {0.0F, -3.0F, 1e9F, std::nanf("")}) {
    gl_->LineWidth(asked);
    gl_->PointSize(asked);
    GLfloat width = 0;
    GLfloat size = 0;
    glGetFloatv(GL_LINE_WIDTH, &width);
    glGetFloatv(GL_POINT_SIZE, &size);
    EXPECT_GT(width, 0);
    EXPECT_LE(width, gl_->WidestLine());
    EXPECT_GT(size, 0);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
  }
}

TEST_P(SystemGlTest, APictureStandsAtItsCornerRowsFromTheTop) {
  std::vector<std::uint8_t> picture;
  for (int i = 0; i < 3 * 2; ++i) {
    const bool first = i == 0;
    const bool half = i == 5;  // half covered green
    picture.insert(picture.end(),
                   {static_cast<std::uint8_t>(first ? 255 : 0), static_cast<std::uint8_t>(half ? 128 : 0), 0,
                    static_cast<std::uint8_t>(first  ? 255
                                              : half ? 128
                                                     : 0)});
  }
  gl_->DrawVertices(GL_QUADS, Square(0, 0, 40, kBlue));
  gl_->DrawPicture(10.3, 20.4, 0, 3, 2, picture);
  EXPECT_EQ(At(10, 20), kRed);
  EXPECT_EQ(At(11, 20), kBlue);
  EXPECT_EQ(At(10, 21), kBlue);
  const Pixel mixed = At(12, 21);
  EXPECT_NEAR(mixed[1], 128, 1);
  EXPECT_NEAR(mixed[2], 127, 1);
  EXPECT_EQ(At(9, 19), kBlue);
}

TEST_P(SystemGlTest, APictureKeepsToTheDepthTestAndHidesNothing) {
  const std::vector<std::uint8_t> red{255, 0, 0, 255};
  const std::vector<std::uint8_t> clear(4, 0);
  gl_->Enable(GL_DEPTH_TEST);
  gl_->DrawVertices(GL_QUADS, Square(0, 0, 10, kBlue, 0.5F));
  gl_->DrawPicture(2, 2, 0.75, 1, 1, red);
  gl_->DrawPicture(4, 4, 0.25, 1, 1, red);
  gl_->DrawPicture(20, 20, 0.1, 1, 1, clear);
  gl_->DrawVertices(GL_QUADS, Square(20, 20, 1, kGreen, 0.9F));
  EXPECT_EQ(At(2, 2), kBlue);
  EXPECT_EQ(At(4, 4), kRed);
  EXPECT_EQ(At(20, 20), kGreen);
}

TEST_P(SystemGlTest, PicturesPartlyOutsideAreCut) {
  const std::vector<std::uint8_t> red(16 * 16 * 4, 255);
  gl_->DrawPicture(-8, -8, 0, 16, 16, red);
  gl_->DrawPicture(kWidth - 4, kHeight - 4, 0, 16, 16, red);
  EXPECT_EQ(At(7, 7), (Pixel{255, 255, 255}));
  EXPECT_EQ(At(8, 8), kBlack);
  EXPECT_EQ(At(kWidth - 1, kHeight - 1), (Pixel{255, 255, 255}));
  EXPECT_EQ(At(kWidth - 5, kHeight - 5), kBlack);
}

TEST_P(SystemGlTest, TooFewBytesAreFailure9) {
  const std::vector<std::uint8_t> few(15);
  std::vector<std::uint8_t> rows(15);
  try {
    gl_->DrawPicture(0, 0, 0, 2, 2, few);
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::SubscriptOutOfRange);
  }
  EXPECT_THROW(gl_->ReadPixels(0, 0, 2, 2, rows), RuntimeFailure);
}

TEST_P(SystemGlTest, ARectangleIsInFrontAndBlended) {
  gl_->Enable(GL_DEPTH_TEST);
  gl_->Enable(GL_CULL_FACE);
  gl_->CullFace(GL_FRONT_AND_BACK);
  gl_->FillRectangle(8, 4, 10, 6, {1, 0, 0, 1});
  gl_->FillRectangle(8, 20, 10, 6, {0, 1, 0, 0.5F});
  EXPECT_EQ(At(8, 4), kRed);
  EXPECT_EQ(At(17, 9), kRed);
  EXPECT_EQ(At(18, 9), kBlack);
  EXPECT_EQ(At(17, 10), kBlack);
  EXPECT_EQ(At(7, 4), kBlack);
  EXPECT_NEAR(At(10, 22)[1], 128, 1);
}

TEST_P(SystemGlTest, PicturesAndRectanglesLeaveTheStateAlone) {
  gl_->Enable(GL_DEPTH_TEST);
  gl_->Enable(GL_LIGHTING);
  gl_->Disable(GL_BLEND);
  gl_->BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  gl_->Color({0.25F, 0.5F, 0.75F, 1});
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  gl_->DrawPicture(1, 1, 0, 1, 1, std::vector<std::uint8_t>(4, 255));
  gl_->FillRectangle(1, 1, 4, 4, {1, 1, 1, 1});
  EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
  EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
  EXPECT_FALSE(glIsEnabled(GL_BLEND));
  EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
  std::array<GLint, 4> number{};
  glGetIntegerv(GL_BLEND_SRC, number.data());
  EXPECT_EQ(number[0], GL_SRC_ALPHA);
  glGetIntegerv(GL_UNPACK_ALIGNMENT, number.data());
  EXPECT_EQ(number[0], 1);
  glGetIntegerv(GL_MATRIX_MODE, number.data());
  EXPECT_EQ(number[0], GL_MODELVIEW);
  GLboolean writesDepth = GL_FALSE;
  glGetBooleanv(GL_DEPTH_WRITEMASK, &writesDepth);
  EXPECT_TRUE(writesDepth);
  std::array<GLfloat, 4> colour{};
  glGetFloatv(GL_CURRENT_COLOR, colour.data());
  EXPECT_THAT(colour, ::testing::ElementsAre(0.25F, 0.5F, 0.75F, 1));
  std::array<GLfloat, 16> matrix{};
  glGetFloatv(GL_PROJECTION_MATRIX, matrix.data());
  EXPECT_EQ(matrix[12], -1);
}

TEST_P(SystemGlTest, ReadsRowsFromTheBottomWithPadding) {
  gl_->FillRectangle(0, 0, kWidth, kHeight, {0, 0, 1, 1});
  gl_->FillRectangle(10, kHeight - 1, 1, 1, {1, 0, 0, 1});  // lowest row
  std::vector<std::uint8_t> rows(2 * 12 + 4, 77);
  gl_->ReadPixels(10, 0, 3, 2, std::span(rows).first(24));
  EXPECT_EQ(rows[0], 255);
  EXPECT_EQ(rows[2], 0);
  EXPECT_EQ(rows[5], 255);
  EXPECT_EQ(rows[12], 0);
  EXPECT_EQ(rows[14], 255);
  EXPECT_THAT(std::span(rows).subspan(24), Each(77));
}

TEST_P(SystemGlTest, ReadingLeavesTheFrameBufferInPlace) {
  std::vector<std::uint8_t> rows(4);
  gl_->ReadPixels(0, 0, 1, 1, rows);
  gl_->DrawVertices(GL_QUADS, Square(0, 0, 10, kRed));
  EXPECT_EQ(At(5, 5), kRed);
}

TEST_P(SystemGlTest, TheContextHasWhatIsNeeded) {
  EXPECT_EQ(MissingInContext(), "");
}

}  // namespace
}  // namespace orv
