// A small job, the bytes of its file, and verbs to damage and reopen it.
// Gives the tests of the job layer in-memory ends: write, cut, set a byte, mend the checksum,
// reopen and see status, log and surviving records. Leans on the job layer.
#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Library/job/crc16.h"
#include "Library/job/dbJob.h"
#include "Library/job/dbaccess.h"
#include "Library/records/dbMeasurements.h"
#include "support/hearing.h"

namespace clxml::testing {

using Bytes = std::vector<uint8_t>;

inline uint32_t UInt32At (const Bytes& bytes, std::size_t place) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; i--) value = value << 8 | bytes.at (place + static_cast<unsigned> (i));
  return value;
}

inline void PutUInt32At (Bytes& bytes, std::size_t place, uint32_t value) {
  for (unsigned i = 0; i < 4; i++) bytes.at (place + i) = static_cast<uint8_t> (value >> (8 * i));
}

/// Where a frame's parts stand, from its begin.
inline constexpr std::size_t flagsAt = 4, actionAt = 5, targetAt = 7, bodyAt = 11, idAt = 13;

/// Makes the checksum of the frame at a position fit again.
inline void MendChecksum (Bytes& bytes, std::size_t position) {
  const uint32_t length = UInt32At (bytes, position);
  const uint16_t crc = crc16_Arc (bytes.data () + position + 4, length - 2);
  bytes.at (position + length + 2) = static_cast<uint8_t> (crc);
  bytes.at (position + length + 3) = static_cast<uint8_t> (crc >> 8);
}

/// The begins of the frames of a whole file, and its end.
inline std::vector<std::size_t> FramesOf (const Bytes& bytes) {
  std::vector<std::size_t> frames;
  std::size_t position = FILEHDR_SizeOnDisk;
  for (; position < bytes.size (); position += 4 + UInt32At (bytes, position))
    frames.push_back (position);
  frames.push_back (position);
  return frames;
}

/// The frames of one action in a transaction of its own, or with other flags.
inline Bytes FrameOf (dbModel_Verb verb, uint32_t target, const dbRecord_Class& record, uint32_t id,
                      uint8_t flags = 3) {
  dbModel_Action action (verb, {target}, CloneRecord (record));
  action.DBRecord->RecordId = {id};
  OutBuffer frame (ENDIAN_Little);
  EXPECT_TRUE (journal_AppendFrame (frame, action));
  Bytes bytes (frame.Data (), frame.Data () + frame.Length ());
  bytes[flagsAt] = flags;
  MendChecksum (bytes, 0);
  return bytes;
}

inline void Append (Bytes& bytes, const Bytes& more) {
  bytes.insert (bytes.end (), more.begin (), more.end ());
}

/// A record as comparable text: everything that a job keeps of it, measurement included.
inline std::string Image (const dbRecord_Class& record) {
  OutBuffer body (ENDIAN_Little);
  record.Save (body);
  if (const db_Observation* observation = db_Observation::From (&record))
    if (observation->Measurement ()) observation->Measurement ()->Save (body);
  return {reinterpret_cast<const char*> (body.Data ()), static_cast<std::size_t> (body.Length ())};
}

/// All records of the chain in order.
inline std::vector<std::string> ChainOf (const dbAccess& access) {
  std::vector<std::string> chain;
  DBID before;
  for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id)) {
    EXPECT_EQ (access.GetPreviousRecordId (id), before);
    chain.push_back (Image (*access.GetRecord (id)));
    before = id;
  }
  return chain;
}

inline std::vector<uint32_t> IdsOf (const dbAccess& access) {
  std::vector<uint32_t> ids;
  for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id))
    ids.push_back (id.value);
  return ids;
}

inline db_Note MakeNote (const char* text) {
  db_Note note;
  note.TimeStamp = 1000.0;
  note.Note = text;
  return note;
}

inline db_Observation MakePoint (const char* name) {
  db_Observation point;
  point.TimeStamp = 2000.0;
  point.PointName = name;
  return point;
}

inline db_JobHeader MakeHeader () {
  db_JobHeader header;
  header.TimeStamp = 1.0;
  header.JobName = "Job";
  return header;
}

/// How a reopening went.
struct Reopened {
  bool opened = false;
  int32_t status = -1;
  bool repaired = false;
  uint32_t lastGood = 0;
  uint32_t append = 0;
  std::vector<uint32_t> ids;
  std::vector<std::string> chain;
  std::vector<std::string> log;
  uint32_t next = 0;
};

class JobTest : public LibraryTest {
 protected:
  Bytes Read (const std::string& name) {
    std::ifstream in (folder.Host (name), std::ios::binary);
    return {std::istreambuf_iterator<char> (in), {}};
  }
  void Write (const std::string& name, const Bytes& bytes) {
    std::ofstream out (folder.Host (name), std::ios::binary | std::ios::trunc);
    out.write (reinterpret_cast<const char*> (bytes.data ()),
               static_cast<std::streamsize> (bytes.size ()));
  }
  bool Exists (const std::string& name) { return std::filesystem::exists (folder.Host (name)); }

  /// Writes the bytes and opens them for reading; the file must come out as it was.
  Reopened Open (const Bytes& bytes) {
    Write ("open.job", bytes);
    Reopened result = Open ("open.job");
    EXPECT_EQ (Read ("open.job"), bytes) << "opening for reading changed the file";
    return result;
  }
  Reopened Open (const std::string& name) {
    Reopened result;
    hearing.TakeLog ();
    dbAccess access;
    result.opened = access.Open (folder.Device (name), false);
    result.status = access.GetOpenStatus ();
    if (result.opened) {
      result.repaired = access.WasRepaired ();
      result.lastGood = access.Journal ().GetLastAppendPosition ();
      result.append = access.Journal ().GetAppendPosition ();
      result.ids = IdsOf (access);
      result.chain = ChainOf (access);
      result.next = access.Model ().PeekNextDBID ().value;
    }
    access.Close ();
    result.log = hearing.TakeLog ();
    return result;
  }

  /// The header of a job file of this system.
  Bytes Header () {
    Bytes bytes;
    {
      dbJournal journal;
      EXPECT_TRUE (journal.Create (folder.Device ("header.job"), FileHeader (FILEHDR_Journal)));
      journal.Close ();
    }
    bytes = Read ("header.job");
    std::filesystem::remove (folder.Host ("header.job"));
    return bytes;
  }
  /// A job of a header record, then the frames.
  Bytes Job (std::initializer_list<Bytes> frames) {
    Bytes bytes = Header ();
    Append (bytes, FrameOf (DBACTION_Add, 0, MakeHeader (), 1));
    for (const Bytes& frame : frames) Append (bytes, frame);
    return bytes;
  }
};

inline std::string Hex (uint64_t number) {
  char text[24];
  std::snprintf (text, sizeof text, "0x%llx", static_cast<unsigned long long> (number));
  return text;
}

}  // namespace clxml::testing
