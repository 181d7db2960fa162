#include "view/scene_bodies.h"

#include <cmath>

namespace orv {
namespace {

constexpr double kEarthStep = 4;  // degrees of a timer step at the end of the plot
constexpr double kMoonViewStep = 1;
constexpr double kLineWidth = 7;
constexpr float kPoleWidth = 2;
constexpr double kPoleLength = 3;  // radii
constexpr Rgba kWhite{1, 1, 1, 1};
constexpr Rgba kYellow{1, 1, 0, 1};

bool AtFirstPoint(const ClassGl& scene) {
  return scene.CURRINDEXI() == scene.CURRINDEXMINI();
}

}  // namespace

void OrbitBodies::DrawSatellite(ClassGl& scene) {
  satellite_.Draw(scene, lines_, SunPlace(sky_, PointShown(scene, scene.Lists()).day));
}

// The light stands where the Sun is; the line shows the same direction.
void OrbitBodies::SetSunLight(ClassGl& scene) {
  const PointLists& lists = scene.Lists();
  const Vec3 sun = SunPlace(sky_, PointShown(scene, lists).day);
  const double factor = lists.FactorScale;
  Light light;
  light.ambient = {0.2F, 0.2F, 0.4F, 1};
  light.diffuse = {1, 1, 0.7F, 1};
  light.specular = {0.9F, 0.9F, 0.9F, 1};
  light.position = {static_cast<float>(sun[0] * factor), static_cast<float>(sun[1] * factor),
                    static_cast<float>(sun[2] * factor), 1};
  light.enabled = true;
  glxCtl& control = scene.Control();
  control.Lights(0, light);
  const double reach = SunLineLength(scene, lists) / kSunDistanceKm;
  lines_.AddAxisFromCenter(control.Gl(), scene.View().options, kLineWidth, 1, 1, 0, 1, 1, 0, sun[0] * reach,
                           sun[1] * reach, sun[2] * reach, control.DeviceRatio());
}

// A picture is shown in its own colours, a sphere without one in the plain colour.
void OrbitBodies::DrawSphere(GlApi& gl, const std::string& file, const Rgba& plain, double angleDeg, double radius) {
  gl.Enable(GL_LIGHTING);
  gl.ShadeModel(GL_SMOOTH);
  gl.MakeQuadric();
  const GLuint texture = textures_.Texture(gl, file);
  gl.Color(texture != 0 ? kWhite : plain);
  if (texture != 0) {
    gl.Enable(GL_TEXTURE_2D);
    gl.BindTexture(texture);
    gl.LoadMatrix(GL_TEXTURE, IdentityMatrix());
  }
  gl.Rotate(angleDeg, 0, 0, 1);
  gl.Sphere(radius, kSphereSlices, kSphereSlices, texture != 0);
  if (texture != 0) {
    gl.BindTexture(0);
    gl.Disable(GL_TEXTURE_2D);
  }
  gl.Disable(GL_LIGHTING);
}

void OrbitBodies::DrawEarth(ClassGl& scene) {
  const PointLists& lists = scene.Lists();
  const ViewState& view = scene.View();
  const double day = PointShown(scene, lists).day;
  earthAngle_.SetStep(lists.MoonView ? kMoonViewStep : kEarthStep);
  const double angle = earthAngle_.At(scene, lists, lists.MoonView ? MoonViewAngle(day) : EarthAngle(day), day);
  DrawSphere(scene.Control().Gl(), lists.MoonView ? view.moonTexture : view.earthTexture,
             OptionColour(view.options.ColourOfSphere), angle, CentralRadiusKm(lists) * lists.FactorScale);
}

void OrbitBodies::DrawPole(ClassGl& scene, double halfLength) {
  glxCtl& control = scene.Control();
  GlApi& gl = control.Gl();
  const Options& options = scene.View().options;
  const auto z = static_cast<float>(halfLength);
  if (poleList_ == 0) poleList_ = gl.GenLists(1);
  gl.NewList(poleList_);
  gl.Color(options.Check1[1] == 0 ? kYellow : OptionColour(options.ColourOfAxis));
  gl.LineWidth(kPoleWidth * static_cast<float>(control.DeviceRatio()));
  gl.Begin(GL_LINES);
  gl.Point({0, 0, -z});
  gl.Point({0, 0, z});
  gl.End();
  gl.EndList();
  gl.CallList(poleList_);
}

void OrbitBodies::DrawMoon(ClassGl& scene) {
  const PointLists& lists = scene.Lists();
  if (lists.MoonView) return;
  const ViewState& view = scene.View();
  const double day = PointShown(scene, lists).day;
  const double moonFactor = view.options.MoonFactor > 1 ? view.options.MoonFactor : 1;
  const Vec3 place = MoonOnEcliptic(sky_, day);
  const double angle = AtFirstPoint(scene) ? 1 : MoonAngle(day);
  GlApi& gl = scene.Control().Gl();
  gl.Rotate(kEclipticTiltDeg, 1, 0, 0);
  gl.Translate(place[0] * lists.FactorScale, place[1] * lists.FactorScale, place[2] * lists.FactorScale);
  if (view.options.Check1[3] == 0) DrawPole(scene, kMoonRadiusKm * lists.FactorScale * kPoleLength * moonFactor);
  DrawSphere(gl, view.moonTexture, OptionColour(view.options.ColourOfSphere), angle,
             moonFactor * kMoonSatelliteRadiusKm * lists.FactorScale);
}

bool OrbitBodies::TimerStep(ClassGl& scene) {
  if (AtFirstPoint(scene)) return false;
  satellite_.Step();
  const bool turned = earthAngle_.Step();
  return turned && scene.Lists().EarthOn && scene.View().options.Check1[0] == 0;
}

void OrbitBodies::NewContext() {
  textures_.NewContext();
  lines_ = SceneAxes();
  poleList_ = 0;
}

}  // namespace orv
