// What all records of a job have in common.
// Identity, the head of the stored form, the virtual operations, the types and the factory. Leans
// on dbField, buffer and clock.
#pragma once

#include <cstdint>
#include <memory>

#include "Kernel/clock.h"
#include "Library/base/buffer.h"
#include "Library/records/dbFeatures.h"
#include "Library/records/dbField.h"
#include "Library/records/dbType.h"

namespace clxml {

class BodyReader;
class db_BoolAction;
class db_Measurement;

/// The form in which a position is given (0 to 19); its names stand with the enumerations.
enum coord_Type : int16_t;

/// Base of all 138 record classes: plain values, copied deeply.
class dbRecord_Class {
 public:
  DBID RecordId;                    ///< place in the job; NODBID until it is stored
  double TimeStamp = clock_Now ();  ///< when it was made, seconds since 1980 local; may be null
  Str Note;                         ///< its note; lines are separated by "\r\n"

  virtual ~dbRecord_Class () = default;

  virtual database_RecordType GetType () const = 0;
  /// The name a user knows the record by; empty for most.
  virtual const char* GetName () const { return ""; }
  virtual bool IsMeasurement () const { return false; }
  /// Marked deleted.
  virtual bool IsDeleted () const { return false; }
  /// A setting that carries over between jobs.
  virtual bool IsPersisted () const;
  /// A setting that a job must have.
  virtual bool IsStoredInNewJob () const;
  /// A change in this record changes computed positions.
  virtual bool AffectsPositions () const;
  /// A new record that combines this job's setting with the defaults, or null.
  virtual std::unique_ptr<dbRecord_Class> MergeDefaults (const dbRecord_Class& defaults) const;
  /// The same values in all fields behind the head; identity, time and note do not count. Numbers
  /// compare by value: two nulls are equal, and so are two NaNs, since both say the same. Asserts
  /// "this->GetType() == record.GetType ()" and is false for another type.
  virtual bool IsEqual (const dbRecord_Class& record) const;
  /// Appends the body: head and fields.
  virtual void Save (OutBuffer& buffer) const;
  /// Reads the body at byteOffset and moves it behind. False when the body has another type
  /// (asserted), ends too early or holds a count that its bytes cannot; nothing outside the
  /// buffer is touched and nothing is allocated by an unchecked number.
  bool Load (const Buffer& buffer, int& byteOffset);
  /// The same from the position of a reader, which is moved to the end of the body.
  bool LoadFrom (BodyReader& in);
  /// Reads the body after its type.
  virtual bool LoadRest (BodyReader& in);
  /// Takes a deleted mark; asserts for a record that has none.
  virtual void ApplyBoolAction (const db_BoolAction& action);
  /// Takes a new reference; asserts for a record that has none.
  virtual void SetReference (DBID id);

  /// Visits the fields behind the head, in file order.
  virtual void Fields (FieldVisitor& v) = 0;
  /// The same for a visitor that only looks.
  void Look (FieldVisitor& v) const { const_cast<dbRecord_Class*> (this)->Fields (v); }

  /// A record lives in the pool that was in use when it was made, or on the heap.
  static void* operator new (std::size_t size);
  static void operator delete (void* place, std::size_t size) noexcept;

  /// Takes all of another record of the same type, identity included (CopyRecord); asserts
  /// "this->GetType() == other.GetType()" and does nothing for another type.
  void Assign (const dbRecord_Class& other);
  /// Replaces the list by the lines of Note: "\r\n" and "\n\r" count as one line end, a single
  /// "\n" as another; an empty tail gives no line.
  void GetNoteLines (StrArray& lines) const;

 protected:
  /// Reads the type; another type than GetType () is a fault and is asserted.
  void LoadType (BodyReader& in) const;
  // Copying is for the classes themselves: through a base it would lose their fields.
  dbRecord_Class () = default;
  dbRecord_Class (const dbRecord_Class&) = default;
  dbRecord_Class& operator= (const dbRecord_Class&) = default;
};

/// Base of db_Observation, db_Line and db_Arc.
class dbRecordWithFeatures_Class : public dbRecord_Class {
 public:
  FeatureArray Features;
  Str Description1;
  Str Description2;

  bool IsEqual (const dbRecord_Class& record) const override;
  void Save (OutBuffer& buffer) const override;
  bool LoadRest (BodyReader& in) override;
  /// Appends the part of the body before the fields: the head of all records, then feature codes
  /// and descriptions.
  virtual void SaveHead (OutBuffer& buffer) const;
  /// Reads that part at byteOffset, which then is the offset of the first field. Returns false, and
  /// asserts, in the cases of Load.
  virtual bool LoadHead (const Buffer& buffer, int& byteOffset);
  /// Takes every property but RecordId, in place, the time stamp included. Asserts
  /// "Source.GetType () == Dest.GetType()" and does nothing for another type.
  virtual void CopyFrom (const dbRecord_Class& other);

  const FeatureArray& GetFeatures () const { return Features; }
  void SetFeatures (std::string_view text, bool splitNumbers) {
    Features.Parse (text, splitNumbers);
  }
  void MergeFeatures (std::string_view text, bool splitNumbers) {
    Features.MergeFrom (text, splitNumbers);
  }
  void ClearFeatures () { Features = FeatureArray (); }

 private:
  void LoadHeadRest (BodyReader& in);
};

/// Position data that belongs to an observation.
class db_Measurement : public dbRecord_Class {
 public:
  /// The record as a measurement, or null if it is null or not a measurement.
  static db_Measurement* From (dbRecord_Class* record) {
    return record && record->IsMeasurement () ? static_cast<db_Measurement*> (record) : nullptr;
  }
  static const db_Measurement* From (const dbRecord_Class* record) {
    return record && record->IsMeasurement () ? static_cast<const db_Measurement*> (record)
                                              : nullptr;
  }
  bool IsMeasurement () const final { return true; }
  /// The form of its position.
  virtual coord_Type GetCoordType () const = 0;
};

/// What every class has by its number: `class db_Note final : public RecordOf<db_Note,
/// DATABASE_NoteRecord>`.
template <class T, database_RecordType number, class Base = dbRecord_Class>
class RecordOf : public Base {
 public:
  static constexpr database_RecordType Number = number;
  database_RecordType GetType () const final { return number; }
  /// The record as a T, or null when it is null or of another type.
  static T* From (dbRecord_Class* record) {
    return record && record->GetType () == number ? static_cast<T*> (record) : nullptr;
  }
  static const T* From (const dbRecord_Class* record) {
    return record && record->GetType () == number ? static_cast<const T*> (record) : nullptr;
  }
};

/// The name of the class of that number ("db_Observation"); empty outside 0 to 137.
const char* ClassName (int type) noexcept;
/// An empty record of that type; null outside 0 to 137.
std::unique_ptr<dbRecord_Class> CreateRecord (int type);
/// Copies all fields, identity and time included. Asserts "Source.GetType () == Dest.GetType()"
/// and does nothing between different types.
void CopyRecord (const dbRecord_Class& source, dbRecord_Class& dest);
/// A copy of the record.
std::unique_ptr<dbRecord_Class> CloneRecord (const dbRecord_Class& record);
/// Decodes a whole body: peeks the type, makes the record, loads it. Null when the type is
/// unknown or the body does not load.
std::unique_ptr<dbRecord_Class> LoadRecord (const Buffer& buffer, int& byteOffset);
/// The same where a reader stands. A loop over many bodies keeps a clock_Hold, so that the clock is
/// asked for once and not per record.
std::unique_ptr<dbRecord_Class> LoadRecord (BodyReader& in);

}  // namespace clxml
