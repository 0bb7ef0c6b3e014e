// The elements of a horizontal alignment.
// A start point, straights, arcs and spirals: each holds what was keyed in and what follows from
// it, and says where it ends, where a station lies and which station a coordinate has. Leans on
// roadelement, coord and the road's coordinate geometry.
#pragma once

#include <cstdint>

#include "Library/coords/coord.h"
#include "numerics/maths.h"
#include "road/roadelement.h"

namespace clxml {

/// Where a station lies: the answer of an alignment. The default is the null position.
struct RoadPosition {
  bool Clockwise = false;       ///< the element curves to the right; true on a straight
  double Azimuth = MATHS_Null;  ///< of the tangent in the direction of travel, [0, 2π)
  double Station = MATHS_Null;  ///< metres
  coord_CorrectedGrid Coordinate;
};

/// What the values of KeyinMethod mean in one class; masks have bit n for the value n, -1 is none.
struct HorizontalKeying {
  uint32_t byLength = 0;
  uint32_t byEndStation = 0;
  int32_t userCoordinates = -1;
  int32_t existingPoint = -1;
  bool alwaysByCoordinate = false;  ///< keyed by coordinates whatever the method
};

/// An element of a horizontal alignment. Azimuths are radians from north, clockwise, in [0, 2π);
/// lengths and stations are metres; coordinates are of the grid. Every number may be null.
///
/// The keyed fields are those that KeyinMethod names; the others are derived by ComputeEnd or
/// ComputeFromEnd, under CurrentTransformation. A derivation for which a number is missing, or
/// which has no finite result, leaves its results null.
class HorizontalBase : public RoadElement {
 public:
  static constexpr bool IsType (RoadElementType type) noexcept {
    return type >= ROAD_HorizontalArc && type <= ROAD_HorizontalEntrySpiral;
  }

  int32_t KeyinMethod = -1;         ///< how the element was keyed in: an enumeration of each class
  Str PointName;                    ///< point that gave the end (of a start point, the start)
  double Length = MATHS_Null;       ///< along the element
  double EndChainage = MATHS_Null;  ///< station of the end
  double StartChainage = MATHS_Null;  ///< station of the start
  double EndAzimuth = MATHS_Null;     ///< of the tangent at the end
  double StartAzimuth = MATHS_Null;   ///< of the tangent at the start
  coord_CorrectedGrid EndCoordinate;
  coord_CorrectedGrid StartCoordinate;
  bool TangentialToPrevious = true;  ///< continues the tangent of the element before

  /// Takes the fields that all classes share.
  void AssignBase (const HorizontalBase& other);

  /// From EndCoordinate to the other derived fields; not valid for spirals ("false" is asserted).
  virtual void ComputeFromEnd ();
  /// From the keyed length, angle and radii to EndAzimuth and EndCoordinate.
  virtual void ComputeEnd () = 0;
  virtual bool IsSpiral () const noexcept { return false; }
  virtual bool HasRadius () const noexcept { return false; }
  bool KeyedByLength () const noexcept;
  bool KeyedByEndStation () const noexcept;
  bool KeyedByEndCoordinate () const noexcept;
  bool KeyedByExistingPoint () const noexcept;
  bool KeyedByUserCoordinates () const noexcept;
  /// The KeyinMethod for an end given by a point; spirals have none ("false" is asserted, -1).
  int32_t ExistingPointMethod () const;
  /// The KeyinMethod for an end given by coordinates; spirals have none ("false" is asserted, -1).
  int32_t UserCoordinatesMethod () const;
  /// Takes StartAzimuth, StartChainage and StartCoordinate from the end of the element before, and
  /// what has a radius takes radius and direction from one that has. A straight behind a straight
  /// needs an azimuth of its own: its StartAzimuth becomes null and it is not tangential.
  virtual void TakeStartFrom (const HorizontalBase& previous);
  /// The place of a station, which is not clipped to the element. Here: the station with an azimuth
  /// of 0.0, clockwise, and no coordinate.
  virtual RoadPosition PositionAt (double station) const;
  /// Station and offset (to the right positive) of a coordinate; both null when it has none.
  virtual coord_StationOffset StationOffsetOf (const coord_CorrectedGrid& coordinate) const;
  /// Direction and radii at the two ends, to be read or set; null in a class that has none.
  virtual bool* DirectionRef () noexcept { return nullptr; }
  virtual double* EndRadiusRef () noexcept { return nullptr; }
  virtual double* StartRadiusRef () noexcept { return nullptr; }
  const bool* DirectionRef () const noexcept {
    return const_cast<HorizontalBase*> (this)->DirectionRef ();
  }
  const double* EndRadiusRef () const noexcept {
    return const_cast<HorizontalBase*> (this)->EndRadiusRef ();
  }
  const double* StartRadiusRef () const noexcept {
    return const_cast<HorizontalBase*> (this)->StartRadiusRef ();
  }
  /// Changes KeyinMethod to the one that keys the same values with the length in place of the end
  /// station, or the other way round. Not valid for a start point ("false" is asserted) and for an
  /// arc that is keyed by coordinates or so already (asserted by those conditions, no change).
  virtual void ChangeToLengthKeyin ();
  virtual void ChangeToEndStationKeyin ();
  /// Derives from the keyed ones those of length, angle and radius that KeyinMethod does not key;
  /// only an arc has such.
  virtual void SettleKeyed () {}

