// The road file: one road in an XML file of its own, format version 4.0.
//
// The first line is `<?xml version="1.0" encoding="UTF-8"?>`, lines end in CR LF. The root element
// "NorvathRoad" has the children Name, StationInterval, HorizontalAlignment, VerticalAlignment,
// TemplatePositioning, SuperelevationAndWidening and one TemplateRecord for each template, and the
// first six are always there. An alignment begins with the stations of its ends. Every element
// stands there with its keyed and its derived values, so that a reader needs no geometry; a number
// that is null is an empty element.
#include "road/roadfile.h"

#include <memory>
#include <new>
#include <string>

#include "Kernel/text.h"
#include "Library/xml/xmlparser.h"
#include "numerics/maths.h"
#include "platform/file.h"
#include "platform/stream.h"
#include "road/RoadNorvath.h"
#include "road/roadnodes.h"

namespace clxml {

namespace {

constexpr const char* FirstLine = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";
constexpr const char* RootName = "NorvathRoad";
constexpr const char* HorizontalName = "HorizontalAlignment";
constexpr const char* VerticalName = "VerticalAlignment";
constexpr const char* PlacementsName = "TemplatePositioning";
constexpr const char* SupersName = "SuperelevationAndWidening";
constexpr const char* TemplateName = "TemplateRecord";
constexpr const char* FormatVersion = "4.0";
constexpr const char* Product = "Norvath Chartwork Logbook";
constexpr const char* ProductVersion = "12.10";
constexpr const char* SchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* SchemaLocation =
    "http://www.norvath.example/schema/RoadXML/4_0 "
    "http://www.norvath.example/schema/RoadXML/4_0/RoadXMLSchema-4.0.xsd";

// Writing.

std::unique_ptr<xmlout_element> NewSection (const char* name) {
  auto section = std::make_unique<xmlout_element> (name);
  section->SpacedBlock = true;
  return section;
}

void AddElements (xmlout_element& section, const RoadElementArray& elements) {
  for (int i = 0; i < elements.Count (); i++)
    section.AddChild (road_WriteXml (*elements.Element (i)));
}

template <class T>
std::unique_ptr<xmlout_element> AlignmentXml (const char* name, const T& alignment) {
  std::unique_ptr<xmlout_element> section = NewSection (name);
  section->Add ("StartStation", xml_DoubleText (alignment.StartChainage ()));
  section->Add ("EndStation", xml_DoubleText (alignment.EndChainage ()));
  AddElements (*section, alignment);
  return section;
}

std::unique_ptr<xmlout_element> ListXml (const char* name, const RoadElementArray& elements) {
  std::unique_ptr<xmlout_element> section = NewSection (name);
  AddElements (*section, elements);
  return section;
}

void BuildTree (const NorvathRoad& road, xmlout_element& root) {
  root.AddAttribute ("version", FormatVersion);
  root.AddAttribute ("product", Product);
  root.AddAttribute ("productVersion", ProductVersion);
  root.AddAttribute ("xmlns:xsi", SchemaInstance);
  root.AddAttribute ("xsi:schemaLocation", SchemaLocation);
  root.Add ("Name", road.Name);
  root.Add ("StationInterval", xml_DoubleText (road.StationInterval));
  root.AddChild (road.Horizontal.ToXml ());
  root.AddChild (road.Vertical.ToXml ());
  root.AddChild (road.TemplatePlacements.ToXml ());
  root.AddChild (road.Supers.ToXml ());
  for (const CrossSectionTemplate& crossSection : road.Templates)
    root.AddChild (crossSection.ToXml ());
}

// The file of one road. What could not be written whole is gone again.
class RxlWriter final : public file_Class {
 public:
  explicit RxlWriter (const NorvathRoad& road) : _Road (road) {}

  bool Write () {
    if (_Road.FileName.IsEmpty () || !Replace ()) return false;
    xmlout_element root (RootName);
    BuildTree (_Road, root);
    Str buffer (FirstLine);
    const bool isWhole =
        root.Write (this, true, 0, buffer) &&
        file_Class::Write (buffer.Data (), static_cast<uint32_t> (buffer.Length ()));
    Close ();
    if (!isWhole) Delete ();
    return isWhole;
  }

 private:
  // Creates the file and replaces an existing one, unless that is read-only.
  bool Replace () {
    SetName (_Road.FileName);
    if (Exists () && (IsReadOnly () || !Delete ())) return false;
    return Create (_Road.FileName);
  }

