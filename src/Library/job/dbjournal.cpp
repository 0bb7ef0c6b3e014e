// Writing the job file.
//
// The file is a 48-byte header followed by frames. All numbers are little-endian.
//
// Offset     Width Field
//      0         4 Length  bytes that follow, CRC included; 12 to 524288
//      4         1 Flags   1 first of a transaction, 2 last, 4 last of a cancelled group (so 6 or
//                          7); 0xBF a frame that a manual repair took out
//      5         2 Action  10800 to 10806
//      7         4 Target  the DBID aimed at, 0 for none; absent in action 10805
//     11         n record body, which starts with its type (2) and DBID (4); absent in action 10805
// Length + 2     2 CRC     CRC-16/ARC from Flags to the end of the body
//
// Frames are only appended. They are collected in a buffer; a flush is one write after the last
// whole transaction. If it fails, the file is cut back to the position of the write and the bytes
// stay in the buffer, so that the next flush starts again. A tail that the replay did not accept is
// cut off before the first flush, since shorter frames would leave a part of it after them.
#include "Library/job/dbjournal.h"

#include <algorithm>
#include <utility>

#include "Library/job/crc16.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

constexpr double neverFlush = 1e200;
constexpr uint32_t copyBlock = 65536;
// What waits before it is asked for, and one frame more, without growing.
constexpr int outputReserve = JOURNAL_FlushThreshold + 16384;

uint32_t LengthAt (const OutBuffer& frames, int place) {
  const uint8_t* p = frames.Data () + place;
  return static_cast<uint32_t> (p[0]) | static_cast<uint32_t> (p[1]) << 8 |
         static_cast<uint32_t> (p[2]) << 16 | static_cast<uint32_t> (p[3]) << 24;
}

}  // namespace

bool journal_AppendFrame (OutBuffer& frames, const dbModel_Action& action) {
  const int start = frames.Length ();
  frames.PutUInt32 (0);
  frames.PutUInt8 (static_cast<uint8_t> (action.Flags));
  frames.PutUInt16 (static_cast<uint16_t> (action.Type));
  if (action.Type != DBACTION_Reserved) {
    frames.PutUInt32 (action.Target.value);
    try {
      if (action.DBRecord) action.DBRecord->Save (frames);
    } catch (...) {
      frames.Shorten (start);
      throw;
    }
  } else {
    Assert (!action.DBRecord, "!record->DBRecord");
  }
  frames.PutUInt16 (0);
  const auto length = static_cast<uint32_t> (frames.Length () - start - 4);
  if (length > JOURNAL_MaxFrame) {
    frames.Shorten (start);
    return false;
  }
  frames.PutUInt32At (length, start);
  return true;
}

Str journal_TooLong (const dbRecord_Class& record) {
  Str text ("Record ");
  text += ClassName (record.GetType ());
  if (*record.GetName () != 0) text = text + " \"" + record.GetName () + "\"";
  return text + " is too large for a job file, which holds at most 524288 bytes in one record";
}

void journal_Seal (OutBuffer& frames, uint32_t extraLastFlags) {
  uint32_t extra = ACTION_TransactionStart;
  for (int place = 0; place < frames.Length ();) {
    const auto length = static_cast<int> (LengthAt (frames, place));
    const int body = place + 4;
    place = body + length;
    if (place >= frames.Length ()) extra |= ACTION_TransactionEnd | extraLastFlags;
    frames.PutUInt8At (static_cast<uint8_t> (frames.Data ()[body] | extra), body);
    const uint16_t crc = crc16_Arc (frames.Data () + body, static_cast<std::size_t> (length) - 2);
    frames.PutUInt8At (static_cast<uint8_t> (crc), place - 2);
    frames.PutUInt8At (static_cast<uint8_t> (crc >> 8), place - 1);
    extra = 0;
  }
}

dbJournal::dbJournal ()
    : _Header (FILEHDR_Journal),
      _FlushTime (neverFlush),
      _OutputBuffer (ENDIAN_Little),
      _Scratch (ENDIAN_Little) {}

dbJournal::~dbJournal () {
  if (!Assert (!_File.IsOpen (), "!_File.IsOpen()")) Close ();
}

