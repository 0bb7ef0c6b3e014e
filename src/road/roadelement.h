// What all elements of a road have in common, and the lists that own them.
// The frame of the alignments, templates, placements and stations of a road: type numbers, copies,
// comparison and checked downcasts. Leans on growinglist.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <utility>

#include "road/growinglist.h"

namespace clxml {

/// The class of a road element.
enum RoadElementType : int32_t {
  ROAD_HorizontalArc = 1,
  ROAD_HorizontalStraight = 2,
  ROAD_HorizontalStartPoint = 3,
  ROAD_HorizontalExitSpiral = 4,
  ROAD_HorizontalEntrySpiral = 5,
  ROAD_VerticalArc = 6,
  ROAD_VerticalPoint = 7,
  ROAD_VerticalParabola = 8,
  ROAD_VerticalAsymmetricParabola = 9,
  ROAD_SidedTemplatePlacement = 10,
  ROAD_SuperElevationWidening = 11,
  ROAD_TemplateDistanceGrade = 12,
  ROAD_TemplateDistanceDelta = 13,
  ROAD_TemplateSideSlope = 14,
  ROAD_ChainageElement = 15,
};

/// One element of a road. Numbers that are missing are null; a null radius is a straight line.
/// The operations that read and write an element of a road file stand with that file.
class RoadElement {
 public:
  virtual ~RoadElement () = default;

  /// Fixed by the class.
  RoadElementType ElementType () const noexcept { return _ElementType; }
  /// True when type and all stored fields are equal, numbers by plain ==, so that null equals null.
  virtual bool Equals (const RoadElement& other) const = 0;
  /// Takes all fields of an element of the same class; false, and nothing changes, for another.
  virtual bool Assign (const RoadElement& other) = 0;
  virtual std::unique_ptr<RoadElement> Clone () const = 0;

 protected:
  explicit RoadElement (RoadElementType type) noexcept : _ElementType (type) {}
  RoadElement (const RoadElement&) = default;
  // The class stays: two families' shared fields may be copied between their classes.
  RoadElement& operator= (const RoadElement&) noexcept { return *this; }
  friend bool operator== (const RoadElement& a, const RoadElement& b) noexcept {
    return a._ElementType == b._ElementType;
  }

 private:
  RoadElementType _ElementType;
};

/// The element itself if it is a T, a class or a family, otherwise null; null gives null. T tells
/// by its static IsType (RoadElementType) which elements it holds.
template <class T>
T* RoadElement_Cast (RoadElement* element) noexcept {
  return element != nullptr && T::IsType (element->ElementType ()) ? static_cast<T*> (element)
                                                                   : nullptr;
}
template <class T>
const T* RoadElement_Cast (const RoadElement* element) noexcept {
  return element != nullptr && T::IsType (element->ElementType ()) ? static_cast<const T*> (element)
                                                                   : nullptr;
}

/// What a concrete class T with the number Type adds to its family Base: the operations of
/// RoadElement, from T's copying and its operator==.
template <class T, RoadElementType Type, class Base = RoadElement>
class RoadElementOf : public Base {
 public:
  static constexpr bool IsType (RoadElementType type) noexcept { return type == Type; }

  bool Equals (const RoadElement& other) const override {
    const T* same = RoadElement_Cast<T> (&other);
    return same != nullptr && static_cast<const T&> (*this) == *same;
  }
  bool Assign (const RoadElement& other) override {
    const T* same = RoadElement_Cast<T> (&other);
    if (same != nullptr) static_cast<T&> (*this) = *same;
    return same != nullptr;
  }
  std::unique_ptr<RoadElement> Clone () const override {
    return std::make_unique<T> (static_cast<const T&> (*this));
  }

 protected:
  RoadElementOf () noexcept : Base (Type) {}
  friend bool operator== (const RoadElementOf& a, const RoadElementOf& b) {
    return static_cast<const Base&> (a) == static_cast<const Base&> (b);
  }
};

/// An owning list of road elements. It grows from 0 to 20 slots and then to four times as many;
/// copying clones each element. An index outside the list is a programming fault: it is asserted,
/// and then nothing happens. A null element is not taken.
class RoadElementArray {
 public:
  RoadElementArray () = default;
  RoadElementArray (const RoadElementArray& other);
  RoadElementArray (RoadElementArray&& other) noexcept = default;
  RoadElementArray& operator= (const RoadElementArray& other);
  RoadElementArray& operator= (RoadElementArray&& other) noexcept = default;
  virtual ~RoadElementArray () = default;

  /// A copy of the list's own class.
  virtual std::unique_ptr<RoadElementArray> Clone () const;

