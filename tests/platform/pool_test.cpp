// Memory for the many small objects of one owner: where it stands, and when it is used again.
#include "platform/pool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace clxml {
namespace {

TEST (Pool, GivesEachObjectItsOwnPlaceAndFreedOnesAgain) {
  Pool pool;
  std::set<uintptr_t> taken;
  std::vector<std::pair<void*, std::size_t>> live;
  for (std::size_t i = 0; i < 20000; i++) {
    const std::size_t n = 1 + i * 7919 % 400;
    auto* place = static_cast<uint8_t*> (pool.Allocate (n));
    std::memset (place, static_cast<int> (i % 251), n);
    EXPECT_EQ (reinterpret_cast<uintptr_t> (place) % 8, 0u);
    ASSERT_TRUE (taken.insert (reinterpret_cast<uintptr_t> (place)).second) << i;
    live.push_back ({place, n});
  }
  for (std::size_t i = 0; i < live.size (); i++) {
    const auto* bytes = static_cast<const uint8_t*> (live[i].first);
    ASSERT_EQ (bytes[0], i % 251) << i;
    ASSERT_EQ (bytes[live[i].second - 1], i % 251) << i;
  }
  const std::size_t size = pool.Size ();
  for (const auto& [place, n] : live) Pool::Free (place, n);
  for (const auto& [place, n] : live)
    EXPECT_EQ (taken.count (reinterpret_cast<uintptr_t> (pool.Allocate (n))), 1u);
  EXPECT_EQ (pool.Size (), size);
  pool.Clear ();
  EXPECT_EQ (pool.Size (), 0u);
  EXPECT_NE (pool.Allocate (24), nullptr);
}

TEST (Pool, IsLeftForTheHeapByWhatIsTooLargeAndWhereNoneIsInUse) {
  Pool pool;
  for (const std::size_t n : {std::size_t{24}, Pool::Largest, Pool::Largest + 1}) {
    void* heap = Pool::Make (n);
    const std::size_t before = pool.Size ();
    void* place = nullptr;
    {
      const Pool::Use use (pool);
      place = Pool::Make (n);
      Pool::Free (heap, n);  // knows where it came from, whatever is in use
    }
    EXPECT_EQ (pool.Size () > before, n == 24) << n;
    Pool::Free (place, n);
  }
  std::vector<double, PoolAllocator<double>> kept;
  {
    const Pool::Use use (pool);
    for (int i = 0; i < 3000; i++) kept.push_back (i);  // grows out of the pool
  }
  kept.push_back (-1);
  EXPECT_EQ (kept[2999], 2999);
}

}  // namespace
}  // namespace clxml
