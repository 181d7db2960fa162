#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "numerics/progress_pace.h"
#include "plume/effect_context.h"
#include "plume/redeposition_kernel.h"
#include "plume/sputter_material.h"

namespace orv {

// How fast the cells (1 .. countI, 1 .. countJ) of a primitive are eroded, m/s; j runs fastest.
struct ErosionSpeeds {
  int countI = 0;
  int countJ = 0;
  std::vector<double> speed;
  double at(int i, int j) const {
    return speed[static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(countJ) + static_cast<std::size_t>(j - 1)];
  }
};

// Where the atoms of eroded cells settle. What arrives is added to quantity 89 + slot of the targets (m/s), slot being
// the place of the material in MaterialsUsed, and within the limits of the stores to RedepositionStore, step by step,
// with RedepositionExtrema and RedepositedMaterials.
class Redeposition {
 public:
  // `turning`: the rotating primitive when it is taken through its turn, else 0.
  Redeposition(EffectContext& context, FailureBlock& block, ProgressPace& progress, int turning);

  // Tells what exceeds the limits of the stores.
  void CheckLimits();

  // One source primitive: at a step of its turn, or step 0 when it stands. Atoms leave with a cosine law around the
  // normal and settle wherever source and target face each other; nothing stops them on their way. A convex primitive
  // is no target of its own. The rotating primitive receives at each of its stored steps, weighted by the share of the
  // time that it spends there.
  void FromPrimitive(int source, int step, const ErosionSpeeds& erosion, const SurfaceMaterials& materials);

 private:
  // The sources of one material, in the order of the cells.
  struct Emission {
    int slot = 0;
    std::vector<RedepositionSource> sources;
  };
  // A target primitive, or one step of the rotating one, within the columns.
  struct Part {
    int primitive = 0;
    int step = 0;
    int countI = 0;
    int countJ = 0;
    bool stored = false;  // places from the stores
    std::size_t begin = 0;
    std::size_t cell(int i, int j) const {
      return begin + static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(countJ) +
             static_cast<std::size_t>(j - 1);
    }
  };
  struct Receiver {
    double x, y, z, nx, ny, nz, weight;
  };
  struct IrregularTarget {
    std::size_t cell;
    Receiver receiver;
  };

  void FindSlot(const std::string& material, const char* message, int& slot);
  std::vector<Emission> EmissionsOf(int source, const ErosionSpeeds& erosion, const SurfaceMaterials& materials);
  RedepositionSource SourceCell(const std::array<const double*, 9>& planes, std::size_t cell, double speed,
                                const SputterMaterial& material);

  std::vector<int> TargetOrder() const;
  bool IsTarget(int target, int source);
  void CollectParts(int source, int step);
  void FillPlaces();
  void SetPlace(std::size_t cell, const Receiver& receiver);

  void Receive(const Emission& emission, const std::string& phase);
  void LoadSums(int slot);
  void AddUp(const std::vector<RedepositionSource>& sources, const std::string& phase);
  void AddRegular(std::span<const RedepositionSource> sources, double done, double share, const std::string& phase);
  void AddByStatement(const RedepositionSource& source, const Receiver& receiver, std::size_t cell);
  void StoreSums(int slot);
  void UpdateExtrema(int slot);
  static int QuantityOf(int slot);
  template <class Statement>
  void OnStoredCells(const Part& part, int slot, Statement&& statement);

  EffectContext& context_;
  FailureBlock& block_;
  ProgressPace& progress_;
  int turning_;
  std::vector<Part> parts_;
  RedepositionTargets targets_;
  std::vector<IrregularTarget> irregular_;
  bool convexTold_ = false;
  // Kept from primitive to primitive, or from cell to cell, where a statement fails.
  int firstSlot_ = 0;
  int secondSlot_ = 0;
  double atomicVolume_ = 0;    // m3
  double atomsPerSecond_ = 0;  // of a source cell
  double strength_ = 0;        // m3/s
  double growth_ = 0;          // m/s
};

}  // namespace orv
