// The items of an index: the small entries that stand for the named records of a job.
// An object keeps the identity of its record, three filter words and the few values that are
// costly to compute; everything else is read from the record on demand. The classes of linked files
// are in linkedobject.h.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/coords/coord.h"
#include "Library/index/dbfilter.h"
#include "Library/index/dbindex.h"
#include "Library/records/dbEnum.h"

namespace clxml {

class dbRecord_Class;
class db_Measurement;
class db_Observation;
class position;

/// Bits of an object's flags.
enum dbobject_Flags : uint16_t {
  OBJECT_GridKnown = 1,    ///< the grid data is filled; a null grid is known too
  OBJECT_StatusKnown = 8,  ///< the status word is up to date
  OBJECT_GridFinal = 16,   ///< the grid came from a full computation
  OBJECT_Hidden = 32,      ///< left out of lists
};

/// One item of an index. Made by dbobject_Make or as an object of a linked file, owned by its
/// index.
class dbObject {
 public:
  dbObject () = default;
  dbObject (const dbObject&) = delete;
  dbObject& operator= (const dbObject&) = delete;
  virtual ~dbObject () = default;

  // The virtual operations.

  /// The record's name, zero-terminated; empty for a record that is gone. Asserts
  /// "index->GetFileType() == dbIndex::DatabaseFile". Valid until the record changes.
  virtual const char* GetName () const;
  /// The text of the record's feature codes; empty for a record without, which asserts "rec".
  virtual void GetCode (Str& out) const;
  /// The record's descriptions; empty for a record without.
  virtual dbDescriptions GetDescriptions () const;
  /// The object lies in a linked file and has no record.
  virtual bool IsLinked () const;

  // Identity.

  database_RecordType GetRecordType () const noexcept {
    return static_cast<database_RecordType> (_RecordType);
  }
  UniqueId GetUniqueId () const noexcept { return UniqueId::FromPacked (_Id); }
  /// NODBID for an object of a linked file.
  DBID GetRecordId () const noexcept { return _RecordId; }
  /// The record, or null.
  const dbRecord_Class* GetRecord () const;
  /// The index that has the object; null before it is added to one.
  dbIndex* GetIndex () const noexcept { return GetUniqueId ().GetIndex (); }

  // State.

  /// dbobject_Flags, to be changed in place.
  uint16_t& GetFlags () noexcept { return _Flags; }
  uint16_t GetFlags () const noexcept { return _Flags; }
  /// Drops the grid and the status: the next question computes them.
  void Invalidate () noexcept { _Flags &= 0xFFE6; }
  const dbfilter_Words& Words () const noexcept { return _Words; }
  void SetWords (const dbfilter_Words& words) noexcept { _Words = words; }
  /// The status word, computed first unless it is known.
  uint32_t GetStatus ();
  bool IsDeleted () const noexcept { return (_Words[1] & DBKIND_Deleted) != 0; }
  bool IsHidden () const noexcept { return (_Flags & OBJECT_Hidden) != 0; }
  /// The best point of its name in any form, or among the GPS group; true for what is no point.
  bool IsBest (bool gpsForm);

  /// An object lives in the pool that it was made for, or on the heap.
  static void* operator new (std::size_t size) { return ::operator new (size); }
  static void* operator new (std::size_t size, Pool& pool) { return pool.Allocate (size); }
  static void operator delete (void* place, std::size_t size) noexcept { Pool::Free (place, size); }
  static void operator delete (void* place, Pool&) noexcept { Pool::Free (place, 0); }

 protected:
  dbObject (database_RecordType type, DBID recordId, const dbfilter_Words& words, uint16_t flags);

 private:
  friend class dbIndex;
  friend class NameMap;
  friend std::unique_ptr<dbObject> dbobject_Make (const dbRecord_Class& record, Pool& pool);

  // Packed, in an order that leaves the last bytes of 40 to the derived classes: an index has
  // one object for each named record.
  uint32_t _Id = UniqueId ().Pack ();
  DBID _RecordId;
  dbfilter_Words _Words{DBFILTER_Always, DBFILTER_Always, DBFILTER_Always};
  uint32_t _NameHash = 0;  // of NameMap, and its next older object of this hash
  int32_t _OlderOfName = -1;
  uint16_t _Flags = 0;
  uint8_t _RecordType = DATABASE_AllRecords;
};

/// The object as an observation's; null unless it is one.
class ObservationObject;
ObservationObject* AsObservation (dbObject* object) noexcept;

/// A point.
class ObservationObject : public dbObject {
 public:
  ObservationObject () = default;
  ObservationObject (DBID recordId, const dbfilter_Words& words);

