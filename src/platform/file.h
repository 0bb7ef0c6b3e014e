// Files: the one gateway of the system to the file store.
// Every job, road, grid and library file is named, opened, read, written and closed through
// file_Class; file_Array is the result of a directory search. Leans on folder and str.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/folder.h"
#include "str.h"

namespace clxml {

/// How a file is opened.
enum file_Access : int32_t { FILE_Read = 0, FILE_Write = 1, FILE_ReadWrite = 2 };

/// A file: its name as folder, base name and extension, and its contents while it is open.
///
/// Sizes and positions are 32 bits. A file of 4 GiB or more opens for reading only, and shows its
/// first 4 GiB less one byte. The object keeps position and logical size itself: Seek, Tell and
/// GetSize ask nobody, and a Seek with a Read or Write is one system call.
///
/// Nothing here throws. A failure of the system is reported to Environment (source, line, error
/// number, whole name) and the operation answers false. Using a closed file asserts
/// "_WinHandle != NULL" and does nothing. One thread at a time.
class file_Class {
 public:
  file_Class () = default;
  /// By whole name; as SetName.
  explicit file_Class (const Str& whole);
  file_Class (const folder_Class& folder, const Str& name, const Str& extension);
  /// Copies name, time stamp and size of a closed file; an open one asserts "!file.IsOpen()". The
  /// copy is closed.
  file_Class (const file_Class& file);
  /// As the copy; a target that is open asserts "!this->IsOpen()" and stays as it is.
  file_Class& operator= (const file_Class& file);
  /// Asserts "!this->IsOpen()"; an open file is then closed as Close does.
  virtual ~file_Class ();

  /// Splits a whole name: "/" becomes "\", the directory ends at the last "\" (or behind the colon
  /// of a drive when there is none) and is taken off first, the extension follows the last dot of
  /// the rest.
  static void SplitName (const Str& whole, Str& directory, Str& name, Str& extension);
  /// Names the object. The directory of folder_Project or folder_Locale (without regard to case)
  /// gives that folder, any other one folder_NonStandard. An empty name leaves it nameless.
  void SetName (const Str& whole);
  /// Directory + name + "." + extension; empty when there is neither name nor extension.
  Str GetWholeName () const;
  /// The same without the directory.
  Str GetNameAndExtension () const;
  /// Something of this name is there; false for a nameless file or folder_Unknown.
  bool Exists () const;
  /// The file is there and nobody may write it (no write bit is set).
  bool IsReadOnly () const;
  bool IsOpen () const noexcept { return _WinHandle >= 0; }
  /// Open for writing.
  bool CanWrite () const noexcept { return IsOpen () && _Access != FILE_Read; }

  /// Names the object and creates the file, open for reading and writing. A missing directory is
  /// created, one level. False when the file exists; a read-only one asserts "readOnly == false".
  bool Create (const Str& whole);
  /// Takes a free name "_CL001.tmp" to "_CL999.tmp" in the temporary folder; creates nothing.
  bool CreateTemporary ();
  /// Puts "001" to "999" behind the base name, the first that no file has; false when all have, and
  /// the name is as before.
  bool MakeUnique ();
  /// Names the object and opens an existing file, shared with others. "STDOUT$" is the process's
  /// standard output. When writing is refused for want of permission (a read-only file, or medium,
  /// or no right to it) the file opens for reading and CanWrite () says so: whoever needs to write
  /// asks. Reported and false: no such file, no regular file, 4 GiB or more for writing. An object
  /// that is open asserts "!this->IsOpen()", false.
  bool Open (const Str& whole, int32_t access);
  /// Closes. With write access a file that the system holds for longer than the logical size is cut
  /// down to it first.
  void Close ();

  /// Moves to an absolute position, which may lie behind the end. While lines are read, a position
  /// in a small file (up to 8192 bytes) that the line buffer does not hold asserts
  /// "_ReadIndex >= 0 && _ReadIndex < _ReadSize"; it is reached all the same.
  void Seek (uint32_t position);
  /// The logical position: what ReadLine read ahead does not count.
  uint32_t Tell () const;
  /// Reads up to n bytes, never beyond GetSize (). True when at least one byte came, their number
  /// in got (which may be null). At or behind the end, and on an error, got stays as it was: an
  /// error is told from an end by Tell () < GetSize ().
  bool Read (void* destination, uint32_t n, uint32_t* got = nullptr);
  /// Writes at the position; the logical size rises with it. True when all n bytes went out; their
  /// number is in written (which may be null). Positions beyond 4 GiB are refused whole.
  bool Write (const void* source, uint32_t n, uint32_t* written = nullptr);
  /// Writes at the logical end. True when all went out.
  bool Append (const void* source, uint32_t n);
  /// Seeks there and sets the end of the file there. The logical size stays: Close and reopen, or
  /// write up to it again.
  bool Truncate (uint32_t position);
  /// Reads one line into n bytes, terminated. The line feed and a carriage return before it are
  /// dropped. True when a line feed ended the line, the room was used up (the next call goes on),
  /// or the file ended behind at least one byte. False at the end, on an error, or with n below 2.
  /// A scrambled file (see FILE_ScrambleMarker) reads as plain lines.
  bool ReadLine (char* destination, int32_t n);
  /// Has the system bring what was written to the medium.
  bool Flush ();

