// The vertical alignment against curves that are integrated from their slope.
// Leans on roadtest.
#include "road/vertical.h"

#include <random>
#include <tuple>

#include "road/roadtest.h"

namespace clxml::testing {
namespace {

constexpr double none = MATHS_Null;

class VerticalAlignment : public RoadTest {};

void AddPoint (VerticalElementArray& line, double station, double elevation) {
  VerticalPoint* point = line.New<VerticalPoint> ();
  point->Point = point->IntersectionPoint = {station, elevation};
  point->StartPoint = point->EndPoint = point->Point;
}

// A curve at (200, 50 + 100 g1) between the grades g1 and g2, which begin and end 200 m away.
enum Kind { Arc, Parabola, Asymmetric };
VerticalElementArray Curve (Kind kind, double g1, double g2, double first, double second = none) {
  VerticalElementArray line;
  const double top = 50.0 + 200.0 * g1;
  AddPoint (line, 0.0, 50.0);
  VerticalBase* curve;
  if (kind == Arc) {
    VerticalArc* arc = line.New<VerticalArc> ();
    arc->Radius = first;
    curve = arc;
  } else if (kind == Parabola) {
    VerticalParabola* parabola = line.New<VerticalParabola> ();
    parabola->Length = first;
    curve = parabola;
  } else {
    VerticalAsymmetricParabola* parabola = line.New<VerticalAsymmetricParabola> ();
    parabola->LengthIn = first;
    parabola->LengthOut = second;
    curve = parabola;
  }
  curve->IntersectionPoint = {200.0, top};
  AddPoint (line, 400.0, top + 200.0 * g2);
  line.Settle ();
  return line;
}

struct Case {
  const char* name;
  Kind kind;
  double g1, g2, first, second;
  uint32_t flag;  // of the level point; 0 for none in the list
};
const Case cases[] = {
    {"crest arc", Arc, 0.03, -0.024, 3000.0, none, ChainageSummit},
    {"sag arc", Arc, -0.05, 0.04, 900.0, none, ChainageSag},
    {"rising arc", Arc, 0.01, 0.06, 2500.0, none, 0},
    {"crest parabola", Parabola, 0.03, -0.024, 180.0, none, ChainageSummit},
    {"sag parabola", Parabola, -0.02, 0.055, 120.0, none, ChainageSag},
    {"falling parabola", Parabola, -0.06, -0.01, 100.0, none, 0},
    {"crest, level before the intersection", Asymmetric, 0.01, -0.04, 120.0, 60.0, ChainageSummit},
    {"crest, level behind the intersection", Asymmetric, 0.04, -0.01, 120.0, 60.0, ChainageSummit},
    {"sag of unequal lengths", Asymmetric, -0.03, 0.03, 40.0, 130.0, ChainageSag},
};

// The slope at a station. On an arc its angle runs evenly with the length of the curve, so its sine
// runs evenly with the station; on a parabola the slope itself does, for unequal lengths towards
// the mean slope at the intersection that makes both ends meet.
double SlopeAt (const Case& c, const VerticalBase& curve, double station) {
  const double start = curve.StartPoint.Station, end = curve.EndPoint.Station;
  const double part = (station - start) / (end - start);
  if (c.kind == Arc) {
    const double s1 = std::sin (std::atan (c.g1)), s2 = std::sin (std::atan (c.g2));
    return std::tan (std::asin (s1 + (s2 - s1) * part));
  }
  if (c.kind == Parabola) return c.g1 + (c.g2 - c.g1) * part;
  const double middle = (c.g1 * c.first + c.g2 * c.second) / (c.first + c.second);
  return station < 200.0 ? c.g1 + (middle - c.g1) * (station - start) / c.first
                         : middle + (c.g2 - middle) * (station - 200.0) / c.second;
}

TEST_F (VerticalAlignment, FollowsTheIntegratedSlope) {
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    const VerticalElementArray line = Curve (c.kind, c.g1, c.g2, c.first, c.second);
    EXPECT_TRUE (line.CheckConsistency ());
    const auto& curve = static_cast<const VerticalCurve&> (*line.At (1));
    const VerticalPosition start = curve.StartPoint, end = curve.EndPoint;
    EXPECT_NEAR (start.Elevation, 50.0 + c.g1 * start.Station, 1e-9);
    EXPECT_NEAR (curve.GradeIn, std::atan (c.g1), 1e-12);
    EXPECT_NEAR (curve.GradeOut, std::atan (c.g2), 1e-12);
    const double length = end.Station - start.Station;
    if (c.kind == Arc)  // Δstation of a circle between two directions
      EXPECT_NEAR (length,
                   c.first * std::abs (std::sin (std::atan (c.g2)) - std::sin (std::atan (c.g1))),
                   1e-9);
    else
      EXPECT_NEAR (length, c.kind == Parabola ? c.first : c.first + c.second, 1e-9);
    EXPECT_NEAR (curve.KFactor, length / std::abs (c.g2 - c.g1) / 100.0, 1e-9);
    const auto slope = [&] (double station) { return SlopeAt (c, curve, station); };
    const auto rise = [&] (double to) {  // in two pieces, for the slope has a corner
      const double middle = std::min (to, 200.0);
      return Integral (start.Station, middle, slope) + Integral (middle, to, slope);
    };
    for (const double part : {0.01, 0.3, 0.5, 0.62, 0.99, 1.0}) {
      const double station = start.Station + part * length;
      EXPECT_NEAR (line.ElevationAt (station), start.Elevation + rise (station), 2e-9) << part;
    }
    EXPECT_NEAR (line.ElevationAt (10.0), 50.0 + 10.0 * c.g1, 1e-9);
    EXPECT_NEAR (line.ElevationAt (390.0), end.Elevation + c.g2 * (390.0 - end.Station), 1e-9);
    // The level point, where the slope passes 0.
    ASSERT_EQ (curve.SagSummitPoint.IsNull (), c.flag == 0);
    if (c.flag != 0) {
      EXPECT_NEAR (slope (curve.SagSummitPoint.Station), 0.0, 1e-9);
      EXPECT_NEAR (curve.SagSummitPoint.Elevation,
                   start.Elevation + rise (curve.SagSummitPoint.Station), 2e-9);
    }
    ChainageElementArray list;
    list.StartChainage = 0.0;
    list.EndChainage = 400.0;
    line.AddChainages (list);
    EXPECT_EQ (list.Count (), c.flag != 0 ? 6 : 5);
    uint32_t flags = 0;
    for (int i = 0; i < list.Count (); i++) flags |= list.At (i)->Flags;
    EXPECT_EQ (flags, ChainageVPI | ChainageVerticalStart | ChainageVerticalEnd | c.flag);
  }
}

// Worked examples of Ghilani and Wolf, Elementary Surveying, 13th edition 2012, chapter 25: a curve
// of equal tangents, 600 ft long, over a crest, and one of unequal tangents, 400 and 600 ft, in a
// sag. The book is quoted from memory, two decimals as it prints them; the figures close.
TEST_F (VerticalAlignment, ReachesTheElevationsOfATextbook) {
  struct Printed {
    double station, elevation;
  };
  VerticalElementArray crest;
  AddPoint (crest, 4170.0, 853.48 - 0.03 * 500.0);
  auto* equal = crest.New<VerticalParabola> ();
  equal->IntersectionPoint = {4670.0, 853.48};
  equal->Length = 600.0;
  AddPoint (crest, 5170.0, 853.48 - 0.024 * 500.0);
  crest.Settle ();
  for (const Printed& p : {Printed{4370, 844.48},
                           {4400, 845.34},
                           {4500, 847.62},
                           {4600, 849.00},
                           {4700, 849.48},
                           {4800, 849.06},
                           {4900, 847.74},
                           {4970, 846.28}})
    EXPECT_NEAR (crest.ElevationAt (p.station), p.elevation, 0.0051) << p.station;
  EXPECT_NEAR (equal->SagSummitPoint.Station, 4703.33, 0.0051);
  EXPECT_NEAR (equal->SagSummitPoint.Elevation, 849.48, 0.0051);

  VerticalElementArray sag;
  AddPoint (sag, 8200.0, 743.24 + 0.02 * 500.0);
  auto* unequal = sag.New<VerticalAsymmetricParabola> ();
  unequal->IntersectionPoint = {8700.0, 743.24};
  unequal->LengthIn = 400.0;
  unequal->LengthOut = 600.0;
  AddPoint (sag, 9400.0, 743.24 + 0.016 * 700.0);
  sag.Settle ();
  for (const Printed& p : {Printed{8300, 751.24}, {8700, 747.56}, {9300, 752.84}})
    EXPECT_NEAR (sag.ElevationAt (p.station), p.elevation, 0.0051) << p.station;
}

TEST_F (VerticalAlignment, ComputesTheSameByStartAndEndPoints) {
  for (const Case& c : cases) {
    if (c.kind == Asymmetric) continue;
    SCOPED_TRACE (c.name);
    const VerticalElementArray byVPI = Curve (c.kind, c.g1, c.g2, c.first);
    VerticalElementArray line = byVPI;
    auto& curve = static_cast<VerticalCurve&> (*line.At (1));
    for (int i = 1; i < 3; i++) line.At (i)->KeyinMethod = VerticalBase::StartAndEndPoints;
    curve.IntersectionPoint = VerticalPosition ();
    curve.GradeIn = curve.GradeOut = none;
    curve.SagSummitPoint = VerticalPosition ();
    line.Settle ();
    const auto& wanted = static_cast<const VerticalCurve&> (*byVPI.At (1));
    EXPECT_NEAR (curve.IntersectionPoint.Station, 200.0, 1e-7);
    EXPECT_NEAR (curve.IntersectionPoint.Elevation, 50.0 + 200.0 * c.g1, 1e-8);
    EXPECT_NEAR (curve.GradeOut, wanted.GradeOut, 1e-9);
    EXPECT_NEAR (curve.KFactor, wanted.KFactor, 1e-7);
    EXPECT_NEAR (curve.SagSummitPoint.Station, wanted.SagSummitPoint.Station, 1e-5);
    EXPECT_NEAR (line.ElevationAt (205.0), byVPI.ElevationAt (205.0), 1e-8);
    EXPECT_EQ (line.At (2)->PreviousIntersection.Station, curve.IntersectionPoint.Station);
  }
}

// Two parabolas of one grade line, keyed by their ends, with no straight between them.
TEST_F (VerticalAlignment, ParabolaThatTouchesTheOneBeforeTakesItsGrade) {
  VerticalElementArray line;
  AddPoint (line, 0.0, 50.0);
  for (const auto& [start, end, k] :
       {std::tuple{VerticalPosition{100.0, 52.0}, VerticalPosition{200.0, 53.0}, 50.0},
        {VerticalPosition{200.0, 53.0}, VerticalPosition{320.0, 54.8}, 40.0}}) {
    auto* parabola = line.New<VerticalParabola> ();
    parabola->StartPoint = start;
    parabola->EndPoint = end;
    parabola->KFactor = k;
  }
  AddPoint (line, 420.0, 57.8);
  for (int i = 1; i < 4; i++) line.At (i)->KeyinMethod = VerticalBase::StartAndEndPoints;
  line.Settle ();
  EXPECT_NEAR (std::tan (line.At (1)->GradeOut), 0.0, 1e-12);
  EXPECT_NEAR (line.At (2)->IntersectionPoint.Station, 260.0, 1e-12);
  EXPECT_NEAR (line.At (2)->IntersectionPoint.Elevation, 53.0, 1e-12);
  EXPECT_NEAR (std::tan (line.At (2)->GradeOut), 0.03, 1e-12);
  // By hand: 53 + x^2 * 0.03 / 240.
  EXPECT_NEAR (line.ElevationAt (260.0), 53.45, 1e-9);
  // The other curve has no grade: only the station is known.
  line.At (1)->EndPoint.Elevation = none;
  line.At (2)->PreviousEndPoint = line.At (2)->StartPoint;
  line.At (2)->PreviousGradeOut = none;
  line.At (2)->Compute ();
  EXPECT_EQ (line.At (2)->IntersectionPoint.Station, 260.0);
  EXPECT_TRUE (maths_IsNull (line.At (2)->IntersectionPoint.Elevation) &&
               maths_IsNull (line.At (2)->GradeIn));
}

TEST_F (VerticalAlignment, AsymmetricParabolasStandWithoutALengthAndByTheirEnds) {
  for (const double in : {0.0, 80.0}) {
    const VerticalElementArray line = Curve (Asymmetric, -0.03, 0.03, in, 80.0 - in);
    const auto& curve = static_cast<const VerticalCurve&> (*line.At (1));
    EXPECT_TRUE (curve.SagSummitPoint.IsNull ()) << in;
    EXPECT_FALSE (maths_IsNull (curve.KFactor)) << in;
  }
  VerticalElementArray line = Curve (Asymmetric, -0.03, 0.03, 40.0, 60.0);
  for (int i = 1; i < 3; i++) line.At (i)->KeyinMethod = VerticalBase::StartAndEndPoints;
  const VerticalPosition start = line.At (1)->StartPoint, end = line.At (1)->EndPoint;
  line.Settle ();
  EXPECT_TRUE (line.At (1)->StartPoint == start && line.At (1)->EndPoint == end);
  EXPECT_NEAR (line.At (2)->GradeIn, std::atan (0.03), 1e-12);
}

TEST_F (VerticalAlignment, KnowsItsEndsItsNeighboursAndItsFaults) {
  VerticalElementArray line = Curve (Parabola, 0.02, -0.03, 100.0);
  // Nothing stands before the first point until the links of a file are made.
  EXPECT_TRUE (maths_IsNull (line.ElevationAt (0.0)));
  line.LinkNeighbours ();
  EXPECT_EQ (line.ElevationAt (0.0), 50.0);
  EXPECT_EQ (line.At (1)->NextStartPoint, line.At (2)->StartPoint);
  EXPECT_TRUE (maths_IsNull (line.ElevationAt (-0.0006)));
  EXPECT_FALSE (maths_IsNull (line.ElevationAt (400.0004)));
  EXPECT_TRUE (maths_IsNull (line.ElevationAt (400.0006)));
  EXPECT_TRUE (maths_IsNull (VerticalElementArray ().ElevationAt (0.0)));

  VerticalElementArray one;
  AddPoint (one, 1.0, 2.0);
  const VerticalElementArray before = one;
  one.Settle ();
  EXPECT_EQ (one.GetKeyinStyle (), VerticalElementArray::Mixed);
  EXPECT_TRUE (one.At (0)->Equals (*before.At (0)) && one.CheckConsistency ());

  struct Row {
    const char* name;
    void (*change) (VerticalElementArray& line);
    bool isConsistent;
  };
  using V = VerticalElementArray;
  for (const Row& row :
       {Row{"as it was", [] (V&) {}, true},
        {"overlap", [] (V& l) { l.At (1)->EndPoint.Station = 400.001 - 1e-9; }, true},
        {"more overlap", [] (V& l) { l.At (1)->EndPoint.Station = 400.0011; }, false},
        {"starts too early", [] (V& l) { l.At (1)->StartPoint.Station = -0.0011; }, false},
        {"equal grades", [] (V& l) { l.At (1)->GradeIn = l.At (1)->GradeOut; }, false},
        {"unknown grades", [] (V& l) { l.At (1)->GradeIn = l.At (1)->GradeOut = none; }, true},
        {"no point at the end", [] (V& l) { l.Delete (2); }, false},
        {"an arc without a radius", [] (V& l) { l.Insert (1, std::make_unique<VerticalArc> ()); },
         false}}) {
    V changed = line;
    row.change (changed);
    EXPECT_EQ (changed.CheckConsistency (), row.isConsistent) << row.name;
  }
}

TEST_F (VerticalAlignment, StandsAnyNumbers) {
  const double numbers[] = {0.0,   -0.0,   1.0,     -1.0,     100.0, 100.0, -250.0, 1e-300,
                            1e300, -1e300, 1.7e308, INFINITY, NAN,   none,  50.0};
  std::mt19937 random (77);
  const auto any = [&] { return numbers[random () % std::size (numbers)]; };
  for (int round = 0; round < 20000; round++) {
    VerticalElementArray line;
    AddPoint (line, any (), any ());
    line.New<VerticalArc> ()->Radius = any ();
    line.New<VerticalParabola> ()->Length = any ();
    auto* parabola = line.New<VerticalAsymmetricParabola> ();
    parabola->LengthIn = any ();
    parabola->LengthOut = any ();
    AddPoint (line, any (), any ());
    const auto method = static_cast<int32_t> (random () % 2);
    for (int i = 0; i < line.Count (); i++) {
      line.At (i)->KeyinMethod = method;
      for (VerticalPosition* place :
           {&line.At (i)->IntersectionPoint, &line.At (i)->StartPoint, &line.At (i)->EndPoint})
        *place = {any (), any ()};
    }
    line.Settle ();
    line.CheckConsistency ();
    for (int i = 1; i < 4; i++) {
      const auto& curve = static_cast<const VerticalCurve&> (*line.At (i));
      for (const double value : {curve.GradeIn, curve.GradeOut, curve.KFactor,
                                 curve.SagSummitPoint.Elevation, curve.ElevationAt (any ())})
        ASSERT_TRUE (std::isfinite (value)) << round << " " << i;
    }
  }
}

}  // namespace
}  // namespace clxml::testing
