// What the components of a block that stand on grids have in common.
// Their grids, the life of their files and their form inside a block; each component adds its
// parameters and its point operations. Inner header of this room. Leans on grid and combined.
#pragma once

#include <array>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "geodesy/combined.h"
#include "geodesy/csib.h"
#include "geodesy/grid.h"

namespace clxml {

/// The grids of a component.
struct csib_GridSet : csib_Data {
  /// Latitude or north, longitude or east, height; those that there are. None while unloaded.
  std::array<std::unique_ptr<datum_Grid>, 3> Grids;
  /// The files that are open, or were before the unloading; one alone when it holds all grids.
  std::array<std::string, 3> Paths;
  bool IsCombined = false;  ///< the grids stand in one file, Paths[0]
  /// Both storage modes write a path and nothing else: a released file is not missed.
  static constexpr bool IsByPath = false;
  bool IsUnloaded = false;
  std::vector<uint8_t> Parameters;  ///< while unloaded, what reads the component again

  /// One of the files has this path: without case, and with slashes as backslashes.
  bool Uses (std::string_view path) const noexcept;
  /// Opens one grid from its form inside a block, or the first two.
  csib_Status ReadForm (const csib_Block& block, csib_Bytes& in, std::size_t index);
  csib_Status ReadPairOfForms (const csib_Block& block, csib_Bytes& in);
  /// Opens the grids of a combined datum grid whose path comes next.
  csib_Status ReadCDG (csib_Bytes& in);
  /// The same of a file with this signature.
  csib_Status ReadPair (csib_Bytes& in, std::string_view signature);
  /// Opens the pair of a projection or shift grid: by path or from two forms, as the first byte
  /// says.
  csib_Status ReadMarkedPair (const csib_Block& block, csib_Bytes& in, std::string_view signature);
  /// The forms of all grids that there are, and their size.
  csib_Status WriteForms (csib_Writer& out, csib_StorageMode mode) const;
  csib_Status FormsSize (csib_StorageMode mode, std::size_t& size) const;
  /// What ReadMarkedPair reads: the path in a mode by name, where the grids stand in one file.
  csib_Status WriteMarkedPair (csib_Writer& out, csib_StorageMode mode) const;
  csib_Status MarkedPairSize (csib_StorageMode mode, std::size_t& size) const;
  /// The grids hold metres of grid coordinates: nothing is taken modulo 360.
  void InMetres () noexcept;
  /// The mode in which the parameters read again what is open now.
  csib_StorageMode ModeOf (const csib_Block& block) const noexcept {
    return IsCombined ? CSIB_ByName : block.StorageMode;
  }

 private:
  csib_Status OpenAll (std::string_view path, const datum_CombinedGrids& grids);
};

/// The slots that all components on grids share. `Form` gives `Data`, derived from csib_GridSet,
/// `Read (block, in, data)`, `Write (data, out, mode)` and `Size (data, mode, size)`; the last two
/// see loaded data only.
template <std::unique_ptr<csib_Data> csib_Block::*Slot, class Form>
struct csib_GridComponent {
  using Data = typename Form::Data;

  static Data* Of (const csib_Block& block) noexcept {
    return static_cast<Data*> ((block.*Slot).get ());
  }

  /// The data with open grids, or why not.
  static csib_Status Loaded (const csib_Block& block, Data*& data) noexcept {
    data = Of (block);
    return data == nullptr || data->IsUnloaded ? CSIB_Unloaded : CSIB_Ok;
  }

  static csib_Status Read (csib_Block& block, csib_Bytes& in) {
    try {
      auto data = std::make_unique<Data> ();
      const csib_Status status = Form::Read (block, in, *data);
      if (status == CSIB_Ok) block.*Slot = std::move (data);
      return status;
    } catch (const std::bad_alloc&) {
      return CSIB_OutOfMemory;
    }
  }

  static csib_Status Unload (csib_Block& block, std::string_view path) {
    Data* const data = Of (block);
    if (data == nullptr || !data->Uses (path)) return CSIB_Ok;
    if (data->IsUnloaded) return CSIB_UnloadedTwice;
    const csib_Status status = Bytes (*data, CSIB_ByName, data->Parameters);
    if (status != CSIB_Ok) return status;
    for (auto& grid : data->Grids) datum_GridClose (grid);
    data->IsUnloaded = true;
    return CSIB_Ok;
  }

  /// On a failure the component stays unloaded.
  static csib_Status Load (csib_Block& block, std::string_view path) {
    const Data* const data = Of (block);
    if (data == nullptr || !data->IsUnloaded || !data->Uses (path)) return CSIB_Ok;
    csib_Bytes in (data->Parameters);
    return Read (block, in);
  }

  static void Free (csib_Block& block) { (block.*Slot).reset (); }

  static csib_Status Write (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) {
    const Data* const data = Of (block);
    if (data == nullptr) return CSIB_Unloaded;
    if (!data->IsUnloaded) return Form::Write (*data, out, mode);
    if (!IsKept (mode)) return CSIB_Unloaded;
    out.Bytes (data->Parameters);
    return CSIB_Ok;
  }

  static csib_Status Size (const csib_Block& block, csib_StorageMode mode, std::size_t& size) {
    const Data* const data = Of (block);
    if (data == nullptr) return CSIB_Unloaded;
    if (!data->IsUnloaded) return Form::Size (*data, mode, size);
    size = data->Parameters.size ();
    return IsKept (mode) ? CSIB_Ok : CSIB_Unloaded;
  }

  static csib_Status Parameters (const csib_Block& block, std::vector<uint8_t>& out) {
    const Data* const data = Of (block);
    if (data == nullptr) return CSIB_Unloaded;
    if (!data->IsUnloaded) return Bytes (*data, data->ModeOf (block), out);
    out = data->Parameters;
    return CSIB_Ok;
  }

 private:
  /// The parameters of released data are what that mode writes.
  static constexpr bool IsKept (csib_StorageMode mode) noexcept {
    return Data::IsByPath || mode == CSIB_ByName;
  }
  static csib_Status Bytes (const Data& data, csib_StorageMode mode, std::vector<uint8_t>& out) {
    std::size_t size = 0;
    const csib_Status status = Form::Size (data, mode, size);
    if (status != CSIB_Ok) return status;
    out.assign (size, 0);
    csib_Writer writer (out);
    return Form::Write (data, writer, mode);
  }
};

/// The heights and their flags, which no grid of the plane changes.
template <class From, class To>
void csib_CopyHeights (const From& from, To& to) noexcept {
  to.EllipsoidalHeight = from.EllipsoidalHeight;
  to.OrthometricHeight = from.OrthometricHeight;
  to.HasEllipsoidal = from.HasEllipsoidal;
  to.HasOrthometric = from.HasOrthometric;
}

/// A shift looked up in two grids, north and east or latitude and longitude.
struct csib_Shift {
  double North = 0.0;
  double East = 0.0;
};

/// The shift at a place in the unit of the grids' axes.
csib_Status csib_LookUpShift (const csib_GridSet& set, double north, double east,
                              csib_Shift& shift);
/// The place whose own shift leads to this one: place = target - shift (place), at most 100 rounds
/// until both shifts change by less than 1e-12, then CSIB_DidNotConverge. North and east are
/// replaced on success only.
csib_Status csib_UndoShift (const csib_GridSet& set, double& north, double& east);

}  // namespace clxml
