// The conversion frame: what lives for one import while elements become records.
// Finds the conversion of each element, stores finished records with what belongs to them, and
// repairs the references between them at the end. Leans on dbJob, reftable and roadcapture.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/job/dbJob.h"
#include "Library/xml/xml.h"
#include "import/reftable.h"

namespace clxml {

class RoadCapture;

/// One import's conversion of elements to records.
///
/// An entity is what belongs to one first record: an observation, a line or an arc opens it, the
/// end-of-entity element closes it. In between, measurements and notes attach to the record that
/// opened it last.
///
/// What goes wrong is thrown as a Str, a whole message that names the element.
class WriteJobControl {
 public:
  /// The job is open, takes single actions (dbAccess::SetSingleActionMode), and outlives this.
  WriteJobControl (JobDatabase& job, int32_t version);
  ~WriteJobControl ();
  WriteJobControl (const WriteJobControl&) = delete;
  WriteJobControl& operator= (const WriteJobControl&) = delete;

  /// Converts one top-level element and stores its records. An element of an unknown name is
  /// ignored.
  void Dispatch (const xml_element& element);
  /// Logs what still waits for an end that never came; no element follows.
  void LogUnfinished () const;
  /// Turns every reference of the stored records from the exchange file's number into the record's
  /// DBID. The first number that no element had ends it.
  void RepairPointers ();

  // For conversions.

  /// The exchange format's version, hundredths of the field application's; 0 is older than all.
  int32_t Version () const noexcept { return version; }
  /// Stores a finished record under the element's number, with the element's time: a point, line or
  /// arc opens an entity, a measurement goes to the observation that is open, an end of entity
  /// closes it, and everything else is appended. A measurement without an open observation is
  /// dropped with a log line.
  void StoreRecord (const xml_element& element, std::unique_ptr<dbRecord_Class> record);
  /// Keeps the record back until the next measurement was attached; it goes right behind that. One
  /// that waits already is appended first. Its number is not entered.
  void HoldOffset (const xml_element& element, std::unique_ptr<dbRecord_Class> offset);
  bool IsEntityOpen () const noexcept { return pendingEntity != NODBID; }
  /// Keeps a note's text until the entity ends.
  void CollectNote (const Str& text);
  /// The point, line or arc whose entity is open; null when none is.
  const dbRecordWithFeatures_Class* Entity () const;
  /// Gives it these features in place of its own. A hundred or more throw.
  void SetEntityFeatures (FeatureArray&& features);
  RoadCapture& Capture () noexcept { return *capture; }

  /// The elements since the last road element were notes and ends of entities only.
  bool InRoadBlock = false;

 private:
  DBID Attach (const xml_element& element, std::unique_ptr<dbRecord_Class> measurement);
  void CloseEntity ();

  dbAccess* database;
  ReferenceTable records;
  DBID pendingEntity;
  int32_t version;
  std::unique_ptr<dbRecord_Class> pendingOffset;
  StrArray pendingNotes;
  int64_t pendingNoteBytes = 0;
  std::unique_ptr<RoadCapture> capture;
};

}  // namespace clxml
