// The table from an exchange file's record numbers to the records of the job: order and search.
// Leans on nothing but the standard library.
#include "import/reftable.h"

#include <algorithm>

namespace clxml {

void ReferenceTable::Add (uint32_t number, DBID id) {
  if (!_Entries.empty () && number <= _Entries.back ().number) _IsSorted = false;
  _Entries.push_back ({number, id});
}

// Writers number their records upwards, so that there is mostly nothing to do.
void ReferenceTable::Sort () const {
  std::stable_sort (_Entries.begin (), _Entries.end (),
                    [] (const Entry& a, const Entry& b) { return a.number < b.number; });
  std::size_t kept = 0;
  for (const Entry& entry : _Entries) {
    if (kept > 0 && _Entries[kept - 1].number == entry.number) kept--;
    _Entries[kept++] = entry;
  }
  _Entries.resize (kept);
  _IsSorted = true;
  _Last = 0;
}

DBID ReferenceTable::Find (uint32_t number) const {
  if (!_IsSorted) Sort ();
  // References point to records near by: widen the range around the last answer until it holds
  // the number, then halve it.
  const std::size_t count = _Entries.size ();
  std::size_t low = std::min (_Last, count);  // entries below low are smaller than number
  std::size_t high = low;                     // entries from high on are not
  for (std::size_t step = 1; high < count && _Entries[high].number < number; step *= 2) {
    low = high + 1;
    high = count - high > step ? high + step : count;
  }
  for (std::size_t step = 1; low > 0 && _Entries[low - 1].number >= number; step *= 2) {
    high = low - 1;
    low = low > step ? low - step : 0;
  }
  const auto first = _Entries.begin () + static_cast<std::ptrdiff_t> (low);
  const auto last = _Entries.begin () + static_cast<std::ptrdiff_t> (high);
  const auto found = std::lower_bound (
      first, last, number, [] (const Entry& entry, uint32_t n) { return entry.number < n; });
  _Last = static_cast<std::size_t> (found - _Entries.begin ());
  return _Last < count && _Entries[_Last].number == number ? _Entries[_Last].id : NODBID;
}

}  // namespace clxml
