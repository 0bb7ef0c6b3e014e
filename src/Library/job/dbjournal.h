// The job file: a journal of framed, checksummed transactions.
// Owns the open file, the output buffer and the two append positions; writes frames and reads them
// back. The meaning of an action is defined by the model. Uses file, filehdr and dbmodel.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Library/base/buffer.h"
#include "Library/job/dbmodel.h"
#include "Library/job/filehdr.h"
#include "platform/file.h"

namespace clxml {

/// How a read of the journal ended.
enum journal_Status : int32_t {
  JOURNAL_Ok = 0,         ///< a good transaction
  JOURNAL_End = 1,        ///< the end of the file, or a partial last transaction
  JOURNAL_Cancelled = 2,  ///< a cancelled group
  JOURNAL_Partial = 3,    ///< a transaction without proper start
  JOURNAL_Corrupt = 4,    ///< a frame that cannot be read
};

/// The least and the greatest number of bytes after the length of a frame.
inline constexpr uint32_t JOURNAL_MinFrame = 12;
inline constexpr uint32_t JOURNAL_MaxFrame = 524288;
/// The flag byte of a frame that a manual repair of the file took out.
inline constexpr uint8_t JOURNAL_Hammered = 0xBF;
/// Positions are signed 32-bit numbers, which limits the size of a job file.
inline constexpr uint32_t JOURNAL_MaxFileSize = 2147483647;
/// Bytes that wait for the file before it is written without being asked.
inline constexpr int32_t JOURNAL_FlushThreshold = 40960;
/// Seconds that bytes wait for the file at most.
inline constexpr double JOURNAL_FlushDelay = 3.0;

/// Appends one frame to a buffer: length, flags 0, verb, target, body and an empty checksum. False,
/// with the buffer as it was, when the frame would pass JOURNAL_MaxFrame. A Reserved action has
/// neither target nor record ("!record->DBRecord").
bool journal_AppendFrame (OutBuffer& frames, const dbModel_Action& action);
/// The message for a record whose frame would be longer than that; names the record.
Str journal_TooLong (const dbRecord_Class& record);
/// Completes the frames of one transaction: flags of start and end, extraLastFlags on the last one,
/// checksums.
void journal_Seal (OutBuffer& frames, uint32_t extraLastFlags = 0);

class dbJournal {
 public:
  dbJournal ();
  dbJournal (const dbJournal&) = delete;
  dbJournal& operator= (const dbJournal&) = delete;
  /// Asserts "!_File.IsOpen()"; an open file is closed.
  virtual ~dbJournal ();

  /// Creates the file and writes the header; asserts "!_File.IsOpen()". False when the file exists
  /// or cannot be made, and when the header cannot be written: the file is then gone again and
  /// IsHeaderFailed answers true.
  bool Create (const Str& path, const FileHeader& header);
  bool IsHeaderFailed () const noexcept { return _HeaderFailed; }
  /// Opens the file, for reading and writing when writable is set, and reads the header. A file
  /// that may not be written is logged and opens for reading. Asserts "!_File.IsOpen()".
  bool Open (const Str& path, bool writable);
  /// Flushes, asks the medium when that was put off, and closes. Unwritten bytes are logged. False
  /// when anything did not reach the file. A closed journal asserts "_File.IsOpen()", true.
  bool Close ();
  bool IsOpen () const noexcept { return _File.IsOpen (); }
  Str Path () const { return _File.GetWholeName (); }

  /// The header in force; false when the file is closed.
  bool GetHeader (FileHeader& header) const;
  /// Rewrites the first 48 bytes; false when the file is closed or may not be written.
  bool WriteHeader (const FileHeader& header);
  /// The header of a file that is not open here.
  static bool ReadHeader (const Str& path, FileHeader& header);

  /// Puts the frames of a transaction into the buffer; an empty one writes nothing. A record whose
  /// frame would pass JOURNAL_MaxFrame is asserted and left out. False when a flush that became
  /// due left bytes unwritten.
  bool WriteTransaction (const dbTransaction& transaction);
  /// The same with frames that journal_AppendFrame and journal_Seal made.
  bool WriteFrames (const OutBuffer& frames);
  /// Makes room in the buffer, so that WriteFrames allocates nothing for these frames.
  void ReserveOutput (const OutBuffer& frames);
  /// Fills transaction with the next one of the file; false when there is none, and status tells.
  /// Faults are logged; status 4 ends writing until Truncate.
  bool ReadTransaction (dbTransaction& transaction, journal_Status& status);
  /// The same for a replay: a good transaction of one frame, as most are, comes in `single`, with
  /// an empty transaction beside it; any other leaves no record in `single`.
  bool ReadNext (dbTransaction& transaction, dbModel_Action& single, journal_Status& status);
  /// Fills action with the next frame; false when there is none (status 1 or 4).
  ///
  /// A frame whose verb takes a DBID is also damaged if that number is 0, was taken by an earlier
  /// good transaction, or is higher than the number of frames that fit in the file up to there.
  bool ReadRecord (dbModel_Action& action, journal_Status& status);
  /// Goes back to the first frame.
  void RewindToRecords ();

