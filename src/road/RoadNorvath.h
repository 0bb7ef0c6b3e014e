// The road of a road file.
// Name, stations of interest, templates, alignments, placements and superelevation in one object,
// which gives positions, cross sections and coordinates, and checks that its parts fit together.
#pragma once

#include "road/chainage.h"
#include "road/horizontalalignment.h"
#include "road/placements.h"
#include "road/superelevation.h"
#include "road/templates.h"
#include "road/vertical.h"

namespace clxml {

class roadxs_CrossSection;

/// A road as its user sees it. This class has nothing: texts are empty, numbers null, questions
/// answered with false, and it is valid.
class GenericRoad {
 public:
  virtual ~GenericRoad () = default;

  virtual void GetName (Str& name) const { name = Str (); }
  virtual void GetFileName (Str& name) const { name = Str (); }
  virtual bool Validate () const { return true; }
  virtual bool HasVerticalAlignment () const { return false; }
  virtual bool HasTemplates () const { return false; }
  virtual bool Load (const Str& /*name*/) { return false; }
  virtual double EndChainage () const { return MATHS_Null; }
  virtual double StartChainage () const { return MATHS_Null; }
  /// The station of a coordinate; null when it lies beside no element.
  virtual double StationAtPoint (const coord_CorrectedGrid& /*coordinate*/) const {
    return MATHS_Null;
  }
  virtual void SetName (const Str& /*name*/) {}
  /// The cross section at a station. Here the section stays as it is.
  virtual void CrossSectionAt (double /*station*/, roadxs_CrossSection& /*section*/) const {}
  /// Fills the list of stations with what its options ask for; by default nothing.
  virtual void BuildChainageList () {}
  /// Null for none.
  virtual const ChainageList* GetChainageList () const { return nullptr; }
};

/// What the list of stations of interest is built of.
struct ChainageOptions {
  bool Interval = false;        ///< every StationInterval
  bool Horizontal = false;      ///< key points of the horizontal alignment
  bool Vertical = false;        ///< key points of the vertical alignment
  bool Templates = false;       ///< template placements
  bool SuperElevation = false;  ///< superelevation and widening
};

/// The road of a road file. Copying copies everything.
class NorvathRoad final : public GenericRoad {
 public:
  Str Name;
  Str FileName;                   ///< full path of the road file
  bool IsLoaded = false;          ///< set by a complete load
  bool HorizontalLoaded = false;  ///< set by a complete load or one of the alignment alone
  double StationInterval = 20.0;  ///< metres
  RxlChainageList Chainages;
  TemplateArray Templates;
  VerticalElementArray Vertical;
  HorizontalElementArray Horizontal;
  TemplatePlacementArray TemplatePlacements;
  SuperElevationArray Supers;

  void GetName (Str& name) const override { name = Name; }
  void GetFileName (Str& name) const override { name = FileName; }
  void SetName (const Str& name) override { Name = name; }
  /// Sets the path; one with a backslash in it also renames the road by SetNameFromFile, to the
  /// part after the last backslash.
  void SetFileName (const Str& path);
  /// The name up to its first dot, if it has one.
  void SetNameFromFile (const Str& name);

  /// Reads the road file of that name in the project folder.
  bool Load (const Str& name) override;
  /// Reads name, interval and horizontal alignment only.
  bool LoadHorizontal (const Str& name);
  /// Writes the road to FileName; false when the file cannot be made or written.
  bool Save () const;

  /// True when alignments, placements, superelevation and templates each fit together and with each
  /// other.
  bool Validate () const override { return FirstFault () == nullptr; }
  /// What Validate found first, in the words of a report; null for a valid road.
  const char* FirstFault () const;
  /// Some element of the vertical alignment starts at a known elevation.
  bool HasVerticalAlignment () const override { return Vertical.HasElevations (); }
  /// Some placement has a UserDefined side.
  bool HasTemplates () const override { return TemplatePlacements.HasTemplates (); }
  double StartChainage () const override { return Horizontal.StartChainage (); }
  double EndChainage () const override { return Horizontal.EndChainage (); }
  double StationAtPoint (const coord_CorrectedGrid& coordinate) const override;

  /// Replaces the stations of interest with those that the options ask for. Interval stations are
  /// the multiples of StationInterval up to the end, which is taken 0.0005 wide; an interval that
  /// gives more than MaximumStations gives none, and a log line.
  void BuildChainageList (const ChainageOptions& options);
  void BuildChainageList () override { BuildChainageList (ChainageOptions ()); }
  const ChainageList* GetChainageList () const override { return &Chainages; }
  static constexpr int MaximumStations = 1000000;

  /// The cross section at a station of the alignment: position, direction and centre, and for each
  /// side the strips of the template in force, tilted, widened, and blended with the next template.
  /// Outside the alignment an empty section with a null Station; outside the vertical alignment,
  /// and where no template is placed, the sides are empty. RoadSections does the same for many
  /// stations at less cost.
  void CrossSectionAt (double station, roadxs_CrossSection& section) const override;
  /// The coordinate at an offset (metres, to the right positive) beside a station, with the design
  /// elevation there plus heightDelta; the elevation is null where there is no design, all three
  /// numbers are null outside the alignment.
  coord_CorrectedGrid GetCoordinateAt (double station, double offset, double heightDelta) const;
  /// Station and offset of a coordinate, and in Elevation its height above the design there.
  coord_StationOffset GetStationOffset (const coord_CorrectedGrid& coordinate) const;
  /// The design elevation at a station and offset: that of the cross section. On a side without
  /// nodes the centre is 0.0005 wide, so that a point on the line has an elevation in spite of
  /// rounding. Null beyond the last node and where there is none.
  double DesignElevationAt (double station, double offset) const;
  /// The box of the horizontal alignment: HorizontalElementArray::GetExtent.
  bool GetExtent (coord_CorrectedGrid& min, coord_CorrectedGrid& max) const {
    return Horizontal.GetExtent (min, max);
  }
};

}  // namespace clxml
