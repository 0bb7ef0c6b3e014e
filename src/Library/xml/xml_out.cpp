// XML as we write it.
// Leans on text for the digits, on maths for the null value and on file for where it goes.
#include "Library/xml/xml_out.h"

#include <cmath>
#include <numbers>

#include "Kernel/text.h"
#include "numerics/maths.h"
#include "platform/file.h"

namespace clxml {

namespace {

constexpr const char* LineEnd = "\r\n";

void Indent (Str& buffer, int depth) {
  for (int i = 0; i < depth; i++) buffer += "    ";
}

// What has gathered goes out and is forgotten once it is more than the limit.
bool Flush (file_Class* file, Str& buffer) {
  if (!file || buffer.Length () <= xmlout_element::FlushAbove) return true;
  const bool isWritten = file->Write (buffer.Data (), static_cast<uint32_t> (buffer.Length ()));
  buffer.Truncate (0);
  return isWritten;
}

}  // namespace

Str xml_DoubleText (double value) {
  if (maths_IsNull (value) || !std::isfinite (value)) return Str ();
  if (!(std::fabs (value) < 1.0)) return text_General (value, 14);
  Str text = text_Fixed (value, 14);
  text.TrimRight ('0');
  text.TrimRight ('.');
  return text == "-0" ? Str ("0") : text;
}

Str xml_AngleText (double value) {
  if (maths_IsNull (value)) return Str ();
  if (std::fabs (value - 2 * std::numbers::pi) <= 5e-13) value = 0.0;
  return xml_DoubleText (value * 180 / std::numbers::pi);
}

Str xml_GradeText (double value, bool negate) {
  if (maths_IsNull (value)) return Str ();
  return xml_DoubleText (std::tan (negate ? -value : value) * 100);
}

Str xml_BoolText (bool value) { return Str (value ? "true" : "false"); }

Str xml_Escape (const Str& text) {
  Assert (text.Length () < 5196, "strlen (string) < 5196");
  std::string_view rest = text.View ();
  const std::size_t first = rest.find_first_not_of (' ');
  if (first == std::string_view::npos) return Str ();
  rest = rest.substr (first, rest.find_last_not_of (' ') + 1 - first);
  Str escaped;
  for (std::size_t at = 0; at < rest.size ();) {
    // Whole runs of plain bytes at once; most texts are one.
    std::size_t run = at;
    const auto isPlain = [] (char c) {
      return static_cast<unsigned char> (c) >= 32 && c != '"' && c != '&' && c != '\'' &&
             c != '<' && c != '>';
    };
    while (run < rest.size () && isPlain (rest[run])) run++;
    escaped += rest.substr (at, run - at);
    at = run;
    if (at == rest.size ()) break;
    const char c = rest[at++];
    switch (c) {
      case '"':
        escaped += "&quot;";
        break;
      case '&':
        escaped += "&amp;";
        break;
      case '\'':
        escaped += "&apos;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += text_Format ("&#x%03x;", static_cast<uint32_t> (c));
    }
  }
  return escaped;
}

// One sibling after the other: a chain may be as long as a road.
xmlout_element::~xmlout_element () {
  while (FirstChild) FirstChild = std::move (FirstChild->NextSibling);
}

void xmlout_element::AddAttribute (const char* name, const Str& value) {
  Attributes += ' ';
  Attributes += name;
  Attributes += "=\"";
  Attributes += xml_Escape (value);
  Attributes += '"';
}

void xmlout_element::AddChild (std::unique_ptr<xmlout_element> element) {
  if (!element) return;
  xmlout_element* last = element.get ();
  if (!FirstChild) {
    FirstChild = std::move (element);
  } else {
    if (!Assert (this->LastChild != nullptr, "this->lastChild")) return;
    LastChild->NextSibling = std::move (element);
  }
  LastChild = last;
}

xmlout_element& xmlout_element::Add (const char* name, Str value) {
  AddChild (std::make_unique<xmlout_element> (name, std::move (value)));
  return *LastChild;
}

bool xmlout_element::Write (file_Class* file, bool indent, int depth, Str& buffer) const {
  const int pad = indent ? depth : 0;
  if (indent && SpacedBlock) buffer += LineEnd;
  Indent (buffer, pad);
  buffer += '<';
  buffer += Name;
  buffer += Attributes;
  if (Value.IsEmpty () && !FirstChild) {
    buffer += "/>";
    buffer += LineEnd;
    return Flush (file, buffer);
  }
  buffer += '>';
  if (!FirstChild && !SpacedBlock) {
    buffer += xml_Escape (Value);
  } else {
    buffer += LineEnd;
    if (!Value.IsEmpty ()) {
      if (indent) Indent (buffer, depth + 1);
      buffer += xml_Escape (Value);
      buffer += LineEnd;
    }
    for (const xmlout_element* child = FirstChild.get (); child; child = child->NextSibling.get ())
      if (!child->Write (file, indent, depth + 1, buffer)) return false;
    Indent (buffer, pad);
  }
  buffer += "</";
  buffer += Name;
  buffer += '>';
  buffer += LineEnd;
  return Flush (file, buffer);
}

}  // namespace clxml