  void GetCode (Str& out) const override;
  dbDescriptions GetDescriptions () const override;

  virtual void GetClassification (db_PointClassification& out) const;
  virtual dbentity_PointMethod GetMethod () const;
  /// What a mean turned angle counts as in a search: DBENTITY_AngleOnly or
  /// DBENTITY_DirectReading; DBENTITY_Unknown until that is known.
  virtual dbentity_PointMethod GetMTAMethod () const;
  /// The record; null in a linked file. Asserts "obs->GetType() == DATABASE_ObservationRecord".
  virtual const db_Observation* GetObservation () const;
  /// DATABASE_AllRecords without a measurement.
  virtual database_RecordType GetMeasurementType () const;
  virtual const db_Measurement* GetMeasurement () const;
  /// The form of the measurement; COORD_NullType without one.
  virtual coord_Type GetCoordType () const;
  /// The grid that is known, computed first if there is none. Null where there is no position.
  virtual coord_CorrectedGrid GetGrid ();
  /// The grid of a full computation, computed first if there is none.
  virtual coord_CorrectedGrid GetFinalGrid ();
  /// GetGrid has a horizontal part.
  virtual bool HasHorizontal ();
  /// GetFinalGrid has a vertical part.
  virtual bool HasVertical ();
  virtual void SetMTAMethod (dbentity_PointMethod method);

  /// Keeps a computed grid. isFinal is false for one that holds a project height.
  void SetGrid (const coord_CorrectedGrid& grid, bool isFinal);
  /// The grid as it is kept, known or not.
  coord_CorrectedGrid KeptGrid () const { return {_North, _East, _Elevation}; }

 private:
  uint8_t _MTAMethod = 0;
  double _North = MATHS_Null;
  double _East = MATHS_Null;
  double _Elevation = MATHS_Null;
};

/// A line. Computed by dbIndex::ComputeObject.
class LineObject : public dbObject {
 public:
  LineObject () = default;
  LineObject (DBID recordId, const dbfilter_Words& words);

  void GetCode (Str& out) const override;
  dbDescriptions GetDescriptions () const override;

  UniqueId Start, End;  ///< the points; null where there is none
  coord_CorrectedGrid StartGrid, EndGrid;
};

/// An arc. Computed by dbIndex::ComputeObject. It always runs clockwise: a left-hand arc is kept as
/// the right-hand arc that runs the other way, and IsLeftHand.
class ArcObject : public dbObject {
 public:
  ArcObject () = default;
  ArcObject (DBID recordId, const dbfilter_Words& words);

  void GetCode (Str& out) const override;
  dbDescriptions GetDescriptions () const override;
  /// Every value as a new object has it.
  void SetNull ();

  coord_CorrectedGrid Centre;
  double Radius = MATHS_Null;
  double StartAzimuth = MATHS_Null;  ///< from the centre to the start
  double DeltaAngle = MATHS_Null;    ///< clockwise from start to end
  double StartElevation = MATHS_Null;
  double Slope = MATHS_Null;  ///< rise over length, as a number
  bool IsLeftHand = false;
  /// The points of those names; FourthPoint is the intersection of the end tangents.
  UniqueId Start, End, CentrePoint, FourthPoint;
};

/// A target.
class TargetObject final : public dbObject {
 public:
  TargetObject (DBID recordId, const dbfilter_Words& words);
};
/// A station setup.
class StationObject final : public dbObject {
 public:
  StationObject (DBID recordId, const dbfilter_Words& words);
};
/// An orientation of an instrument; its name is that of the station.
class BackBearingObject final : public dbObject {
 public:
  BackBearingObject (DBID recordId, const dbfilter_Words& words);
};
/// A traverse.
class TraverseObject final : public dbObject {
 public:
  TraverseObject (DBID recordId, const dbfilter_Words& words);
};

/// The object of a record, made in the pool; null for a record type that gets none, and for a
/// record without a number ("recordId != NODBID").
std::unique_ptr<dbObject> dbobject_Make (const dbRecord_Class& record, Pool& pool);

/// Loads the position of an item: from its measurement under the job's transform, or of a linked
/// item from its grid. Name and Object are the item's. False, with an otherwise empty position, for
/// an item without a measurement. UseProjectHeight keeps its value.
bool position_LoadFromObject (position& out, const dbObject& object);

}  // namespace clxml
