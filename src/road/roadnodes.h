// The elements of a road as nodes of the road file, and back.
// Each class has one list of children, in file order, which is written and read alike. Leans on the
// road model, xml and xml_out.
#pragma once

#include <memory>

#include "Library/xml/xml_out.h"
#include "road/roadelement.h"

namespace clxml {

struct xml_element;

/// The element as a node; null for a ChainageElement, which no file holds.
std::unique_ptr<xmlout_element> road_WriteXml (const RoadElement& element);
/// A new element of the class that the node's name picks, from the children of the node; null when
/// no class has that name. A child that is missing counts as empty: its number is null, its word
/// leaves the class's default. What follows from the fields is taken, nothing is computed.
std::unique_ptr<RoadElement> road_ReadXml (const xml_element& node);

}  // namespace clxml
