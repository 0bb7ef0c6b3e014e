// The list of feature codes: comparing, finding, ordering.
#include "Library/codes/fcllibrary.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace clxml {
namespace {

// a < b in upper case, by byte values.
bool IsBelow (std::string_view a, std::string_view b) noexcept {
  return std::lexicographical_compare (a.begin (), a.end (), b.begin (), b.end (),
                                       [] (char x, char y) {
                                         return static_cast<unsigned char> (text_ToUpper (x)) <
                                                static_cast<unsigned char> (text_ToUpper (y));
                                       });
}

}  // namespace

bool featureCode_Library::IsEqualBase (const featureCode_Library& other) const {
  return FormatVersion == other.FormatVersion &&
         std::equal (_Features.begin (), _Features.end (), other._Features.begin (),
                     other._Features.end (),
                     [] (const auto& a, const auto& b) { return a->IsEqual (*b); });
}

featureCode_Status featureCode_Library::Load (const Str&) {
  Assert (false, "!\"featureCode_Library::Load\"");
  return FEATURECODE_CannotOpen;
}

featureCode_Status featureCode_Library::Save (const Str&) const {
  Assert (false, "!\"featureCode_Library::Save\"");
  return FEATURECODE_WriteFailed;
}

bool featureCode_Library::Accepts (int32_t) const { return true; }

bool featureCode_Library::IsIndex (int32_t i) const {
  return i >= 0 && static_cast<std::size_t> (i) < _Features.size ();
}

int32_t featureCode_Library::Delete (int32_t n) {
  Assert (n > -1, "n > -1");
  Assert (n < Count (), "n < this->NumberFeatures");
  if (IsIndex (n)) _Features.erase (_Features.begin () + n);
  return Count ();
}

bool featureCode_Library::Insert (const fclfile_Feature& feature, int32_t& position) {
  auto copy = std::make_unique<fclfile_Feature> ();
  copy->Assign (feature);
  const auto place = std::find_if_not (
      _Features.begin (), _Features.end (),
      [&copy] (const auto& held) { return IsBelow (held->Code.View (), copy->Code.View ()); });
  position = static_cast<int32_t> (place - _Features.begin ());
  _Features.insert (place, std::move (copy));
  return true;
}

fclfile_Feature* featureCode_Library::At (int32_t i) {
  return const_cast<fclfile_Feature*> (std::as_const (*this).At (i));
}

const fclfile_Feature* featureCode_Library::At (int32_t i) const {
  Assert (i > -1, "i > -1");
  Assert (i < Count (), "i < this->NumberFeatures");
  return IsIndex (i) ? _Features[static_cast<std::size_t> (i)].get () : nullptr;
}

bool featureCode_Library::Get (int32_t i, fclfile_Feature** feature) {
  if (!feature || !IsIndex (i)) return false;
  *feature = _Features[static_cast<std::size_t> (i)].get ();
  return true;
}

bool featureCode_Library::Find (const Str& code, int32_t& position) const {
  const auto place =
      std::find_if (_Features.begin (), _Features.end (),
                    [&code] (const auto& held) { return held->Code.EqualInsensitive (code); });
  position = static_cast<int32_t> (place - _Features.begin ());
  return place != _Features.end ();
}

bool featureCode_Library::HasAttributes () const {
  return std::any_of (_Features.begin (), _Features.end (),
                      [] (const auto& held) { return held->NumberAttributes () > 0; });
}

void featureCode_Library::Sort () {
  std::stable_sort (_Features.begin (), _Features.end (), [] (const auto& a, const auto& b) {
    return IsBelow (a->Code.View (), b->Code.View ());
  });
}

bool featureCode_Library::Reserve (int32_t extra) {
  if (extra < 0) return false;
  try {
    _Features.reserve (_Features.size () + static_cast<std::size_t> (extra));
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
}

void featureCode_Library::Append (std::unique_ptr<fclfile_Feature> feature) {
  if (Assert (feature != nullptr, "feature != nullptr")) _Features.push_back (std::move (feature));
}

}  // namespace clxml
