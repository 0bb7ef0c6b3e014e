// What the tests of the XML reader share.
// A tree as one line of text, and one reading of a document as a list of lines. Leans on xmlparser.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Library/xml/xmlparser.h"

namespace clxml::testing {

/// name{attribute="value"}'text'[children]; parts that are not there are left out.
inline std::string Shown (const xml_element* element) {
  if (!element) return "null";
  std::string shown (element->name);
  if (element->firstAttribute) {
    shown += '{';
    for (const xml_attribute* a = element->firstAttribute; a; a = a->next)
      shown.append (a == element->firstAttribute ? "" : " ")
          .append (a->name)
          .append ("=\"")
          .append (a->value)
          .append ("\"");
    shown += '}';
  }
  if (!element->value.empty ()) shown.append ("'").append (element->value).append ("'");
  if (element->firstChild) {
    shown += '[';
    for (const xml_element* c = element->firstChild; c; c = c->nextSibling)
      shown += (c == element->firstChild ? "" : " ") + Shown (c);
    shown += ']';
  }
  return shown;
}

/// Everything that one reading tells: a line for each operation with its result and the percentage
/// then, down to the closing or the text that was thrown. levels are entered first.
inline std::string Told (std::string_view document, int levels, xml_sizes sizes = {}) {
  std::string told;
  xml_parser parser (sizes);
  auto Tell = [&] (const std::string& what) {
    told += what + " " + std::to_string (parser.PercentDone ()) + "%\n";
  };
  try {
    if (!parser.Open (std::make_unique<xml_memory> (document))) return "not opened\n";
    Tell ("opened");
    if (levels > 0) Tell ("in " + Shown (parser.EnterLevel (levels)));
    xml_tree tree;
    while (const xml_element* element = parser.NextElement (tree)) Tell (Shown (element));
    Tell ("no more");
    if (levels > 0) Tell ("out " + Shown (parser.LeaveLevel (levels)));
  } catch (const Str& text) {
    told.append ("thrown: ").append (text.View ()).append ("\n");
  }
  return told.append (parser.Close () ? "clean\n" : "unclean\n");
}

}  // namespace clxml::testing
