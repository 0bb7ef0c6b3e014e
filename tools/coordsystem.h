// A coordinate system from the command line.
// The options that define one, the parts they stand for, and the grid files they name, put where
// the library looks for them. Leans on CLI11 and coordsys.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Library/coordsys/coordsys.h"

namespace CLI {
class App;
}

namespace clxml::tool {

/// The options as they were written; empty for one that was not given.
struct SystemOptions {
  std::string ellipsoid, projection, utm, origin, falseOrigin, scale, parallels, azimuth, meridian,
      area, ground, project, offsets, datum, toWGS84, plane, incline, axes;
  std::string datumGrid, geoid, shiftGrid, projectionGrid, ukGrids;  // paths
  bool geodeticAzimuth = false, originAtCenter = false, rectify = false;

  /// Declares them, in groups.
  void AddTo (CLI::App& command);
  /// Any of them was given.
  bool IsGiven () const;
};

/// A folder in the place of the library's project folder, for as long as it lives.
class ProjectFolder {
 public:
  /// An empty one of its own.
  ProjectFolder ();
  /// One that stands there.
  explicit ProjectFolder (const std::filesystem::path& folder);
  ~ProjectFolder ();
  ProjectFolder (const ProjectFolder&) = delete;
  ProjectFolder& operator= (const ProjectFolder&) = delete;

  /// Makes a file of the host known under a name; refuses with STATUS_Usage when there is none.
  void Link (const std::string& path, const std::string& name);

 private:
  void Mount ();
  std::filesystem::path _path;
  bool _isOwn;
};

/// The parts that the options stand for; their files are linked into the folder. Refuses with
/// STATUS_Usage a value that is not a number or a known word, naming the option.
coordsys_Parts PartsOf (const SystemOptions& options, ProjectFolder& folder);

/// The projections with the options that each takes, the ellipsoids and the axes, as a text.
std::string SystemList ();

/// What an assembly's error means, for a message.
std::string Meaning (coordsys_Error error);

/// The whole text as a number that is finite; false, with the number as it was.
bool NumberFrom (std::string_view text, double& number);

}  // namespace clxml::tool
