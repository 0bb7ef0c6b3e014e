// An owning array of files.
// The result of a directory search, with its three orders. Leans on file.
#include <algorithm>

#include "Kernel/text.h"
#include "platform/file.h"

namespace clxml {

namespace {

Str FoldedName (const file_Class& file) {
  Str name = file.GetNameAndExtension ();
  name.MakeLower ();
  return name;
}

/// What an index outside the array refers to.
file_Class& NoFile () {
  static thread_local std::unique_ptr<file_Class> none;
  none = std::make_unique<file_Class> ();
  return *none;
}

}  // namespace

file_Array::file_Array (const file_Array& other) { Append (other); }

file_Array& file_Array::operator= (const file_Array& other) {
  if (this != &other) *this = file_Array (other);
  return *this;
}

void file_Array::Reserve (std::size_t n) {
  if (n > _Array.capacity ()) _Array.reserve (std::max (n + 16, _Array.size () * 2));
}

file_Class& file_Array::operator[] (int index) {
  if (!Assert (index >= 0 && index < Count (), "Index < _Count")) return NoFile ();
  return *_Array[static_cast<std::size_t> (index)];
}

const file_Class& file_Array::operator[] (int index) const {
  if (!Assert (index >= 0 && index < Count (), "Index < _Count")) return NoFile ();
  return *_Array[static_cast<std::size_t> (index)];
}

void file_Array::Add (const file_Class& file) {
  Reserve (_Array.size () + 1);
  _Array.push_back (std::make_unique<file_Class> (file));
}

void file_Array::Append (const file_Array& other) {
  const std::size_t count = other._Array.size ();  // of the array itself it is doubled
  Reserve (_Array.size () + count);
  for (std::size_t i = 0; i < count; ++i)
    _Array.push_back (std::make_unique<file_Class> (*other._Array[i]));
}

void file_Array::RemoveAt (int index) {
  if (!Assert (index >= 0 && index < Count (), "index < _Count")) return;
  _Array.erase (_Array.begin () + index);
}

void file_Array::SortByName () {
  std::stable_sort (_Array.begin (), _Array.end (), [] (const auto& a, const auto& b) {
    return FoldedName (*a) < FoldedName (*b);
  });
}

void file_Array::SortByFolder () {
  std::stable_sort (_Array.begin (), _Array.end (),
                    [] (const auto& a, const auto& b) { return a->Folder.Type < b->Folder.Type; });
}

void file_Array::SortByTime () {
  for (const auto& file : _Array)
    if (file->TimeStamp == 0.0) file->GetTimeStamp ();
  std::stable_sort (_Array.begin (), _Array.end (),
                    [] (const auto& a, const auto& b) { return a->TimeStamp > b->TimeStamp; });
}

}  // namespace clxml
