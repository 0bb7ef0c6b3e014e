// Cross-section templates.
// A template is a list of strips from the centre line outwards that ends at most in a side slope.
#pragma once

#include <memory>

#include "numerics/maths.h"
#include "road/growinglist.h"
#include "road/roadelement.h"

namespace clxml {

class xmlout_element;

/// A part of a template. Grades are angles in radians, positive rising outwards; distances metres.
class TemplateElement : public RoadElement {
 public:
  static constexpr bool IsType (RoadElementType type) noexcept {
    return type >= ROAD_TemplateDistanceGrade && type <= ROAD_TemplateSideSlope;
  }

  Str Code;

 protected:
  using RoadElement::RoadElement;
  friend bool operator== (const TemplateElement&, const TemplateElement&) = default;
};

/// A strip, whichever way its slope is given.
class TemplateStrip : public TemplateElement {
 public:
  static constexpr bool IsType (RoadElementType type) noexcept {
    return type == ROAD_TemplateDistanceGrade || type == ROAD_TemplateDistanceDelta;
  }

  bool ApplySuperelevation = false;
  bool ApplyWidening = false;
  double HorizontalDistance = MATHS_Null;

 protected:
  using TemplateElement::TemplateElement;
  // The two booleans do not count.
  friend bool operator== (const TemplateStrip& a, const TemplateStrip& b) {
    return static_cast<const TemplateElement&> (a) == static_cast<const TemplateElement&> (b) &&
           a.HorizontalDistance == b.HorizontalDistance;
  }
};

/// A strip by width and grade.
class TemplateDistanceGrade final
    : public RoadElementOf<TemplateDistanceGrade, ROAD_TemplateDistanceGrade, TemplateStrip> {
 public:
  double Grade = MATHS_Null;

  /// Code and the two numbers are compared.
  bool operator== (const TemplateDistanceGrade&) const = default;
};

/// A strip by width and height.
class TemplateDistanceDelta final
    : public RoadElementOf<TemplateDistanceDelta, ROAD_TemplateDistanceDelta, TemplateStrip> {
 public:
  double VerticalDistance = MATHS_Null;

  /// atan2 (VerticalDistance, HorizontalDistance), and 0.0 if that is null.
  double ImpliedGrade () const noexcept;
  /// Code and the two numbers are compared.
  bool operator== (const TemplateDistanceDelta&) const = default;
};

/// Where the section meets the ground.
class TemplateSideSlope final
    : public RoadElementOf<TemplateSideSlope, ROAD_TemplateSideSlope, TemplateElement> {
 public:
  double CutGrade = MATHS_Null;
  double FillGrade = MATHS_Null;  ///< the negative of the value in a road file
  double CutDitchWidth = 0.0;

  bool operator== (const TemplateSideSlope&) const = default;
};

/// A named list of strips from the centre line outwards, with at most a side slope at its end.
class CrossSectionTemplate final
    : public RoadElementArrayOf<TemplateElement, CrossSectionTemplate> {
 public:
  Str Name;

  /// The grade that the road's superelevation replaces: of the first superelevated strip with a
  /// Grade strictly between straight down and straight up, or with a width that is not 0; null if
  /// there is none.
  double SuperelevationGrade () const noexcept;
  /// The width of all superelevated strips; null when one is null.
  double SuperelevationWidth () const noexcept;
  /// How many strips are widened.
  int WideningStripCount () const noexcept;
  /// A strip has a HorizontalDistance below 0.
  bool IsInvalid () const noexcept;
  /// The TemplateRecord of a road file.
  std::unique_ptr<xmlout_element> ToXml () const;
};

/// The templates of a road or of a job, by value.
class TemplateArray : public GrowingList<CrossSectionTemplate> {
 public:
  /// The first template with exactly that name, or null.
  const CrossSectionTemplate* FindByName (const Str& name) const noexcept;
  /// No two templates have equal names.
  bool NamesAreUnique () const;
  /// Every name is the name of a template.
  bool HasAll (const StrArray& names) const;
  /// Some template IsInvalid.
  bool AnyInvalid () const noexcept;
};

}  // namespace clxml
