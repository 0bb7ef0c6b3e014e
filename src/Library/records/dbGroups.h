// Groups of fields that several records share.
// Each is a plain structure with its own list of fields; its doubles start at the number given to
// it, 0.0 or the null value. Leans on dbField and the enumerations.
#pragma once

#include "Library/records/dbEnum.h"
#include "Library/records/dbField.h"

namespace clxml {

/// Grid coordinates, metres.
struct db_NEE {
  constexpr explicit db_NEE (double absent = 0.0) : North (absent), East (absent), Elev (absent) {}
  double North, East, Elev;
  void Fields (FieldVisitor& v) { FIELD (North); FIELD (East); FIELD (Elev); }
};

/// Geodetic coordinates: radians, metres.
struct db_LLH {
  constexpr explicit db_LLH (double absent = 0.0) : Lat (absent), Long (absent), Height (absent) {}
  double Lat, Long, Height;
  void Fields (FieldVisitor& v) { FIELD (Lat); FIELD (Long); FIELD (Height); }
};

/// Differences of grid coordinates, metres.
struct db_DeltasNEE {
  constexpr explicit db_DeltasNEE (double absent = 0.0)
      : dNorth (absent), dEast (absent), dElev (absent) {}
  double dNorth, dEast, dElev;
  void Fields (FieldVisitor& v) { FIELD (dNorth); FIELD (dEast); FIELD (dElev); }
};

/// Azimuth (radians), horizontal and vertical distance (metres).
struct db_PolarValues {
  constexpr explicit db_PolarValues (double absent = 0.0)
      : Azimuth (absent), HDist (absent), VDist (absent) {}
  double Azimuth, HDist, VDist;
  void Fields (FieldVisitor& v) { FIELD (Azimuth); FIELD (HDist); FIELD (VDist); }
};

/// What an instrument read: circles and their errors in radians, distance and its error in metres.
struct db_RawObservation {
  constexpr explicit db_RawObservation (double absent = 0.0)
      : HorzCircle (absent), VertCircle (absent), EDMDistance (absent),
        HorzCircleStdErr (absent), VertCircleStdErr (absent), EDMDistanceStdErr (absent) {}
  double HorzCircle, VertCircle, EDMDistance;
  coord_Face Face = COORD_FaceNull;
  double HorzCircleStdErr, VertCircleStdErr, EDMDistanceStdErr;
  total_MeasurementMode EDMMeasurementMode = TOTAL_EDMFine;
  void Fields (FieldVisitor& v) {
    FIELD (HorzCircle); FIELD (VertCircle); FIELD (EDMDistance); FIELD (Face);
    FIELD (HorzCircleStdErr); FIELD (VertCircleStdErr); FIELD (EDMDistanceStdErr);
    FIELD (EDMMeasurementMode);
  }
};

}  // namespace clxml
