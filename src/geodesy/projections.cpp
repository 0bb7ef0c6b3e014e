// The one list of the projections.
// The codes of a block stand for its rows. Leans on projections.
#include "geodesy/projections.h"

#include <array>

#include "geodesy/gridded.h"

namespace clxml {
namespace {

struct Row {
  csib_ProjectionCode code;
  const csib_ProjectionOperations* operations;
};

constexpr std::array list = {
    Row{CSIB_NoProjection, nullptr},
    Row{CSIB_Albers, &csib_AlbersProjection},
    Row{CSIB_Cassini, &csib_CassiniProjection},
    Row{CSIB_Krovak, &csib_KrovakProjection},
    Row{CSIB_Lambert, &csib_LambertProjection},
    Row{CSIB_Mercator, &csib_MercatorProjection},
    Row{CSIB_NewZealand, &csib_NewZealandProjection},
    Row{CSIB_ObliqueConformalCylindrical, &csib_ObliqueCylindricalProjection},
    Row{CSIB_ObliqueMercator, &csib_ObliqueMercatorProjection},
    Row{CSIB_ObliqueStereographic, &csib_ObliqueStereographicProjection},
    Row{CSIB_Plane, &csib_PlaneProjection},
    Row{CSIB_PolarStereographic, &csib_PolarStereographicProjection},
    Row{CSIB_RD, &csib_RDProjection},
    Row{CSIB_CartesianPlane, nullptr},
    Row{CSIB_TransverseMercator, &csib_TransverseMercatorProjection},
    Row{CSIB_UKNationalGrid, &csib_UKNationalGridProjection},
    Row{CSIB_Denmark, &csib_DenmarkProjection},
    Row{CSIB_HungarianEOV, &csib_HungarianEOVProjection},
    Row{CSIB_DoubleStereographic, &csib_DoubleStereographicProjection},
    Row{CSIB_ProjectionGrid, &csib_ProjectionGridProjection},
};

constexpr bool StandsInOrder () {
  for (std::size_t i = 0; i < list.size (); i++)
    if (list[i].code != i) return false;
  return true;
}
static_assert (StandsInOrder () && list.size () == CSIB_ProjectionGrid + 1);

}  // namespace

const csib_ProjectionOperations* csib_ProjectionTable (uint8_t code) noexcept {
  return code < list.size () ? list[code].operations : nullptr;
}

}  // namespace clxml
