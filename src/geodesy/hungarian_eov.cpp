// The Hungarian EOV, projection code 17.
// No parameters: everything is fixed, the ellipsoid (GRS67) and the scale included. Leans on the
// slots alone.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Vetuleti szabalyzat az Egyseges Orszagos Vetuleti rendszer alkalmazasara (rules for the use of
// the uniform national projection), National Office of Lands and Mapping, Budapest (1975). From the
// ellipsoid to Gauss's sphere by a series, to the reduced oblique cylinder, and back by polynomials
// good to 0.03 m.
constexpr double originLatitude = 0.8228248943093227;
constexpr double originLongitude = 0.3324602953246919;
constexpr double sphereLatitude =
    0.8220500776893293;  // where the cylinder's axis is at right angle
constexpr double longitudeFactor = 1.0007197049;

double ArcSine (double x) noexcept { return std::atan (x / std::sqrt (1.0 - x * x + 1e-99)); }

struct HungarianEOV {
  double sin0 = 0.0;
  double cos0 = 1.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    csib_ForceOrigin (block, originLatitude, originLongitude, 200000.0, 650000.0, 0.99993);
    sin0 = std::sin (sphereLatitude);
    cos0 = std::cos (sphereLatitude);
    return in.Status ();
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double P = (phi * CSIB_DegreesOfRadian - 47.16666666667) * 3600.0;
    const double phiS =
        (47.122238277777775 + ((2.4323e-8 - 5.3e-15 * P) * P + 0.99844601) * P / 3600.0) *
        CSIB_RadiansOfDegree;
    const double lambdaS = (lambda * CSIB_DegreesOfRadian - 19.04857177777778) * longitudeFactor *
                           CSIB_RadiansOfDegree;
    const double phi1 =
        ArcSine (std::sin (phiS) * cos0 - std::cos (phiS) * sin0 * std::cos (lambdaS));
    const double lambda1 = ArcSine (std::cos (phiS) * std::sin (lambdaS) / std::cos (phi1));
    const double X = phi1 / CSIB_Second;
    const double Y = lambda1 / CSIB_Second;
    const double X2 = X * X;
    north = X * (30.9277018 + X2 * (1.21156e-10 + X2 * 7.1e-22));
    east = 30.9277018 * Y;
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double x = north / 100000.0;
    const double y = east / 100000.0;
    const double x2 = x * x;
    const double y2 = y * y;
    const double s = 3233.347264 * x - 27.271785 * y2 - 0.132421 * x2 * x - 0.46005 * x * y2 -
                     0.007761 * x2 * y2 + 0.002499 * y2 * y2 - 0.00015 * x2 * x * y2 +
                     0.000136 * x * y2 * y2 + 8e-06 * x2 * x2 * x;
    const double t = s - 80.0578;
    phi = std::abs (t * (1.00155641 + t * (-2.4436e-8 + t * 6.5e-15)) + 169800.0) * CSIB_Second;
    const double r =
        y * (4749.887086 + 80.126192 * x - 0.450552 * y2 + 1.351655 * x2 + 0.026083 * x2 * x -
             0.026083 * x * y2 - 0.000991 * x2 * y2 + 0.000495 * x2 * x2 + 9.91e-05 * y2 * y2);
    lambda = (r / longitudeFactor + 68574.8584) * CSIB_Second;
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_HungarianEOVProjection =
    csib_ProjectionSlots<HungarianEOV>::Table ();

}  // namespace clxml
