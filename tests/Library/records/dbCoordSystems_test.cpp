// Records of a job's coordinate system: merging of settings.
// Leans on GoogleTest and dbCoordSystems.
#include "Library/records/dbCoordSystems.h"

#include <string>
#include <vector>

#include "Library/records/dbSettings.h"
#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

// Two records that differ in every field.
db_Corrections OfTheJob () {
  db_Corrections record;
  record.SouthAzimuth = 1;
  record.GridOrientation = COORDSYS_IncreasingSouthWest;
  record.MagneticDeclination = 0.25;
  record.Distances = COORDSYS_EllipsoidDistance;
  record.SubDivideCode = COORDSYS_UseCustom;
  record.NeighbourhoodAdjustment = 1;
  record.WeightExponent = COORDSYS_WeightExponentTwoPointZero;
  return record;
}
db_Corrections OfTheDefaults () {
  db_Corrections record;
  record.GridOrientation = COORDSYS_IncreasingNorthWest;
  record.MagneticDeclination = MATHS_Null;
  record.Distances = COORDSYS_GridDistance;
  record.SubDivideCode = COORDSYS_UseCode;
  record.WeightExponent = COORDSYS_WeightExponentOnePointFive;
  return record;
}

TEST (Corrections, TakeFromTheDefaultsWhatTheJobHasNotSet) {
  const db_Corrections job = OfTheJob ();
  const db_Corrections defaults = OfTheDefaults ();
  const auto ofJob = FieldLister::Of (job);
  const auto ofDefaults = FieldLister::Of (defaults);
  // Field 0 says which of the fields 1 to 7 are set, by the bits from 1 on.
  ASSERT_EQ (ofJob.size (), 8u);
  for (std::size_t absent = 1; absent < ofJob.size (); absent++) {
    SCOPED_TRACE (ofJob[absent].first);
    ASSERT_NE (ofJob[absent].second, ofDefaults[absent].second);
    db_Corrections record = job;
    record.ValuesPresent = coordsys_ValuesPresent (127 & ~(1u << (absent - 1)));
    const auto merged = record.MergeDefaults (defaults);
    ASSERT_NE (merged, nullptr);
    const auto fields = FieldLister::Of (*merged);
    EXPECT_EQ (fields[0].second, "127");
    for (std::size_t i = 1; i < fields.size (); i++)
      EXPECT_EQ (fields[i].second, (i == absent ? ofDefaults : ofJob)[i].second) << fields[i].first;
  }
}

TEST (Corrections, WithoutAnyValueBecomeTheDefaults) {
  db_Corrections record = OfTheJob ();
  record.ValuesPresent = coordsys_ValuesPresent (0);
  const auto merged = record.MergeDefaults (OfTheDefaults ());
  ASSERT_NE (merged, nullptr);
  EXPECT_TRUE (merged->IsEqual (OfTheDefaults ()));
}

TEST (Corrections, WithAllValuesHaveNothingToTake) {
  EXPECT_EQ (OfTheJob ().MergeDefaults (OfTheDefaults ()), nullptr);
}

TEST (Corrections, MergeWithNothingButCorrections) {
  Hearing hearing;
  db_Corrections record;
  record.ValuesPresent = coordsys_ValuesPresent (0);
  EXPECT_EQ (record.MergeDefaults (db_Units ()), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"fromCorrns"});
}

}  // namespace
}  // namespace clxml::testing
