#include "view/class_gl.h"

#include <algorithm>
#include <cmath>

#include "view/legend.h"
#include "view/plot_texts.h"

namespace orv {
namespace {

constexpr Rgba kLogoColour{170 / 255.0F, 85 / 255.0F, 1, 1};
constexpr double kVernalKm = 6978.137;  // where the label of the vernal direction stands, km from the Earth's centre
constexpr double kLabelShare = 0.65;
constexpr double kLetterShare = 0.6;
constexpr double kLogoSize = 1;
constexpr double kVernalSize = 3;
constexpr double kLetterSize = 0.5;
constexpr float kDotGrowth = 15;

constexpr std::array<float, 4> Grey(float level) {
  return {level, level, level, 1};
}

// Gives the matrix back, also when what is drawn fails.
class MatrixScope {
 public:
  explicit MatrixScope(GlApi& gl) : gl_(gl) { gl_.PushMatrix(); }
  ~MatrixScope() { gl_.PopMatrix(); }
  MatrixScope(const MatrixScope&) = delete;
  MatrixScope& operator=(const MatrixScope&) = delete;

 private:
  GlApi& gl_;
};

}  // namespace

ClassGl::ClassGl(glxCtl& control, PointLists& lists, ViewState& view, ErrorPrompt& prompt, const Clock& clock,
                 std::function<bool(PointLists&)> loadSample, SceneBodies* bodies)
    : control_(control),
      lists_(lists),
      view_(view),
      prompt_(prompt),
      clock_(clock),
      loadSample_(std::move(loadSample)),
      bodies_(bodies != nullptr ? *bodies : noBodies_) {
  scale_.NormPass(lists_);
}

ClassGl::~ClassGl() {
  control_.Gl().DeleteQuadric();
}

void ClassGl::init() {
  control_.DoubleBuffer(true);
}

void ClassGl::SetFirstLight(double unit) {
  Light light;
  light.ambient = {0, 1, 1, 1};
  light.diffuse = {1, 0, 1, 1};
  light.specular = {1, 1, 0, 1};
  light.position = {static_cast<float>(10 * unit), static_cast<float>(30 * unit), static_cast<float>(150 * unit), 1};
  light.enabled = true;
  control_.Lights(0, light);
}

void ClassGl::InitGL() {
  if (scale_.Scale80 == 0) scale_.Scale80 = 10;
  const double range = scale_.Scale80;
  GlApi& gl = control_.Gl();
  background_ = view_.Background();
  gl.ClearColor(background_);
  // A new context knows nothing of the lists and fonts of an old one.
  plot_ = DynamicPlot();
  axes_ = SceneAxes();
  bodies_.NewContext();
  maravoFont_ = false;
  SetFirstLight(1);

  Camera& camera = control_.Camera();
  camera.SetUp({0, 1, 0});
  camera.SetLookAt({0, 0, 0});
  camera.SetPosition({range, range, range});
  camera.SetPlanes(-10000, 10000);
  camera.SetFieldAngle(180);
  camera.SetProjection(kOrthographic);

  SurfaceMaterial material;
  material.ambient = Grey(0.1F);
  material.diffuse = {0.3F, 0.3F, 0.7F, 1};
  material.specular = Grey(0.6F);
  material.shininess = 60;
  control_.Materials(0, material);
  for (const int slot : {13, 14, 15, 16}) control_.Materials(slot, SurfaceMaterial{});

  control_.SceneRange(range);
  control_.PickDepth(64);
  gl.MakeQuadric();
  gl.Disable(GL_LIGHTING);
  gl.Enable(GL_DEPTH_TEST);
  gl.ShadeModel(GL_FLAT);
  gl.Enable(GL_COLOR_MATERIAL);
  gl.ColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);

  logoFont_ = control_.FontSet("Comic Sans MS", false, false, 10);
  labelFont_ = control_.FontSet("Arial", false, false, 9);
  smallFont_ = control_.FontSet("Arial", false, false, 6);
  largeFont_ = control_.FontSet("Arial", true, false, 14);
}

