// What a position asks of its job.
// The seam between the value and the job layer: names, records, the chain of names in hand,
// observation arithmetic. The job layer implements it, a position without one gives null for every
// form that needs it. Leans on the coordinate values, the records and the transform.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/coords/coord.h"
#include "Library/records/dbField.h"
#include "str.h"

namespace clxml {

class dbRecord_Class;
class position;
class Transform;

/// The item of an index from which a position was made. The index implements it; copies of a
/// position share it.
class position_Item {
 public:
  virtual ~position_Item () = default;
  /// The item lies in a linked file and has no record of its own: all it has is a grid.
  virtual bool IsLinked () const = 0;
  /// The grid of a linked item; null for any other.
  virtual coord_CorrectedGrid LinkedGrid () const = 0;
  /// The grid that was remembered with an observation under the job's current transform; false
  /// when there is none.
  virtual bool LoadGrid (coord_CorrectedGrid& grid) const = 0;
  /// Remembers the grid of an observation. isTrueHeight is false when a project height may stand
  /// in it.
  virtual void StoreGrid (const coord_CorrectedGrid& grid, bool isTrueHeight) = 0;
};

/// A job as positions see it. All answers are those of the calling thread; nothing is owned by the
/// position.
class position_Job {
 public:
  virtual ~position_Job () = default;

  /// The job's current transform and its settings for coordinate geometry.
  virtual const Transform& CurrentTransform () const = 0;
  virtual coordsys_CogoSettings CogoSystem () const = 0;

  /// The best measurement of a name, loaded and not yet derived; null when there is none or it is
  /// deleted. searchKind is 0 for the base of a vector, 1 for any other search.
  virtual std::unique_ptr<position> Find (const Str& name, int searchKind,
                                          bool useProjectHeight) = 0;
  /// The record of that number, or null. Valid as long as the job is not changed.
  virtual const dbRecord_Class* Record (DBID id) const = 0;
  /// The names whose positions are being resolved by the calling thread, outermost first.
  virtual StrArray& ResolutionChainNames () = 0;

  /// The point that lies at polar from base: loads target and is true, or false. The form of the
  /// target is that of the frame that system asks for.
  virtual bool ForwardPolar (position& base, const Transform& transform, const coord_Polar& polar,
                             position& target, coordsys_CogoSettings system) = 0;
  /// Azimuth, horizontal distance and height difference from one point to another.
  virtual coord_Polar InversePolar (position& from, position& to, const Transform& transform,
                                    coordsys_CogoSettings system) = 0;
  /// Reduces the readings of a Circle or MTA with the station, target and back bearing records
  /// that it names: sets Corrected, Unturned and BackBearingCircle. False when they are not to be
  /// had.
  virtual bool ReduceReadings (position& observation) = 0;
  /// The same for a LaserOffset: sets Polar.
  virtual bool ReduceLaser (position& observation) = 0;
  /// The azimuth from base to a backsight, radians; null when it cannot be found.
  virtual double BacksightAzimuth (position& base, const Transform& transform,
                                   const Str& backsightName) = 0;
  /// What the residuals of the control around a computed grid move it by, in the axes of Grid: of
  /// the calibration for a satellite form, of the station setup for a Circle or an MTA; weighted by
  /// the power of the distance that the transform's corrections name. Null for too few control
  /// points. The position decides whether it is asked, and takes the deltas to itself.
  virtual coord_GridDeltas NeighbourhoodAdjustment (const position& point,
                                                    const Transform& transform) = 0;
};

/// Keeps a name in the chain of the calling thread for as long as it lives, and takes it out on
/// every way out. A name that is there already (in whatever case) or would be the 51st is refused;
/// so points that name each other as base end as a failed look-up and never as an endless
/// recursion.
class resolutionChain_Hold {
 public:
  static constexpr int MaximumNames = 50;

  resolutionChain_Hold (position_Job& job, const Str& name);
  /// Asserts that the last name is its own, and leaves a chain whose last is not alone.
  ~resolutionChain_Hold ();
  resolutionChain_Hold (const resolutionChain_Hold&) = delete;
  resolutionChain_Hold& operator= (const resolutionChain_Hold&) = delete;

  /// The name was taken in.
  bool IsEntered () const noexcept { return _IsEntered; }

 private:
  StrArray& _Names;
  Str _Name;
  bool _IsEntered;
};

/// The position of a name, with a coordinate under the job's current transform that can serve as a
/// base; null when nothing is found, its coordinate cannot be computed or the chain refuses the
/// name. searchKind as in position_Job::Find.
std::unique_ptr<position> position_CreateResolved (position_Job& job, const Str& name,
                                                   int searchKind, bool useProjectHeight);

}  // namespace clxml
