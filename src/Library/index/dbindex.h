// The searchable view of one file: an array of small objects, one for each named record.
// An object is addressed by a UniqueId, which stays valid as long as its index. dbIndex has the
// array and the process-wide table of indexes; JobFile (jobfile.h) is the index of an open job,
// LinkedFile (linkedfile.h) that of a file without records.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "Library/job/uniqueid.h"
#include "Library/records/dbField.h"
#include "Library/records/dbType.h"
#include "platform/pool.h"
#include "str.h"

namespace clxml {

class dbIndex;
class dbObject;
class dbSelection;
class JobFile;
struct search_Results;

/// Entries of the index table.
inline constexpr int32_t DBINDEX_IndexCount = 256;

/// Two descriptions of a point, line or arc.
struct dbDescriptions {
  Str Description1;
  Str Description2;
};

/// What all indexes of the process share. Not guarded: indexes are made, cleared and read by one
/// thread at a time.
struct dbindex_Globals {
  std::array<dbIndex*, DBINDEX_IndexCount> Indexes{};  ///< by index number; null when free
  int32_t NextInIndexList = 1;                         ///< where the next registration starts
  int32_t HighestIndexNumber = 1;                      ///< the highest number handed out
  Str EmptyName;                                       ///< the name of subscript -1
  dbDescriptions EmptyDescriptions;                    ///< of objects without descriptions
};
extern dbindex_Globals StaticIndexGlobals;

/// An index: its objects by subscript, in the order in which they were added. A subscript never
/// moves and is never used again.
class dbIndex {
 public:
  /// Values of GetFileType.
  enum FileType : int32_t {
    NotBuilt = 0,
    DatabaseFile = 1,
    CommaSeparatedFile = 2,
    BackgroundFile = 3,
  };
  /// Objects of one block.
  static constexpr int32_t BlockSize = 1000;
  /// Objects that an index can have: a packed UniqueId with all bits set is null.
  static constexpr int32_t MaximumObjects = (1 << 24) - 1;

  dbIndex () = default;
  dbIndex (const dbIndex&) = delete;
  dbIndex& operator= (const dbIndex&) = delete;
  /// Deletes the objects and leaves the table.
  virtual ~dbIndex ();

  // The virtual operations.

  /// Deletes all objects and leaves the table of indexes; the index is then as new. When the last
  /// index leaves the table, numbers start at 1 again.
  virtual void Clear ();
  /// A hook for hosts; does nothing.
  virtual void Notify (int32_t argument);
  /// The path of the file.
  virtual void GetFileName (Str& out) const = 0;
  /// All objects of the index, sorted by name.
  virtual dbSelection& GetSelection () = 0;
  /// Searches the observations of a name, newest first: see search_Results. Sets
  /// DBSTATUS_Stakeout in status for a live point of the class Stakeout.
  virtual void SearchName (const Str& name, search_Results& results, uint32_t& status) = 0;
  /// Fills the grid of an observation, the geometry of a line or an arc.
  virtual void ComputeObject (dbObject& object) = 0;
  /// Fills the status word.
  virtual void ComputeStatus (dbObject& object) = 0;

  // Registration.

  /// The number of this index in the table; registers it if it has none. A full table asserts
  /// "StaticIndexGlobals.NextInIndexList != start" and gives -1.
  int32_t RegisterIndex ();
  int32_t GetIndexNumber () const noexcept { return _IndexNumber; }
  FileType GetFileType () const noexcept { return _FileType; }
  /// The job whose records the objects come from: itself for a job, the main job for another file.
  JobFile* GetJobFile () const noexcept { return _JobFile; }
  /// The job that heads the list of linked files: itself for the main job.
  JobFile* GetMainJobFile () const noexcept { return _MainJobFile; }

  // Objects.

  int32_t GetObjectCount () const noexcept { return _ObjectCount; }
  int32_t GetBlockCount () const noexcept { return static_cast<int32_t> (_BlockList.size ()); }
  /// Adds the object at the end and gives it its UniqueId. Beyond MaximumObjects it asserts
  /// "_ObjectCount < MaximumObjects", deletes the object and gives the null UniqueId.
  UniqueId AppendObject (std::unique_ptr<dbObject> object);
  /// Deletes the object at subscript and puts another in its place, with the same UniqueId.
  void ReplaceObject (int32_t subscript, std::unique_ptr<dbObject> object);
  /// Asserts "subscript < this->_ObjectCount" and "this->_BlockList"; null then.
  dbObject* GetObject (int32_t subscript) const;
  /// Null without objects and for a wrong subscript. An object other than an observation is
  /// computed first, unless its status and its grid are known.
  dbObject* GetCompleteObject (int32_t subscript);
  // The fields of the object at a subscript; a wrong subscript asserts as GetObject.
  database_RecordType GetRecordType (int32_t subscript) const;  ///< DATABASE_AllRecords if wrong
  const char* GetName (int32_t subscript) const;                ///< empty for -1
  DBID GetRecordId (int32_t subscript) const;
  /// The word itself, to be changed in place.
  uint16_t& GetFlags (int32_t subscript);
  UniqueId GetUniqueId (int32_t subscript) const noexcept { return {_IndexNumber, subscript}; }
  /// The object of a record, by binary search; null for NODBID, for a record without an object and
  /// for an index that is not of a job.
  UniqueId FindByRecordId (DBID id) const;

 protected:
  friend class JobFile;  // links other indexes
  friend class NameMap;  // whose subscripts are those of objects

  struct RecordPlace {
    DBID Id;
    int32_t Subscript;
  };

  dbObject* At (int32_t subscript) const noexcept {
    return (*_BlockList[static_cast<std::size_t> (
        subscript / BlockSize)])[static_cast<std::size_t> (subscript % BlockSize)];
  }
  void DeleteObjects () noexcept;

  JobFile* _JobFile = nullptr;
  JobFile* _MainJobFile = nullptr;
  FileType _FileType = NotBuilt;
  int32_t _IndexNumber = -1;
  int32_t _ObjectCount = 0;
  Pool _Pool;  // of the objects
  // Filled only where record numbers do not rise with the subscripts: sorted by record.
  std::vector<RecordPlace> _ByRecordId;

 private:
  using Block = std::array<dbObject*, BlockSize>;

  std::vector<std::unique_ptr<Block>> _BlockList;
};

}  // namespace clxml
