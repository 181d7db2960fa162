#include "plume/thruster_data.h"

#include <vector>

#include "model/cell_table.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

class ThrusterReader {
 public:
  ThrusterReader(const Database& database, const std::string& name, ThrusterVector& data, DatabaseRowsUsed& rowsUsed,
                 CellText& reader)
      : database_(database),
        name_(name),
        data_(data),
        rowsUsed_(rowsUsed),
        reader_(reader),
        block_(reader.prompt(),
               {"Error fautea_SpaceApplicationthrusterData ", "Error fautea_SpaceApplicationthrusterData"}) {}

  void Read(const PhysicalConstants& constants) {
    ReadParameters();
    ReadSpeciesOfThruster();
    ReadGases();
    StoreParameters();
    ReadPlumeTables();
    if (speciesCount_ == 2) {
      ComputeCurrentShares(constants);
    } else {
      reader_.prompt().dialogs().Tell(
          "Thruster without double chage not existing. If you need a new Model please contact Maravo.", kContactTitle);
      reader_.prompt()("faute x17 ");
    }
    block_([&] { data_(slot::indexfinThruster) = static_cast<double>(slot::LastParameter); });
    CheckOrderOfCharges();
  }

 private:
  std::string Cell(int row, int column) const { return Trim(database_.DatabaseCells(row, column)); }
  double NumberIn(int row, int column) {
    return row > 0 ? reader_.ReadNumberAt(Cell(row, column), database_.PlaceOf(row, column)) : 0;
  }

  void AddRows(const TableLocation& table, bool withHead) {
    if (table.titleNext == 0) return;
    if (withHead) {
      block_([&] { rowsUsed_.Add(table.titleNext - 1); });
      block_([&] { rowsUsed_.Add(table.titleNext); });
    }
    if (table.first > 0) block_([&] { rowsUsed_.Add(table.first); });
  }

  void ReadParameters() {
    const TableLocation table1 = LocateTable(database_, 1, name_, reader_.prompt());
    AddRows(table1, true);
    for (int column = 3; column <= 17; ++column) {
      block_([&] { parameters_[static_cast<std::size_t>(column)] = NumberIn(table1.first, column); });
    }
    block_([&] { densityText_ = Cell(table1.first, 5); });
    block_([&] { energyText_ = Cell(table1.first, 11); });
    block_([&] { ratioText_ = Cell(table1.first, 12); });
  }

  void ReadSpeciesOfThruster() {
    const TableLocation table10 = LocateTable(database_, 10, name_, reader_.prompt());
    AddRows(table10, true);
    block_([&] { firstGas_ = Cell(table10.first, 2); });
    block_([&] { densityRatio1_ = NumberIn(table10.first, 3); });
    block_([&] { data_(slot::FirstGas) = firstGas_; });
    speciesCount_ = 1;
    // The second row may stand anywhere below, even in a later table.
    for (int row = table10.first + 1; table10.first > 0 && row <= database_.NumberOfDatabaseRows; ++row) {
      if (Cell(row, 1) != name_) continue;
      block_([&] { rowsUsed_.Add(row); });
      speciesCount_ = 2;
      block_([&] { secondGas_ = Cell(row, 2); });
      block_([&] { densityRatio2_ = NumberIn(row, 3); });
      block_([&] { data_(slot::SecondGas) = secondGas_; });
      break;
    }
  }

  void ReadGases() {
    const TableLocation first = LocateTable(database_, 6, firstGas_, reader_.prompt());
    AddRows(first, true);
    block_([&] { data_(slot::SpeciesCount) = static_cast<double>(speciesCount_); });
    block_([&] { data_(slot::Charge1) = NumberIn(first.first, 3); });
    block_([&] { data_(slot::DensityRatio1) = densityRatio1_; });
    block_([&] { data_(slot::MolarMass) = NumberIn(first.first, 4); });
    block_([&] { data_(slot::CurrentFraction1) = 1.0; });
    block_([&] { data_(slot::CurrentFraction2) = 0.0; });
    if (speciesCount_ != 2) return;
    const TableLocation second = LocateTable(database_, 6, secondGas_, reader_.prompt());
    AddRows(second, false);
    block_([&] { data_(slot::Charge2) = NumberIn(second.first, 3); });
    block_([&] { data_(slot::DensityRatio2) = densityRatio2_; });
    block_([&] { data_(slot::MolarMass2) = NumberIn(second.first, 4); });
  }

