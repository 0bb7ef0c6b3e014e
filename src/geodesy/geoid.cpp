// The geoid's table of operations by code, and the two kinds that need no grid.
// For the block. Leans on csib, and on gridded for the code that stands on a grid.
#include <array>

#include "geodesy/csib.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

// Rows of doubles, as they stand in the bytes: code 2 has seven, code 3 the separation.
template <std::size_t n>
struct GeoidValues final : csib_Data {
  std::array<double, n> Values{};
};

template <std::size_t n>
const std::array<double, n>& Values (const csib_Block& block) noexcept {
  return static_cast<const GeoidValues<n>&> (*block.GeoidData).Values;
}

template <std::size_t n>
csib_Status Read (csib_Block& block, csib_Bytes& in) {
  auto data = std::make_unique<GeoidValues<n>> ();
  for (double& value : data->Values) value = in.Known ();
  block.GeoidData = std::move (data);
  return in.Status ();
}

csib_Status NoFile (csib_Block&, std::string_view) { return CSIB_Ok; }

void Free (csib_Block& block) { block.GeoidData.reset (); }

template <std::size_t n>
csib_Status Write (const csib_Block& block, csib_Writer& out, csib_StorageMode) {
  for (const double value : Values<n> (block)) out.Double (value);
  return CSIB_Ok;
}

template <std::size_t n>
csib_Status Parameters (const csib_Block& block, std::vector<uint8_t>& out) {
  out.resize (n * sizeof (double));
  csib_Writer writer (out);
  return Write<n> (block, writer, CSIB_ByName);
}

template <std::size_t n>
csib_Status Size (const csib_Block&, csib_StorageMode, std::size_t& out) {
  out = n * sizeof (double);
  return CSIB_Ok;
}

// The seven values have the meaning of a datum's, but which surface they carry to the geoid is
// written nowhere; a height by a guess would be worse than none.
csib_Status UnknownSeparation (csib_Block&, const csib_Geodetic&, double&) {
  return CSIB_NoSeparationOperation;
}

csib_Status ConstantSeparation (csib_Block& block, const csib_Geodetic&, double& out) {
  out = Values<1> (block)[0];
  return CSIB_Ok;
}

constexpr csib_GeoidOperations plane = {Read<7>,           NoFile,        NoFile, Free, Write<7>,
                                        UnknownSeparation, Parameters<7>, Size<7>};

constexpr csib_GeoidOperations constant = {
    Read<1>, NoFile, NoFile, Free, Write<1>, ConstantSeparation, Parameters<1>, Size<1>};

}  // namespace

const csib_GeoidOperations* csib_GeoidTable (uint8_t code) noexcept {
  switch (code) {
    case CSIB_GeoidGrid:
      return &csib_GeoidGridGeoid;
    case CSIB_GeoidPlane:
      return &plane;
    case CSIB_ConstantSeparation:
      return &constant;
    default:
      return nullptr;
  }
}

}  // namespace clxml
