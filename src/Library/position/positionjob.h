// What the position layer needs from a job.
// The interface between positions and the job layer: the transform, records, the look-up of names,
// cached grids and the chain of names that are being resolved. The job file implements it. A
// position without a job gives null for every form that needs one.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/coords/coord.h"
#include "Library/job/uniqueid.h"
#include "Library/records/dbField.h"
#include "Library/records/dbType.h"
#include "str.h"

namespace clxml {

class db_Azimuth;
class dbRecord_Class;
class position;
class position_Cache;
class Transform;

/// A job as positions see it. Thread-dependent results are those of the calling thread. A position
/// does not own its job, and the job must outlive it.
class position_Job {
 public:
  virtual ~position_Job () = default;

  /// The job's transform in use. It is built at the first use and never fails: at worst it is an
  /// empty transform, which converts nothing.
  virtual const Transform& CurrentTransform () = 0;
  /// The job's settings for coordinate geometry, which belong to CurrentTransform.
  virtual coordsys_CogoSettings CogoSystem () = 0;
  /// Counts the commits of the job. A value that was derived from records at another count may be
  /// out of date.
  virtual uint32_t Revision () const = 0;

  /// Loads the best measurement of a name into out, without deriving anything; an observation
  /// without a measurement gives an empty position with the name. UseProjectHeight of out becomes
  /// useProjectHeight. searchKind 0 finds the best point for the base of a satellite vector (search
  /// mode 5), 1 the best point (search mode 4); any other value is a programming fault. Returns
  /// false if no point has the name or the point found is deleted.
  virtual bool Find (const Str& name, int searchKind, bool useProjectHeight, position& out) = 0;
  /// Loads the best measured point of a name into out; points with an azimuth alone do not count.
  /// UseProjectHeight of out keeps its value. Returns false if there is none.
  virtual bool FindMeasured (const Str& name, position& out) = 0;

  /// The record of that number; null for NODBID and for a number that is not in use. Valid until
  /// the job changes.
  virtual const dbRecord_Class* Record (DBID id) const = 0;
  /// The number of the record after id in the order of the job; NODBID after the last.
  virtual DBID NextRecordId (DBID id) const = 0;
  /// The newest record of a type; NODBID if there is none.
  virtual DBID LastOfType (database_RecordType type) const = 0;
  /// The names that the calling thread is resolving, outermost first.
  virtual StrArray& ResolutionChainNames () = 0;

  // The grid that is kept with an index item.

  /// True for an item of a linked file, which has no record: sets grid to the item's grid.
  virtual bool LinkedGrid (UniqueId item, coord_CorrectedGrid& grid) const = 0;
  /// The cached grid of an observation item, which may be null. Returns false, with grid unchanged,
  /// unless the grid is known and final (OBJECT_GridKnown and OBJECT_GridFinal).
  virtual bool LoadGrid (UniqueId item, coord_CorrectedGrid& grid) const = 0;
  /// Stores the grid of an observation item; does nothing for an item of another kind. isFinal is
  /// false for a grid that may contain a project height.
  virtual void StoreGrid (UniqueId item, const coord_CorrectedGrid& grid, bool isFinal) = 0;

  // For the azimuth from a base to a backsight.

  /// The azimuth that was keyed in from the base to the backsight: the db_Azimuth of the best
  /// azimuth-only point, with a null azimuth too. Null if there is none.
  virtual const db_Azimuth* KeyedAzimuth (const Str& baseName, const Str& backsightName) = 0;
  /// Loads the best observation of the backsight into out. Observations of the backsight itself
  /// from a setup on the base that was oriented on this backsight do not count, since they depend
  /// on the azimuth that is being computed. Returns false if none is left.
  virtual bool FindBacksight (const Str& baseName, const Str& backsightName, position& out) = 0;

  /// Values that the position layer derived from the records. The job owns the cache and never
  /// reads it.
  virtual position_Cache& Cache () = 0;
};

/// Adds a name to the resolution chain of the calling thread (resolutionChain_Enter), and removes
/// it at the end of the scope (resolutionChain_Leave). A name that is in the chain already, in
/// whatever case, and the 51st name are refused. So points that name each other as their base end
/// as a failed look-up and not as an endless recursion.
class resolutionChain_Hold {
 public:
  static constexpr int MaximumNames = 50;

  resolutionChain_Hold (position_Job& job, const Str& name);
  /// Asserts that the last name of the chain is the one that was added; otherwise the chain is left
  /// unchanged.
  ~resolutionChain_Hold ();
  resolutionChain_Hold (const resolutionChain_Hold&) = delete;
  resolutionChain_Hold& operator= (const resolutionChain_Hold&) = delete;

  /// The name was added.
  bool IsEntered () const noexcept { return _IsEntered; }

 private:
  StrArray& _Names;
  const Str& _Name;
  bool _IsEntered = false;
};

/// Loads the best measurement of a name, as position_Job::Find, and computes the absolute form that
/// a base needs under the job's current transform. Returns false, with out empty, if the name is
/// not found, its coordinate cannot be computed or the resolution chain refuses the name.
bool position_Resolve (position_Job& job, const Str& name, int searchKind, bool useProjectHeight,
                       position& out);

/// position_Job::Find as a new object; null if nothing is found.
std::unique_ptr<position> position_Create (position_Job& job, const Str& name, int searchKind,
                                           bool useProjectHeight);
/// position_Resolve as a new object; null on failure.
std::unique_ptr<position> position_CreateResolved (position_Job& job, const Str& name,
                                                   int searchKind, bool useProjectHeight);

}  // namespace clxml
