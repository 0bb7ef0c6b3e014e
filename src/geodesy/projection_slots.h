// From the structure of a projection to its table of operations.
// A family is a plain structure that knows its constants and formulas in plain numbers; what all
// slots have in common (ownership, heights, refusing what is no number) stands here once. Leans on
// csib and latitudes.
#pragma once

#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "geodesy/latitudes.h"
#include "geodesy/projections.h"

namespace clxml {

/// What every projection takes from its block, with NaN in place of what is null and of a scale of
/// 0, so that nothing computed from it passes for a number.
struct csib_ProjectionFrame {
  static double NaNUnlessKnown (double value) noexcept {
    return csib_IsKnown (value) ? value : std::numeric_limits<double>::quiet_NaN ();
  }
  explicit csib_ProjectionFrame (const csib_Block& block) noexcept
      : a (NaNUnlessKnown (block.EarthRadius)),
        b (NaNUnlessKnown (block.MinorAxis)),
        latitude (NaNUnlessKnown (block.OriginLatitude)),
        longitude (NaNUnlessKnown (block.OriginLongitude)),
        scale (block.ProjectionScale == 0.0 ? std::numeric_limits<double>::quiet_NaN ()
                                            : NaNUnlessKnown (block.ProjectionScale)) {}

  double a, b;                 ///< semi-axes, metres
  double latitude, longitude;  ///< of the origin, radians
  double scale;
};

/// Sets the origin, false origin and scale of a block whose projection has them fixed.
inline void csib_ForceOrigin (csib_Block& block, double latitude, double longitude, double north,
                              double east, double scale) noexcept {
  block.OriginLatitude = latitude;
  block.OriginLongitude = longitude;
  block.FalseNorth = north;
  block.FalseEast = east;
  block.ProjectionScale = scale;
}

template <class P>
struct csib_HeldProjection final : csib_Data {
  P projection;
};

/// The projection that a block holds, null when it holds none.
template <class P>
P* csib_Held (const csib_Block& block) noexcept {
  auto* held = static_cast<csib_HeldProjection<P>*> (block.ProjectionData.get ());
  return held == nullptr ? nullptr : &held->projection;
}

/// The slots of a structure P, which has
///   csib_Status Read (csib_Block&, csib_Bytes&)   its parameters, and all constants
///   void Write (csib_Writer&) const               the parameters as they were; when it has any
///   Forward (phi, lambda, double& north, double& east) const, Inverse (north, east, ...) const
///                                                 without a status, or with one
///   double Scale (phi, lambda) const, double Convergence (phi, lambda) const
///                                                 when there is a closed form; else NoScale, a
///                                                 status of its own, when it has one
/// Forward refuses a latitude beyond a pole with CSIB_LatitudeOutOfRange. An answer that is no
/// number is refused: a position with CSIB_NoProjectionOperation, a scale with
/// CSIB_NoScaleOperation, a convergence with CSIB_NoConvergence.
template <class P>
struct csib_ProjectionSlots {
  static csib_Status Read (csib_Block& block, csib_Bytes& in) {
    block.ProjectionData.reset ();
    std::unique_ptr<csib_HeldProjection<P>> held (new (std::nothrow) csib_HeldProjection<P>);
    if (held == nullptr) return CSIB_OutOfMemory;
    const csib_Status status = held->projection.Read (block, in);
    if (status == CSIB_Ok) block.ProjectionData = std::move (held);
    return status;
  }

  static csib_Status NoFile (csib_Block&, std::string_view) { return CSIB_Ok; }

  static void Free (csib_Block& block) { block.ProjectionData.reset (); }

  static csib_Status Write (const csib_Block& block, csib_Writer& out, csib_StorageMode) {
    const P* p = csib_Held<P> (block);
    if (p == nullptr) return CSIB_NoProjectionOperation;
    if constexpr (requires { p->Write (out); }) p->Write (out);
    return out.IsGood () ? CSIB_Ok : CSIB_WrongFormat;
  }

