// The map projections of the block: their tables by code.
// One source a family, one list of them all. Leans on csib.
#pragma once

#include "geodesy/csib.h"

namespace clxml {

extern const csib_ProjectionOperations csib_AlbersProjection;
extern const csib_ProjectionOperations csib_CassiniProjection;
extern const csib_ProjectionOperations csib_KrovakProjection;
extern const csib_ProjectionOperations csib_LambertProjection;
extern const csib_ProjectionOperations csib_MercatorProjection;
extern const csib_ProjectionOperations csib_NewZealandProjection;
extern const csib_ProjectionOperations csib_ObliqueCylindricalProjection;
extern const csib_ProjectionOperations csib_ObliqueMercatorProjection;
extern const csib_ProjectionOperations csib_ObliqueStereographicProjection;
extern const csib_ProjectionOperations csib_PlaneProjection;
extern const csib_ProjectionOperations csib_PolarStereographicProjection;
extern const csib_ProjectionOperations csib_RDProjection;
extern const csib_ProjectionOperations csib_TransverseMercatorProjection;
extern const csib_ProjectionOperations csib_DenmarkProjection;
extern const csib_ProjectionOperations csib_HungarianEOVProjection;
extern const csib_ProjectionOperations csib_DoubleStereographicProjection;

/// What an elevation of the plane projection lacks to the height above the ellipsoid: its origin's
/// height less its origin's elevation, metres; 0.0 for any other projection.
double csib_PlaneHeightDifference (const csib_Block& block) noexcept;

}  // namespace clxml
