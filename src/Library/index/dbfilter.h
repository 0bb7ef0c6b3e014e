// The three filter words of an index object.
// A selection is narrowed to kinds of objects by an AND of each word, without reading a record. The
// values are those of a running system: nothing stores them.
#pragma once

#include <array>
#include <cstdint>

namespace clxml {

class db_Observation;
class dbRecord_Class;

/// Type word, kind word and status word, or a mask for each.
using dbfilter_Words = std::array<uint32_t, 3>;

/// Set in each word of every object but a removed one.
inline constexpr uint32_t DBFILTER_Always = 1;

/// Bits of the type word; a back bearing and a target have DBFILTER_Always only.
enum dbfilter_Type : uint32_t {
  DBFILTER_Point = 2,
  DBFILTER_Line = 4,
  DBFILTER_Arc = 8,
  DBFILTER_Traverse = 64,
  DBFILTER_Station = 128,
};

/// Bits of the kind word. Objects other than points are deleted or live; a point has one bit.
enum dbfilter_Kind : uint32_t {
  DBKIND_Deleted = 0x2,
  DBKIND_Live = 0x4,  ///< not of points
  DBKIND_GpsStatic = 0x8,
  DBKIND_FaceOne = 0x10,
  DBKIND_Conventional = 0x20,
  DBKIND_MeanTurnedAngle = 0x80,
  DBKIND_Stakeout = 0x100,
  DBKIND_Construction = 0x200,
  DBKIND_Coordinates = 0x400,
  DBKIND_ControlCoordinates = 0x800,
  DBKIND_GpsCalibration = 0x1000,
  DBKIND_CogoCalculation = 0x2000,
  DBKIND_GpsControl = 0x4000,
  DBKIND_GpsFastStatic = 0x8000,
  DBKIND_FromBase = 0x10000,
  DBKIND_AzimuthOnly = 0x20000,
  DBKIND_Check = 0x40000,
  DBKIND_Offset = 0x80000,
  DBKIND_Intersection = 0x100000,
  DBKIND_GpsQuickMark = 0x200000,
  DBKIND_LaserOffset = 0x400000,
  DBKIND_Resection = 0x800000,
  DBKIND_Continuous = 0x1000000,
  DBKIND_CopiedControl = 0x2000000,
  DBKIND_CopiedConstruction = 0x4000000,
  DBKIND_CopiedNormal = 0x8000000,
  DBKIND_CopiedStakeout = 0x10000000,
  DBKIND_Adjusted = 0x20000000,
  DBKIND_CopiedAdjusted = 0x40000000,
};

/// Bits of the status word.
enum dbfilter_Status : uint32_t {
  DBSTATUS_Best = 4,         ///< best point of its name in its index
  DBSTATUS_BestGrid = 8,     ///< the same among the grid group of measurements
  DBSTATUS_BestGPS = 16,     ///< the same among the GPS group
  DBSTATUS_NotAPoint = 32,   ///< passes dbObject::IsBest because it is no point
  DBSTATUS_Stakeout = 64,    ///< a live point of this name has the class Stakeout
  DBSTATUS_BestOfAll = 128,  ///< as the first three, over the main job and its linked files
  DBSTATUS_BestGridOfAll = 256,
  DBSTATUS_BestGPSOfAll = 512,
  DBSTATUS_Resection = 1024,  ///< a resection in progress
};
/// The bits that a search computes.
inline constexpr uint32_t DBSTATUS_OfSearch = 0x3DC;

/// The kind of a point, without DBFILTER_Always; 0 for a method that has none.
uint32_t dbfilter_PointKind (const db_Observation& point);

/// The filter words of a new object for the record; all 0 for a record that gets no object.
dbfilter_Words dbfilter_WordsOf (const dbRecord_Class& record);

}  // namespace clxml
