// The seam to the capture of legacy roads.
// The road elements of an exchange file make no records; the conversion frame hands them to a
// RoadCapture, which turns them into road files at the end of the import. Leans on str.
#pragma once

#include <memory>

#include "str.h"

namespace clxml {

struct xml_element;
class WriteJobControl;

/// Takes the legacy road elements of one import. As it stands it keeps nothing: a job with roads is
/// imported without them. A capture that builds roads overrides the operations.
class RoadCapture {
 public:
  RoadCapture () = default;
  RoadCapture (const RoadCapture&) = delete;
  RoadCapture& operator= (const RoadCapture&) = delete;
  virtual ~RoadCapture () = default;

  /// Takes one road element; may store notes through the conversion frame. What it throws ends the
  /// import.
  virtual void Capture (const xml_element& element);
  /// The end-of-entity element of a road block: closes the definition that is open.
  virtual void EndDefinition ();
  /// Where the road files go: up to and with the last backslash of the job's path, or empty.
  virtual void SetFolder (const Str& folder);
  /// All elements were read: writes one road file for each road and appends each path to the extra
  /// output list.
  virtual void WriteRoads ();
};

/// The capture of an import whose frame is `job`, which outlives it.
std::unique_ptr<RoadCapture> MakeRoadCapture (WriteJobControl& job);

}  // namespace clxml
