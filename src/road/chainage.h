// Stations of interest along a road.
// Each station bears the reasons why it is in the list; the list answers the next, the previous and
// the nearest one. Leans on roadelement and approx.
#pragma once

#include <cstdint>

#include "numerics/maths.h"
#include "road/roadelement.h"

namespace clxml {

/// Why a station is of interest: bits, one for each reason.
enum ChainageFlags : uint32_t {
  ChainageStraightToSpiral = 0x1,     ///< start of a spiral behind a straight
  ChainageSpiralToArc = 0x2,          ///< start of an arc behind a spiral
  ChainageArcToSpiral = 0x4,          ///< start of a spiral behind an arc
  ChainageSpiralToStraight = 0x8,     ///< start of a straight behind a spiral
  ChainageSpiralToSpiral = 0x10,      ///< start of a spiral behind a spiral
  ChainageToArc = 0x20,               ///< start of an arc behind a straight or an arc
  ChainageArcToStraight = 0x40,       ///< start of a straight behind an arc
  ChainageStraightToStraight = 0x80,  ///< start of a straight behind a straight
  ChainageInterval = 0x100,           ///< every interval of the road
  ChainageVerticalStart = 0x200,      ///< start of a vertical curve
  ChainageVerticalEnd = 0x400,        ///< end of a vertical curve
  ChainageVPI = 0x800,                ///< vertical intersection point
  ChainageAlignmentStart = 0x1000,  ///< first element behind the start point; in place of the above
  ChainageAlignmentEnd = 0x2000,    ///< end of the horizontal alignment
  ChainageTemplate = 0x4000,        ///< a template placement
  ChainageSuperStart = 0x8000,      ///< first superelevation, or the section leaves a crown
  ChainageWideningStart = 0x10000,  ///< widening starts to grow
  ChainageWideningEnd = 0x20000,    ///< widening is back at zero
  ChainageSuperEnd = 0x40000,       ///< the section comes back to a crown
  ChainageWideningFull = 0x80000,   ///< either end of the widest stretch
  ChainageSuperFull = 0x100000,     ///< a plane section at which both sides turn back
  ChainageSag = 0x200000,           ///< sag point of a vertical curve
  ChainageSummit = 0x400000,        ///< summit point of a vertical curve
  ChainageSuperPlaneRate = 0x1000000,  ///< a plane section at which a rate changes
  ChainageSuperRate = 0x2000000,       ///< a rate of superelevation changes elsewhere
};

/// One station of interest.
class ChainageElement final : public RoadElementOf<ChainageElement, ROAD_ChainageElement> {
 public:
  double Chainage = MATHS_Null;  ///< metres
  uint32_t Flags = 0;            ///< ChainageFlags

  ChainageElement () = default;
  ChainageElement (double chainage, uint32_t flags) : Chainage (chainage), Flags (flags) {}
  bool operator== (const ChainageElement&) const = default;
};

/// Stations in ascending order, inside two limits.
class ChainageElementArray final
    : public RoadElementArrayOf<ChainageElement, ChainageElementArray> {
 public:
  double StartChainage = MATHS_Null;  ///< no station below it is taken
  double EndChainage = MATHS_Null;    ///< no station above it is taken

  /// Takes a station with its reasons, in its place: one that is there already, within 0.0005, only
  /// gains the flags, and one outside the limits (beyond 0.0005) is not taken. Between null limits
  /// an empty list takes nothing but a null station.
  void Add (double station, uint32_t flags);
  /// Takes the station as the last one, whatever the limits: the caller keeps the order.
  void Append (double station, uint32_t flags);
};

/// A station as a ChainageList answers it.
struct ChainageItem {
  double Chainage = MATHS_Null;  ///< metres
  uint32_t Flags = 0;            ///< ChainageFlags
};

/// The sorted stations of a road, as its user sees them. This class has none: the stations are
/// null, the count is 0 and every question is answered with false.
class ChainageList {
 public:
  virtual ~ChainageList () = default;

  virtual void Clear () {}
  /// Null if empty.
  virtual double FirstChainage () const { return MATHS_Null; }
  /// Null if empty.
  virtual double LastChainage () const { return MATHS_Null; }
  virtual int Count () const { return 0; }
  /// Moves the item to the first station above its own; false, and the item stays, when there is
  /// none. Only Chainage of the item is looked at.
  virtual bool Next (ChainageItem& /*item*/) const { return false; }
  /// Moves the item to the last station below its own; false, and the item stays, when there is
  /// none.
  virtual bool Previous (ChainageItem& /*item*/) const { return false; }
  /// The station by its number from 1; false outside.
  virtual bool ByIndex (int /*index*/, ChainageItem& /*item*/) const { return false; }
  /// The numbers, from 1, of the two neighbours between which a station lies and of the nearer one,
  /// the upper one on a tie. On a station exactly, all three are its own. False, and the three
  /// stay, outside the list and in a list of fewer than two.
  virtual bool FindIndexes (double /*station*/, int& /*before*/, int& /*after*/,
                            int& /*nearest*/) const {
    return false;
  }
};

/// The stations of a NorvathRoad.
class RxlChainageList final : public ChainageList {
 public:
  ChainageElementArray Elements;

  void Clear () override { Elements.Clear (); }
  double FirstChainage () const override;
  double LastChainage () const override;
  int Count () const override { return Elements.Count (); }
  bool Next (ChainageItem& item) const override;
  bool Previous (ChainageItem& item) const override;
  bool ByIndex (int index, ChainageItem& item) const override;
  bool FindIndexes (double station, int& before, int& after, int& nearest) const override;
};

}  // namespace clxml
