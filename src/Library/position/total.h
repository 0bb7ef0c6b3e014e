// Targets of a total station.
// The height of a target or an instrument above its mark, the prism, and both together with the
// identity of the target. Lengths are metres.
#pragma once

#include "Library/records/dbEnum.h"
#include "numerics/maths.h"

namespace clxml {

class db_Target;
class db_TotalStation;

/// A measured height above a mark.
class total_TargetHeightData {
 public:
  /// A null height, measured vertically.
  total_TargetHeightData () = default;
  total_TargetHeightData (double rawHeight, total_TargetHeightMethod method,
                          double horizontalOffset, double verticalOffset)
      : RawHeight (rawHeight),
        MeasurementMethod (method),
        HorizontalOffset (horizontalOffset),
        VerticalOffset (verticalOffset) {}
  virtual ~total_TargetHeightData () = default;
  total_TargetHeightData (const total_TargetHeightData&) = default;
  total_TargetHeightData& operator= (const total_TargetHeightData&) = default;

  /// All four fields exactly.
  virtual bool operator== (const total_TargetHeightData& other) const;
  virtual bool operator!= (const total_TargetHeightData& other) const { return !(*this == other); }

  /// A height of 0.0, measured vertically.
  void Reset () { *this = total_TargetHeightData (0.0, TrueVertical, 0.0, 0.0); }
  /// Sets the method and its offsets: 0.0 for TrueVertical, 0.091 m and 0.158 m for
  /// ZorvanBottomNotch.
  void SetMethod (total_TargetHeightMethod method);
  /// The height to reduce with; null as total_TrueHeight.
  double TrueHeight () const;

  double RawHeight = MATHS_Null;  ///< as measured; null for none
  total_TargetHeightMethod MeasurementMethod = TrueVertical;
  double HorizontalOffset = 0.0;
  double VerticalOffset = 0.0;
};

/// A prism.
class total_Prism {
 public:
  total_Prism () = default;
  total_Prism (double constant, total_PrismTypes type)
      : PrismConstant (constant), PrismType (type) {}
  virtual ~total_Prism () = default;
  total_Prism (const total_Prism&) = default;
  total_Prism& operator= (const total_Prism&) = default;

  /// The same type, and constants that differ by less than 0.01 mm or are both null.
  virtual bool operator== (const total_Prism& other) const;
  virtual bool operator!= (const total_Prism& other) const { return !(*this == other); }

  /// True for the two types whose correction depends on the zenith angle.
  bool IsAngleDependent () const {
    return PrismType == TOTAL_KSeries360Prism || PrismType == TOTAL_KSeriesMultiTrack;
  }

  double PrismConstant = 0.0;  ///< added to the measured distance; may be null
  total_PrismTypes PrismType = TOTAL_KSeriesMultiTrack;
};

/// What an instrument aims at.
class total_Target {
 public:
  total_Target () = default;
  explicit total_Target (const db_Target& record);
  virtual ~total_Target () = default;
  total_Target (const total_Target&) = default;
  total_Target& operator= (const total_Target&) = default;

  /// All four fields.
  virtual bool operator== (const total_Target& other) const;

  total_TargetHeightData TargetHeight;
  total_Prism Prism;
  total_RMTIDs RMTID = TOTAL_RMTIDNone;
  total_ZorvanTargetIDCheckType ZorvanCheckTargetID = TOTAL_TargetIDCheck_Off;
};

}  // namespace clxml