  void StoreParameters() {
    for (int column = 3; column <= 17; ++column) {
      block_([&] { data_(slot::FirstParameter + column - 3) = parameters_[static_cast<std::size_t>(column)]; });
    }
  }

  // Density, energy and ion-ratio points one behind the other; the last slots stay 0 for the other models.
  void ReadPlumeTables() {
    int densityEnd = 0;
    int energyEnd = 0;
    int ratioEnd = 0;
    if (parameters_[17] == kThrusterModelTables) {
      const auto store = [&](int index, double value) { data_(index) = value; };
      int count = 0;
      densityEnd = energyEnd = ratioEnd = slot::LastParameter;
      block_([&] { ReadTableFromTableXYInCell(densityText_, slot::LastParameter, store, densityEnd, count, reader_); });
      block_([&] { ReadTableFromTableXYInCell(energyText_, densityEnd, store, energyEnd, count, reader_); });
      block_([&] { ReadTableFromTableXYInCell(ratioText_, energyEnd, store, ratioEnd, count, reader_); });
    }
    block_([&] { data_(slot::indexfinThrusterDensity) = static_cast<double>(densityEnd); });
    block_([&] { data_(slot::indexfinThrusterEnergy) = static_cast<double>(energyEnd); });
    block_([&] { data_(slot::indexfinThrusterXepDens) = static_cast<double>(ratioEnd); });
  }

  // A species carries a share of the current in proportion to its density ratio, q^(3/2) and M^(-1/2): density times
  // charge times the velocity that the common beam voltage gives.
  void ComputeCurrentShares(const PhysicalConstants& constants) {
    const double q1 = constants.ElementaryCharge * data_(slot::Charge1).number();
    const double q2 = constants.ElementaryCharge * data_(slot::Charge2).number();
    double mass = 0;
    block_([&] { mass = Divide(data_(slot::MolarMass).number() / 1000, constants.AvogadroNumber); });
    double weight1 = 0;
    double weight2 = 0;
    block_([&] { weight1 = densityRatio1_ * Power(q1, 1.5) * Power(mass, -0.5); });
    block_([&] { weight2 = densityRatio2_ * Power(q2, 1.5) * Power(mass, -0.5); });
    block_([&] { data_(slot::CurrentFraction1) = Divide(weight1, weight1 + weight2); });
    block_([&] { data_(slot::CurrentFraction2) = Divide(weight2, weight1 + weight2); });
  }

  void CheckOrderOfCharges() {
    const double charge1 = data_(slot::Charge1).number();
    const double charge2 = data_(slot::Charge2).number();
    if (!(charge1 > charge2)) return;
    reader_.prompt().dialogs().Tell("Error in database: the lowest charge shall be written first CHARGE1=" +
                                        NumberText(charge1) + "    CHARGE2=" + NumberText(charge2),
                                    "Error Critical, see Hallam", Icon::Critical);
    reader_.prompt().AbortQuestion();
  }

  const Database& database_;
  const std::string& name_;
  ThrusterVector& data_;
  DatabaseRowsUsed& rowsUsed_;
  CellText& reader_;
  FailureBlock block_;
  std::vector<double> parameters_ = std::vector<double>(18, 0.0);  // by column of Table 1
  std::string densityText_, energyText_, ratioText_;
  std::string firstGas_, secondGas_;
  double densityRatio1_ = 0;
  double densityRatio2_ = 0;
  int speciesCount_ = 0;
};

}  // namespace

ThrusterVector EmptyThrusterData() {
  return ThrusterVector({Bounds{slot::First, slot::Last}});
}

void aSpaceApplicationthrusterData(const Database& database, const std::string& ThrusterName,
                                   const PhysicalConstants& constants, ThrusterVector& ThrusterData,
                                   DatabaseRowsUsed& rowsUsed, CellText& reader) {
  ThrusterReader(database, ThrusterName, ThrusterData, rowsUsed, reader).Read(constants);
}

}  // namespace orv