  int Count () const noexcept { return _Elements.Count (); }
  /// Slots allocated.
  int Size () const noexcept { return _Elements.Size (); }
  bool IsEmpty () const noexcept { return Count () == 0; }

  /// Makes n slots in an empty list; asserts "size == 0".
  void Allocate (int n) { _Elements.Allocate (n); }
  /// Asserts "i >= 0" and "i < count"; null outside the list.
  const RoadElement* Element (int i) const noexcept;
  RoadElement* Element (int i) noexcept;
  /// Asserts "ndx >= 0" and "ndx < count".
  void Delete (int ndx) { _Elements.Delete (ndx); }
  void Clear () noexcept { _Elements.Clear (); }

 protected:
  // Whether the list may hold elements of that class.
  virtual bool Takes (RoadElementType) const noexcept { return true; }

  // All asserted and without effect for a null element or one of a class that the list does not
  // take; false then, and when memory runs out.
  bool AddElement (std::unique_ptr<RoadElement> element);
  bool InsertElement (int ndx, std::unique_ptr<RoadElement> element);
  bool ReplaceElement (int ndx, std::unique_ptr<RoadElement> element);

  GrowingList<std::unique_ptr<RoadElement>> _Elements;

 private:
  bool IsTaken (const RoadElement* element) const;
  void CloneFrom (const RoadElementArray& other);
};

/// A list whose elements are all a T, a class or a family. Self is the list's own class.
template <class T, class Self>
class RoadElementArrayOf : public RoadElementArray {
 public:
  std::unique_ptr<RoadElementArray> Clone () const override {
    return std::make_unique<Self> (static_cast<const Self&> (*this));
  }

  /// The element at i; asserts "i >= 0" and "i < count", null outside the list.
  const T* At (int i) const noexcept { return static_cast<const T*> (Element (i)); }
  T* At (int i) noexcept { return static_cast<T*> (Element (i)); }
  /// The last element, null in an empty list.
  const T* Last () const noexcept { return IsEmpty () ? nullptr : At (Count () - 1); }
  T* Last () noexcept { return IsEmpty () ? nullptr : At (Count () - 1); }

  /// Takes the element as the last one. False when it is null or memory runs out.
  bool Add (std::unique_ptr<T> element) { return AddElement (std::move (element)); }
  /// Adds a new element made from the arguments and gives it; null when memory runs out.
  template <class E = T, class... Arguments>
  requires std::derived_from<E, T> E* New (Arguments&&... arguments) {
    auto element = std::make_unique<E> (std::forward<Arguments> (arguments)...);
    E* added = element.get ();
    return AddElement (std::move (element)) ? added : nullptr;
  }
  /// Puts the element before the one at ndx, or last: asserts "ndx >= 0" and "ndx <= count".
  bool Insert (int ndx, std::unique_ptr<T> element) {
    return InsertElement (ndx, std::move (element));
  }
  /// Puts the element in the place of the one at ndx: asserts "ndx >= 0" and "ndx < count".
  bool Replace (int ndx, std::unique_ptr<T> element) {
    return ReplaceElement (ndx, std::move (element));
  }
  /// The same for the last element; asserts "size != 0" and "elements[count-1] != NULL".
  bool ReplaceLast (std::unique_ptr<T> element) {
    if (!Assert (Size () != 0, "size != 0") || !Assert (!IsEmpty (), "elements[count-1] != NULL"))
      return false;
    return ReplaceElement (Count () - 1, std::move (element));
  }
  /// Empties the list and takes a clone of each element of the other list that this one may hold;
  /// elements of other classes are left out.
  void TakeFrom (const RoadElementArray& other) {
    if (static_cast<const RoadElementArray*> (this) == &other) return;
    Clear ();
    for (int i = 0; i < other.Count (); i++)
      if (T::IsType (other.Element (i)->ElementType ())) AddElement (other.Element (i)->Clone ());
  }

 protected:
  bool Takes (RoadElementType type) const noexcept override { return T::IsType (type); }
};

/// One group of road elements as an exchange file brings it, of whatever classes.
class CachedAlignment final : public RoadElementArray {
 public:
  Str CacheType;  ///< "Horizontal", "Vertical", "TemplatePlacement" or "SuperWidening"
  Str ID;         ///< the group's identifier

  std::unique_ptr<RoadElementArray> Clone () const override {
    return std::make_unique<CachedAlignment> (*this);
  }
  /// Takes the element as the last one. False when it is null or memory runs out.
  bool Add (std::unique_ptr<RoadElement> element) { return AddElement (std::move (element)); }
};

}  // namespace clxml
