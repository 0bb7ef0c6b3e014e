// The coordinate system block as bytes: read in either order, written, measured; and its components
// replaced, released and loaded again.
// For the transform and for whoever stores a coordinate system. Leans on csib, adjust and gridded.
//
// The form, in order, without alignment. Every number has the order of its writer, every 8-bit text
// ends in a zero byte and every 16-bit text in a zero unit.
//
//   8  magic "QRV CSIB", without a terminator
//   8  double version; from 1.0 to 20.0 in the order that all other numbers have
//      six texts: first and second of the system labels 2, 3, 1
//  24  reserved
//   1  storage: 1 grids by name, 0 grids embedded
//   1  datum code
//      six texts: first and second of the datum labels 2, 3, 1
//  16  doubles a, b
//      datum parameters
//   1  projection code; if not 0:
//        two texts of its label
//        40  doubles origin latitude and longitude, false north and east, scale
//        24  doubles ground scale, ground offsets north and east          (version >= 1.4)
//         1  has a project location                                       (version >= 1.4)
//        25  if it has one: location flag, doubles latitude, longitude, height
//        10  radius flag, fixed radius flag, double fixed radius
//        projection parameters
//   1  geoid code; if not 0: four texts of its labels, geoid parameters
//   1  has a horizontal part; if so: two texts, six doubles
//   1  has a vertical part; if so: two texts, five doubles
//
// A block of version 1.0 ends here and has the origins of the two parts less the false origin;
// later ones have the true values and go on:
//
//   1  0
//   1  has a shift grid; if so: two texts, its parameters                 (version > 10.2)
//  32  reserved
//   7  flags
//      eleven 16-bit texts: the third ones of system labels 2, 3, 1, datum labels 2, 3, 1, the
//      projection's, the geoid's two, the horizontal and the vertical label
//      one 16-bit text, empty when written; any other is passed over
//      the third text of the shift grid's label                           (version > 10.2)
//
// Reserved bytes are neither read nor written. The parameters belong to the tables of the codes.
#include "geodesy/csib.h"

#include <cmath>
#include <new>
#include <utility>

#include "geodesy/adjust.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

constexpr std::string_view magic = "QRV CSIB";
constexpr double writtenVersion = 10.3;
constexpr std::size_t reservedInHead = 24;
constexpr std::size_t reservedInTail = 32;
// The text that is passed over is no longer than this, in bytes.
constexpr std::size_t longestUnknownText = 65535;
// The order in which three labels stand.
constexpr std::size_t labelOrder[] = {1, 2, 0};

// Memory that is not there is a status like any other.
template <class Operation>
csib_Status Guarded (Operation operation) {
  try {
    return operation ();
  } catch (const std::bad_alloc&) {
    return CSIB_OutOfMemory;
  }
}

// A flattening of one half is beyond every body that is surveyed, and keeps 1 - e² away from 0.
bool AreAxes (double a, double b) noexcept {
  return a >= 1e-3 && a <= 1e12 && b > a / 2.0 && b <= a;
}

// ---------------------------------------------------------------------------------------------
// Components

void DropDatum (csib_Block& block) {
  if (block.Datum && block.Datum->free) block.Datum->free (block);
  block.DatumData.reset ();
  block.DatumCode = CSIB_NoDatum;
  block.Datum = csib_DatumTable (CSIB_NoDatum);
}

void DropProjection (csib_Block& block) {
  if (block.Projection && block.Projection->free) block.Projection->free (block);
  block.ProjectionData.reset ();
  block.ProjectionCode = CSIB_NoProjection;
  block.Projection = nullptr;
  block.GroundDeltas = {};
}

void DropGeoid (csib_Block& block) {
  if (block.Geoid && block.Geoid->free) block.Geoid->free (block);
  block.GeoidData.reset ();
  block.GeoidCode = CSIB_NoGeoid;
  block.Geoid = nullptr;
}

void DropShiftGrid (csib_Block& block) {
  block.ShiftData.reset ();
  block.HasShiftGrid = 0;
}

csib_Status ReadDatum (csib_Block& block, uint8_t code, csib_Bytes& in) {
  DropDatum (block);
  const csib_DatumOperations* table = csib_DatumTable (code);
  if (table == nullptr) return CSIB_WrongDatumCode;
  block.DatumCode = static_cast<csib_DatumCode> (code);
  block.Datum = table;
  return table->read (block, in);
}