bool dbJournal::Create (const Str& path, const FileHeader& header) {
  _HeaderFailed = false;
  if (!Assert (!_File.IsOpen (), "!_File.IsOpen()")) return false;
  if (!_File.Create (path)) return false;
  if (!header.Write (_File)) {
    _File.Close ();
    _File.DeleteCreated ();
    _HeaderFailed = true;
    return false;
  }
  _Header = header;
  Opened (true);
  _MediumOwed = true;
  _OutputBuffer = OutBuffer (outputReserve, ENDIAN_Little);
  return true;
}

bool dbJournal::Open (const Str& path, bool writable) {
  if (!Assert (!_File.IsOpen (), "!_File.IsOpen()")) return false;
  if (!_File.Open (path, writable ? FILE_ReadWrite : FILE_Read)) return false;
  if (!_Header.Read (_File)) {
    _File.Close ();
    return false;
  }
  if (_File.IsReadOnly () || (writable && !_File.CanWrite ())) {
    Environment::Get ()->LogMessage (
        (Str ("Journal Open : Job file is read-only: ") + _File.GetWholeName ()).Data ());
    writable = false;
  }
  Opened (writable);
  return true;
}

void dbJournal::Opened (bool writable) {
  _Writable = _OpenedForWriting = writable;
  _OutputBuffer.Reset ();
  _FlushTime = neverFlush;
  _AppendPosition = _LastGoodAppendPosition = _File.Tell ();
  _Size = _File.GetSize ();
  _OutputOnHold = _RepairDetected = _LimitReached = _MediumPutOff = _MediumOwed = _MediumFailed =
      false;
  RewindToRecords ();
}

bool dbJournal::Close () {
  if (!Assert (_File.IsOpen (), "_File.IsOpen()")) return true;
  bool isWhole = FlushToMedium ();
  if (_OutputBuffer.Length () > 0) {
    LogNumber ("Journal close: Flush() failed.  Bytes unwritten:",
               static_cast<uint32_t> (_OutputBuffer.Length ()));
    isWhole = false;
  }
  _File.Close ();
  _Writable = false;
  _OutputBuffer = OutBuffer (ENDIAN_Little);
  _Window = {};
  _WindowLength = 0;
  _IsNumberTaken = {};
  return isWhole;
}

bool dbJournal::GetHeader (FileHeader& header) const {
  if (!_File.IsOpen ()) return false;
  header = _Header;
  return true;
}

bool dbJournal::WriteHeader (const FileHeader& header) {
  if (!Assert (_File.IsOpen (), "_File.IsOpen()")) return false;
  if (!_OpenedForWriting || !header.Write (_File)) return false;
  _Header = header;
  _MediumOwed = true;
  return true;
}

bool dbJournal::ReadHeader (const Str& path, FileHeader& header) {
  file_Class file;
  if (!file.Open (path, FILE_Read)) return false;
  const bool good = header.Read (file);
  file.Close ();
  return good;
}