  /// Writes what waits, if the file may be written, and asks the medium unless that is put off.
  /// False when bytes remain: the next flush writes the same bytes at the same position. Bytes
  /// that would pass JOURNAL_MaxFileSize are not written at all.
  bool Flush ();
  /// The last flush failed because the file would have passed JOURNAL_MaxFileSize.
  bool IsLimitReached () const noexcept { return _LimitReached; }
  /// Flushes when more than JOURNAL_FlushThreshold bytes wait; needs an open file.
  bool FlushIfFull ();
  /// Flushes, and asks the medium for all that was ever written.
  bool FlushToMedium ();
  /// The timed flush; now in seconds, as clock_Elapsed gives them.
  void Tick (double now);
  /// Suspend timed flushing; asserts "!_OutputOnHold" and "_OutputOnHold".
  void HoldOutput ();
  void ReleaseOutput ();
  /// From now on a flush only writes, and the medium is asked once, when the journal closes.
  void PutOffMedium () noexcept { _MediumPutOff = true; }

  /// Cuts the file at the last good append position; the position, or 0 when that failed.
  uint32_t Truncate ();
  /// Copies the whole file, with what waits, to a new file of that name in the folder of this one.
  /// False when that exists, and on any short read or write: no copy is left then.
  bool CopyTo (const Str& path);
  /// Adds a block of outside data to a job file that is not open here, as a frame that no replay
  /// sees. False when the file is no journal of this format stamp or cannot take the frame.
  static bool AppendForeign (const Str& path, const Str& name, const void* data, uint32_t length);

  /// The position behind the last frame that read without fault, or was written.
  uint32_t GetLastAppendPosition () const noexcept { return _LastGoodAppendPosition; }
  /// Where the next flush writes.
  uint32_t GetAppendPosition () const noexcept { return _AppendPosition; }
  /// The replay takes the last good position over: the next flush writes behind it.
  void AcceptPosition () noexcept { _AppendPosition = _LastGoodAppendPosition; }
  /// Bytes in the file.
  uint32_t GetFileSize () const noexcept { return _Size; }
  /// Bytes that wait for the file.
  int32_t GetUnwritten () const noexcept { return _OutputBuffer.Length (); }
  bool IsWritable () const noexcept { return _Writable; }
  /// A hammered frame was met.
  bool IsRepairDetected () const noexcept { return _RepairDetected; }
  void SetRepairDetected (bool detected) noexcept { _RepairDetected = detected; }

 private:
  const uint8_t* Window (uint32_t n, uint32_t& got);
  const uint8_t* FillWindow (uint32_t n, uint32_t& got);
  bool Fault (journal_Status& status, const char* text, uint32_t position);
  static bool Decode (const uint8_t* frame, uint32_t length, dbModel_Action& action);
  bool CheckNumber (const dbModel_Action& action);
  void ForgetNumbers () noexcept;
  void Complain (const char* text, uint32_t position) const;
  void Opened (bool writable);
  bool AskMedium ();

  file_Class _File;
  FileHeader _Header;
  double _FlushTime = 0.0;
  OutBuffer _OutputBuffer;
  OutBuffer _Scratch;
  uint32_t _AppendPosition = 0;
  uint32_t _LastGoodAppendPosition = 0;
  uint32_t _Size = 0;
  bool _OutputOnHold = false;
  bool _Writable = false;
  bool _OpenedForWriting = false;
  bool _RepairDetected = false;
  bool _HeaderFailed = false;
  bool _LimitReached = false;
  bool _MediumPutOff = false;
  bool _MediumOwed = false;    // bytes were written that no medium was asked for
  bool _MediumFailed = false;  // it was asked, and refused

  // Reading: a part of the file, and the position of the next frame.
  std::vector<uint8_t> _Window;
  uint32_t _WindowStart = 0;
  uint32_t _WindowLength = 0;
  uint32_t _ReadPosition = 0;
  std::vector<bool> _IsNumberTaken;             // by DBID
  std::vector<uint32_t> _NumbersOfTransaction;  // taken by the transaction that is being read
};

}  // namespace clxml