csib_Status ReadProjection (csib_Block& block, uint8_t code, csib_Bytes& in) {
  DropProjection (block);
  if (code == CSIB_NoProjection) return CSIB_Ok;
  const csib_ProjectionOperations* table = csib_ProjectionTable (code);
  if (table == nullptr) return CSIB_WrongProjectionCode;
  block.ProjectionCode = static_cast<csib_ProjectionCode> (code);
  block.Projection = table;
  return table->read (block, in);
}

csib_Status ReadGeoid (csib_Block& block, uint8_t code, csib_Bytes& in) {
  DropGeoid (block);
  if (code == CSIB_NoGeoid) return CSIB_Ok;
  const csib_GeoidOperations* table = csib_GeoidTable (code);
  if (table == nullptr) return CSIB_WrongGeoidCode;
  block.GeoidCode = static_cast<csib_GeoidCode> (code);
  block.Geoid = table;
  return table->read (block, in);
}

csib_Status ReadShiftGrid (csib_Block& block, csib_Bytes& in) {
  DropShiftGrid (block);
  block.HasShiftGrid = 1;
  return csib_ShiftRead (block, in);
}

// ---------------------------------------------------------------------------------------------
// Reading

void ReadLabel (csib_Label& label, csib_Bytes& in) {
  label.First = in.Text ();
  label.Second = in.Text ();
}

// The order of the numbers is that in which the version lies in its range.
csib_Status ReadHead (csib_Block& block, csib_Bytes& in) {
  const std::span<const uint8_t> start = in.Take (magic.size ());
  if (!in.IsGood ()) return in.Status ();
  if (std::string_view (reinterpret_cast<const char*> (start.data ()), start.size ()) != magic)
    return CSIB_WrongMagic;
  const auto isVersion = [] (double version) { return version >= 1.0 && version <= 20.0; };
  double version = in.Double ();
  if (!in.IsGood ()) return in.Status ();
  if (!isVersion (version)) {
    version = csib_Turned (version);
    if (!isVersion (version)) return CSIB_WrongVersion;
    in.SetSwapped (true);
  }
  in.SetVersion (version);
  for (const std::size_t i : labelOrder) ReadLabel (block.SystemLabels[i], in);
  in.Skip (reservedInHead);
  const uint8_t storage = in.Byte ();
  if (in.IsGood () && storage > CSIB_ByName) return CSIB_WrongFormat;
  block.StorageMode = static_cast<csib_StorageMode> (storage);
  return in.Status ();
}

csib_Status ReadEllipsoidAndDatum (csib_Block& block, csib_Bytes& in) {
  const uint8_t code = in.Byte ();
  for (const std::size_t i : labelOrder) ReadLabel (block.DatumLabels[i], in);
  const double a = in.Double ();
  const double b = in.Double ();
  if (!in.IsGood ()) return in.Status ();
  if (csib_DatumTable (code) == nullptr) return CSIB_WrongDatumCode;
  if (!AreAxes (a, b)) return CSIB_WrongFormat;
  csib_SetEllipsoid (block, a, b);
  return ReadDatum (block, code, in);
}

csib_Status ReadProjectionSection (csib_Block& block, csib_Bytes& in) {
  const uint8_t code = in.Byte ();
  if (!in.IsGood () || code == CSIB_NoProjection) return in.Status ();
  if (csib_ProjectionTable (code) == nullptr) return CSIB_WrongProjectionCode;
  ReadLabel (block.ProjectionLabel, in);
  // A job may have no value for what its projection does not use: null is allowed.
  for (double* value : {&block.OriginLatitude, &block.OriginLongitude, &block.FalseNorth,
                        &block.FalseEast, &block.ProjectionScale})
    *value = in.Finite ();
  if (in.Version () >= 1.4) {
    block.GroundScale = in.Known ();
    block.GroundOffsetNorth = in.Known ();
    block.GroundOffsetEast = in.Known ();
    if (in.IsGood () && block.GroundScale == 0.0) in.Fail (CSIB_WrongFormat);
    block.HasProjectLocation = in.Byte () != 0 ? 1 : 0;
    if (block.HasProjectLocation) {
      block.LocationFlag = in.Byte ();
      block.ProjectLatitude = in.Known ();
      block.ProjectLongitude = in.Known ();
      block.ProjectHeight = in.Finite ();
    }
  }
  block.RadiusFlag = in.Byte ();
  block.FixedRadiusFlag = in.Byte ();
  block.FixedRadius = block.FixedRadiusFlag != 0 ? in.Known () : in.Double ();
  if (!in.IsGood ()) return in.Status ();
  return ReadProjection (block, code, in);
}