void ClassGl::Reshape(int width, int height, int& result) {
  control_.Camera().Viewport(width, height);
  result = -1;
}

CameraSituation ClassGl::Situation() const {
  CameraSituation situation;
  situation.firstDraw = lists_.FirstDraw;
  situation.plotLoaded = lists_.PlotLoaded == 1;
  situation.frozen = view_.frozen;
  situation.realIso = view_.realIso;
  return situation;
}

void ClassGl::CameraSet(const std::string& commande, int axeVerticalIn, int SPECaxeVertical) {
  cameras_.CameraSet(commande, axeVerticalIn, SPECaxeVertical, Situation(), control_.Camera(), control_.Trackball());
}

void ClassGl::Reset() {
  if (lists_.PlotNormalised == 1) return;
  if (!sampleTried_ && lists_.NumberPoints == kNoEntry && lists_.EventCount == kNoEntry && loadSample_) {
    loadSample_(lists_);
  }
  sampleTried_ = true;
  if (lists_.Scaled) playback_.Restore(lists_);  // the same lists once more: back to where they were filled
  NormaliseLists(lists_, scale_, prompt_);
  ++plotNumber_;
  SetFirstLight(scale_.RRMAXAXES * 0.01);
  playback_.Renew();
  plot_.Renew();
  redrawState_ = kRunning;
  rollingIndex_ = 0;
  if (view_.animation) {
    currIndexI_ = currIndexMini_ = 0;
    lists_.TraceMin = lists_.TraceMax = 0;
    return;
  }
  const auto part = [](double fraction, int last) {
    return last == kNoEntry ? 0 : static_cast<int>(std::nearbyint(fraction * last));
  };
  currIndexI_ = part(view_.redrawFraction, lists_.NumberPoints);
  currIndexMini_ = part(view_.startFraction, lists_.NumberPoints);
  lists_.TraceMax = lists_.TraceCount == kNoEntry ? kNoEntry : part(view_.redrawFraction, lists_.TraceCount);
  lists_.TraceMin = part(view_.startFraction, lists_.TraceCount);
}

void ClassGl::LoadPlot() {
  lists_.PlotNormalised = 0;
  Reset();
  control_.SceneRange(scale_.RRMAXAXES == 0 ? scale_.Scale80 : scale_.RRMAXAXES);
  lists_.KeepScale = 2;
  lists_.PlotLoaded = 1;
}

void ClassGl::Draw() {
  if (lists_.PlotLoaded == 0) LoadPlot();
  ClearInNewColour();
  if (view_.grid) control_.DrawGrid();
  DrawLabels();

  GlApi& gl = control_.Gl();
  const Options& options = view_.options;
  gl.Clear(GL_DEPTH_BUFFER_BIT);
  gl.Disable(GL_LIGHTING);
  gl.Enable(GL_BLEND);
  gl.BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  const auto pixels = [&](double thickness) { return static_cast<float>(thickness * control_.DeviceRatio()); };
  const float lineAxis = pixels(Thickness(options.ThicknessLineAxis));
  const float linePlot = pixels(Thickness(options.ThicknessLinePlot));
  gl.LineWidth(lineAxis);
  gl.PointSize(lineAxis);
  axes_.Draw(gl, options, scale_.RRMAXAXES,
             WideLineOf(gl, lineAxis, TowardsCamera(), control_.Camera().UnitsPerPixel()));
  gl.LineWidth(linePlot);
  const bool analysis = ProductWord(lists_.Title).find(kPlotPrefix) != std::string::npos;
  gl.PointSize(lists_.PenUpMode == 1 && !analysis ? linePlot * kDotGrowth : linePlot);
  DrawPlot();
}

