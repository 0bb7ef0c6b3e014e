// Short lines on an ellipsoid.
// The direct and the inverse problem for lines up to some hundred kilometres, in closed series.
// Stands below position, which measures its convergence with it. Leans on coord and maths.
#pragma once

namespace clxml {

// Azimuths are those of normal sections: they part from the geodesic's by 6e-8 rad at 100 km, and
// by the square of the length beyond.

struct coordsys_Ellipsoid;

/// The end of a line from a start (latitude, longitude), along an azimuth over a distance (metres,
/// not negative) on the ellipsoid; angles in radians. W is sqrt (1 - e^2 sin^2 (latitude)) at the
/// start; the longitude comes back within minus and plus pi. Nulls give nulls, and so does a line
/// that leaves the reach of the series. A. R. Robbins, "Long lines on the spheroid", Survey
/// Review 16 (125), 1962.
void cogo_EllipsoidDirect (const coordsys_Ellipsoid& ellipsoid, double latitude, double longitude,
                           double azimuth, double distance, double W, double& latitudeOut,
                           double& longitudeOut);

/// Azimuth at the start, the mean of the azimuths at start and end, and distance of the line
/// between two points with their W; azimuths in 0 to 2 pi. Nulls give nulls. Points whose latitudes
/// and longitudes agree within 1e-13 have the distance 0.0 and null azimuths. The source is that of
/// the direct problem.
void cogo_EllipsoidInverse (const coordsys_Ellipsoid& ellipsoid, double firstLatitude,
                            double firstLongitude, double firstW, double secondLatitude,
                            double secondLongitude, double secondW, double& meanAzimuth,
                            double& azimuth, double& distance);

}  // namespace clxml
