// Memory for the many small objects of one owner.
// A job holds records by the million: they stand close together, cost no search of a heap, and go
// with their owner. Leans on the operating system's pages.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace clxml {

/// A pool belongs to one owner, serves one thread at a time and must outlive what it holds. Freed
/// memory serves objects of about the same size again, and goes back to the system with Clear or
/// the pool. Pooled objects need an alignment of 8 at most.
class Pool {
 public:
  /// While one lives, what is made on its thread for a pool to hold (records, PoolAllocator) comes
  /// from this pool; otherwise from the heap. They do not nest.
  class Use {
   public:
    explicit Use (Pool& pool) noexcept { _Current = &pool; }
    ~Use () { _Current = nullptr; }
    Use (const Use&) = delete;
    Use& operator= (const Use&) = delete;
  };
  Pool () = default;
  Pool (const Pool&) = delete;
  Pool& operator= (const Pool&) = delete;
  ~Pool () { Clear (); }

  /// Room for n bytes from the pool in use, or else from the heap. Throws std::bad_alloc.
  static void* Make (std::size_t n) {
    return _Current ? _Current->Allocate (n) : ::operator new (n);
  }
  /// Gives back what Make or Allocate gave for n bytes.
  static void Free (void* place, std::size_t n) noexcept {
    if (IsPooled (place))
      Give (place, n);
    else
      ::operator delete (place);
  }
  /// Room for n bytes; more than Largest come from the heap. Throws std::bad_alloc.
  void* Allocate (std::size_t n) {
    const std::size_t size = (n + 15) & ~std::size_t{15};
    if (size > Largest) [[unlikely]]
      return ::operator new (n);
    FreeBlock*& free = _Free[size / 16];
    if (free) return Reuse (free, n);
    if (static_cast<std::size_t> (_End - _At) < size) [[unlikely]]
      NextChunk ();
    void* place = _At;
    _At += size;
    return Opened (place, n);
  }
  /// All memory goes back to the system. Nothing of the pool may be in use.
  void Clear () noexcept;
  /// Bytes that the pool took from the system.
  std::size_t Size () const noexcept;

  /// The largest object that stands in the pool itself.
  static constexpr std::size_t Largest = 8176;

 private:
  struct FreeBlock {
    FreeBlock* next;
  };
  struct Region {
    void* place;
    std::size_t size;
  };
  // Chunks start at multiples of their size with the pool's address, so that a block finds its
  // pool. Blocks stand 8 bytes behind a multiple of 16, where the heap never puts anything.
  static constexpr std::size_t ChunkSize = 65536;
  static constexpr std::size_t HeadSize = 24;
  static_assert (__STDCPP_DEFAULT_NEW_ALIGNMENT__ >= 16);

  static bool IsPooled (const void* place) noexcept {
    return (reinterpret_cast<std::uintptr_t> (place) & 8) != 0;
  }
  static void Give (void* place, std::size_t n) noexcept;
  static void* Opened (void* place, std::size_t n) noexcept;
  static void Shut (void* place, std::size_t n) noexcept;
  static void* Reuse (FreeBlock*& free, std::size_t n) noexcept;
  void NextChunk ();

  static thread_local constinit Pool* _Current;

  uint8_t* _At = nullptr;  // the unused rest of the chunk in use
  uint8_t* _End = nullptr;
  uint8_t* _NextChunk = nullptr;  // the unused chunks of the newest region
  uint8_t* _RegionEnd = nullptr;
  std::array<FreeBlock*, Largest / 16 + 1> _Free{};  // by size
  std::vector<Region> _Regions;
};

/// For containers whose elements may stand in a pool.
template <class T>
struct PoolAllocator {
  using value_type = T;
  static_assert (alignof (T) <= 8);
  PoolAllocator () = default;
  template <class U>
  PoolAllocator (const PoolAllocator<U>&) noexcept {}
  T* allocate (std::size_t n) { return static_cast<T*> (Pool::Make (n * sizeof (T))); }
  void deallocate (T* place, std::size_t n) noexcept { Pool::Free (place, n * sizeof (T)); }
  friend bool operator== (PoolAllocator, PoolAllocator) noexcept { return true; }
};

}  // namespace clxml

// Under the address sanitizer a block is open to the program only while it is in use.
#if defined(__SANITIZE_ADDRESS__)
#define POOL_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define POOL_SANITIZED 1
#endif
#endif
#ifdef POOL_SANITIZED
extern "C" void __asan_poison_memory_region (const volatile void* place, std::size_t n);
extern "C" void __asan_unpoison_memory_region (const volatile void* place, std::size_t n);
#endif

namespace clxml {

inline void Pool::Shut ([[maybe_unused]] void* place, [[maybe_unused]] std::size_t n) noexcept {
#ifdef POOL_SANITIZED
  __asan_poison_memory_region (place, n);
#endif
}

inline void* Pool::Opened (void* place, [[maybe_unused]] std::size_t n) noexcept {
#ifdef POOL_SANITIZED
  __asan_unpoison_memory_region (place, n);
#endif
  return place;
}

inline void* Pool::Reuse (FreeBlock*& free, std::size_t n) noexcept {
  FreeBlock* block = free;
  Opened (block, sizeof (FreeBlock));
  free = block->next;
  return Opened (block, n);
}

inline void Pool::Give (void* place, std::size_t n) noexcept {
  const std::uintptr_t chunk =
      reinterpret_cast<std::uintptr_t> (place) & ~std::uintptr_t{ChunkSize - 1};
  Pool& pool = **reinterpret_cast<Pool**> (chunk);
  FreeBlock*& free = pool._Free[(n + 15) / 16];
  auto* block = static_cast<FreeBlock*> (place);
  Opened (place, sizeof (FreeBlock));
  block->next = free;
  free = block;
  Shut (place, (n + 15) & ~std::size_t{15});
}

}  // namespace clxml
