// Grid files for tests, made byte by byte from values.
// Every element, order, direction, byte order, method and flag of the format, and the three files
// that bundle grids. Leans on geodesy/combined for the header of a combined datum grid.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "geodesy/combined.h"

namespace clxml::testing {

/// Numbers put one behind the other, in either byte order.
struct GridBytes {
  explicit GridBytes (bool bigEndian) : isTurned (bigEndian == (ENDIAN_Native == ENDIAN_Little)) {}
  template <class T>
  GridBytes& Put (T value, std::size_t size = sizeof (T)) {
    std::string bytes (reinterpret_cast<const char*> (&value), sizeof value);
    bytes.resize (size, '\x5A');
    if (isTurned) std::reverse (bytes.begin (), bytes.end ());
    text += bytes;
    return *this;
  }
  GridBytes& Text (std::string_view value, std::size_t size) {
    text.append (value).append (size - value.size (), '\0');
    return *this;
  }
  bool isTurned;
  std::string text;
};

/// A grid to be: what its header says, and a value for each node.
struct GridFile {
  using Values = std::function<double (int row, int column)>;

  double latMin = 0.0;
  double lonMin = 0.0;
  double latSpacing = 1.0;
  double lonSpacing = 1.0;
  int rows = 2;
  int columns = 2;
  Values value = [] (int, int) { return 0.0; };  ///< row 0 in the south, column 0 in the west
  int element = 4;                               ///< code 0 to 5
  uint8_t method = 2;                            ///< method flags
  uint16_t order = 2;
  uint8_t flags = 0;
  double nullValue = 9999.0;
  double divisor = 1.0;  ///< what is stored is the value times this where flag 2 is set
  bool rowsAscend = true;
  bool columnsAscend = true;
  bool bigEndian = false;

  double LatMax () const { return latMin + (rows - 1) * latSpacing; }
  double LonMax () const { return lonMin + (columns - 1) * lonSpacing; }
  bool ByColumns () const { return (flags & 64) != 0; }

  /// The value of a node as it comes back from its element.
  double Stored (int row, int column) const {
    const double factor = (flags & 2) != 0 ? divisor : 1.0;
    const double scaled = value (row, column) * factor;
    if (element <= 2) return std::round (scaled) / factor;
    if (element == 3) return static_cast<double> (static_cast<float> (scaled)) / factor;
    return scaled / factor;
  }

  std::string Bytes () const {
    GridBytes out (bigEndian);
    out.Put<uint16_t> (0).Text ("QRV GRID FILE", 14).Text ("a grid of the tests", 32);
    for (const double number : {latMin, LatMax (), lonMin, LonMax (), latSpacing, lonSpacing})
      out.Put (number);
    out.Put<int32_t> (rows).Put<int32_t> (columns);
    for (const double number : {1.5, 2.5, nullValue, divisor}) out.Put (number);
    out.Put (order).Put (flags).Put<uint8_t> (0).Put (method);
    out.Put (static_cast<uint8_t> (1 << element));
    const uint8_t outer = ByColumns () ? columnsAscend : rowsAscend;
    const uint8_t inner = ByColumns () ? rowsAscend : columnsAscend;
    out.Put<uint8_t> (outer | 0x10).Put<uint8_t> (inner | 0x20).Put<uint16_t> (0);
    const int outerNodes = ByColumns () ? columns : rows;
    const int innerNodes = ByColumns () ? rows : columns;
    for (int i = 0; i < outerNodes; i++)
      for (int j = 0; j < innerNodes; j++) {
        const int o = outer ? i : outerNodes - 1 - i;
        const int n = inner ? j : innerNodes - 1 - j;
        PutElement (out, ByColumns () ? value (n, o) : value (o, n));
      }
    return out.text;
  }

 private:
  void PutElement (GridBytes& out, double number) const {
    if ((flags & 2) != 0) number *= divisor;
    switch (element) {
      case 0:
        out.Put (static_cast<int8_t> (std::round (number)));
        break;
      case 1:
        out.Put (static_cast<int16_t> (std::round (number)));
        break;
      case 2:
        out.Put (static_cast<int32_t> (std::round (number)));
        break;
      case 3:
        out.Put (static_cast<float> (number));
        break;
      case 4:
        out.Put (number);
        break;
      default:
        out.Put (number, 10);
        break;
    }
  }
};

/// A grid inside a block: its name, the file's bytes and the spare ones.
inline std::string EmbeddedGrid (const std::string& name, const std::string& grid) {
  return name + '\0' + grid + std::string (16, '\0');
}

/// A combined datum grid with one set: latitude, longitude and, when it is given, height.
inline std::string CombinedDatumGrid (const std::vector<std::string>& grids, bool bigEndian = false,
                                      double a = 6377563.396, double inverseFlattening = 299.3249) {
  const ENDIAN order = bigEndian ? ENDIAN_Big : ENDIAN_Little;
  const uint16_t type = grids.size () == 3 ? 2 : 1;
  uint32_t place = 61 + static_cast<uint32_t> (datum_CDGSetSize (type));
  std::array<uint32_t, 3> offsets = {};
  std::string body;
  for (std::size_t i = 0; i < grids.size (); i++) {
    offsets[i] = place + static_cast<uint32_t> (body.size ());
    body += grids[i];
  }
  OutBuffer out (order);
  datum_WriteCDGHeader (out, "model",
                        {{type, offsets[0], offsets[1], offsets[2], "lat.gri", "lon.gri", "h.gri",
                          a, inverseFlattening}});
  return std::string (reinterpret_cast<const char*> (out.Data ()),
                      static_cast<std::size_t> (out.Length ())) +
         body;
}

/// A combined projection grid or a projection shift grid.
inline std::string GridPair (std::string_view signature, const std::string& north,
                             const std::string& east, bool bigEndian = false) {
  GridBytes out (bigEndian);
  const auto head = static_cast<uint32_t> (4 + signature.size () + 1 + 8);
  out.Put<uint32_t> (1).Text (signature, signature.size () + 1).Put (head);
  out.Put (head + static_cast<uint32_t> (north.size ()));
  return out.text + north + east;
}

inline void PutFile (const std::string& hostPath, std::string_view bytes) {
  std::ofstream (hostPath, std::ios::binary) << bytes;
}

}  // namespace clxml::testing
