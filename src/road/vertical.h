// The elements of a vertical alignment.
// Points, arcs and parabolas of the long section: each computes its tangent points, grades, K
// factor and its sag or summit from its keyed values and its neighbours, and gives the elevation at
// a station.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/cogo/roadcogo.h"
#include "numerics/maths.h"
#include "road/chainage.h"
#include "road/roadelement.h"

namespace clxml {

class xmlout_element;

/// The angle of the line between two places, radians, atan2 (Δelevation, Δstation); null when one
/// is null or both are the same.
double road_Grade (const VerticalPosition& from, const VerticalPosition& to);

/// An element of a vertical alignment. Stations and elevations are metres, grades the angle of the
/// grade line in radians, the length of a curve its extent in station. Every number may be null;
/// what cannot be derived, or has no finite value, is null.
class VerticalBase : public RoadElement {
 public:
  enum Method : int32_t { VPI, StartAndEndPoints };
  static constexpr bool IsType (RoadElementType type) noexcept {
    return type >= ROAD_VerticalArc && type <= ROAD_VerticalAsymmetricParabola;
  }

  int32_t KeyinMethod = VPI;    ///< Method
  VerticalPosition EndPoint;    ///< end of the curve
  VerticalPosition StartPoint;  ///< start of the curve
  // Copies of the neighbours' values, which VerticalElementArray maintains.
  VerticalPosition NextIntersection;
  VerticalPosition NextStartPoint;
  VerticalPosition PreviousIntersection;
  VerticalPosition PreviousEndPoint;
  double PreviousGradeOut = MATHS_Null;
  VerticalPosition IntersectionPoint;  ///< of the two grades
  double Tolerance = 0.001;            ///< by how much neighbouring curves may overlap, metres

  /// Brings the derived fields up to date from the keyed ones and the neighbours' places.
  virtual void Compute () = 0;
  /// Adds the element's key stations.
  virtual void AddChainages (ChainageElementArray& list) const = 0;
  /// On the curve, or on the straight grade in front of it; null if it cannot be answered. It does
  /// not end at the end of the curve: the alignment asks the right element.
  virtual double ElevationAt (double station) const = 0;
  /// Takes the fields that all classes share.
  void AssignBase (const VerticalBase& other);
  /// The grades are both known and equal, or a curve cannot exist with its values.
  virtual bool IsImpossible () const { return false; }

  /// The grades before and after the element.
  double GradeIn = MATHS_Null;
  double GradeOut = MATHS_Null;

 protected:
  using RoadElement::RoadElement;
  friend bool operator== (const VerticalBase&, const VerticalBase&) = default;
};

/// An intersection without a curve, also the first and the last element.
class VerticalPoint final : public RoadElementOf<VerticalPoint, ROAD_VerticalPoint, VerticalBase> {
 public:
  VerticalPosition Point;  ///< as read; IntersectionPoint is what computes

  void Compute () override;
  void AddChainages (ChainageElementArray& list) const override;
  double ElevationAt (double station) const override;
  bool operator== (const VerticalPoint&) const = default;
};

/// What the three kinds of curve share.
class VerticalCurve : public VerticalBase {
 public:
  static constexpr bool IsType (RoadElementType type) noexcept {
    return VerticalBase::IsType (type) && type != ROAD_VerticalPoint;
  }

  double KFactor = MATHS_Null;      ///< metres of length for one percent of change in grade
  VerticalPosition SagSummitPoint;  ///< where the curve is level; null when that is not on it

  void AddChainages (ChainageElementArray& list) const override;
  double ElevationAt (double station) const override;
  bool IsImpossible () const override;

 protected:
  using VerticalBase::VerticalBase;
  friend bool operator== (const VerticalCurve&, const VerticalCurve&) = default;
  // On the curve itself, wherever the station lies.
  virtual double CurveElevation (double station) const = 0;
  bool HasEqualGrades () const noexcept;
};

class VerticalArc final : public RoadElementOf<VerticalArc, ROAD_VerticalArc, VerticalCurve> {
 public:
  double Radius = MATHS_Null;
  double Length = MATHS_Null;
  VerticalPosition CentrePoint;

  void Compute () override;
  bool IsImpossible () const override;
  bool operator== (const VerticalArc&) const = default;

 private:
  double CurveElevation (double station) const override;
  bool SpansChord () const;
  void Finish ();
};

class VerticalParabola final
    : public RoadElementOf<VerticalParabola, ROAD_VerticalParabola, VerticalCurve> {
 public:
  double Length = MATHS_Null;

  void Compute () override;
  bool operator== (const VerticalParabola&) const = default;

 private:
  double CurveElevation (double station) const override;
  void FindSagSummit ();
};

/// Two parabolas of different lengths that meet at the intersection with one grade; keyed by VPI
/// only.
class VerticalAsymmetricParabola final
    : public RoadElementOf<VerticalAsymmetricParabola, ROAD_VerticalAsymmetricParabola,
                           VerticalCurve> {
 public:
  double LengthOut = MATHS_Null;  ///< from the intersection to the end
  double LengthIn = MATHS_Null;   ///< from the start to the intersection

  void Compute () override;
  bool operator== (const VerticalAsymmetricParabola&) const = default;

 private:
  double CurveElevation (double station) const override;
  void FindSagSummit ();
};

/// The long section of a road.
class VerticalElementArray final : public RoadElementArrayOf<VerticalBase, VerticalElementArray> {
 public:
  enum KeyinStyle : int32_t { ByVPI, ByStartAndEndPoints, Mixed };

  /// Of the first element's start; null if empty.
  double StartChainage () const noexcept;
  /// Of the last element's end; null if empty.
  double EndChainage () const noexcept;
  /// How all elements after the first were keyed in; Mixed if not alike, and for fewer than two.
  KeyinStyle GetKeyinStyle () const noexcept;
  /// Computes all elements again, in order; with style Mixed nothing changes.
  void Settle ();
  /// Rebuilds the copies of the neighbours' places without computing anything, as after reading a
  /// file; the first element's PreviousEndPoint is then its own IntersectionPoint.
  void LinkNeighbours ();
  /// Some element starts at a known elevation.
  bool HasElevations () const noexcept;
  /// The elevation of the road's line; null outside and for an empty alignment. The ends are taken
  /// 0.0005 wide. Costs a walk over the elements before it.
  double ElevationAt (double station) const;
  /// Adds the key stations of all elements, and the reason ChainageVPI to the first station that
  /// the list has already.
  void AddChainages (ChainageElementArray& list) const;
  /// No curve runs into its neighbour by more than its tolerance or is impossible by its values;
  /// with style ByVPI the last element is a VerticalPoint.
  bool CheckConsistency () const;
  /// The VerticalAlignment section of a road file.
  std::unique_ptr<xmlout_element> ToXml () const;
};

}  // namespace clxml