  static csib_Status Parameters (const csib_Block& block, std::vector<uint8_t>& out) {
    std::size_t size = 0;
    if (const csib_Status status = Size (block, CSIB_ByName, size)) return status;
    out.resize (size);
    csib_Writer writer (out);
    return Write (block, writer, CSIB_ByName);
  }

  static csib_Status Size (const csib_Block& block, csib_StorageMode mode, std::size_t& out) {
    csib_Writer counter;
    const csib_Status status = Write (block, counter, mode);
    out = counter.Position ();
    return status;
  }

  static csib_Status Forward (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) {
    const P* p = csib_Held<P> (block);
    if (p == nullptr) return CSIB_NoProjectionOperation;
    // A latitude of exactly a pole may have been rounded beyond it on its way here.
    if (!(std::abs (point.Latitude) <= std::numbers::pi / 2.0 + 1e-9))
      return CSIB_LatitudeOutOfRange;
    double north = 0.0;
    double east = 0.0;
    const csib_Status status =
        Status ([&] { return p->Forward (point.Latitude, point.Longitude, north, east); });
    if (status != CSIB_Ok) return status;
    if (!csib_IsKnown (north) || !csib_IsKnown (east)) return CSIB_NoProjectionOperation;
    out.North = north;
    out.East = east;
    out.HasNorth = out.HasEast = true;
    CopyHeights (point, out);
    return CSIB_Ok;
  }

  static csib_Status Inverse (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) {
    const P* p = csib_Held<P> (block);
    if (p == nullptr || !point.HasNorth || !point.HasEast) return CSIB_NoProjectionOperation;
    double latitude = 0.0;
    double longitude = 0.0;
    const csib_Status status =
        Status ([&] { return p->Inverse (point.North, point.East, latitude, longitude); });
    if (status != CSIB_Ok) return status;
    if (!csib_IsKnown (latitude) || !csib_IsKnown (longitude)) return CSIB_NoProjectionOperation;
    out.Latitude = latitude;
    out.Longitude = csib_WithinPi (longitude);
    CopyHeights (point, out);
    return CSIB_Ok;
  }

  static csib_Status Scale (csib_Block& block, const csib_Geodetic& point, double& out) {
    if constexpr (requires (const P& p) { p.Scale (0.0, 0.0); }) {
      const P* p = csib_Held<P> (block);
      if (p == nullptr) return CSIB_NoScaleOperation;
      const double k = p->Scale (point.Latitude, point.Longitude);
      if (!csib_IsKnown (k)) return CSIB_NoScaleOperation;
      out = k;
      return CSIB_Ok;
    } else if constexpr (requires { P::NoScale; }) {
      return P::NoScale;
    } else {
      return CSIB_NoScaleOperation;
    }
  }

  static csib_Status Convergence (csib_Block& block, const csib_Geodetic& point, double& out) {
    if constexpr (requires (const P& p) { p.Convergence (0.0, 0.0); }) {
      const P* p = csib_Held<P> (block);
      if (p == nullptr) return CSIB_NoConvergence;
      const double gamma = p->Convergence (point.Latitude, point.Longitude);
      if (!csib_IsKnown (gamma)) return CSIB_NoConvergence;
      out = csib_WithinPi (gamma);
      return CSIB_Ok;
    } else {
      return CSIB_NoConvergence;
    }
  }

  static constexpr csib_ProjectionOperations Table () {
    return {Read,    NoFile, NoFile,      Free,       Write, Forward,
            Inverse, Scale,  Convergence, Parameters, Size};
  }

 private:
  template <class Answer>
  static csib_Status Status (Answer answer) {
    if constexpr (std::is_void_v<decltype (answer ())>) {
      answer ();
      return CSIB_Ok;
    } else {
      return answer ();
    }
  }

  template <class From, class To>
  static void CopyHeights (const From& from, To& to) noexcept {
    to.EllipsoidalHeight = from.EllipsoidalHeight;
    to.OrthometricHeight = from.OrthometricHeight;
    to.HasEllipsoidal = from.HasEllipsoidal;
    to.HasOrthometric = from.HasOrthometric;
  }
};

}  // namespace clxml
