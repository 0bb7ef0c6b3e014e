// Conversions of scans, images and the camera.
// Leans on the conversion frame.
#include "Library/records/dbConventional.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadSurfaceScan (FieldReader& in, db_SurfaceScan& surfaceScan) {
  in.Enum ("SurfaceScanMethod", surfaceScan.SurfaceScanMethod);
  in.EnumOr ("LineMethod", surfaceScan.LineMethod, DBENTITY_SurfaceScanTwoPoints);
  in.String ("PointA", surfaceScan.PointA);
  in.String ("PointB", surfaceScan.PointB);
  in.String ("PointC", surfaceScan.PointC);
  in.Double ("HAstep", surfaceScan.HAstep);
  in.Double ("VAstep", surfaceScan.VAstep);
  in.Double ("Xstep", surfaceScan.Xstep);
  in.Double ("Ystep", surfaceScan.Ystep);
  in.Double ("MaxOffset", surfaceScan.MaxOffset);
  in.Double ("Azimuth", surfaceScan.Azimuth);
  in.Double ("Distance", surfaceScan.Distance);
  in.Int ("PointsScanned", surfaceScan.PointsScanned);
  in.Int ("PointsSkipped", surfaceScan.PointsSkipped);
  in.Double ("TimeTaken", surfaceScan.TimeTaken);
}

void ReadScanning (FieldReader& in, db_Scanning& scanning) {
  in.Hex ("StationID", scanning.StationID);
  in.Hex ("BackBearingID", scanning.BackBearingID);
  in.Enum ("ScanType", scanning.ScanType);
  in.String ("FileName", scanning.FileName);
  in.IntOrHex ("NumberOfPoints", scanning.NumberOfPoints);
  in.Double ("TimeTaken", scanning.TimeTaken);
  in.Double ("AtDistance", scanning.AtDistance);
  in.Double ("HorizontalStep", scanning.HorizontalStep);
  in.Double ("VerticalStep", scanning.VerticalStep);
  in.Double ("HorizontalDistInterval", scanning.HorizontalDistInterval);
  in.Double ("VerticalDistInterval", scanning.VerticalDistInterval);
}

void ReadImage (FieldReader& in, db_Image& image) {
  in.Hex ("StationID", image.StationID);
  in.Hex ("BackBearingID", image.BackBearingID);
  in.Hex ("CameraID", image.CameraID);
  in.Hex ("PointRecordID", image.PointRecordID);
  in.String ("FileName", image.FileName);
  in.Double ("HorizontalAngle", image.HorizontalAngle);
  in.Double ("VerticalAngle", image.VerticalAngle);
  in.Int ("Width", image.Width);
  in.Int ("Height", image.Height);
  in.Int ("SourceX", image.SourceX);
  in.Int ("SourceY", image.SourceY);
  in.Int ("SourceWidth", image.SourceWidth);
  in.Int ("SourceHeight", image.SourceHeight);
}

void ReadCamera (FieldReader& in, db_Camera& camera) {
  in.Int64 ("CalibDate64", camera.CalibDate64);
  in.Double ("X0", camera.X0);
  in.Double ("Y0", camera.Y0);
  in.Double ("CK", camera.CK);
  in.Double ("Kappa", camera.Kappa);
  in.Double ("Phi", camera.Phi);
  in.Double ("Omega", camera.Omega);
  in.Double ("S0", camera.S0);
  in.Double ("C0", camera.C0);
  in.Double ("Z0", camera.Z0);
  in.Double ("I", camera.I);
  in.Int ("K1", camera.K1);
  in.Int ("P1", camera.P1);
  in.Int ("P2", camera.P2);
  in.Double ("PixelSizeX", camera.PixelSizeX);
  in.Double ("PixelSizeY", camera.PixelSizeY);
  in.Int ("PixelCountX", camera.PixelCountX);
  in.Int ("PixelCountY", camera.PixelCountY);
  in.Double ("ErrMeas", camera.ErrMeas);
  in.IntOrHex ("CalibType", camera.CalibType);
  in.Bool ("isCalibrated", camera.isCalibrated);
}

void ReadPanorama (FieldReader& in, db_Panorama& panorama) {
  in.Enum ("Method", panorama.Method);
  in.Double ("Top", panorama.Top);
  in.Double ("Left", panorama.Left);
  in.Double ("Bottom", panorama.Bottom);
  in.Double ("Right", panorama.Right);
  in.Double ("HAstep", panorama.HAstep);
  in.Double ("VAstep", panorama.VAstep);
}

constexpr Conversion conversions[] = {
    {"DATABASE_SurfaceScanRecord", "db_SurfaceScan", Convert<ReadSurfaceScan>},
    {"DATABASE_ScanningRecord", "db_Scanning", Convert<ReadScanning>},
    {"DATABASE_ImageRecord", "db_Image", Convert<ReadImage>},
    {"DATABASE_CameraRecord", "db_Camera", Convert<ReadCamera>},
    {"DATABASE_PanoramaRecord", "db_Panorama", Convert<ReadPanorama>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> ScanConversions () noexcept { return conversions; }

}  // namespace clxml
