// The capture of legacy roads.
// A road in the old form is a run of small records, none of which goes into the new job: they are
// collected during an import, and at its end each road becomes a road file beside the job. Leans on
// the road model and the conversion frame.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Library/records/dbCoordSystems.h"
#include "road/RoadNorvath.h"
#include "str.h"

namespace clxml {

struct xml_element;
class FieldReader;
class JobDatabase;
class WriteJobControl;

/// The log line, in front of a path, of a road file that could not be made or written, and of one
/// that a later road of the import took the place of.
inline constexpr const char* ROADCAPTURE_NotWritten = "Import: road file not written: ";
inline constexpr const char* ROADCAPTURE_Replaced =
    "Import: road file replaced by a later road of the same file name: ";

/// Takes the legacy road elements of one import and writes its road files.
///
/// The elements of an alignment come in groups, each with an identifier of its own, that an end of
/// entity closes; a road's header names its groups and may come before or after them. Templates are
/// shared by all roads of the job. Nothing about a road is validated: a number that is missing is
/// null, and so is what would follow from it.
///
/// The handlers take one element each; what they throw, a Str, ends the import.
class RoadCapture {
 public:
  /// The resolution of all spirals (HorizontalSpiral::Recompute), metres.
  static constexpr double SpiralResolution = 0.0001;

  /// Both outlive it; the frame takes the notes that tell where a road went.
  RoadCapture (WriteJobControl& frame, JobDatabase& job);
  ~RoadCapture ();
  RoadCapture (const RoadCapture&) = delete;
  RoadCapture& operator= (const RoadCapture&) = delete;

  // One handler for each name of an element.

  /// Keeps the road's definition and leaves a note in the job, unless it is deleted.
  void RoadHeader (const xml_element& element);
  /// Closes a group that is open and opens one.
  void HorzHeader (const xml_element& element);
  void HorzStraight (const xml_element& element);
  void HorzArcRadAng (const xml_element& element);
  void HorzArcAngLen (const xml_element& element);
  void HorzArcRadLen (const xml_element& element);
  void HorzSpiral (const xml_element& element);
  /// Closes a group that is open and opens one.
  void VertHeader (const xml_element& element);
  void VertArc (const xml_element& element);
  void VertParabola (const xml_element& element);
  void VertAsymParabola (const xml_element& element);
  void VertPoint (const xml_element& element);
  /// The first of a run opens the group.
  void ApplyTmplts (const xml_element& element);
  /// The first of a run opens the group.
  void ApplySuper (const xml_element& element);
  void TmpltHeader (const xml_element& element);
  void TmpltDistGrade (const xml_element& element);
  void TmpltDistDelta (const xml_element& element);
  void TmpltBatter (const xml_element& element);

  /// The end of an entity in a road's block: the open group is complete.
  void FinishCurrentCache ();
  /// The geometry of the roads runs under these corrections from now on.
  void CorrectionsChanged (const db_Corrections& corrections);
  /// Where the road files go: up to and with the last backslash of the job's path, or empty.
  void SetFolder (const Str& folder) { Folder = folder; }
  /// The road files of an import hold at most so many elements, and as many copies of each that was
  /// captured: a small exchange file could name one alignment, or have all roads share its
  /// templates, without end.
  int64_t FreeElements = 1000000;
  int64_t MaximumCopies = 256;
  /// No road file takes the place of the file at this path (device form).
  void Spare (const Str& path);
  /// All elements were read: writes one road file for each road, in the order of their headers, and
  /// appends each path to the extra output list, whether or not the file could be written. A file
  /// that could not is logged.
  void WriteRoads ();

 private:
  struct RoadDefinition {
    Str Name;
    Str VertAlignment;  ///< identifiers of groups, empty for none
    Str HorzAlignment;
    Str SuperApplication;
    Str TemplateApplication;
    double SectionInterval = MATHS_Null;  ///< metres
  };
  using GroupsByID = std::unordered_map<std::string_view, const CachedAlignment*>;

  FieldReader Reader (const xml_element& element) const;
  void Open (const char* cacheType, const xml_element& element);
  void Continue (const char* cacheType, const xml_element& element);
  void Require (const char* cacheType) const;
  HorizontalBase* Horizontal (int back);
  void ComputeEnd (HorizontalBase& element);
  void Recompute (HorizontalSpiral& spiral);
  void CloseExitSpiral (double radius);
  void TakeStart (HorizontalBase& element);
  void AddArc (std::unique_ptr<HorizontalArc> arc);
  double RadiusInForce ();
  template <class T>
  void AddTemplateElement (std::unique_ptr<T> element);
  void UseCorrections ();
  void WriteRoad (const RoadDefinition& definition, const GroupsByID& groups, const Str& jobText);
  bool MayWrite (const Str& fileName, int64_t elements);

  WriteJobControl& Frame;
  JobDatabase& Job;
  Str Folder;
  std::vector<RoadDefinition> Definitions;
  TemplateArray Templates;
  int CurrentTemplate = -1;  // that template elements extend, -1 for none
  CachedAlignment CurrentCache;
  std::vector<CachedAlignment> Alignments;  // all finished groups, in file order
  db_Corrections Corrections;
  bool AreCorrectionsNew = true;  // the transform in force is not of them
  bool HasTransformation = false;
  int64_t ElementsLeft = 0;
  int64_t TemplateElements = 0;             // all templates with their elements
  StrArray Spared;                          // host paths that no road may take
  std::unordered_set<std::string> Written;  // host paths of road files
};

}  // namespace clxml
