// Finds the objects of a name without comparing more names than it must.
// Objects whose names have the same hash form a chain, from the newest to the oldest; who walks a
// chain compares the names. The table holds the newest object of each chain in four bytes.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Library/index/dbobject.h"

namespace clxml {

/// The names of one index. Names are hashed with a key of the process, so that no file can be made
/// whose names collide.
class NameMap {
 public:
  explicit NameMap (const dbIndex& index) : _Index (index) {}

  void Clear ();
  /// Makes room for that many names.
  void Reserve (int32_t names);
  static uint32_t Hash (std::string_view name) noexcept;
  /// The hash under which an object was entered.
  static uint32_t HashOf (const dbObject& object) noexcept { return object._NameHash; }

  /// Enters an object of the index. Constant time for one that is newer than all of its chain.
  void Enter (dbObject& object, uint32_t hash);
  /// Removes the object from its chain.
  void Remove (dbObject& object);
  /// Puts an object in the place of another of the same UniqueId and hash.
  static void TakePlace (dbObject& object, const dbObject& old) noexcept {
    object._NameHash = old._NameHash;
    object._OlderOfName = old._OlderOfName;
  }
  /// The newest object of a hash, and the next older one; null for none.
  dbObject* Newest (uint32_t hash) const noexcept;
  dbObject* Older (const dbObject& object) const noexcept { return At (object._OlderOfName); }

 private:
  // A slot: eight bits of the hash, then the subscript. The bits of the two values below are those
  // of no object.
  static constexpr uint32_t Free = 0xFFFFFFFF;
  static constexpr uint32_t Left = 0xFEFFFFFF;  // free again
  static uint32_t SlotOf (uint32_t hash, int32_t subscript) noexcept;

  dbObject* At (int32_t subscript) const noexcept {
    return subscript < 0 ? nullptr : _Index.At (subscript);
  }
  std::size_t Mask () const noexcept { return _Slots.size () - 1; }
  std::size_t Place (uint32_t hash) const noexcept;
  void Resize (std::size_t slots);

  const dbIndex& _Index;
  std::vector<uint32_t> _Slots;  // a power of two of them, or none
  std::size_t _Used = 0;         // slots that are not Free
};

}  // namespace clxml
