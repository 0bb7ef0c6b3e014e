// One measurement of a point, with every form of it.
// Holds the form that was stored and derives the others on demand, each at most once under one
// transform. What needs a job (bases by name, stations, antennas) goes through positionjob.h.
// Leans on the coordinate values, the records and the transform.
#pragma once

#include <cstdint>

#include "Library/coordsys/transfrm.h"
#include "Library/job/uniqueid.h"
#include "Library/records/dbEnum.h"
#include "Library/records/dbField.h"
#include "str.h"

namespace clxml {

class dbRecord_Class;
class position_Job;
struct environment;
struct laser_Environment;

/// The bits of position::Status and position::Attempted.
enum position_Done : uint32_t {
  POSITION_DoneGrid = 0x2,
  POSITION_DoneLocal = 0x4,
  POSITION_DoneUncalibratedLocal = 0x8,
  POSITION_DoneWGS84 = 0x10,
  POSITION_DoneECEFGround = 0x20,
  POSITION_DoneECEF = 0x40,
  POSITION_DoneGround = 0x80,
  POSITION_DoneGridDeltas = 0x100,
  POSITION_DoneECEFDeltas = 0x200,
  POSITION_DonePolar = 0x400,
  POSITION_DoneCircle = 0x800,
  POSITION_DoneCorrected = 0x1000,
  POSITION_DoneUnturned = 0x2000,
  POSITION_DoneLaserOffset = 0x4000,
  POSITION_DoneAntenna = 0x8000,  ///< survives a change of transform
  POSITION_DoneLocalEllipsoid = 0x10000,
  POSITION_DoneWGS84Ellipsoid = 0x20000,
  POSITION_DoneWGS84W = 0x40000,
  POSITION_DoneConvergence = 0x80000,
  POSITION_DoneLocalW = 0x100000,
};

/// The six forms that are absolute positions.
inline constexpr uint32_t POSITION_DoneAbsolute = 0x7E;

/// The frame in which an observation is reduced.
enum class position_Frame { None = 0, Grid = 1, Local = 2, WGS84 = 3 };

/// One measurement of a point. A plain value: copied freely, owns nothing but its texts. Lengths
/// are metres, angles radians. Created empty and loaded once; then a form is asked for by its Get
/// operation, under any transform: the stored form stands, the others are dropped when the
/// identity of the transform changes. A form that cannot be given is a null coordinate and no
/// error. One object is for one thread at a time.
class position {
 public:
  Str Name;                              ///< of the point
  UniqueId Object;                       ///< of the job index; null when built from values
  Str NameOfBase;                        ///< the point it was measured from; empty if none
  Str NameOfBacksight;                   ///< of that setup; empty if none
  bool HasStationSetup = false;          ///< StationSetup serves and no name is looked up
  coord_StationSetupData StationSetup;   ///< grid and azimuth of a setup carried by value
  coord_Type Original = COORD_NullType;  ///< the stored form; COORD_NullType while empty
  uint32_t Attempted = 0;                ///< position_Done bits that were tried
  uint32_t Status = 0;                   ///< position_Done bits that are there and valid

  coord_CorrectedGrid Grid;
  coord_Local Local;              ///< after horizontal and vertical adjustment
  coord_Local UncalibratedLocal;  ///< straight from the datum transformation
  coord_WGS84 WGS84;
  coord_ECEFGround ECEFGround;
  coord_ECEF ECEF;  ///< of the antenna's phase centre
  coord_Ground Ground;
  coord_GridDeltas GridDeltas;
  coord_ECEFDeltas ECEFDeltas;
  coord_Polar Polar;
  coord_LaserOffset LaserOffset;
  coord_Circle Circle;
  coord_Corrected Corrected;
  coord_Unturned Unturned;
  coord_MTA MTA;

