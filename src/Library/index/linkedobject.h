// The objects of files that are linked to a job and have no records: points of a list, points,
// lines and arcs of a background drawing. Their texts and geometry are set once, by whoever reads
// the file.
#pragma once

#include <utility>

#include "Library/index/dbobject.h"

namespace clxml {

/// An object without a record: Base with a name, a code and descriptions of its own, in an index
/// of the given kind. Its texts assert the kind: "index->GetFileType() ==
/// dbIndex::CommaSeparatedFile", "index->GetFileType() == dbIndex::BackgroundFile".
template <class Base, dbIndex::FileType kind>
class LinkedObject : public Base {
 public:
  const char* GetName () const override {
    CheckKind ();
    return _Name.Data ();
  }
  void GetCode (Str& out) const override {
    CheckKind ();
    out = _Code;
  }
  dbDescriptions GetDescriptions () const override { return _Descriptions; }
  bool IsLinked () const override { return true; }

  /// Asserts "newName && *newName" and keeps the name it has.
  void SetName (const char* newName) {
    if (Assert (newName && *newName, "newName && *newName")) _Name = newName;
  }
  /// Null and empty texts store nothing.
  void SetCode (const char* text) {
    if (text && *text) _Code = text;
  }
  void SetDescriptions (dbDescriptions descriptions) { _Descriptions = std::move (descriptions); }

 protected:
  using Base::Base;

 private:
  void CheckKind () const {
    const dbIndex* index = this->GetIndex ();
    Assert (!index || index->GetFileType () == kind,
            kind == dbIndex::CommaSeparatedFile
                ? "index->GetFileType() == dbIndex::CommaSeparatedFile"
                : "index->GetFileType() == dbIndex::BackgroundFile");
  }

  Str _Name;
  Str _Code;
  dbDescriptions _Descriptions;
};

/// A point without a record: of the class Normal, with a grid and nothing else.
template <dbIndex::FileType kind>
class LinkedPointObject : public LinkedObject<ObservationObject, kind> {
 public:
  explicit LinkedPointObject (const coord_CorrectedGrid& grid)
      : LinkedObject<ObservationObject, kind> (NODBID, Words ()) {
    this->SetGrid (grid, true);
  }

  void GetClassification (db_PointClassification& out) const override {
    out = db_PointClassification::Normal;
  }
  dbentity_PointMethod GetMethod () const override { return DBENTITY_Unknown; }
  dbentity_PointMethod GetMTAMethod () const override { return DBENTITY_Unknown; }
  const db_Observation* GetObservation () const override { return nullptr; }
  database_RecordType GetMeasurementType () const override { return DATABASE_GridRecord; }
  const db_Measurement* GetMeasurement () const override { return nullptr; }
  coord_Type GetCoordType () const override { return COORD_GridType; }
  coord_CorrectedGrid GetGrid () override { return this->KeptGrid (); }
  coord_CorrectedGrid GetFinalGrid () override { return this->KeptGrid (); }
  /// A fault of the program: asserts.
  void SetMTAMethod (dbentity_PointMethod) override { Assert (false, "!\"SetMTAMethod\""); }

 private:
  static constexpr dbfilter_Words Words () {
    return {DBFILTER_Point | DBFILTER_Always, DBKIND_Coordinates | DBFILTER_Always,
            DBFILTER_Always};
  }
};

/// A point of a list of coordinates.
class CSVPointObject final : public LinkedPointObject<dbIndex::CommaSeparatedFile> {
 public:
  using LinkedPointObject::LinkedPointObject;
};

/// A point of a background drawing.
class BackgroundPointObject final : public LinkedPointObject<dbIndex::BackgroundFile> {
 public:
  using LinkedPointObject::LinkedPointObject;
};

/// A line of a background drawing; StartGrid and EndGrid are its ends.
class BackgroundLineObject final : public LinkedObject<LineObject, dbIndex::BackgroundFile> {
 public:
  BackgroundLineObject (const coord_CorrectedGrid& start, const coord_CorrectedGrid& end);
};

/// An arc of a background drawing; the geometry is that of ArcObject.
class BackgroundArcObject final : public LinkedObject<ArcObject, dbIndex::BackgroundFile> {
 public:
  BackgroundArcObject (const coord_CorrectedGrid& centre, double radius, double startAzimuth,
                       double deltaAngle);
};

}  // namespace clxml
