// The table of references, against a plain map. Leans on reftable.
#include "import/reftable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace clxml::testing {
namespace {

TEST (ReferenceTable, TheLastEntryOfANumberWins) {
  ReferenceTable table;
  EXPECT_EQ (table.Find (1), NODBID);
  table.Add (0x1388, DBID{1});
  table.Add (0x2710, DBID{2});
  EXPECT_EQ (table.Find (0x1388), DBID{1});
  EXPECT_EQ (table.Find (0x2710), DBID{2});
  EXPECT_EQ (table.Find (0), NODBID);
  EXPECT_EQ (table.Find (0xFFFFFFFF), NODBID);
  table.Add (0x1388, DBID{3});
  table.Add (0x1388, DBID{4});
  table.Add (0, DBID{5});
  EXPECT_EQ (table.Find (0x1388), DBID{4});
  EXPECT_EQ (table.Find (0x2710), DBID{2});
  EXPECT_EQ (table.Find (0), DBID{5});
  table.Add (0x2710, NODBID);
  EXPECT_EQ (table.Find (0x2710), NODBID);
}

TEST (ReferenceTable, AgreesWithAMapInAnyOrderOfLookUps) {
  const uint32_t seed = std::random_device () ();
  RecordProperty ("seed", std::to_string (seed));
  SCOPED_TRACE (seed);
  std::mt19937 random (seed);
  for (const uint32_t range : {3u, 100u, 5000u, 0xFFFFFFFFu}) {
    ReferenceTable table;
    std::map<uint32_t, DBID> map;
    const auto draw = [&] { return static_cast<uint32_t> (random () % range); };
    for (uint32_t i = 1; i <= 2000; i++) {
      const uint32_t number = draw ();
      table.Add (number, DBID{i});
      map[number] = DBID{i};
      if (i % 500 != 0) continue;
      for (int look = 0; look < 3000; look++) {
        uint32_t asked = draw ();
        if (random () % 2) asked = std::next (map.begin (), asked % map.size ())->first;
        const auto known = map.find (asked);
        ASSERT_EQ (table.Find (asked), known == map.end () ? NODBID : known->second) << asked;
      }
    }
  }
}

TEST (ReferenceTable, NoChoiceOfNumbersMakesItSlow) {
  // Numbers that a table of 5,000 chains would put into one: a hundred thousand steps for
  // each look-up there, some twenty here.
  ReferenceTable table;
  for (uint32_t i = 0; i < 200000; i++) table.Add ((199999 - i) * 5000, DBID{i + 1});
  uint32_t wrong = 0;
  for (uint32_t i = 0; i < 200000; i++) {
    const uint32_t number = static_cast<uint32_t> (i * 7919ull % 200000);
    wrong += table.Find (number * 5000) != DBID{200000 - number};
  }
  EXPECT_EQ (wrong, 0u);
}

}  // namespace
}  // namespace clxml::testing
