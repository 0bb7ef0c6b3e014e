// The horizontal similarity and the inclined plane: from their bytes, and on a point.
// For the block. Leans on adjust.
#include "geodesy/adjust.h"

#include <cmath>

namespace clxml {

namespace {

// A block without a false origin (null) has nothing to take off.
double FalseOrigin (double value) noexcept { return csib_IsKnown (value) ? value : 0.0; }

}  // namespace

csib_Status csib_SetHorizontal (csib_Block& block, const csib_Horizontal* part) {
  const csib_Horizontal h = part ? *part : csib_Horizontal{};
  block.HasHorizontal = 0;
  block.Horizontal = {};
  if (part == nullptr) return CSIB_Ok;
  for (const double value : {h.OriginNorth, h.OriginEast, h.TranslationNorth, h.TranslationEast,
                             h.Rotation, h.ScaleFactor})
    if (!csib_IsKnown (value)) return CSIB_WrongFormat;
  if (h.ScaleFactor == 0.0 || !csib_IsKnown (1.0 / h.ScaleFactor)) return CSIB_WrongFormat;

  csib_Horizontal& to = block.Horizontal;
  to = h;
  to.SinMinusRotation = std::sin (-h.Rotation);
  to.CosMinusRotation = std::cos (-h.Rotation);
  to.SinRotation = std::sin (h.Rotation);
  to.CosRotation = std::cos (h.Rotation);
  to.InverseScale = 1.0 / h.ScaleFactor;
  to.InverseTranslationEast =
      -(h.TranslationEast * to.CosMinusRotation + h.TranslationNorth * to.SinMinusRotation) /
      h.ScaleFactor;
  to.InverseTranslationNorth =
      -(-h.TranslationEast * to.SinMinusRotation + h.TranslationNorth * to.CosMinusRotation) /
      h.ScaleFactor;
  block.HasHorizontal = 1;
  return CSIB_Ok;
}

csib_Status csib_SetVertical (csib_Block& block, const csib_Vertical* part) {
  const csib_Vertical v = part ? *part : csib_Vertical{};
  block.HasVertical = 0;
  block.Vertical = {};
  if (part == nullptr) return CSIB_Ok;
  for (const double value :
       {v.OriginNorth, v.OriginEast, v.ElevAdjustment, v.NorthAdjustment, v.EastAdjustment})
    if (!csib_IsKnown (value)) return CSIB_WrongFormat;
  block.Vertical = v;
  block.HasVertical = 1;
  return CSIB_Ok;
}

csib_Status csib_ReadHorizontal (csib_Block& block, csib_Bytes& in, bool isTrueOrigin) {
  csib_Horizontal h;
  h.OriginNorth = in.Known ();
  h.OriginEast = in.Known ();
  h.TranslationNorth = in.Known ();
  h.TranslationEast = in.Known ();
  h.Rotation = in.Known ();
  h.ScaleFactor = in.Known ();
  if (!in.IsGood ()) return in.Status ();
  if (isTrueOrigin) {
    h.OriginNorth -= FalseOrigin (block.FalseNorth);
    h.OriginEast -= FalseOrigin (block.FalseEast);
  }
  return csib_SetHorizontal (block, &h);
}

csib_Status csib_ReadVertical (csib_Block& block, csib_Bytes& in, bool isTrueOrigin) {
  csib_Vertical v;
  v.OriginNorth = in.Known ();
  v.OriginEast = in.Known ();
  v.ElevAdjustment = in.Known ();
  v.NorthAdjustment = in.Known ();
  v.EastAdjustment = in.Known ();
  if (!in.IsGood ()) return in.Status ();
  if (isTrueOrigin) {
    v.OriginNorth -= FalseOrigin (block.FalseNorth);
    v.OriginEast -= FalseOrigin (block.FalseEast);
  }
  return csib_SetVertical (block, &v);
}

void csib_WriteHorizontal (const csib_Block& block, csib_Writer& out) noexcept {
  const csib_Horizontal& h = block.Horizontal;
  out.Double (h.OriginNorth + FalseOrigin (block.FalseNorth));
  out.Double (h.OriginEast + FalseOrigin (block.FalseEast));
  out.Double (h.TranslationNorth);
  out.Double (h.TranslationEast);
  out.Double (h.Rotation);
  out.Double (h.ScaleFactor);
}

void csib_WriteVertical (const csib_Block& block, csib_Writer& out) noexcept {
  const csib_Vertical& v = block.Vertical;
  out.Double (v.OriginNorth + FalseOrigin (block.FalseNorth));
  out.Double (v.OriginEast + FalseOrigin (block.FalseEast));
  out.Double (v.ElevAdjustment);
  out.Double (v.NorthAdjustment);
  out.Double (v.EastAdjustment);
}

void csib_HorizontalForward (const csib_Block& block, csib_Grid& point) noexcept {
  if (!block.HasHorizontal) return;
  const csib_Horizontal& h = block.Horizontal;
  const double n = point.North - h.OriginNorth;
  const double e = point.East - h.OriginEast;
  const double turnedEast = e * h.CosMinusRotation - n * h.SinMinusRotation;
  const double turnedNorth = e * h.SinMinusRotation + n * h.CosMinusRotation;
  point.North = turnedNorth * h.ScaleFactor + h.TranslationNorth + h.OriginNorth;
  point.East = turnedEast * h.ScaleFactor + h.TranslationEast + h.OriginEast;
}

void csib_HorizontalInverse (const csib_Block& block, csib_Grid& point) noexcept {
  if (!block.HasHorizontal) return;
  const csib_Horizontal& h = block.Horizontal;
  const double n = point.North - h.OriginNorth;
  const double e = point.East - h.OriginEast;
  const double turnedEast = e * h.CosRotation - n * h.SinRotation;
  const double turnedNorth = e * h.SinRotation + n * h.CosRotation;
  point.North = turnedNorth * h.InverseScale + h.InverseTranslationNorth + h.OriginNorth;
  point.East = turnedEast * h.InverseScale + h.InverseTranslationEast + h.OriginEast;
}

namespace {

void Raise (const csib_Block& block, csib_Grid& point, double sign) noexcept {
  if (!block.HasVertical) return;
  const csib_Vertical& v = block.Vertical;
  point.OrthometricHeight +=
      sign * (v.ElevAdjustment + (point.North - v.OriginNorth) * v.NorthAdjustment +
              (point.East - v.OriginEast) * v.EastAdjustment);
  if (!std::isfinite (point.OrthometricHeight)) point.HasOrthometric = false;
}

}  // namespace

void csib_VerticalForward (const csib_Block& block, csib_Grid& point) noexcept {
  Raise (block, point, 1.0);
}

void csib_VerticalInverse (const csib_Block& block, csib_Grid& point) noexcept {
  Raise (block, point, -1.0);
}

}  // namespace clxml