  const NorvathRoad& _Road;
};

// Reading.

// The bytes of the whole file; throws why there are none.
std::string ReadBytes (const Str& path) {
  file_Stream file;
  if (!file.Open (path)) throw Str ("it is no file that can be read");
  if (file.Size () > ROADFILE_MaximumSize) throw Str ("it is too large");
  std::string bytes (static_cast<std::size_t> (file.Size ()), 0);
  std::size_t done = 0;
  while (done < bytes.size ()) {
    const int64_t n = file.Read (bytes.data () + done, bytes.size () - done);
    if (n < 0) throw Str ("device error while reading the file");
    if (n == 0) break;
    done += static_cast<std::size_t> (n);
  }
  bytes.resize (done);
  return bytes;
}

// The whole file as a tree; throws what is wrong with it. A line is one piece however long it is,
// for other programs write a road without line ends.
void ReadTree (const Str& path, xml_tree& tree) {
  const std::string bytes = ReadBytes (path);
  xml_parser parser (xml_sizes{.piece = bytes.size ()});
  if (!parser.Open (std::make_unique<xml_memory> (bytes))) throw Str ("it is not an XML file");
  const xml_element* root = parser.NextElement (tree);
  if (!root || root->name != RootName) throw Str ("it holds no road");
  if (!parser.Close ()) throw Str ("something stands behind its root element");
}

// The children that are elements of the list's kind.
template <class T, class Self>
void ReadElements (const xml_element& section, RoadElementArrayOf<T, Self>& list) {
  for (const xml_element* node = section.firstChild; node; node = node->nextSibling) {
    std::unique_ptr<RoadElement> element = road_ReadXml (*node);
    if (!RoadElement_Cast<T> (element.get ())) continue;
    list.Add (std::unique_ptr<T> (static_cast<T*> (element.release ())));
  }
}

// The section takes the place of what the list held; without it nothing changes.
template <class T>
void ReadSection (const xml_element& root, const char* name, T& list) {
  const xml_element* section = root.FindChild (name);
  if (!section) return;
  list.Clear ();
  ReadElements (*section, list);
}

void ReadTemplates (const xml_element& root, TemplateArray& templates) {
  templates.Clear ();
  int count = 0;
  for (const xml_element* record = root.firstChild; record; record = record->nextSibling)
    if (record->name == TemplateName) count++;
  templates.Allocate (count);
  for (const xml_element* record = root.firstChild; record; record = record->nextSibling) {
    if (record->name != TemplateName || record->ChildValue ("Deleted") == "true") continue;
    CrossSectionTemplate crossSection;
    crossSection.Name = record->ChildValue ("Name");
    ReadElements (*record, crossSection);
    templates.Add (std::move (crossSection));
  }
}

void ReadHead (const xml_element& root, NorvathRoad& road) {
  if (const xml_element* name = root.FindChild ("Name")) road.Name = name->value;
  const std::string_view interval = root.ChildValue ("StationInterval");
  if (!interval.empty ()) road.StationInterval = text_ToDouble (interval);
}

}  // namespace

std::unique_ptr<xmlout_element> HorizontalElementArray::ToXml () const {
  return AlignmentXml (HorizontalName, *this);
}

std::unique_ptr<xmlout_element> VerticalElementArray::ToXml () const {
  return AlignmentXml (VerticalName, *this);
}

std::unique_ptr<xmlout_element> TemplatePlacementArray::ToXml () const {
  return ListXml (PlacementsName, *this);
}

std::unique_ptr<xmlout_element> SuperElevationArray::ToXml () const {
  return ListXml (SupersName, *this);
}

std::unique_ptr<xmlout_element> CrossSectionTemplate::ToXml () const {
  std::unique_ptr<xmlout_element> section = NewSection (TemplateName);
  section->Add ("Name", Name);
  AddElements (*section, *this);
  return section;
}

bool NorvathRoad::Save () const { return RxlWriter (*this).Write (); }

bool road_LoadFile (NorvathRoad& road, const Str& path, bool horizontalOnly) {
  road.IsLoaded = road.HorizontalLoaded = false;
  if (path.IsEmpty ()) return false;
  road.FileName = path;
  const int slash = path.ReverseFind ('\\');
  road.SetNameFromFile (slash < path.Length () ? path.From (slash + 1) : path);
  xml_tree tree (ROADFILE_MaximumSize);
  const auto refuse = [&path] (const Str& reason) {
    Environment::Get ()->LogMessage (("Road file " + path + " refused: " + reason).Data ());
    return false;
  };
  try {
    ReadTree (path, tree);
  } catch (const Str& reason) {
    return refuse (reason);
  } catch (const std::bad_alloc&) {
    return refuse ("out of memory");
  }
  const xml_element& root = *tree.Root ();
  ReadHead (root, road);
  if (!horizontalOnly) ReadSection (root, VerticalName, road.Vertical);
  ReadSection (root, HorizontalName, road.Horizontal);
  road.HorizontalLoaded = true;
  if (horizontalOnly) return true;
  ReadSection (root, PlacementsName, road.TemplatePlacements);
  ReadSection (root, SupersName, road.Supers);
  ReadTemplates (root, road.Templates);
  road.Vertical.LinkNeighbours ();
  road.BuildChainageList ();
  road.IsLoaded = true;
  return true;
}

namespace {

// The path of a road by name, in the project folder.
Str PathOf (const Str& name) {
  if (name.IsEmpty ()) return Str ();
  Str path = folder_Class (folder_Project).Path + name;
  if (!name.Contains ('.')) path += ".rxl";
  return path;
}

}  // namespace

bool NorvathRoad::Load (const Str& name) { return road_LoadFile (*this, PathOf (name), false); }

bool NorvathRoad::LoadHorizontal (const Str& name) {
  return road_LoadFile (*this, PathOf (name), true);
}

}  // namespace clxml