 protected:
  using RoadElement::RoadElement;
  friend bool operator== (const HorizontalBase&, const HorizontalBase&) = default;
  virtual const HorizontalKeying& Keying () const noexcept = 0;
};

/// Where the alignment begins. Its end is its start and its Length is 0.
class HorizontalStartPoint final
    : public RoadElementOf<HorizontalStartPoint, ROAD_HorizontalStartPoint, HorizontalBase> {
 public:
  enum Method : int32_t { UserDefinedCoords, ExistingPoint };

  void ComputeFromEnd () override;
  void ComputeEnd () override;
  RoadPosition PositionAt (double station) const override;
  bool operator== (const HorizontalStartPoint&) const = default;

 protected:
  const HorizontalKeying& Keying () const noexcept override;
};

class HorizontalStraight final
    : public RoadElementOf<HorizontalStraight, ROAD_HorizontalStraight, HorizontalBase> {
 public:
  enum Method : int32_t {
    AzimuthAndLength,
    AzimuthAndEndStation,
    UserDefinedCoords,
    ExistingPoint
  };

  void ComputeFromEnd () override;
  void ComputeEnd () override;
  void TakeStartFrom (const HorizontalBase& previous) override;
  RoadPosition PositionAt (double station) const override;
  coord_StationOffset StationOffsetOf (const coord_CorrectedGrid& coordinate) const override;
  void ChangeToLengthKeyin () override;
  void ChangeToEndStationKeyin () override;
  bool operator== (const HorizontalStraight&) const = default;

 protected:
  const HorizontalKeying& Keying () const noexcept override;
};

class HorizontalArc final
    : public RoadElementOf<HorizontalArc, ROAD_HorizontalArc, HorizontalBase> {
 public:
  enum Method : int32_t {
    RadiusAndLength,
    RadiusAndEndStation,
    AngleAndRadius,
    AngleAndLength,
    AngleAndEndStation,
    UserDefinedCoords,
    ExistingPoint
  };

  bool Clockwise = true;       ///< curves to the right
  double Angle = MATHS_Null;   ///< deflection, radians, above 0
  double Radius = MATHS_Null;  ///< metres

  /// Finds the arc by its start, its start tangent and its end: Clockwise, Angle (within 0 to 2π),
  /// Radius, Length, EndChainage and EndAzimuth, which is not normalised. An end straight ahead on
  /// the tangent or straight behind it changes nothing.
  void ComputeFromEnd () override;
  void ComputeEnd () override;
  /// EndAzimuth from StartAzimuth, Angle and Clockwise.
  void ComputeEndAzimuth ();
  bool HasRadius () const noexcept override { return true; }
  void TakeStartFrom (const HorizontalBase& previous) override;
  RoadPosition PositionAt (double station) const override;
  coord_StationOffset StationOffsetOf (const coord_CorrectedGrid& coordinate) const override;
  bool* DirectionRef () noexcept override { return &Clockwise; }
  double* EndRadiusRef () noexcept override { return &Radius; }
  double* StartRadiusRef () noexcept override { return &Radius; }
  void ChangeToLengthKeyin () override;
  void ChangeToEndStationKeyin () override;
  void SettleKeyed () override;
  bool operator== (const HorizontalArc&) const = default;

 protected:
  const HorizontalKeying& Keying () const noexcept override;

 private:
  coord_CorrectedGrid Centre () const;
  double RadialAzimuth () const;
};

/// What both kinds of spiral share: the clothoid between two radii, null being a straight line.
/// Equal radii make a circular arc.
class HorizontalSpiral : public HorizontalBase {
 public:
  enum Method : int32_t { RadiusAndLength, RadiusAndEndStation };
  static constexpr bool IsType (RoadElementType type) noexcept {
    return type == ROAD_HorizontalExitSpiral || type == ROAD_HorizontalEntrySpiral;
  }

