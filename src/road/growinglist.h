// A list that owns what it holds and grows in big steps.
// Road elements, cross-section templates and what the capture gathers stand in such lists. Leans on
// str for assertions and on the standard library.
#pragma once

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "str.h"

namespace clxml {

/// An array of T with a capacity of its own count: it grows from 0 to 20 slots and then to four
/// times as many. T is moved when the array grows, so what must keep its address stands behind a
/// std::unique_ptr. Indexes outside the array are a programming fault: they are asserted, and then
/// nothing happens. Where memory runs out the list stays as it was and the element is not added.
template <class T>
class GrowingList {
 public:
  GrowingList () = default;
  GrowingList (const GrowingList& other) { *this = other; }
  GrowingList (GrowingList&& other) noexcept
      : _Elements (std::move (other._Elements)), _Size (std::exchange (other._Size, 0)) {
    other._Elements.clear ();
  }
  /// Allocates exactly as many slots as the other has elements.
  GrowingList& operator= (const GrowingList& other) {
    if (this == &other) return *this;
    std::vector<T> copy;
    copy.reserve (other._Elements.size ());
    copy.insert (copy.end (), other._Elements.begin (), other._Elements.end ());
    _Elements = std::move (copy);
    _Size = Count ();
    return *this;
  }
  GrowingList& operator= (GrowingList&& other) noexcept {
    _Elements = std::move (other._Elements);
    other._Elements.clear ();
    _Size = std::exchange (other._Size, 0);
    return *this;
  }

  int Count () const noexcept { return static_cast<int> (_Elements.size ()); }
  /// Slots allocated.
  int Size () const noexcept { return _Size; }

  /// Makes n empty slots, for n > 0; asserts "size == 0" and then leaves a list that has slots as
  /// it is. False when memory runs out.
  bool Allocate (int n) {
    if (n <= 0 || !Assert (_Size == 0, "size == 0")) return true;
    return Resize (n);
  }
  /// False when memory runs out.
  bool Add (T element) {
    if (Count () >= _Size && !Resize (Grown ())) return false;
    _Elements.push_back (std::move (element));
    return true;
  }
  /// Puts an element before the one at ndx, or last; asserts "ndx >= 0" and "ndx <= count". It
  /// keeps one slot more free than Add. False when memory runs out or ndx is outside.
  bool Insert (int ndx, T element) {
    if (!Assert (ndx >= 0, "ndx >= 0") || !Assert (ndx <= Count (), "ndx <= count")) return false;
    if (Count () + 1 >= _Size && !Resize (Grown ())) return false;
    _Elements.insert (_Elements.begin () + ndx, std::move (element));
    return true;
  }
  /// Asserts "ndx >= 0" and "ndx < count".
  void Delete (int ndx) {
    if (IsIndex (ndx)) _Elements.erase (_Elements.begin () + ndx);
  }
  /// Asserts "ndx >= 0" and "ndx < count".
  void Replace (int ndx, T element) {
    if (IsIndex (ndx)) _Elements[static_cast<std::size_t> (ndx)] = std::move (element);
  }
  /// Asserts "i >= 0" and "i < count"; null outside the list.
  T* At (int i) noexcept { return const_cast<T*> (std::as_const (*this).At (i)); }
  const T* At (int i) const noexcept {
    if (!Assert (i >= 0, "i >= 0") || !Assert (i < Count (), "i < count")) return nullptr;
    return &_Elements[static_cast<std::size_t> (i)];
  }
  /// Frees elements and slots.
  void Clear () noexcept {
    std::vector<T> ().swap (_Elements);
    _Size = 0;
  }

  auto begin () noexcept { return _Elements.begin (); }
  auto end () noexcept { return _Elements.end (); }
  auto begin () const noexcept { return _Elements.begin (); }
  auto end () const noexcept { return _Elements.end (); }

 private:
  bool IsIndex (int ndx) const noexcept {
    return Assert (ndx >= 0, "ndx >= 0") && Assert (ndx < Count (), "ndx < count");
  }
  int Grown () const noexcept { return _Size == 0 ? 20 : _Size > MaximumSize / 4 ? 0 : 4 * _Size; }
  bool Resize (int size) {
    if (size == 0) return false;
    try {
      _Elements.reserve (static_cast<std::size_t> (size));
    } catch (const std::bad_alloc&) {
      return false;
    }
    _Size = size;
    return true;
  }

  static constexpr int MaximumSize = 0x7FFFFFFF;

  std::vector<T> _Elements;
  int _Size = 0;
};

}  // namespace clxml
