// Cross sections of a road as a table and as JSON.
#include <cmath>

#include <nlohmann/json.hpp>

#include "crosssection.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

using Json = nlohmann::ordered_json;

Json NumberJson (double value) {
  return maths_IsNull (value) || !std::isfinite (value) ? Json () : Json (value);
}

Json TextJson (const Str& text) { return std::string (text.View ()); }

Json SideJson (const roadxs_Side& side) {
  Json nodes = Json::array ();
  for (const roadxs_Node& node : side.Nodes)
    nodes.push_back ({{"offset", NumberJson (node.Offset)},
                      {"elevation", NumberJson (node.Elevation)},
                      {"code", TextJson (node.Code)}});
  Json slope;
  if (side.HasBatter)
    slope = {{"code", TextJson (side.BatterCode)},
             {"cutGrade", NumberJson (side.CutGrade)},
             {"fillGrade", NumberJson (side.FillGrade)},
             {"cutDitchWidth", NumberJson (side.CutDitchWidth)}};
  return {{"template", TextJson (side.Template)}, {"nodes", nodes}, {"sideSlope", slope}};
}

// The rows of one side, from the centre outwards.
std::vector<std::vector<std::string>> SideRows (const roadxs_CrossSection& section,
                                                dbroad_Side at) {
  const roadxs_Side& side = section.Side (at);
  const char* word = at == DBROAD_SideLeft ? "left" : "right";
  std::vector<std::vector<std::string>> rows;
  const roadxs_Node* inner = &section.Centre;
  for (const roadxs_Node& node : side.Nodes) {
    const double width = maths_Abs (maths_Subtract (node.Offset, inner->Offset));
    const double rise = maths_Subtract (node.Elevation, inner->Elevation);
    rows.push_back (
        {word, CleanText (node.Code), NumberText (node.Offset), NumberText (node.Elevation),
         NumberText (width),
         width < 0.0005 ? "vertical" : GradeText (maths_ArcTan (maths_Divide (rise, width))),
         NumberText (maths_Subtract (node.Elevation, section.Coordinate.Elevation))});
    inner = &node;
  }
  if (side.HasBatter)
    rows.push_back ({word, CleanText (side.BatterCode), "side slope",
                     "cut " + GradeText (side.CutGrade),
                     "fill " + GradeText (maths_Negate (side.FillGrade)),
                     "ditch " + NumberText (side.CutDitchWidth), ""});
  return rows;
}

}  // namespace

std::string SectionTable (const roadxs_CrossSection& section, const SectionQuery& query) {
  const auto named = [] (const roadxs_Side& side) {
    return side.Template.IsEmpty () ? std::string ("(none)") : CleanText (side.Template);
  };
  std::string text = "section at " + NumberText (section.Station) + "  north " +
                     NumberText (section.Coordinate.North, 4) + "  east " +
                     NumberText (section.Coordinate.East, 4) + "  elevation " +
                     NumberText (section.Coordinate.Elevation, 4) + "  azimuth to the right " +
                     AzimuthText (section.Azimuth) + "\ntemplates left " + named (section.Left ()) +
                     ", right " + named (section.Right ()) + "\n";
  Table table ({"side", "code", "offset", "elevation", "width", "grade outwards", "height"});
  const auto left = SideRows (section, DBROAD_SideLeft);
  for (auto row = left.rbegin (); row != left.rend (); ++row) table.Add (*row);
  table.Add (
      {"centre", CleanText (section.Centre.Code), NumberText (section.Centre.Offset),
       NumberText (section.Centre.Elevation), "", "",
       NumberText (maths_Subtract (section.Centre.Elevation, section.Coordinate.Elevation))});
  for (const auto& row : SideRows (section, DBROAD_SideRight)) table.Add (row);
  text += table.Text ();
  if (query.offsets.empty ()) return text;

  std::vector<std::string> head = {"at offset", "", "design elevation", "grade outwards"};
  if (query.ground) head.push_back ("with the ground");
  Table answers (head);
  for (const double offset : query.offsets) {
    const roadxs_Offset at (offset);
    std::vector<std::string> row = {NumberText (offset), "",
                                    NumberText (section.DesignElevation (at), 4),
                                    GradeText (section.GradeAt (at))};
    if (query.ground)
      row.push_back (NumberText (section.DesignElevationWithGround (at, *query.ground), 4));
    answers.Add (row);
  }
  return text + answers.Text ();
}

std::string SectionJson (const roadxs_CrossSection& section, const SectionQuery& query) {
  Json object = {{"station", NumberJson (section.Station)},
                 {"north", NumberJson (section.Coordinate.North)},
                 {"east", NumberJson (section.Coordinate.East)},
                 {"elevation", NumberJson (section.Coordinate.Elevation)},
                 {"azimuth", NumberJson (section.Azimuth)},
                 {"centre",
                  {{"offset", NumberJson (section.Centre.Offset)},
                   {"elevation", NumberJson (section.Centre.Elevation)}}},
                 {"left", SideJson (section.Left ())},
                 {"right", SideJson (section.Right ())}};
  if (!query.offsets.empty ()) object["at"] = Json::array ();
  for (const double offset : query.offsets) {
    const roadxs_Offset at (offset);
    Json answer = {{"offset", offset},
                   {"elevation", NumberJson (section.DesignElevation (at))},
                   {"grade", NumberJson (section.GradeAt (at))}};
    if (query.ground)
      answer["elevationWithGround"] =
          NumberJson (section.DesignElevationWithGround (at, *query.ground));
    object["at"].push_back (answer);
  }
  return object.dump (-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace clxml::tool
