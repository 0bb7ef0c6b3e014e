// The cross sections of a road at many stations.
#pragma once

#include <string_view>
#include <unordered_map>

#include "road/placements.h"
#include "road/superelevation.h"

namespace clxml {

class CrossSectionTemplate;
class NorvathRoad;
class roadxs_CrossSection;

/// NorvathRoad::CrossSectionAt for many stations of one road: placements, superelevation entries
/// and templates are found by an index, so that a section costs the same in a road of many. The
/// road must outlive the object and not change.
class RoadSections {
 public:
  explicit RoadSections (const NorvathRoad& road);
  void CrossSectionAt (double station, roadxs_CrossSection& section) const;

 private:
  const NorvathRoad& _Road;
  TemplatePlacementIndex _Placements;
  SuperElevationIndex _Supers;
  std::unordered_map<std::string_view, const CrossSectionTemplate*> _Templates;
};

}  // namespace clxml
