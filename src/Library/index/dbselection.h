// A set of index objects, usually sorted by name: the form in which lists of points are kept.
// An item is five bytes, its flags and a packed UniqueId. Names are read from the records, so a
// selection of a whole job stays small.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "Library/coords/coord.h"
#include "Library/index/dbfilter.h"
#include "Library/job/uniqueid.h"
#include "Library/records/dbEnum.h"
#include "Library/records/dbField.h"
#include "Library/records/dbType.h"

namespace clxml {

class db_Measurement;
class dbIndex;
class dbObject;

/// How dbSelection::Find walks.
enum dbselection_Search : int {
  DBSEARCH_First = 0,
  DBSEARCH_Last = 1,
  DBSEARCH_Next = 2,       ///< from the item given
  DBSEARCH_Previous = 3,   ///< from the item given
  DBSEARCH_FirstBest = 4,  ///< passes IsBest (false) and is not deleted
  DBSEARCH_FirstBestGPS = 5,
};

/// An item: 128 of its flags is a working mark.
struct dbselection_Item {
  uint8_t Flags = 0;
  UniqueId Id;
};

/// Items in an order. Sorted: by name, byte by byte, and equal names by UniqueId, so that within a
/// name the oldest record comes first. Item numbers count from 0; one outside is asserted with the
/// text of its operation and changes nothing.
class dbSelection {
 public:
  dbSelection () = default;
  dbSelection (const dbSelection& set);
  explicit dbSelection (UniqueId id);
  /// Asserts "this->Isdbselection_Class()" and "this != &set".
  dbSelection& operator= (const dbSelection& set);
  virtual ~dbSelection ();

  /// False after destruction.
  bool Isdbselection_Class () const noexcept { return _ClassMark == ClassMark; }
  bool IsSortedByName () const noexcept { return _SortedByName; }
  /// The last argument of ApplyFilter.
  const dbfilter_Words& CurrentFilter () const noexcept { return _CurrentFilter; }

  // Content.

  /// Makes room: 800 items more, or 4877, 8954 and so on until there are more than minObjects.
  /// Where memory is short the step is halved as long as there are more than minObjects; without
  /// any room the selection stays as it was. Asserts "minObjects > -1".
  void Reserve (int32_t minObjects);
  /// Removes all items; the memory stays.
  void Empty () noexcept { _ItemCount = 0; }
  /// One item for each object of the index, in subscript order; sorted if the selection was.
  void FillFromIndex (const dbIndex& index);
  void SortByName ();
  /// In a sorted selection the item goes behind all items of its name, otherwise to the end. The
  /// item number; -1, with the assertion "_Items", without memory.
  int32_t Insert (const dbselection_Item& item);
  int32_t Insert (UniqueId id) { return Insert (dbselection_Item{0, id}); }
  // The next two end the sorted state.
  void InsertAt (int32_t itemNum, const dbselection_Item& item);  ///< "itemNum <= _ItemCount"
  void SetAt (int32_t itemNum, const dbselection_Item& item);
  void RemoveAt (int32_t itemNum);  ///< "itemNum < _ItemCount"
  /// Removes the first item of the object, if any.
  void Remove (UniqueId id);
  /// Inserts each item of the set; the sorted state ends.
  void AddAll (const dbSelection& set);
  /// Each item of the set that is not here goes in at itemNum, which grows, or by Insert if itemNum
  /// is no item number. The sorted state ends.
  void InsertMissing (int32_t itemNum, const dbSelection& set);

  // Search.

  /// An item of the name and the type (DATABASE_AllRecords for any). The selection must be sorted:
  /// "_SortedByName". itemNum is the start of Next and Previous ("*itemNum >= 0 && *itemNum <
  /// _ItemCount"), which assume that it has this name, and takes the item that was found; it may
  /// be null for the others. A search mode outside dbselection_Search finds nothing.
  bool Find (std::string_view name, database_RecordType type, int searchMode,
             int32_t* itemNum = nullptr) const;
  /// The first item whose name is the same without regard to case.
  bool FindInsensitive (const Str& name, database_RecordType type, int32_t* itemNum) const;
  /// The item of the point that is nearest in plan; -1 for a grid without a horizontal part, and
  /// when no point has a position.
  int32_t NearestPoint (const coord_CorrectedGrid& grid) const;

  // Items. Each asserts its item number.

