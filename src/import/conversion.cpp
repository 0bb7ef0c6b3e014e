// The tables of all families, and the look-up over them. Leans on nothing but the tables.
#include "import/conversion.h"

#include <unordered_map>

namespace clxml {

std::span<const std::span<const Conversion>> AllConversions () noexcept {
  static const std::span<const Conversion> families[] = {
      EntityConversions (),      PointConversions (),   FeatureConversions (),
      MeasurementConversions (), OffsetConversions (),  ResidualConversions (),
      CoordSystemConversions (), StationConversions (), ScanConversions (),
      GPSConversions (),         SettingConversions (), StakeoutConversions (),
      MarkerConversions (),      RoadConversions (),
  };
  return families;
}

const Conversion* FindConversion (std::string_view element) {
  static const std::unordered_map<std::string_view, const Conversion*> byName = [] {
    std::unordered_map<std::string_view, const Conversion*> map;
    map.reserve (512);
    for (const std::span<const Conversion> family : AllConversions ())
      for (const Conversion& row : family) map.emplace (row.element, &row);
    return map;
  }();
  const auto found = byName.find (element);
  return found == byName.end () ? nullptr : found->second;
}

}  // namespace clxml
