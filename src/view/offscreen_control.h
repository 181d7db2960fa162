#pragma once

#include <memory>
#include <string>

#include "view/image_file.h"
#include "view/scene_control.h"

namespace orv {

struct OffscreenWish {
  int width = 1024;  // device pixels
  int height = 768;
  double deviceRatio = 1;
  int samples = 4;  // for a pixel; fewer when the system has not so many or the picture is very large
};

// A view without a window or a display: the picture stands in a frame buffer of its own.
class OffscreenControl : public SceneControl {
 public:
  // The control, or a sentence why there can be none.
  struct Made {
    std::unique_ptr<OffscreenControl> control;
    std::string message;
  };
  static Made Make(const OffscreenWish& wish, FontFinder fonts = SystemFonts());
  ~OffscreenControl() override;

  // What the last paint has drawn; empty when its OpenGL is lost.
  Image Picture();
  // Samples for a pixel, 1 for plain pixels.
  int Samples() const;

 protected:
  bool MakeCurrent() override;

 private:
  class Context;
  OffscreenControl(std::unique_ptr<Context> context, const OffscreenWish& wish, FontFinder fonts);

  std::unique_ptr<Context> context_;
};

}  // namespace orv