  double EndRadius = MATHS_Null;    ///< metres
  double StartRadius = MATHS_Null;  ///< metres
  bool Clockwise = true;            ///< curves to the right

  /// EndAzimuth and EndCoordinate, the series of the clothoid summed until its terms are below the
  /// resolution (metres).
  void Recompute (double resolution);
  /// Recompute with 1e-7.
  void ComputeEnd () override;
  bool IsSpiral () const noexcept override { return true; }
  bool HasRadius () const noexcept override { return true; }
  void TakeStartFrom (const HorizontalBase& previous) override;
  RoadPosition PositionAt (double station) const override;
  coord_StationOffset StationOffsetOf (const coord_CorrectedGrid& coordinate) const override;
  bool* DirectionRef () noexcept override { return &Clockwise; }
  double* EndRadiusRef () noexcept override { return &EndRadius; }
  double* StartRadiusRef () noexcept override { return &StartRadius; }
  void ChangeToLengthKeyin () override;
  void ChangeToEndStationKeyin () override;
  bool IsEntry () const noexcept { return ElementType () == ROAD_HorizontalEntrySpiral; }

 protected:
  using HorizontalBase::HorizontalBase;
  friend bool operator== (const HorizontalSpiral&, const HorizontalSpiral&) = default;
  const HorizontalKeying& Keying () const noexcept override;
  // The other spiral with its ends exchanged.
  void TakeReversed (const HorizontalSpiral& other);

 private:
  double SmallRadius () const noexcept { return IsEntry () ? EndRadius : StartRadius; }
  double LargeRadius () const noexcept { return IsEntry () ? StartRadius : EndRadius; }
};

class HorizontalExitSpiral;

/// From a large radius to a small one.
class HorizontalEntrySpiral final
    : public RoadElementOf<HorizontalEntrySpiral, ROAD_HorizontalEntrySpiral, HorizontalSpiral> {
 public:
  HorizontalEntrySpiral () = default;
  /// The exit spiral's fields with the radii exchanged, its end computed again; asserts
  /// "EndRadius < StartRadius".
  explicit HorizontalEntrySpiral (const HorizontalExitSpiral& exit);
  bool operator== (const HorizontalEntrySpiral&) const = default;
};

/// From a small radius to a large one.
class HorizontalExitSpiral final
    : public RoadElementOf<HorizontalExitSpiral, ROAD_HorizontalExitSpiral, HorizontalSpiral> {
 public:
  HorizontalExitSpiral () = default;
  /// The entry spiral's fields with the radii exchanged, its end computed again; asserts
  /// "EndRadius > StartRadius".
  explicit HorizontalExitSpiral (const HorizontalEntrySpiral& entry);
  bool operator== (const HorizontalExitSpiral&) const = default;
};

}  // namespace clxml