  int32_t GetItemCount () const noexcept { return _ItemCount; }
  int32_t GetItemsAllocated () const noexcept { return _ItemsAllocated; }
  dbselection_Item GetItem (int32_t itemNum) const;
  UniqueId GetUniqueId (int32_t itemNum) const { return GetItem (itemNum).Id; }
  /// A point as it is, any other object computed; null when its index or the object is gone.
  dbObject* GetObject (int32_t itemNum) const;
  const char* GetName (int32_t itemNum) const;  ///< empty, and "dbx != NULL", without its index
  /// 139 when the index of the item is gone.
  int32_t GetRecordType (int32_t itemNum) const;
  DBID GetRecordId (int32_t itemNum) const;  ///< NODBID when the index is gone
  // Of points; the value of an empty candidate for anything else.
  db_PointClassification GetClassification (int32_t itemNum) const;
  dbentity_PointMethod GetMethod (int32_t itemNum) const;
  dbentity_PointMethod GetMTAMethod (int32_t itemNum) const;
  database_RecordType GetMeasurementType (int32_t itemNum) const;
  const db_Measurement* GetMeasurement (int32_t itemNum) const;
  bool IsDeleted (int32_t itemNum) const;
  bool IsHidden (int32_t itemNum) const;
  bool IsBest (int32_t itemNum, bool gpsForm) const;
  /// The word itself; asserts "dbx != NULL".
  uint16_t& GetFlags (int32_t itemNum) const;

  // Narrowing. Items whose object is gone are removed by each.

  /// Keeps what has a bit of each word, the status word included.
  void ApplyFilter (const dbfilter_Words& words);
  void KeepByItemFlags (uint8_t mask, uint8_t value);
  void KeepByObjectFlags (uint16_t mask, uint16_t value);
  /// By the text of the feature codes, without regard to case.
  void KeepByCode (const Str& text);
  /// From an item named first up to an item named last, and again from the next one named first.
  void KeepNameRange (std::string_view first, std::string_view last);
  void KeepWithHorizontal ();  ///< points with a horizontal position
  void KeepWithEither ();      ///< points with a horizontal position or a height
  int32_t RemoveInvalid ();    ///< the number removed
  int32_t RemoveDeleted ();    ///< the number removed
  void RemoveHidden ();
  /// Removes what is both of the class MTA and hidden in a mean.
  void RemoveMTAHidden ();
  void RemoveItemsOf (const dbSelection& set);
  /// Keeps what lies in the rectangle of two corners: a point by its grid, a line by both ends, an
  /// arc by its ends and the northernmost, southernmost, easternmost and westernmost points of
  /// its circle that it reaches. Azimuths of arcs count from south if isReversed, and the axes
  /// of the grid grow as orientation says.
  void KeepInRectangle (const coord_CorrectedGrid& corner1, const coord_CorrectedGrid& corner2,
                        bool isReversed = false,
                        coordsys_GridOrientation orientation = COORDSYS_IncreasingNorthEast);
  /// Keeps what comes within radius (metres) of the centre: a line by the foot of the
  /// perpendicular, or the nearer end where the foot lies beyond it; an arc by its whole circle.
  void KeepWithinRadius (const coord_CorrectedGrid& centre, double radius);

  // Names.

  /// Rebuilds the selection: for each name, once, all objects of that name in the index and, with
  /// allIndexes, in the files linked to it. The best point of a name comes first. Without
  /// allIndexes, items of other indexes are removed. The sorted state ends.
  void ExpandByName (dbIndex& index, bool allIndexes);
  /// Replaces each point that is not the best of its name by JobFile::FindBestPoint, or removes it
  /// if there is none. True if all items were the best already.
  bool ReplaceByBest ();

 private:
  friend class JobFile;

  static constexpr const char* ClassMark = "dbSelection";
  static constexpr std::size_t ItemSize = 5;
  static constexpr uint8_t WorkingMark = 128;

  uint8_t* Place (int32_t itemNum) const noexcept {
    return _Items.get () + static_cast<std::size_t> (itemNum) * ItemSize;
  }
  uint32_t PackedAt (int32_t itemNum) const noexcept {
    uint32_t packed;
    std::memcpy (&packed, Place (itemNum) + 1, sizeof packed);
    return packed;
  }
  void Put (int32_t itemNum, uint8_t flags, uint32_t packed) noexcept {
    *Place (itemNum) = flags;
    std::memcpy (Place (itemNum) + 1, &packed, sizeof packed);
  }
  bool MakeRoom ();
  void OpenGap (int32_t itemNum, const dbselection_Item& item);
  int32_t LowerBound (std::string_view name) const;
  int32_t UpperBound (std::string_view name) const;
  int32_t InsertByNameAndId (UniqueId id);
  void Append (UniqueId id);
  void Reverse ();
  dbIndex* IndexAt (int32_t itemNum) const noexcept;
  dbObject* ObjectAt (int32_t itemNum) const;
  std::vector<uint32_t> SortedIds () const;
  template <class Keeps>
  int32_t Keep (Keeps keeps);

  const char* _ClassMark = ClassMark;
  bool _SortedByName = false;
  int32_t _ItemCount = 0;
  int32_t _ItemsAllocated = 0;
  dbfilter_Words _CurrentFilter{};
  std::unique_ptr<uint8_t[]> _Items;  // null while nothing was entered
};

}  // namespace clxml
