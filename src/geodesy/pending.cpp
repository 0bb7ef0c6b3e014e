// Weak stand-ins for the tables and stages that are still being written, so that the library links.
// Every one of them is gone with its first real definition; this file goes with the last.
#include "geodesy/gridded.h"

namespace clxml {

[[gnu::weak]] extern const csib_DatumOperations csib_EmbeddedGridDatum = {};
[[gnu::weak]] extern const csib_DatumOperations csib_CombinedGridDatum = {};
[[gnu::weak]] extern const csib_GeoidOperations csib_GeoidGridGeoid = {};

[[gnu::weak]] const csib_ProjectionOperations* csib_ProjectionTable (uint8_t) noexcept {
  return nullptr;
}
[[gnu::weak]] csib_Status csib_ShiftRead (csib_Block&, csib_Bytes&) { return CSIB_WrongFormat; }
[[gnu::weak]] csib_Status csib_ShiftUnload (csib_Block&, std::string_view) { return CSIB_Ok; }
[[gnu::weak]] csib_Status csib_ShiftLoad (csib_Block&, std::string_view) { return CSIB_Ok; }
[[gnu::weak]] csib_Status csib_ShiftWrite (const csib_Block&, csib_Writer&, csib_StorageMode) {
  return CSIB_WrongFormat;
}
[[gnu::weak]] csib_Status csib_ShiftSize (const csib_Block&, csib_StorageMode, std::size_t&) {
  return CSIB_WrongFormat;
}
[[gnu::weak]] csib_Status csib_ShiftForward (csib_Block&, csib_Grid&) { return CSIB_Ok; }
[[gnu::weak]] csib_Status csib_ShiftInverse (csib_Block&, csib_Grid&) { return CSIB_Ok; }

}  // namespace clxml
