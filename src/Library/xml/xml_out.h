// XML as we write it: the forms of numbers, and the tree that becomes a file.
// The road file writer gives every value in one of these forms and builds its file of these nodes.
// Leans on text and maths, and on platform/file for the file.
#pragma once

#include <memory>

#include "str.h"

namespace clxml {

class file_Class;

/// A number in at most 14 digits: below 1.0 (absolute) 14 decimals without trailing zeros, "0" for
/// what rounds to it, otherwise as printf "%.14G". Empty for null and for what is not finite, as
/// are the other two forms.
Str xml_DoubleText (double value);
/// An angle in radians as decimal degrees; within 5e-13 of a full circle it is 0. Empty for null.
Str xml_AngleText (double value);
/// A grade held as an angle in radians, as a percentage: the tangent times 100; negate changes the
/// sign of the angle first. Empty for null.
Str xml_GradeText (double value, bool negate);
/// "true" or "false".
Str xml_BoolText (bool value);
/// The text between tags or quotes: the five characters of markup by name, bytes below 32 as
/// "&#x%03x;", all others as they are, without the blanks at both ends. Asserts
/// "strlen (string) < 5196", beyond which no text of a road goes, and escapes the whole all the
/// same.
Str xml_Escape (const Str& text);

/// An element of a file to be written. Owns its children.
class xmlout_element {
 public:
  /// Bytes of output that gather before they go to the file.
  static constexpr int FlushAbove = 0x10000;

  /// Without a value and children it is written as one empty tag.
  explicit xmlout_element (const char* name, Str value = Str ())
      : Name (name), Value (std::move (value)) {}
  xmlout_element (const xmlout_element&) = delete;
  xmlout_element& operator= (const xmlout_element&) = delete;
  virtual ~xmlout_element ();

  /// Appends ` name="value"`, the value escaped.
  void AddAttribute (const char* name, const Str& value);
  /// Links it behind the last child; null is ignored. Asserts "this->lastChild".
  void AddChild (std::unique_ptr<xmlout_element> element);
  /// Links a new element there, and answers it.
  xmlout_element& Add (const char* name, Str value = Str ());

  /// Appends the element with all below it to the buffer; lines end in CR LF, and with indent each
  /// begins with four blanks for each level. With a file, what has gathered beyond FlushAbove goes
  /// there behind each finished element. False, and nothing more is done, when the file took no
  /// more. A file that is null takes nothing.
  bool Write (file_Class* file, bool indent, int depth, Str& buffer) const;

  Str Name;
  Str Value;                 ///< as it is, not escaped
  Str Attributes;            ///< as they will stand in the tag, each with a blank in front
  bool SpacedBlock = false;  ///< a blank line goes ahead of it
  std::unique_ptr<xmlout_element> NextSibling;
  std::unique_ptr<xmlout_element> FirstChild;
  xmlout_element* LastChild = nullptr;
};

}  // namespace clxml
