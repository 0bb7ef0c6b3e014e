// The table from an exchange file's record numbers to the records of the job.
// Filled while elements are read, asked when all are stored. Leans on dbField.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Library/records/dbField.h"

namespace clxml {

/// Which number became which record. Eight bytes an entry, in the order of entering; the first
/// look-up puts them in order once, so that a look-up is a search over neighbours of the one before
/// and at worst some twenty steps. No choice of numbers makes it slower: there are no chains to
/// fill.
class ReferenceTable {
 public:
  /// Adds an entry; a later one of the same number hides it.
  void Add (uint32_t number, DBID id);
  /// The record last entered for the number, or NODBID.
  DBID Find (uint32_t number) const;
  std::size_t Count () const noexcept { return _Entries.size (); }

 private:
  struct Entry {
    uint32_t number;
    DBID id;
  };
  void Sort () const;

  mutable std::vector<Entry> _Entries;
  mutable bool _IsSorted = true;  // numbers ascend, each stands once
  mutable std::size_t _Last = 0;  // where the last look-up ended
};

}  // namespace clxml