csib_Status ReadGeoidSection (csib_Block& block, csib_Bytes& in) {
  const uint8_t code = in.Byte ();
  if (!in.IsGood () || code == CSIB_NoGeoid) return in.Status ();
  if (csib_GeoidTable (code) == nullptr) return CSIB_WrongGeoidCode;
  for (csib_Label& label : block.GeoidLabels) ReadLabel (label, in);
  if (!in.IsGood ()) return in.Status ();
  return ReadGeoid (block, code, in);
}

csib_Status ReadAdjustments (csib_Block& block, csib_Bytes& in) {
  const bool isTrueOrigin = in.Version () > 1.0;
  if (in.Byte () != 0) {
    ReadLabel (block.HorizontalLabel, in);
    const csib_Status status = csib_ReadHorizontal (block, in, isTrueOrigin);
    if (status != CSIB_Ok) return status;
  }
  if (in.Byte () != 0) {
    ReadLabel (block.VerticalLabel, in);
    const csib_Status status = csib_ReadVertical (block, in, isTrueOrigin);
    if (status != CSIB_Ok) return status;
  }
  return in.Status ();
}

// All labels that stand in the tail, in its order.
template <class Block, class Operation>
void ForEachThirdText (Block& block, Operation operation) {
  for (const std::size_t i : labelOrder) operation (block.SystemLabels[i].Third);
  for (const std::size_t i : labelOrder) operation (block.DatumLabels[i].Third);
  operation (block.ProjectionLabel.Third);
  for (auto& label : block.GeoidLabels) operation (label.Third);
  operation (block.HorizontalLabel.Third);
  operation (block.VerticalLabel.Third);
}

csib_Status ReadTail (csib_Block& block, csib_Bytes& in) {
  const bool knowsShiftGrid = in.Version () > 10.2;
  if (in.Byte () != 0) return CSIB_UnknownSection;
  if (knowsShiftGrid && in.Byte () != 0) {
    ReadLabel (block.ShiftLabel, in);
    if (!in.IsGood ()) return in.Status ();
    const csib_Status status = ReadShiftGrid (block, in);
    if (status != CSIB_Ok) return status;
  }
  in.Skip (reservedInTail);
  for (uint8_t& flag : block.Flags) flag = in.Byte ();
  ForEachThirdText (block, [&in] (std::u16string& text) { text = in.Text16 (); });
  for (std::size_t passed = 0; in.Number<uint16_t> () != 0; passed += sizeof (uint16_t))
    if (passed >= longestUnknownText) in.Fail ();
  if (knowsShiftGrid) block.ShiftLabel.Third = in.Text16 ();
  return in.Status ();
}

csib_Status ReadBlock (csib_Block& block, csib_Bytes& in) {
  csib_Status status = ReadHead (block, in);
  if (status == CSIB_Ok) status = ReadEllipsoidAndDatum (block, in);
  if (status == CSIB_Ok) status = ReadProjectionSection (block, in);
  if (status == CSIB_Ok) status = ReadGeoidSection (block, in);
  if (status == CSIB_Ok) status = ReadAdjustments (block, in);
  if (status == CSIB_Ok && in.Version () > 1.0) status = ReadTail (block, in);
  return status;
}

// ---------------------------------------------------------------------------------------------
// Writing

void WriteLabel (const csib_Label& label, csib_Writer& out) noexcept {
  out.Text (label.First);
  out.Text (label.Second);
}

// The parameters of a component, or in a writer that counts their size alone: what is embedded is
// not read for it.
template <class Operations>
csib_Status WriteParameters (const csib_Block& block, const Operations& table, csib_Writer& out,
                             csib_StorageMode mode) {
  if (!out.Counts ()) return table.write (block, out, mode);
  std::size_t size = 0;
  const csib_Status status = table.size (block, mode, size);
  out.Skip (size);
  return status;
}

