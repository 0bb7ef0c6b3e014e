// The contents of position_Cache, for the sources of the position layer alone.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace clxml {

/// A point with known residuals, in the axes of the job's grid; metres.
struct position_Control {
  double North, East, ResidualNorth, ResidualEast;
};

/// The control points of a calibration or of a station setup.
struct position_ControlList {
  bool IsUsable = false;  ///< false where there is no adjustment at all
  std::vector<position_Control> Points;
};

class position_CacheData {
 public:
  static constexpr std::size_t ThreadCount = 30;

  /// The values of one thread, for one state of the job.
  struct Values {
    uint32_t Revision = 0;
    uint32_t TransformId = 0xFFFFFFFF;
    std::unique_ptr<position_ControlList> Calibration;            ///< null: not yet derived
    std::unordered_map<uint32_t, position_ControlList> Stations;  ///< by the station's record
  };

  /// The values of the calling thread; emptied if they belong to another state of the job.
  Values& Of (uint32_t revision, uint32_t transformId);

 private:
  std::array<std::unique_ptr<Values>, ThreadCount> _Threads;
};

}  // namespace clxml