bool dbJournal::WriteTransaction (const dbTransaction& transaction) {
  _Scratch.Reset ();
  for (const dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
    Assert (journal_AppendFrame (_Scratch, *action), "length <= JOURNAL_MaxFrame");
  journal_Seal (_Scratch);
  return WriteFrames (_Scratch);
}

bool dbJournal::WriteFrames (const OutBuffer& frames) {
  if (frames.Length () == 0) return true;
  _OutputBuffer.Append (frames);
  return FlushIfFull ();
}

void dbJournal::ReserveOutput (const OutBuffer& frames) {
  const int length = _OutputBuffer.Length ();
  _OutputBuffer.Append (frames);
  _OutputBuffer.Shorten (length);
}

bool dbJournal::FlushIfFull () {
  if (!Assert (_File.IsOpen (), "_File.IsOpen()")) return false;
  return _OutputBuffer.Length () <= JOURNAL_FlushThreshold || Flush ();
}

bool dbJournal::Flush () {
  const auto length = static_cast<uint32_t> (_OutputBuffer.Length ());
  if (!_Writable) return length == 0;
  if (length == 0) return _MediumPutOff || !_MediumOwed || AskMedium ();
  _LimitReached =
      _AppendPosition > JOURNAL_MaxFileSize || length > JOURNAL_MaxFileSize - _AppendPosition;
  if (_LimitReached) {
    LogNumber ("Journal write refused (limit of 2147483647 bytes reached) at filepos",
               _AppendPosition);
    return false;
  }
  bool written = true;
  if (_Size > _AppendPosition) {
    written = _File.Truncate (_AppendPosition);
    if (written) _Size = _AppendPosition;
  }
  if (written) {
    _File.Seek (_AppendPosition);
    written = _File.Write (_OutputBuffer.Data (), length);
    // Removes the partly written bytes, so that the file ends with a whole frame.
    if (!written) _File.Truncate (_AppendPosition);
  }
  if (!written) {
    LogNumber ("Journal write failed (disk full?) at filepos", _AppendPosition);
    return false;
  }
  _AppendPosition += length;
  _Size = _LastGoodAppendPosition = _AppendPosition;
  _OutputBuffer.Reset ();
  _FlushTime = neverFlush;
  _MediumOwed = true;
  return _MediumPutOff || AskMedium ();
}

// A medium that failed once may have lost earlier writes, so the failure is kept.
bool dbJournal::AskMedium () {
  _MediumOwed = false;
  if (!_File.Flush ()) _MediumFailed = true;
  return !_MediumFailed;
}

bool dbJournal::FlushToMedium () {
  const bool written = Flush ();
  const bool kept = _MediumOwed ? AskMedium () : !_MediumFailed;
  return written && kept;
}

void dbJournal::Tick (double now) {
  if (_OutputBuffer.Length () == 0) return;
  if (_FlushTime == neverFlush) _FlushTime = now + JOURNAL_FlushDelay;
  if (_OutputOnHold) return;
  if (_FlushTime <= now || _OutputBuffer.Length () > JOURNAL_FlushThreshold) Flush ();
}

void dbJournal::HoldOutput () {
  Assert (!_OutputOnHold, "!_OutputOnHold");
  _OutputOnHold = true;
}

void dbJournal::ReleaseOutput () {
  Assert (_OutputOnHold, "_OutputOnHold");
  _OutputOnHold = false;
}

uint32_t dbJournal::Truncate () {
  if (!Assert (_File.IsOpen (), "_File.IsOpen()")) return 0;
  if (!_OpenedForWriting || !_File.Truncate (_LastGoodAppendPosition)) return 0;
  _Size = _LastGoodAppendPosition;
  _MediumOwed = true;
  _Writable = !_File.IsReadOnly ();
  return _LastGoodAppendPosition;
}

bool dbJournal::CopyTo (const Str& path) {
  if (!Assert (_File.IsOpen (), "_File.IsOpen()")) return false;
  Flush ();
  if (_OutputBuffer.Length () > 0) return false;
  Str directory, name, extension;
  file_Class::SplitName (path, directory, name, extension);
  file_Class copy (_File.Folder, name, extension);
  const Str whole = copy.GetWholeName ();
  if (!copy.Create (whole)) return false;
  std::vector<uint8_t> block (copyBlock);
  bool good = true;
  for (uint32_t position = 0; good && position < _Size;) {
    const uint32_t n = std::min (copyBlock, _Size - position);
    uint32_t got = 0;
    _File.Seek (position);
    good = _File.Read (block.data (), n, &got) && got == n && copy.Write (block.data (), n);
    position += n;
  }
  good = good && copy.Flush ();
  copy.Close ();
  if (!good) copy.DeleteCreated ();
  return good;
}

bool dbJournal::AppendForeign (const Str& path, const Str& name, const void* data,
                               uint32_t length) {
  if (!Assert (data || length == 0, "data")) return false;
  auto record = std::make_unique<db_Foreign> ();
  record->Name = name;
  const auto* bytes = static_cast<const uint8_t*> (data);
  if (length <= JOURNAL_MaxFrame) record->Data.assign (bytes, bytes + length);
  OutBuffer frame (ENDIAN_Little);
  if (!Assert (length <= JOURNAL_MaxFrame &&
                   journal_AppendFrame (
                       frame, dbModel_Action (DBACTION_Foreign, NODBID, std::move (record))),
               "length <= JOURNAL_MaxFrame"))
    return false;
  journal_Seal (frame);
  file_Class file;
  if (!file.Open (path, FILE_ReadWrite)) return false;
  FileHeader header (FILEHDR_Journal);
  const uint32_t size = file.GetSize ();
  const auto n = static_cast<uint32_t> (frame.Length ());
  bool good = header.Read (file) && header == FileHeader (FILEHDR_Journal) && file.CanWrite () &&
              size <= JOURNAL_MaxFileSize - n;
  if (good) {
    good = file.Append (frame.Data (), n);
    if (good)
      good = file.Flush ();
    else
      file.Truncate (size);
  }
  file.Close ();
  return good;
}

}  // namespace clxml
