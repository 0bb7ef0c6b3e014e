// A feature code of a library: comparing, copying, and its kind as flags.
#include "Library/codes/fclfeature.h"

#include <algorithm>
#include <utility>

namespace clxml {
namespace {

constexpr uint32_t Kind2 = 0x1;
constexpr uint32_t Kind1 = 0x4;
constexpr uint32_t Kind1Option = 0x100;

// The bits of the variants of kind 2, in the order in which they are tested.
constexpr struct {
  uint32_t variant;
  uint32_t bit;
} variants[] = {{1, 0x8}, {3, 0x20}, {4, 0x200}, {5, 0x40}, {2, 0x10}};

}  // namespace

bool fclfile_Feature::IsEqual (const fclfile_Feature& other) const {
  return Code == other.Code && Description == other.Description && Kind == other.Kind &&
         KindOption == other.KindOption && KindVariant == other.KindVariant &&
         std::equal (_Attributes.begin (), _Attributes.end (), other._Attributes.begin (),
                     other._Attributes.end (),
                     [] (const auto& a, const auto& b) { return a->IsEqual (*b); });
}

void fclfile_Feature::Assign (const fclfile_Feature& other) {
  if (this == &other) return;
  std::vector<std::unique_ptr<fclfile_Attribute>> attributes;
  attributes.reserve (other._Attributes.size ());
  for (const auto& attribute : other._Attributes)
    attributes.push_back (fclfile_CopyAttribute (*attribute));
  Kind = other.Kind;
  KindOption = other.KindOption;
  KindVariant = other.KindVariant;
  Code = other.Code;
  Description = other.Description;
  _Attributes = std::move (attributes);
}

void fclfile_Feature::AddAttribute (std::unique_ptr<fclfile_Attribute> attribute) {
  if (Assert (attribute != nullptr, "attribute != nullptr"))
    _Attributes.push_back (std::move (attribute));
}

bool fclfile_Feature::GetAttribute (int32_t i, fclfile_Attribute** attribute) {
  if (!attribute || i < 0 || i >= NumberAttributes ()) return false;
  *attribute = _Attributes[static_cast<std::size_t> (i)].get ();
  return true;
}

bool fclfile_Feature::GetAttribute (int32_t i, const fclfile_Attribute** attribute) const {
  if (!attribute || i < 0 || i >= NumberAttributes ()) return false;
  *attribute = _Attributes[static_cast<std::size_t> (i)].get ();
  return true;
}

uint32_t fclfile_Feature::GetFlags () const noexcept {
  if (Kind == 1) return KindOption == 1 ? Kind1 | Kind1Option : Kind1;
  if (Kind != 2) return 0;
  for (const auto& [variant, bit] : variants)
    if (variant == KindVariant) return Kind2 | bit;
  return Kind2;
}

void fclfile_Feature::SetFlags (uint32_t flags) noexcept {
  Kind = KindOption = KindVariant = 0;
  if (flags & Kind2) {
    Kind = 2;
    for (const auto& [variant, bit] : variants) {
      if ((flags & bit) == 0) continue;
      KindVariant = variant;
      break;
    }
  } else if (flags & Kind1) {
    Kind = 1;
    KindOption = flags & Kind1Option ? 1 : 0;
  }
}

}  // namespace clxml
