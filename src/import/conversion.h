// The conversions of elements, as rows of tables.
// One table for each family of elements; the dispatch finds a row by the element's name. A new
// family is one source with a table, and one line in conversion.cpp. Leans on writejob and
// fieldreader.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include "import/fieldreader.h"
#include "import/writejob.h"

namespace clxml {

/// How the element of one name is converted.
struct Conversion {
  std::string_view element;
  const char* rec;  ///< what the element's attribute "rec" must be; empty where it is not checked
  void (*convert) (WriteJobControl& job, const xml_element& element, const char* rec);
};

/// True when no two rows have the same element name.
template <std::size_t n>
constexpr bool AllDifferent (const Conversion (&rows)[n]) {
  for (std::size_t i = 0; i < n; i++)
    for (std::size_t j = i + 1; j < n; j++)
      if (rows[i].element == rows[j].element) return false;
  return true;
}

/// The record class that a reading function fills.
template <class T>
T RecordRead (void (*) (FieldReader&, T&));

/// The conversion of an element that makes one record: its note, its fields by Read, the check of
/// "rec", storing; then what hangs on the stored record, by each of After. Bad fields are so
/// reported before a wrong "rec".
template <auto Read, auto... After>
void Convert (WriteJobControl& job, const xml_element& element, const char* rec) {
  auto record = std::make_unique<decltype (RecordRead (Read))> ();
  FieldReader in (&element, job.Version ());
  in.Note (record->Note);
  Read (in, *record);
  CheckRec (element, rec);
  job.StoreRecord (element, std::move (record));
  (After (job, element), ...);
}

/// For records that are nothing but what all records have.
template <class T>
void ReadNothing (FieldReader&, T&) {}

/// The deleted mark of what has no class: of lines, arcs, traverses, roads and templates. Without
/// it the class of older files tells, which must then be a known one; see points.cpp.
void ReadDeleted (const FieldReader& in, uint8_t& deleted);
/// Features of a point, line or arc that was just stored; see features.cpp.
void ReadFeatures (WriteJobControl& job, const xml_element& element);
/// The measurement among an observation's children, if there is one; see measurements.cpp.
void ReadMeasurement (WriteJobControl& job, const xml_element& element);

std::span<const Conversion> EntityConversions () noexcept;       // entity.cpp
std::span<const Conversion> PointConversions () noexcept;        // points.cpp
std::span<const Conversion> FeatureConversions () noexcept;      // features.cpp
std::span<const Conversion> MeasurementConversions () noexcept;  // measurements.cpp
std::span<const Conversion> OffsetConversions () noexcept;       // offsets.cpp
std::span<const Conversion> ResidualConversions () noexcept;     // residuals.cpp
std::span<const Conversion> CoordSystemConversions () noexcept;  // coordsystems.cpp
std::span<const Conversion> StationConversions () noexcept;      // stations.cpp
std::span<const Conversion> ScanConversions () noexcept;         // scans.cpp
std::span<const Conversion> GPSConversions () noexcept;          // gps.cpp
std::span<const Conversion> SettingConversions () noexcept;      // settings.cpp
std::span<const Conversion> StakeoutConversions () noexcept;     // stakeout.cpp
std::span<const Conversion> MarkerConversions () noexcept;       // markers.cpp
std::span<const Conversion> RoadConversions () noexcept;         // roadcapture.cpp

/// All tables.
std::span<const std::span<const Conversion>> AllConversions () noexcept;
/// The conversion of the elements of that name, or null. One look-up in a hash table.
const Conversion* FindConversion (std::string_view element);

}  // namespace clxml
