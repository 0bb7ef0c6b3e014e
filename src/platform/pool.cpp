// Memory for the many small objects of one owner: where its chunks come from.
#include "platform/pool.h"

#include <algorithm>
#include <new>

#include "platform/os.h"

namespace clxml {
namespace {

// A pool grows by regions twice as large as the one before, so that a small job takes little and a
// large one is served in pages that the system maps at once.
constexpr std::size_t largestRegion = 2097152;

}  // namespace

thread_local constinit Pool* Pool::_Current = nullptr;

void Pool::NextChunk () {
  if (_NextChunk == _RegionEnd) {
    const std::size_t size =
        _Regions.empty () ? ChunkSize : std::min (2 * _Regions.back ().size, largestRegion);
    _Regions.reserve (_Regions.size () + 1);
    void* place = os_AllocatePages (size);
    if (!place) throw std::bad_alloc ();
    _Regions.push_back ({place, size});
    _NextChunk = static_cast<uint8_t*> (place);
    _RegionEnd = _NextChunk + size;
  }
  uint8_t* chunk = _NextChunk;
  _NextChunk += ChunkSize;
  *reinterpret_cast<Pool**> (chunk) = this;
  _At = chunk + HeadSize;
  _End = chunk + ChunkSize;
  Shut (_At, static_cast<std::size_t> (_End - _At));
}

void Pool::Clear () noexcept {
  for (const Region& region : _Regions) {
    Opened (region.place, region.size);
    os_FreePages (region.place, region.size);
  }
  _Regions.clear ();
  _At = _End = _NextChunk = _RegionEnd = nullptr;
  _Free.fill (nullptr);
}

std::size_t Pool::Size () const noexcept {
  std::size_t size = 0;
  for (const Region& region : _Regions) size += region.size;
  return size;
}

}  // namespace clxml