  /// True if the file was deleted. A missing file is false without a report; a read-only file is
  /// not deleted.
  bool Delete ();
  /// The same, but deletes a read-only file too: for a file that the caller has created itself,
  /// which is read-only under a umask that removes the write bits.
  bool DeleteCreated ();
  /// Moves the file to the other's name, which this object then takes. Never replaces a file. A
  /// failure is reported for "old -> new".
  bool Rename (const file_Class& other);
  /// Moves the closed file over the other one, on the same device and in one step, and takes its
  /// name. The mode of a replaced file stays; a read-only file or a directory is not replaced. A
  /// failure is reported for "old -> new".
  bool Replace (const file_Class& other);
  /// Copies over the destination, which is replaced at the end of a whole copy only; a read-only
  /// one is spared. Mode and last-write time go with the copy.
  bool Copy (const Str& destination) const;
  bool Copy (const file_Class& destination) const;
  /// The last-write time in seconds since 1980-01-01 on the local clock, also kept in TimeStamp;
  /// 0.0 when the system fails.
  double GetTimeStamp ();
  /// The logical size in bytes: as the system told at opening, then as written.
  uint32_t GetSize () const noexcept { return _FileSize; }

  folder_Class Folder;
  Str Name;       ///< without directory and extension
  Str Extension;  ///< without the dot
  double TimeStamp = 0.0;

 private:
  bool HostName (Str& host) const;
  bool RawRead (void* destination, uint32_t n, uint32_t& got);
  uint32_t ReadAhead () const noexcept;
  void DropReadAhead ();
  bool Refill ();
  void Opened (int64_t handle, int32_t access, uint32_t size, bool isStream);

  uint32_t _FileSize = 0;
  uint32_t _Position = 0;               // behind what was read last, line buffer included
  std::unique_ptr<char[]> _LineBuffer;  // of ReadLine, allocated on first use
  int32_t _ReadIndex = 0;               // next byte in it
  int32_t _ReadSize = 0;                // bytes in it
  int64_t _WinHandle = -1;
  int32_t _Access = FILE_Read;
  bool _IsStream = false;
  bool _IsScrambled = false;
};

/// The first 8 bytes of a scrambled text file. Byte i behind them is the text's byte combined (xor)
/// with the high byte of x(i + 1), where x(0) = FILE_ScrambleSeed and
/// x(i + 1) = (25173 x(i) + 13849) mod 65536, a generator of full period.
inline constexpr unsigned char FILE_ScrambleMarker[8] = {0x8E, 'N', 'C', 'T', 'X', 'T', '1', 0x1A};
inline constexpr uint16_t FILE_ScrambleSeed = 0x3C5A;
/// Scrambles or unscrambles n bytes that stand offset bytes behind the marker.
void file_Scramble (void* bytes, std::size_t n, uint32_t offset);

/// An owning array of files, copied deeply. Elements keep their address when it grows.
class file_Array {
 public:
  file_Array () = default;
  file_Array (const file_Array& other);
  file_Array (file_Array&& other) noexcept = default;
  file_Array& operator= (const file_Array& other);
  file_Array& operator= (file_Array&& other) noexcept = default;
  virtual ~file_Array () = default;

  int Count () const noexcept { return static_cast<int> (_Array.size ()); }
  /// Asserts "Index < _Count"; outside the array a nameless file of its own.
  file_Class& operator[] (int index);
  const file_Class& operator[] (int index) const;
  void Add (const file_Class& file);
  void Append (const file_Array& other);
  /// Asserts "index < _Count"; outside the array nothing happens.
  void RemoveAt (int index);
  /// By name and extension without regard to case; equals keep their order, here and below.
  void SortByName ();
  /// By folder type.
  void SortByFolder ();
  /// By time stamp, newest first; files whose time stamp was never asked for are asked now.
  void SortByTime ();

 private:
  void Reserve (std::size_t n);
  std::vector<std::unique_ptr<file_Class>> _Array;
};

}  // namespace clxml