// The control has cleared the picture in the colour of the paint before.
void ClassGl::ClearInNewColour() {
  const Rgba background = view_.Background();
  if (background_ == background) return;
  background_ = background;
  control_.Gl().ClearColor(background_);
  control_.Gl().Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// From the scene to the eye, the turn of the trackball taken back.
Vec3 ClassGl::TowardsCamera() const {
  const Camera::Frame axes = control_.Camera().Axes();
  const Matrix4& turn = control_.Trackball().Matrix();
  Vec3 direction{};
  for (std::size_t i = 0; i < 3; ++i) {
    direction[i] = axes.right[i] * turn[2] + axes.up[i] * turn[6] + axes.back[i] * turn[10];
  }
  return direction;
}

void ClassGl::DrawLabels() {
  const Options& options = view_.options;
  GlApi& gl = control_.Gl();
  if (lists_.MaravoFactor != 0 && !maravoFont_) {
    labelFont_ = control_.FontSet("Arial", false, false, 26);
    maravoFont_ = true;
  }
  gl.PushMatrix();
  if (lists_.EarthOn && options.Check1[0] == 0 && options.Check1[1] == 0) {
    control_.Text3D(labelFont_, "VernaL", lists_.FactorScale * kVernalKm, 0, 0, kVernalSize, kLogoColour);
  }
  const double length = scale_.RRMAXAXES * OptionOr(options.LengthAxisFactor, 1) * kLabelShare;
  if (options.Check1[4] == 0) {
    control_.Text3D(logoFont_, ProductWord(lists_.Title), length, 0, 0, kLogoSize, kLogoColour);
  }
  const double distance = length * OptionOr(options.PositionFactor, 1) * kLetterShare;
  if (options.Check1[3] == 0) {
    const FontHandle font = options.Check1[2] == 1 ? largeFont_ : labelFont_;
    const Rgba colour = OptionColour(options.ColourOfAxisLabels);
    control_.Text3D(font, "X ", distance, 0, 0, kLetterSize, colour);
    control_.Text3D(font, "Y ", 0, distance, 0, kLetterSize, colour);
    control_.Text3D(font, "Z ", 0, 0, distance, kLetterSize, colour);
  }
  gl.PopMatrix();
}

void ClassGl::DrawPlot() {
  GlApi& gl = control_.Gl();
  Guarded([&] {
    if ((lists_.TraceCount != kNoEntry && lists_.PenUpMode == 0) || view_.options.SatelliteShown == 1) {
      const MatrixScope scope(gl);
      bodies_.DrawSatellite(*this);
    }
    gl.ClearColor(background_);
    gl.ClearDepth(1);
    gl.ShadeModel(GL_FLAT);
    if (playback_.Advance(lists_, view_.AutoRotMode, view_.AutoRotPeriod, clock_.Seconds())) plot_.Renew();
    DynamicPlot::Input input{lists_, view_, scale_, currIndexI_, currIndexMini_};
    input.pixelRatio = control_.DeviceRatio();
    input.towardsCamera = TowardsCamera();
    input.unitsPerPixel = control_.Camera().UnitsPerPixel();
    plot_.Draw(gl, input);
    DrawPlotTexts({lists_, view_, scale_, plot_.Points(), currIndexI_, labelFont_, smallFont_}, control_);
    DrawEarthAndMoon();
  });
}

void ClassGl::DrawEarthAndMoon() {
  GlApi& gl = control_.Gl();
  const bool earth = lists_.EarthOn && view_.options.Check1[0] == 0;
  if (earth || view_.options.SatelliteShown == 1) bodies_.SetSunLight(*this);
  if (!earth) return;
  {
    const MatrixScope scope(gl);
    bodies_.DrawEarth(*this);
  }
  const MatrixScope scope(gl);
  bodies_.DrawMoon(*this);
}

// A failure ends what is being drawn; those that a list in the making can cause pass without a word.
void ClassGl::Guarded(const std::function<void()>& drawing) {
  constexpr std::array<int, 7> kSilent = {53, 52, 5, 75, 9, 94, 6};
  try {
    drawing();
  } catch (const RuntimeFailure& failure) {
    if (std::find(kSilent.begin(), kSilent.end(), static_cast<int>(failure.number())) != kSilent.end()) return;
    prompt_.dialogs().Tell(failure.description(), "Error D B L", Icon::Critical);
    prompt_.AbortQuestion();
  }
}

void ClassGl::DrawGDI() {
  DrawLegend({lists_, view_, scale_.RRMAXAXES, labelFont_}, control_);
}

void ClassGl::Painted() {
  if (lists_.FirstDraw == 1) return;
  // Once at the first paint and once more for the first plot; where both fall together, once.
  const bool hasPlot = lists_.NumberPoints != kNoEntry || lists_.EventCount != kNoEntry;
  const bool again = lists_.KeepScale == 2 && hasPlot && !cameraSetForPlot_;
  if (cameraSetOnce_ && !again) return;
  CameraSet("ISOnew", 2, 0);
  cameraSetOnce_ = true;
  if (again) cameraSetForPlot_ = true;
  control_.Redraw();
}

void ClassGl::ChangeCURRINDEXI(int NewValue, int& previous) {
  redrawState_ = kJustMoved;
  previous = currIndexI_;
  currIndexI_ = NewValue;
  if (lists_.NumberPoints > 0) {
    lists_.TraceMax =
        static_cast<int>(std::nearbyint(static_cast<double>(NewValue) * lists_.TraceCount / lists_.NumberPoints));
  }
}

void ClassGl::ChangeCURRINDEXMINI(int NewValue, int& previous) {
  if (NewValue == currIndexMini_) redrawState_ = kJustMoved;
  previous = currIndexMini_;
  currIndexMini_ = NewValue;
  if (lists_.NumberPoints > 0) {
    lists_.TraceMin =
        static_cast<int>(std::nearbyint(static_cast<double>(NewValue) * lists_.TraceCount / lists_.NumberPoints));
  }
}

void ClassGl::ChangeSTEPPT(int NewValue) {
  view_.STEPPT = NewValue;
}

void ClassGl::ShowVectors(bool shown) {
  if (shown == lists_.VectorsShown) return;
  const bool whole = lists_.TraceMax == lists_.TraceCount;
  lists_.TraceCount += shown ? lists_.VectorCount : -lists_.VectorCount;
  lists_.VectorsShown = shown;
  if (whole || lists_.TraceMax > lists_.TraceCount) lists_.TraceMax = lists_.TraceCount;
}

bool ClassGl::TheUpdateTimer_ThatTime(const TimerWork& work) {
  const bool turned = work.spin && work.spin();
  tickTen_ = tickTen_ % 10 + 1;
  tickFive_ = tickFive_ % 5 + 1;
  if (tickFive_ != 5) return turned;
  if (view_.STEPPT == 0) view_.STEPPT = 100;
  bool changed = turned;
  if (view_.animation && redrawState_ == kRunning && bodies_.TimerStep(*this)) changed = true;
  if (view_.animation && redrawState_ == kRunning && lists_.NumberPoints != kNoEntry) {
    const int before = currIndexI_;
    const int traceBefore = lists_.TraceMax;
    const int last = lists_.NumberPoints;
    currIndexI_ = currIndexI_ >= last - view_.STEPPT ? last : currIndexI_ + view_.STEPPT;
    if (last > 0 && lists_.TraceCount != kNoEntry) {
      const double step = static_cast<double>(view_.STEPPT) * lists_.TraceCount / last;
      const int traceStep = std::max(1, static_cast<int>(std::nearbyint(std::min(step, 1.0 * kListEntries))));
      lists_.TraceMax =
          lists_.TraceMax >= lists_.TraceCount - traceStep ? lists_.TraceCount : lists_.TraceMax + traceStep;
    }
    if (last > 0) rollingIndex_ = (rollingIndex_ + 1) % last;
    changed = changed || currIndexI_ != before || lists_.TraceMax != traceBefore;
  }
  if (redrawState_ > kFrozen) {
    redrawState_ = kFrozen;
    changed = true;
  }
  if (playback_.Due(lists_, view_.AutoRotMode, view_.AutoRotPeriod, clock_.Seconds())) changed = true;
  if (work.linkBusy && work.linkBusy()) return changed;
  const bool watched = view_.options.Interactive != 0 || (work.watchWanted && work.watchWanted());
  if (watched && tickTen_ <= 6 && work.watch) work.watch();
  if (work.movie && work.movie()) changed = true;
  return changed;
}

}  // namespace orv
