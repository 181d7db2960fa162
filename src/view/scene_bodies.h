#pragma once

#include "view/satellite.h"

namespace orv {

// The bodies round a plot: the satellite with its attitude, the Earth or the Moon as central body, the Moon as
// satellite of the Earth, the Sun as light and direction. It outlives the scene that draws it.
class OrbitBodies : public SceneBodies {
 public:
  // `textureFolder` holds the pictures that ViewState names; what is wrong with them is logged.
  OrbitBodies(ErrorPrompt& prompt, std::string textureFolder)
      : sky_(prompt), textures_(prompt.dialogs(), std::move(textureFolder)) {}

  void DrawSatellite(ClassGl& scene) override;
  void SetSunLight(ClassGl& scene) override;
  void DrawEarth(ClassGl& scene) override;
  void DrawMoon(ClassGl& scene) override;
  bool TimerStep(ClassGl& scene) override;
  void NewContext() override;

  const Satellite& SatelliteDrawn() const { return satellite_; }
  // Turn of the central body about its axis, degrees.
  double EarthAngleDrawn() const { return earthAngle_.Degrees(); }
  SolarSystem& Sky() { return sky_; }

 private:
  void DrawSphere(GlApi& gl, const std::string& file, const Rgba& plain, double angleDeg, double radius);
  void DrawPole(ClassGl& scene, double halfLength);

  SolarSystem sky_;
  SphereTextures textures_;
  Satellite satellite_;
  SceneAxes lines_;
  TurningAngle earthAngle_{4};
  GLuint poleList_ = 0;
};

}  // namespace orv