  double BackBearingCircle = MATHS_Null;  ///< reading of the backsight for this observation
  double Antenna = MATHS_Null;            ///< true height of the antenna
  double ReferenceAntenna = MATHS_Null;   ///< the same of the reference of an ECEFDeltas
  coordsys_Ellipsoid LocalEllipsoid;      ///< for distances on the local datum
  double Convergence = MATHS_Null;        ///< of the grid at the point
  double LocalW = MATHS_Null;             ///< see GetLocalW
  coordsys_Ellipsoid WGS84Ellipsoid;      ///< for distances on WGS84
  double WGS84W = MATHS_Null;             ///< see GetWGS84W
  uint32_t TransformId = TRANSFORM_NoId;
  coordsys_CogoSettings CogoSystem{};  ///< under which an observation was stored; 0 is null
  position_Job* SearchData = nullptr;  ///< not owned; null when built from values only
  bool UseProjectHeight = false;       ///< a missing height of a base is the project height
  DBID DBLocationOfBaseRecord;         ///< from which the base names were read
  DBID DBLocationOfAntenna;
  DBID DBLocationOfECEFDeltasReference;
  DBID DBLocationOfCircleStation;
  DBID DBLocationOfCircleTarget;
  DBID DBLocationOfCircleBackBearing;
  DBID DBLocationOfMagneticDeclination;
  DBID DBLocationOfLaserHeight;
  DBID DBLocationOfTargetHeight;
  bool HorizontalOnly = false;  ///< DropHeights does its work

  /// Loads from values: empties the position first, then sets the form, its Status bit, Original
  /// and the transform under which it counts (null: TRANSFORM_NoId). Names, settings and job
  /// are set after it.
  void LoadFromWGS84 (const coord_WGS84& coordinate, const Transform* transform = nullptr);
  void LoadFromLocal (const coord_Local& coordinate, const Transform* transform = nullptr);
  void LoadFromUncalibratedLocal (const coord_Local& coordinate,
                                  const Transform* transform = nullptr);
  void LoadFromGrid (const coord_CorrectedGrid& coordinate, const Transform* transform = nullptr);
  /// Through the transform's grid: Original becomes COORD_GridType.
  void LoadFromCogoGrid (const coord_CogoGrid& coordinate, const Transform& transform);
  void LoadFromECEF (const coord_ECEF& coordinate, const Transform* transform = nullptr);
  void LoadFromECEFGround (const coord_ECEFGround& coordinate,
                           const Transform* transform = nullptr);
  void LoadFromGridDeltas (const coord_GridDeltas& deltas, const Transform* transform = nullptr);
  void LoadFromECEFDeltas (const coord_ECEFDeltas& deltas, const Transform* transform = nullptr);
  void LoadFromPolar (const coord_Polar& polar, const Transform* transform = nullptr);
  void LoadFromGround (const coord_Ground& ground, const Transform* transform = nullptr);
  void LoadFromUnturned (const coord_Unturned& unturned, double backBearingCircle,
                         const Transform* transform = nullptr);
  /// The mean's angles and distance are also its Circle, on face 1.
  void LoadFromMTA (const coord_MTA& mean, const Transform* transform = nullptr);
  /// Computes Corrected and Unturned at once. Base and backsight are named by the back bearing of
  /// the environment, unless it has a station setup, which is copied. Asserts
  /// "environment->Station.StationName.EqualInsensitive (environment->BackBearing.Station)" where
  /// the names are used.
  void LoadFromCircle (const coord_Circle& circle, const environment& env, double backBearingCircle,
                       const Transform* transform = nullptr);
  /// Computes Polar at once.
  void LoadFromLaserOffset (const coord_LaserOffset& laserOffset, const laser_Environment& env,
                            const Transform* transform = nullptr);
  /// From a measurement record of the job, under its current transform: takes the locations and
  /// settings of the record and reads the names of base and backsight from the records that it
  /// refers to; one that is missing or of another type leaves them empty. False, with the position
  /// empty, for a record of any other type, which asserts "record.IsMeasurement ()".
  bool LoadFromRecord (position_Job& job, const dbRecord_Class& record);

  /// The forms, each under the transform given; null when it cannot be computed.
  coord_WGS84 GetWGS84 (const Transform& transform);
  coord_Local GetLocal (const Transform& transform);
  coord_Local GetUncalibratedLocal (const Transform& transform);
  coord_CorrectedGrid GetGrid (const Transform& transform);
  coord_CogoGrid GetCogoGrid (const Transform& transform);  ///< axes growing north and east
  coord_ECEFGround GetECEFGround (const Transform& transform);
  coord_ECEF GetECEF (const Transform& transform);
  coord_GridDeltas GetGridDeltas (const Transform& transform);
  coord_ECEFDeltas GetECEFDeltas (const Transform& transform);
  coord_Polar GetPolar (const Transform& transform);
  coord_Ground GetGround (const Transform& transform);
  coord_Corrected GetCorrected (const Transform& transform);
  coord_Unturned GetUnturned (const Transform& transform);
  coord_Circle GetCircle (const Transform& transform);            ///< of a COORD_CircleType only
  coord_LaserOffset GetLaserOffset (const Transform& transform);  ///< of its own type only
  coord_MTA GetMTA (const Transform& transform);                  ///< of a COORD_MTAType only

