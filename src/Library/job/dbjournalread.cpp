// Reading the job file.
//
// A frame is accepted if the file has all of it, its length is within bounds, its checksum fits,
// its action is a valid one, and its body loads as a record of a known type within the bytes before
// the checksum. The DBID of an action that takes one must not be 0, must not have been taken by an
// earlier good transaction, and must not exceed the number of frames that fit in the file up to
// there, since the look-up table grows with it. It may be lower than an earlier one. Only earlier
// frames are used, so a job that was cut at a frame boundary opens clean.
//
// Reading ends at the first frame that is not accepted, because the start of the next one is not
// known. The file is read in large parts, and frames are decoded in place.
#include <algorithm>
#include <cstring>

#include "Library/job/crc16.h"
#include "Library/job/dbjournal.h"
#include "Library/records/dbReader.h"

namespace clxml {
namespace {

constexpr uint32_t windowSize = 262144;
// Flags, action, target, and the head of the smallest record body.
constexpr uint32_t headBytes = 7;
constexpr uint32_t leastBody = 15;
constexpr uint32_t leastFrame = 4 + headBytes + leastBody + 2;

uint16_t UInt16At (const uint8_t* p) { return static_cast<uint16_t> (p[0] | p[1] << 8); }

uint32_t UInt32At (const uint8_t* p) {
  return static_cast<uint32_t> (p[0]) | static_cast<uint32_t> (p[1]) << 8 |
         static_cast<uint32_t> (p[2]) << 16 | static_cast<uint32_t> (p[3]) << 24;
}

}  // namespace

void dbJournal::RewindToRecords () {
  _ReadPosition = FILEHDR_SizeOnDisk;
  _WindowLength = 0;
  _IsNumberTaken.clear ();
  _NumbersOfTransaction.clear ();
}

// The n bytes at the read position, or as many as there are.
inline const uint8_t* dbJournal::Window (uint32_t n, uint32_t& got) {
  // A position in front of the window counts as one far behind it.
  const uint32_t offset = _ReadPosition - _WindowStart;
  if (offset <= _WindowLength && n <= _WindowLength - offset) {
    got = n;
    return _Window.data () + offset;
  }
  return FillWindow (n, got);
}

const uint8_t* dbJournal::FillWindow (uint32_t n, uint32_t& got) {
  const uint32_t remain = _Size > _ReadPosition ? _Size - _ReadPosition : 0;
  const uint32_t wanted = std::min (std::max (n, windowSize), remain);
  if (_Window.size () < wanted) _Window.resize (wanted);
  _WindowStart = _ReadPosition;
  _WindowLength = 0;
  _File.Seek (_ReadPosition);
  while (_WindowLength < wanted) {
    uint32_t came = 0;
    if (!_File.Read (_Window.data () + _WindowLength, wanted - _WindowLength, &came)) break;
    _WindowLength += came;
  }
  got = std::min (n, _WindowLength);
  return _Window.data ();
}

bool dbJournal::Fault (journal_Status& status, const char* text, uint32_t position) {
  Complain (text, position);
  status = JOURNAL_Corrupt;
  _Window = {};
  _WindowLength = 0;
  return false;
}

// length is that of flags, action, target and body.
inline bool dbJournal::Decode (const uint8_t* frame, uint32_t length, dbModel_Action& action) {
  action.DBRecord.reset ();
  if (length < headBytes + leastBody) return false;
  action.Flags = frame[0];
  action.Type = static_cast<dbModel_Verb> (UInt16At (frame + 1));
  action.Target = {UInt32At (frame + 3)};
  if (action.Type < DBACTION_Add || action.Type > DBACTION_Delete ||
      action.Type == DBACTION_Reserved)
    return false;
  BodyReader body (frame + headBytes, length - headBytes);
  action.DBRecord = LoadRecord (body);
  return action.DBRecord != nullptr;
}

inline bool dbJournal::CheckNumber (const dbModel_Action& action) {
  if ((action.Flags & ACTION_TransactionStart) != 0) ForgetNumbers ();
  if (!TakesNumber (action.Type)) return true;
  const uint32_t number = action.DBRecord->RecordId.value;
  const uint32_t room = (_ReadPosition - FILEHDR_SizeOnDisk) / leastFrame;
  if (number == 0 || number > room) return false;
  if (number >= _IsNumberTaken.size ()) _IsNumberTaken.resize (std::size_t{number} + 1);
  if (_IsNumberTaken[number]) return false;
  _IsNumberTaken[number] = true;
  _NumbersOfTransaction.push_back (number);
  return true;
}

// A dropped transaction gives its numbers back.
void dbJournal::ForgetNumbers () noexcept {
  for (const uint32_t number : _NumbersOfTransaction) _IsNumberTaken[number] = false;
  _NumbersOfTransaction.clear ();
}

bool dbJournal::ReadRecord (dbModel_Action& action, journal_Status& status) {
  for (;;) {
    status = JOURNAL_Ok;
    const uint32_t position = _ReadPosition;
    if (position >= _Size) {
      status = JOURNAL_End;
      _Window = {};
      _WindowLength = 0;
      return false;
    }
    uint32_t got = 0;
    const uint8_t* bytes = Window (4, got);
    _ReadPosition += got;
    if (got < 4)
      return Fault (status, "Journal record length short read failure at filepos ", position);
    const uint32_t length = UInt32At (bytes);
    if (length < JOURNAL_MinFrame || length > JOURNAL_MaxFrame)
      return Fault (status, "Journal record length is unbelieveable at ", position);
    bytes = Window (length, got);
    _ReadPosition += got;
    if (got < length)
      return Fault (status, "Journal record short read failure at filepos ", position);
    if (bytes[0] == JOURNAL_Hammered) {
      _RepairDetected = true;
      LogNumber ("Journal: Manual repair detected at ", position);
      LogNumber ("-- Hammered record size ", length);
      continue;
    }
    if (crc16_Arc (bytes, length - 2) != UInt16At (bytes + length - 2))
      return Fault (status, "Journal: CRC error at ", position);
    if (!Decode (bytes, length - 2, action) || !CheckNumber (action))
      return Fault (status, "Journal: Record corruption at filepos ", position);
    _LastGoodAppendPosition = _ReadPosition;
    return true;
  }
}

bool dbJournal::ReadTransaction (dbTransaction& transaction, journal_Status& status) {
  dbModel_Action single;
  if (!ReadNext (transaction, single, status)) return false;
  if (single.DBRecord) transaction.Add (std::make_unique<dbModel_Action> (std::move (single)));
  return true;
}

bool dbJournal::ReadNext (dbTransaction& transaction, dbModel_Action& single,
                          journal_Status& status) {
  if (!transaction.IsEmpty ()) transaction.Clear ();
  ForgetNumbers ();
  if (!ReadRecord (single, status)) {
    if (status == JOURNAL_Corrupt) _Writable = false;
    return false;
  }
  if (single.Flags == (ACTION_TransactionStart | ACTION_TransactionEnd)) {
    _NumbersOfTransaction.clear ();
    return true;
  }
  std::unique_ptr<dbModel_Action> action = transaction.NewAction ();
  *action = std::move (single);
  if ((action->Flags & ACTION_TransactionStart) == 0) {
    Complain ("Journal: Transaction start flag missing near filepos ", _ReadPosition);
    status = JOURNAL_Partial;
  }
  transaction.Add (std::move (action));
  bool cancelled = false;
  for (;;) {
    cancelled = cancelled || transaction.IsCancelled ();
    if (transaction.IsComplete ()) break;
    action = transaction.NewAction ();
    if (!ReadRecord (*action, status)) {
      if (status == JOURNAL_Corrupt) _Writable = false;
      Complain ("Journal: Partial last transaction near filepos ", _ReadPosition);
      transaction.Clear ();
      return false;
    }
    if ((action->Flags & ACTION_TransactionStart) != 0) {
      Complain ("Journal: Partial transaction near filepos ", _ReadPosition);
      transaction.Clear ();
      cancelled = false;
      status = JOURNAL_Partial;
    }
    transaction.Add (std::move (action));
  }
  if (cancelled && status == JOURNAL_Ok) status = JOURNAL_Cancelled;
  if (status == JOURNAL_Ok) _NumbersOfTransaction.clear ();
  return true;
}

void dbJournal::Complain (const char* text, uint32_t position) const {
  LogNumber (text, position);
  LogNumber ("-- Reported file size ", _Size);
}

}  // namespace clxml
