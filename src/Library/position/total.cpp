// Targets of a total station.
#include "Library/position/total.h"

#include <cmath>

#include "Library/records/dbConventional.h"

namespace clxml {
namespace {

// The offsets of ZorvanBottomNotch, metres.
constexpr double notchHorizontal = 0.091;
constexpr double notchVertical = 0.158;
// Prism constants that differ by less are equal, metres.
constexpr double samePrismConstant = 1e-05;

}  // namespace

bool total_TargetHeightData::operator== (const total_TargetHeightData& other) const {
  return RawHeight == other.RawHeight && MeasurementMethod == other.MeasurementMethod &&
         HorizontalOffset == other.HorizontalOffset && VerticalOffset == other.VerticalOffset;
}

void total_TargetHeightData::SetMethod (total_TargetHeightMethod method) {
  MeasurementMethod = method;
  HorizontalOffset = method == ZorvanBottomNotch ? notchHorizontal : 0.0;
  VerticalOffset = method == ZorvanBottomNotch ? notchVertical : 0.0;
}

double total_TargetHeightData::TrueHeight () const {
  return total_TrueHeight (RawHeight, MeasurementMethod, HorizontalOffset, VerticalOffset);
}

bool total_Prism::operator== (const total_Prism& other) const {
  if (PrismType != other.PrismType) return false;
  if (maths_IsNull (PrismConstant) || maths_IsNull (other.PrismConstant))
    return maths_IsNull (PrismConstant) && maths_IsNull (other.PrismConstant);
  return std::abs (PrismConstant - other.PrismConstant) < samePrismConstant;
}

total_Target::total_Target (const db_Target& record)
    : TargetHeight (record.RawTargetHeight, record.MeasurementMethod, record.HorizontalOffset,
                    record.VerticalOffset),
      Prism (record.PrismConstant, record.PrismType),
      RMTID (record.RMTID),
      ZorvanCheckTargetID (record.ZorvanCheckTargetID) {}

bool total_Target::operator== (const total_Target& other) const {
  return TargetHeight == other.TargetHeight && Prism == other.Prism && RMTID == other.RMTID &&
         ZorvanCheckTargetID == other.ZorvanCheckTargetID;
}

}  // namespace clxml