csib_Status WriteProjectionSection (const csib_Block& block, csib_Writer& out,
                                    csib_StorageMode mode) {
  out.Byte (block.ProjectionCode);
  if (block.Projection == nullptr) return CSIB_Ok;
  WriteLabel (block.ProjectionLabel, out);
  for (const double value :
       {block.OriginLatitude, block.OriginLongitude, block.FalseNorth, block.FalseEast,
        block.ProjectionScale, block.GroundScale, block.GroundOffsetNorth, block.GroundOffsetEast})
    out.Double (value);
  out.Byte (block.HasProjectLocation != 0 ? 1 : 0);
  if (block.HasProjectLocation) {
    out.Byte (block.LocationFlag);
    out.Double (block.ProjectLatitude);
    out.Double (block.ProjectLongitude);
    out.Double (block.ProjectHeight);
  }
  out.Byte (block.RadiusFlag);
  out.Byte (block.FixedRadiusFlag);
  out.Double (block.FixedRadius);
  return WriteParameters (block, *block.Projection, out, mode);
}

csib_Status WriteShiftGrid (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) {
  out.Byte (block.HasShiftGrid != 0 ? 1 : 0);
  if (!block.HasShiftGrid) return CSIB_Ok;
  WriteLabel (block.ShiftLabel, out);
  if (!out.Counts ()) return csib_ShiftWrite (block, out, mode);
  std::size_t size = 0;
  const csib_Status status = csib_ShiftSize (block, mode, size);
  out.Skip (size);
  return status;
}

csib_Status WriteBlock (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) {
  for (const char c : magic) out.Byte (static_cast<uint8_t> (c));
  out.Double (writtenVersion);
  for (const std::size_t i : labelOrder) WriteLabel (block.SystemLabels[i], out);
  out.Skip (reservedInHead);
  out.Byte (mode);

  out.Byte (block.DatumCode);
  for (const std::size_t i : labelOrder) WriteLabel (block.DatumLabels[i], out);
  out.Double (block.EarthRadius);
  out.Double (block.MinorAxis);
  if (block.Datum == nullptr) return CSIB_WrongDatumCode;
  csib_Status status = WriteParameters (block, *block.Datum, out, mode);
  if (status == CSIB_Ok) status = WriteProjectionSection (block, out, mode);
  if (status != CSIB_Ok) return status;

  out.Byte (block.GeoidCode);
  if (block.Geoid) {
    for (const csib_Label& label : block.GeoidLabels) WriteLabel (label, out);
    status = WriteParameters (block, *block.Geoid, out, mode);
    if (status != CSIB_Ok) return status;
  }
  out.Byte (block.HasHorizontal != 0 ? 1 : 0);
  if (block.HasHorizontal) {
    WriteLabel (block.HorizontalLabel, out);
    csib_WriteHorizontal (block, out);
  }
  out.Byte (block.HasVertical != 0 ? 1 : 0);
  if (block.HasVertical) {
    WriteLabel (block.VerticalLabel, out);
    csib_WriteVertical (block, out);
  }

  out.Byte (0);  // a section that this version does not have
  status = WriteShiftGrid (block, out, mode);
  if (status != CSIB_Ok) return status;
  out.Skip (reservedInTail);
  out.Bytes (block.Flags);
  ForEachThirdText (block, [&out] (const std::u16string& text) { out.Text16 (text); });
  out.Text16 ({});
  out.Text16 (block.ShiftLabel.Third);
  return CSIB_Ok;
}

// The first failure of the components' answers, each of which is asked.
template <class... Status>
csib_Status FirstFailure (Status... statuses) noexcept {
  csib_Status first = CSIB_Ok;
  for (const csib_Status status : {statuses...})
    if (first == CSIB_Ok) first = status;
  return first;
}

}  // namespace

// ---------------------------------------------------------------------------------------------

csib_Status csib_Create (std::unique_ptr<csib_Block>& block, csib_StorageMode mode, double a,
                         double b) {
  return Guarded ([&] {
    block = std::make_unique<csib_Block> ();
    block->StorageMode = mode;
    block->Datum = csib_DatumTable (CSIB_NoDatum);
    csib_SetEllipsoid (*block, a, b);
    return CSIB_Ok;
  });
}

void csib_SetEllipsoid (csib_Block& block, double a, double b) noexcept {
  block.EarthRadius = a;
  block.MinorAxis = b;
  block.Flattening = (a - b) / a;
  block.EccentricitySquared = 1.0 - (b * b) / (a * a);
  block.Eccentricity = std::sqrt (block.EccentricitySquared);
  block.GroundDeltas = {};
}

