// The table of names: open addressing with linear probing, at most 70 % full.
#include "Library/index/namemap.h"

#include <bit>
#include <chrono>
#include <cstring>

namespace clxml {
namespace {

constexpr std::size_t leastSlots = 64;

struct Key {
  uint64_t K0, K1;
};

// Not to be known from outside: where the process lies in memory, and the time of its start.
Key MakeKey () {
  static int here;
  const auto now =
      static_cast<uint64_t> (std::chrono::steady_clock::now ().time_since_epoch ().count ());
  const auto place = static_cast<uint64_t> (reinterpret_cast<std::uintptr_t> (&here));
  const auto stack = static_cast<uint64_t> (reinterpret_cast<std::uintptr_t> (&now));
  return {now * 0x9E3779B97F4A7C15u ^ stack, place * 0xC2B2AE3D27D4EB4Fu ^ std::rotl (now, 32)};
}

// SipHash-1-3: J.-P. Aumasson and D. J. Bernstein, "SipHash: a fast short-input PRF", 2012.
class SipHash {
 public:
  explicit SipHash (const Key& key)
      : _v0 (key.K0 ^ 0x736F6D6570736575u),
        _v1 (key.K1 ^ 0x646F72616E646F6Du),
        _v2 (key.K0 ^ 0x6C7967656E657261u),
        _v3 (key.K1 ^ 0x7465646279746573u) {}

  uint64_t Of (std::string_view text) {
    std::size_t left = text.size ();
    const char* at = text.data ();
    for (; left >= 8; left -= 8, at += 8) {
      uint64_t word;
      std::memcpy (&word, at, sizeof word);
      Add (word);
    }
    uint64_t last = static_cast<uint64_t> (text.size ()) << 56;
    for (std::size_t i = 0; i < left; i++)
      last |= static_cast<uint64_t> (static_cast<uint8_t> (at[i])) << (8 * i);
    Add (last);
    _v2 ^= 0xFF;
    for (int i = 0; i < 3; i++) Round ();
    return _v0 ^ _v1 ^ _v2 ^ _v3;
  }

 private:
  void Add (uint64_t word) {
    _v3 ^= word;
    Round ();
    _v0 ^= word;
  }
  void Round () {
    _v0 += _v1;
    _v1 = std::rotl (_v1, 13) ^ _v0;
    _v0 = std::rotl (_v0, 32);
    _v2 += _v3;
    _v3 = std::rotl (_v3, 16) ^ _v2;
    _v0 += _v3;
    _v3 = std::rotl (_v3, 21) ^ _v0;
    _v2 += _v1;
    _v1 = std::rotl (_v1, 17) ^ _v2;
    _v2 = std::rotl (_v2, 32);
  }

  uint64_t _v0, _v1, _v2, _v3;
};

}  // namespace

uint32_t NameMap::Hash (std::string_view name) noexcept {
  static const Key key = MakeKey ();
  const uint64_t hash = SipHash (key).Of (name);
  return static_cast<uint32_t> (hash ^ hash >> 32);
}

void NameMap::Clear () {
  _Slots.clear ();
  _Slots.shrink_to_fit ();
  _Used = 0;
}

void NameMap::Reserve (int32_t names) {
  const auto least = static_cast<std::size_t> (names) * 10 / 7 + 1;
  if (least > _Slots.size ()) Resize (std::bit_ceil (std::max (least, leastSlots)));
}

uint32_t NameMap::SlotOf (uint32_t hash, int32_t subscript) noexcept {
  uint32_t tag = hash >> 24;
  if (tag >= 0xFE) tag = 0xFD;
  return tag << 24 | static_cast<uint32_t> (subscript);
}

// The slot of the chain of a hash, or the free slot where its search ends.
std::size_t NameMap::Place (uint32_t hash) const noexcept {
  const uint32_t tag = SlotOf (hash, 0);
  std::size_t i = hash & Mask ();
  for (;; i = (i + 1) & Mask ()) {
    const uint32_t slot = _Slots[i];
    if (slot == Free) return i;
    if ((slot & 0xFF000000) == tag &&
        At (static_cast<int32_t> (slot & 0xFFFFFF))->_NameHash == hash)
      return i;
  }
}

dbObject* NameMap::Newest (uint32_t hash) const noexcept {
  if (_Slots.empty ()) return nullptr;
  const uint32_t slot = _Slots[Place (hash)];
  return slot == Free ? nullptr : At (static_cast<int32_t> (slot & 0xFFFFFF));
}

void NameMap::Enter (dbObject& object, uint32_t hash) {
  if ((_Used + 1) * 10 > _Slots.size () * 7)
    Resize (std::max (leastSlots, std::bit_ceil (_Used * 2 + 2)));
  object._NameHash = hash;
  object._OlderOfName = -1;
  const int32_t subscript = object.GetUniqueId ().GetSubscript ();
  const std::size_t place = Place (hash);
  dbObject* newer = nullptr;
  dbObject* older =
      _Slots[place] == Free ? nullptr : At (static_cast<int32_t> (_Slots[place] & 0xFFFFFF));
  if (!older) _Used++;
  while (older && older->GetUniqueId ().GetSubscript () > subscript) {
    newer = older;
    older = Older (*older);
  }
  if (older) object._OlderOfName = older->GetUniqueId ().GetSubscript ();
  if (newer)
    newer->_OlderOfName = subscript;
  else
    _Slots[place] = SlotOf (hash, subscript);
}

void NameMap::Remove (dbObject& object) {
  if (_Slots.empty ()) return;
  const std::size_t place = Place (object._NameHash);
  if (_Slots[place] == Free) return;
  dbObject* newer = nullptr;
  dbObject* at = At (static_cast<int32_t> (_Slots[place] & 0xFFFFFF));
  while (at && at != &object) {
    newer = at;
    at = Older (*at);
  }
  if (!at) return;
  if (newer)
    newer->_OlderOfName = object._OlderOfName;
  else
    _Slots[place] = object._OlderOfName < 0 ? Left : SlotOf (object._NameHash, object._OlderOfName);
  object._OlderOfName = -1;
}

void NameMap::Resize (std::size_t slots) {
  std::vector<uint32_t> old (slots, Free);
  old.swap (_Slots);
  _Used = 0;
  for (const uint32_t slot : old) {
    if (slot == Free || slot == Left) continue;
    std::size_t i = At (static_cast<int32_t> (slot & 0xFFFFFF))->_NameHash & Mask ();
    while (_Slots[i] != Free) i = (i + 1) & Mask ();
    _Slots[i] = slot;
    _Used++;
  }
}

}  // namespace clxml
