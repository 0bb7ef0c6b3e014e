// Classes of points: their order, names and older numbers.
#include <string>
#include <vector>

#include "Library/records/dbField.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

using Class = db_PointClassification;

struct Row {
  Class::Class value;
  const char* name;
  const char* covers;  // for each filter from None on: does this class cover it?
  int legacy;          // -1 where there is none
  int oldLegacy;
};

constexpr Row rows[] = {
    //                        NCBSCNMAAC
    {Class::None, "None", "1000000000", -1, -1},
    {Class::Check, "Check", "1100000000", 0, 0},
    {Class::BackSight, "BackSight", "1111111000", 1, 1},
    {Class::Stakeout, "Stakeout", "1101000000", 2, 2},
    {Class::Construction, "Construction", "1101100000", 3, 4},
    {Class::Normal, "Normal", "1111111000", 4, 4},
    {Class::MTA, "MTA", "1111111000", 4, 4},
    {Class::Adjusted, "Adjusted", "1111111100", 5, 4},
    {Class::Averaged, "Averaged", "1111111110", 6, 4},
    {Class::Control, "Control", "1111111111", 7, 7},
};

TEST (PointClassification, CoversClassesOfItsLevelAndBelow) {
  for (const Row& row : rows) {
    std::string covers;
    for (const Row& filter : rows) covers += Class (row.value).Covers (filter.value) ? '1' : '0';
    EXPECT_EQ (covers, row.covers) << row.name;
  }
}

TEST (PointClassification, HasName) {
  for (const Row& row : rows) {
    EXPECT_STREQ (Class (row.value).ToText (), row.name);
    Class read (Class::MTA);
    EXPECT_TRUE (read.FromText (row.name));
    EXPECT_EQ (read, Class (row.value)) << row.name;
  }
  Class untouched (Class::Averaged);
  EXPECT_TRUE (untouched.FromText (""));
  EXPECT_FALSE (untouched.FromText ("normal"));
  EXPECT_FALSE (untouched.FromText ("Normal "));
  EXPECT_EQ (untouched, Class (Class::Averaged));
}

TEST (PointClassification, ConvertsToOlderNumbers) {
  Hearing hearing;
  for (const Row& row : rows) {
    if (row.legacy < 0) continue;
    SCOPED_TRACE (row.name);
    const Class value (row.value);
    EXPECT_EQ (value.ToLegacy (true), row.legacy);
    EXPECT_EQ (value.ToLegacy (false), row.legacy + 8);
    EXPECT_EQ (value.ToOldLegacy (true), row.oldLegacy);
    EXPECT_EQ (value.ToOldLegacy (false), row.oldLegacy + 8);
    if (row.value != Class::MTA) {  // goes out as Normal
      EXPECT_EQ (Class::FromLegacy (row.legacy), value);
      EXPECT_EQ (Class::FromLegacy (row.legacy + 8), value);
    }
  }
  Class (Class::None).ToLegacy (true);
  Class (Class::None).ToOldLegacy (true);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"this->value != None", "this->value != None"}));
}

TEST (PointClassification, KeepsNumberOutsideRange) {
  Hearing hearing;
  for (const int32_t number : {-2, 9, 4711}) {
    const Class value (number);
    EXPECT_EQ (value.value, number);
    EXPECT_STREQ (value.ToText (), "");
    EXPECT_TRUE (value.Covers (Class::None));
    EXPECT_FALSE (value.Covers (Class::Stakeout));
    EXPECT_FALSE (Class (Class::Control).Covers (value));
  }
  EXPECT_EQ (hearing.TakeAssertions (),
             std::vector<std::string> (3, "i >= MinValue && i <= MaxValue"));
}

}  // namespace
}  // namespace clxml::testing
