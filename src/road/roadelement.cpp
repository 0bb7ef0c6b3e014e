// The owning list of road elements.
// Copies by cloning and keeps null and foreign elements out. Leans on growinglist.
#include "road/roadelement.h"

namespace clxml {

RoadElementArray::RoadElementArray (const RoadElementArray& other) { CloneFrom (other); }

RoadElementArray& RoadElementArray::operator= (const RoadElementArray& other) {
  if (this == &other) return *this;
  Clear ();
  CloneFrom (other);
  return *this;
}

void RoadElementArray::CloneFrom (const RoadElementArray& other) {
  _Elements.Allocate (other.Count ());
  for (const auto& element : other._Elements) _Elements.Add (element->Clone ());
}

std::unique_ptr<RoadElementArray> RoadElementArray::Clone () const {
  return std::make_unique<RoadElementArray> (*this);
}

const RoadElement* RoadElementArray::Element (int i) const noexcept {
  const auto* slot = _Elements.At (i);
  return slot != nullptr ? slot->get () : nullptr;
}

RoadElement* RoadElementArray::Element (int i) noexcept {
  auto* slot = _Elements.At (i);
  return slot != nullptr ? slot->get () : nullptr;
}

bool RoadElementArray::IsTaken (const RoadElement* element) const {
  return Assert (element != nullptr, "element != NULL") &&
         Assert (Takes (element->ElementType ()), "Takes (element->ElementType ())");
}

bool RoadElementArray::AddElement (std::unique_ptr<RoadElement> element) {
  return IsTaken (element.get ()) && _Elements.Add (std::move (element));
}

bool RoadElementArray::InsertElement (int ndx, std::unique_ptr<RoadElement> element) {
  return IsTaken (element.get ()) && _Elements.Insert (ndx, std::move (element));
}

bool RoadElementArray::ReplaceElement (int ndx, std::unique_ptr<RoadElement> element) {
  if (!IsTaken (element.get ()) || !Assert (ndx >= 0, "ndx >= 0") ||
      !Assert (ndx < Count (), "ndx < count"))
    return false;
  _Elements.Replace (ndx, std::move (element));
  return true;
}

}  // namespace clxml
