// The statuses of the coordinate system block.
// Signed 16-bit numbers, 0 for success; what is negative is a failure. Leans on nothing.
#pragma once

#include <cstdint>

namespace clxml {

enum csib_Status : int16_t {
  CSIB_Ok = 0,
  CSIB_TablesDisagree = -1,         ///< the Danish tables of the two directions
  CSIB_NoProjectionOperation = -2,  ///< no forward or inverse; outside the Danish bounds
  CSIB_WrongMagic = -5,
  CSIB_WrongVersion = -6,  ///< not 1.0 to 20.0 in either byte order
  CSIB_WrongDatumCode = -8,
  CSIB_WrongProjectionCode = -10,
  CSIB_WrongGeoidCode = -12,
  CSIB_UnknownSection = -15,  ///< an optional section that no version has
  CSIB_OutsideProjectionGrid = -16,
  CSIB_NoOutput = -18,  ///< a required output pointer is null
  CSIB_NoCassiniScale = -20,
  CSIB_NoAlbersScale = -21,
  CSIB_NoConvergence = -22,  ///< the projection has no closed form
  CSIB_NoHeightForScale = -24,
  CSIB_NoHeight = -25,  ///< neither height of a point on its way to WGS84
  CSIB_OutOfMemory = -26,
  CSIB_HeightDidNotConverge = -27,
  CSIB_LatitudeOutOfRange = -28,
  CSIB_DidNotConverge = -29,
  CSIB_Singular = -30,  ///< the normal matrix of a fit has no inverse
  CSIB_NoConvergenceOperation = -31,
  CSIB_NoScaleOperation = -32,
  CSIB_NoSeparationOperation = -33,  ///< no geoid
  CSIB_UnloadedTwice = -36,
  CSIB_Unloaded = -37,  ///< an operation needs a file that was given back
  CSIB_FileNotOpened = -101,
  CSIB_HeaderUnreadable = -102,  ///< also a text or number that does not end in time
  CSIB_WrongGridMagic = -104,
  CSIB_UnknownInterpolation = -105,
  CSIB_WrongFormat = -106,
  CSIB_OutOfMemoryForWindow = -107,
  CSIB_OutsideGrid = -108,
  CSIB_NullInGrid = -109,
  CSIB_FileTooLong = -111,     ///< an embedded file
  CSIB_NameMissing = -112,     ///< a grid without a name where one is needed
  CSIB_WindowTooLarge = -113,  ///< more nodes needed than the grid has
  CSIB_RegressionUnreadable = -203,
  CSIB_NoEllipsoidalHeight = -301,  ///< for a seven parameter shift
  CSIB_NoHeightForCartesian = -501,
  CSIB_CartesianDidNotConverge = -502,
};

}  // namespace clxml
