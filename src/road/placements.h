// Which template applies where.
// A placement says for each side of the road which template applies from its station on.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "numerics/maths.h"
#include "road/chainage.h"
#include "road/roadelement.h"
#include "road/stationindex.h"

namespace clxml {

class xmlout_element;

/// The sides of a road, as indexes.
enum dbroad_Side : int { DBROAD_SideLeft = 0, DBROAD_SideRight = 1 };

/// What applies on one side from a station on.
struct SidePlacement {
  enum PlacementType : int32_t {
    UserDefined = 0,  ///< the template of that name
    None = 1,         ///< no template
    Interpolate = 2,  ///< no template of its own: a change is interpolated across this station
  };

  int32_t Type = None;           ///< PlacementType
  Str Name;                      ///< of the template
  double Chainage = MATHS_Null;  ///< metres

  bool operator== (const SidePlacement&) const = default;
};

/// The placements of both sides at one station; the two Chainages are the same.
class SidedTemplatePlacement final
    : public RoadElementOf<SidedTemplatePlacement, ROAD_SidedTemplatePlacement> {
 public:
  std::array<SidePlacement, 2> Sides;  ///< by dbroad_Side: left first

  const SidePlacement& Left () const noexcept { return Sides[DBROAD_SideLeft]; }
  const SidePlacement& Right () const noexcept { return Sides[DBROAD_SideRight]; }
  bool operator== (const SidedTemplatePlacement&) const = default;
};

/// The placements of a road in the order of their stations. Stations are compared within 0.0005.
class TemplatePlacementArray final
    : public RoadElementArrayOf<SidedTemplatePlacement, TemplatePlacementArray> {
 public:
  /// For each side the last placement at or before the station that is not Interpolate; the default
  /// where there is none.
  SidedTemplatePlacement PreviousPlacement (double station) const;
  /// For each side the first placement after the station that is not Interpolate; the default
  /// where there is none.
  SidedTemplatePlacement NextPlacement (double station) const;
  /// Some side is UserDefined.
  bool HasTemplates () const noexcept;
  /// Adds each placement's station.
  void AddChainages (ChainageElementArray& list) const;
  /// Each UserDefined side with that name takes the new one.
  void RenameTemplate (const Str& oldName, const Str& newName);
  /// The names of the UserDefined sides, each once, in the order of first use.
  StrArray UsedTemplateNames () const;
  /// Both sides of each placement have one station, no two neighbours have exactly the same, and
  /// the first and the last lie within the road from start to end.
  bool CheckConsistency (double start, double end) const;
  /// The TemplatePositioning section of a road file.
  std::unique_ptr<xmlout_element> ToXml () const;
};

/// The lookups of a list of placements for many stations: each costs a binary search where the list
/// is in station order. The list must outlive the index and not change.
class TemplatePlacementIndex {
 public:
  explicit TemplatePlacementIndex (const TemplatePlacementArray& placements);
  /// As the operations of the list.
  SidedTemplatePlacement PreviousPlacement (double station) const;
  SidedTemplatePlacement NextPlacement (double station) const;

 private:
  using BySide = std::array<int, 2>;  // a placement for each side, -1 for none
  SidedTemplatePlacement At (const BySide& found) const;

  const TemplatePlacementArray& _Placements;
  StationIndex _Stations;
  std::vector<BySide> _Previous;  // the last that is not Interpolate among the first n placements
  std::vector<BySide> _Next;      // the first that is not Interpolate from placement n on
};

}  // namespace clxml