  /// True height of the antenna; null without a stored form or antenna.
  double GetAntennaHeight ();
  /// Sets it; asserts "antenna == this->Antenna" if another is set already.
  void SetAntenna (double antenna);
  /// Sets the settings of an observation; asserts "!system.IsNull()", and
  /// "this->CogoSystem == system" if others are set already.
  void SetCogoSystem (coordsys_CogoSettings system);

  /// Azimuth of grid north at the point, its sign turned, within plus and minus pi: a geodetic
  /// azimuth is the grid azimuth minus it. Taken from the geodesic to the point 100 m north on the
  /// grid; 0.0, less the transform's NorthAzimuth, where there is none.
  double GetConvergence (const Transform& transform);
  /// The ellipsoid on which distances from here are computed: the transform's or WGS84, raised to
  /// the point's height (else to the project height) when the settings ask for ground distances.
  coordsys_Ellipsoid GetLocalEllipsoid (coordsys_CogoSettings system, const Transform& transform);
  coordsys_Ellipsoid GetWGS84Ellipsoid (coordsys_CogoSettings system, const Transform& transform);
  /// sqrt (1 - e^2 sin^2 (latitude)) on the transform's ellipsoid or on WGS84; null without a
  /// horizontal part.
  double GetLocalW (const Transform& transform);
  double GetWGS84W (const Transform& transform);

  /// The frame in which an observation is reduced: grid on a scale-only transform, else the one
  /// distance bit of its own settings, or for any other form of the job's. Asserts that there is
  /// exactly one.
  position_Frame DistanceFrame (const Transform& transform) const;
  /// Computes what a base needs: absolute forms take the project height if UseProjectHeight asks
  /// for it, others are brought into their frame. False when that fails.
  bool ComputeAbsolute (const Transform& transform);
  /// With HorizontalOnly, the heights of grid, both local forms and WGS84 become null.
  void DropHeights ();
  /// Takes the transform whose forms are wanted. If its identity is another than that of the forms
  /// in hand, all but the stored form and the antenna are dropped. Asserts for a stored form that
  /// cannot be one.
  void SetTransform (const Transform& transform);

 private:
  void Reset ();
  template <class Form>
  void Load (Form& form, const Form& value, coord_Type original, uint32_t bit,
             const Transform* transform);
  bool LoadBaseNames (DBID location);
  bool IsObservation () const;
  bool Needs (const Transform& transform, bool (position::*compute) (const Transform&));

  bool BeginAttempt (uint32_t bit);
  bool Finish (uint32_t bit, bool isThere);
  bool LoadCachedGrid ();
  void StoreCachedGrid ();
  bool Base (int searchKind, position& base) const;
  bool ForwardFromBase (position& base, const Transform& transform, position& target,
                        coord_Type wanted);
  bool ComputeGrid (const Transform& transform);
  bool ComputeUncalibratedLocal (const Transform& transform);
  bool ComputeLocal (const Transform& transform);
  bool ComputeWGS84 (const Transform& transform);
  bool ComputeECEF (const Transform& transform);
  bool ComputeECEFGround (const Transform& transform);
  bool ComputeGridDeltas (const Transform& transform);
  bool ComputeECEFDeltas (const Transform& transform);
  bool ComputeAntenna ();
  bool ComputePolar (const Transform& transform, position* base, const Transform& baseTransform);
  bool ComputeGround (const Transform& transform);
  bool ComputeUnturned (const Transform& transform);
  void ApplyProjectHeight (const Transform& transform);

  bool _IsLocalGround = false;  // LocalEllipsoid was raised to the ground
  bool _IsWGS84Ground = false;  // WGS84Ellipsoid was
};

template <class Form>
void position::Load (Form& form, const Form& value, coord_Type original, uint32_t bit,
                     const Transform* transform) {
  const Form loaded = value;  // which may be a form of this position
  Reset ();
  form = loaded;
  Original = original;
  Status = bit;
  TransformId = transform ? transform->GetId () : TRANSFORM_NoId;
}

}  // namespace clxml
