// The index of a linked file, and the geometry of its objects.
#include "Library/index/linkedfile.h"

#include "Library/index/jobfile.h"
#include "Library/index/linkedobject.h"
#include "Library/index/pointsearch.h"

namespace clxml {
namespace {

constexpr dbfilter_Words WordsOf (uint32_t type) {
  return {type | DBFILTER_Always, DBKIND_Live | DBFILTER_Always,
          DBSTATUS_NotAPoint | DBFILTER_Always};
}

}  // namespace

BackgroundLineObject::BackgroundLineObject (const coord_CorrectedGrid& start,
                                            const coord_CorrectedGrid& end)
    : LinkedObject (NODBID, WordsOf (DBFILTER_Line)) {
  StartGrid = start;
  EndGrid = end;
}

BackgroundArcObject::BackgroundArcObject (const coord_CorrectedGrid& centre, double radius,
                                          double startAzimuth, double deltaAngle)
    : LinkedObject (NODBID, WordsOf (DBFILTER_Arc)) {
  Centre = centre;
  Radius = radius;
  StartAzimuth = startAzimuth;
  DeltaAngle = deltaAngle;
}

LinkedFile::LinkedFile (FileType kind, const Str& path) : _Path (path) {
  Assert (kind == CommaSeparatedFile || kind == BackgroundFile,
          "kind == CommaSeparatedFile || kind == BackgroundFile");
  _FileType = kind;
}

LinkedFile::~LinkedFile () = default;

void LinkedFile::Clear () {
  _All.Empty ();
  dbIndex::Clear ();
}

dbSelection& LinkedFile::GetSelection () {
  if (_All.GetItemCount () != GetObjectCount ()) {
    _All.FillFromIndex (*this);
    _All.SortByName ();
  }
  return _All;
}

void LinkedFile::SearchName (const Str& name, search_Results& results, uint32_t& status) {
  search_InSelection (GetSelection (), name, results, status);
}

void LinkedFile::ComputeObject (dbObject& object) {
  object.GetFlags () |= OBJECT_GridKnown | OBJECT_StatusKnown;
}

void LinkedFile::ComputeStatus (dbObject& object) {
  JobFile* job = GetJobFile ();
  if (object.GetRecordType () == DATABASE_ObservationRecord && job) {
    dbfilter_Words words = object.Words ();
    job->UpdateSearchStatus (*this, object.GetName (), object.GetUniqueId (), words[2], false);
    object.SetWords (words);
  }
  object.GetFlags () |= OBJECT_StatusKnown;
}

}  // namespace clxml