csib_Status csib_Read (std::unique_ptr<csib_Block>& block, std::span<const uint8_t> bytes) {
  block.reset ();
  return Guarded ([&] {
    std::unique_ptr<csib_Block> made;
    csib_Status status = csib_Create (made, CSIB_ByName, CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis);
    csib_Bytes in (bytes);
    if (status == CSIB_Ok) status = ReadBlock (*made, in);
    if (status != CSIB_Ok) return status;
    made->Version = writtenVersion;
    block = std::move (made);
    return CSIB_Ok;
  });
}

csib_Status csib_Size (const csib_Block& block, csib_StorageMode mode, std::size_t* size) {
  if (size == nullptr) return CSIB_NoOutput;
  csib_Writer counter;
  const csib_Status status = WriteBlock (block, counter, mode);
  if (status == CSIB_Ok) *size = counter.Position ();
  return status;
}

csib_Status csib_Write (const csib_Block& block, std::span<uint8_t> bytes, csib_StorageMode mode) {
  csib_Writer out (bytes);
  const csib_Status status = WriteBlock (block, out, mode);
  if (status != CSIB_Ok) return status;
  return out.IsGood () ? CSIB_Ok : CSIB_NoOutput;
}

void csib_Free (std::unique_ptr<csib_Block>& block) noexcept { block.reset (); }

csib_Status csib_Clone (std::unique_ptr<csib_Block>& block, const csib_Block& source) {
  return Guarded ([&] {
    std::size_t size = 0;
    csib_Status status = csib_Size (source, CSIB_ByName, &size);
    if (status != CSIB_Ok) return status;
    std::vector<uint8_t> bytes (size);
    status = csib_Write (source, bytes, CSIB_ByName);
    return status == CSIB_Ok ? csib_Read (block, bytes) : status;
  });
}

csib_Status csib_SetDatum (csib_Block& block, uint8_t code, std::span<const uint8_t> parameters) {
  csib_Bytes in (parameters);
  const csib_Status status = Guarded ([&] { return ReadDatum (block, code, in); });
  if (status != CSIB_Ok) DropDatum (block);
  return status;
}

csib_Status csib_SetProjection (csib_Block& block, uint8_t code,
                                std::span<const uint8_t> parameters) {
  csib_Bytes in (parameters);
  const csib_Status status = Guarded ([&] { return ReadProjection (block, code, in); });
  if (status != CSIB_Ok) DropProjection (block);
  return status;
}

csib_Status csib_SetGeoid (csib_Block& block, uint8_t code, std::span<const uint8_t> parameters) {
  csib_Bytes in (parameters);
  const csib_Status status = Guarded ([&] { return ReadGeoid (block, code, in); });
  if (status != CSIB_Ok) DropGeoid (block);
  return status;
}

csib_Status csib_SetShiftGrid (csib_Block& block, std::span<const uint8_t> parameters) {
  csib_Status status = CSIB_Ok;
  csib_Bytes in (parameters);
  if (parameters.data () != nullptr) status = Guarded ([&] { return ReadShiftGrid (block, in); });
  if (parameters.data () == nullptr || status != CSIB_Ok) DropShiftGrid (block);
  return status;
}

csib_Status csib_ReleaseFile (csib_Block& block, std::string_view path) {
  return Guarded ([&] {
    return FirstFailure (block.Datum ? block.Datum->unload (block, path) : CSIB_Ok,
                         block.Projection ? block.Projection->unload (block, path) : CSIB_Ok,
                         block.Geoid ? block.Geoid->unload (block, path) : CSIB_Ok,
                         block.HasShiftGrid ? csib_ShiftUnload (block, path) : CSIB_Ok);
  });
}

csib_Status csib_ReloadFile (csib_Block& block, std::string_view path) {
  block.GroundDeltas = {};  // of the file as it was, or of its absence
  return Guarded ([&] {
    return FirstFailure (block.Datum ? block.Datum->load (block, path) : CSIB_Ok,
                         block.Projection ? block.Projection->load (block, path) : CSIB_Ok,
                         block.Geoid ? block.Geoid->load (block, path) : CSIB_Ok,
                         block.HasShiftGrid ? csib_ShiftLoad (block, path) : CSIB_Ok);
  });
}

}  // namespace clxml
