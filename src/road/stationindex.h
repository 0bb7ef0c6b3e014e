// Binary search over the stations of a list that is in station order.
// For the lookups of many stations in one list; a single lookup walks the list instead.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "numerics/approx.h"
#include "numerics/maths.h"

namespace clxml {

/// The stations of a list, copied. Stations are compared within 0.0005.
class StationIndex {
 public:
  void Add (double station) {
    _IsOrdered =
        _IsOrdered && IsKnown (station) && (_Stations.empty () || _Stations.back () <= station);
    _Stations.push_back (station);
  }
  /// The list is in order without nulls, and the station is known: the counts are valid.
  bool Answers (double station) const noexcept { return _IsOrdered && IsKnown (station); }
  /// How many stations are less than or equal to a station (LE).
  int CountUpTo (double station) const { return CountWhile (LE, station); }
  /// How many are less (LT).
  int CountBefore (double station) const { return CountWhile (LT, station); }

 private:
  static bool IsKnown (double station) noexcept {
    return std::isfinite (station) && !maths_IsNull (station);
  }
  int CountWhile (approx_Operator op, double station) const {
    const auto end =
        std::partition_point (_Stations.begin (), _Stations.end (),
                              [op, station] (double one) { return approx (one, op, station); });
    return static_cast<int> (end - _Stations.begin ());
  }

  std::vector<double> _Stations;
  bool _IsOrdered = true;
};

}  // namespace clxml
