// How the index follows a commit.
// The model already has all changes of the transaction. Objects are added and replaced; of what was
// computed only bits are cleared, and it is computed again when asked for. A change of a point may
// change which record of its name is the best, and with it everything that depends on the name.
#include <algorithm>

#include "Library/index/jobfile.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

constexpr uint32_t bestBits = DBSTATUS_Best | DBSTATUS_BestGrid | DBSTATUS_BestGPS;

bool MakesObject (const dbRecord_Class& record) { return dbfilter_WordsOf (record)[0] != 0; }

// Records from which a transform is assembled.
bool IsOfTransform (database_RecordType type) {
  return type >= DATABASE_EllipsoidRecord && type <= DATABASE_CorrectionsRecord;
}

// Records from which the control points of a neighbourhood adjustment are taken.
bool IsOfAdjustment (database_RecordType type) {
  return type == DATABASE_CalibPointRecord || type == DATABASE_CalibBeginRecord ||
         type == DATABASE_StationSetupResidualsBeginRecord ||
         type == DATABASE_StationSetupResidualRecord;
}

bool HasGrid (database_RecordType type) {
  return type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
         type == DATABASE_ArcRecord;
}

}  // namespace

// One transaction.
class JobFile::Commit {
 public:
  explicit Commit (JobFile& job) : _File (job) {}

  void Follow (const dbTransaction& transaction) {
    FileAgain (transaction);
    for (const dbModel_Action* action = transaction.First (); action;
         action = action->Next.get ()) {
      if (!action->DBRecord) continue;
      switch (action->Type) {
        case DBACTION_Add:
          Add (*action);
          break;
        case DBACTION_Amend:
          Amend (*action);
          break;
        case DBACTION_Replace:
          Replace (*action);
          break;
        case DBACTION_Delete:
          Delete (*action);
          break;
        case DBACTION_Insert:
          Note (action->DBRecord->GetType ());
          Assert (!MakesObject (*action->DBRecord), "!\"Index cannot insert objects\"");
          break;
        default:
          break;
      }
    }
    if (_TransformChanged) {
      _File._IsTransformStale = true;
      _File.DropGrids ();
    } else if (_Changed) {
      for (int32_t i = 0; i < _File.GetObjectCount (); i++) Unfinish (*_File.GetObject (i));
    }
  }

 private:
  // A grid is computed again when a final one is asked for, a line or an arc in any case.
  static void Unfinish (dbObject& object) {
    object.GetFlags () &= static_cast<uint16_t> (~OBJECT_GridFinal);
    if (object.GetRecordType () == DATABASE_LineRecord ||
        object.GetRecordType () == DATABASE_ArcRecord)
      object.GetFlags () &= static_cast<uint16_t> (~OBJECT_GridKnown);
  }

  void Note (database_RecordType type) {
    _TransformChanged = _TransformChanged || IsOfTransform (type);
    _Changed = _Changed || IsOfAdjustment (type);
  }

  // The object of a record that is on the chain of the job; null for one that is not indexed.
  dbObject* ObjectOf (DBID id) const {
    const dbModel_Node* node = _File.Database->Model ().Lookup (id);
    return node && !node->IsOffChain () ? _File.ObjectOf (_File.FindByRecordId (id)) : nullptr;
  }

  // Replaced records may have other names: they are taken out of the order of names, and entered
  // again when all of them are out.
  void FileAgain (const dbTransaction& transaction) {
    std::vector<dbObject*> replaced;
    for (const dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
      if (action->Type == DBACTION_Replace)
        if (dbObject* object = ObjectOf (action->Target)) replaced.push_back (object);
    std::sort (replaced.begin (), replaced.end ());
    replaced.erase (std::unique (replaced.begin (), replaced.end ()), replaced.end ());
    for (dbObject* object : replaced) {
      const uint32_t hash = NameMap::Hash (object->GetName ());
      if (hash != NameMap::HashOf (*object)) {
        // The old name is not known any more: all that can have had it is out of date.
        _File._Names.Remove (*object);
        _File._Names.Enter (*object, hash);
        Invalidate (0);
      }
      _File._All.Remove (object->GetUniqueId ());
    }
    for (const dbObject* object : replaced) _File._All.InsertByNameAndId (object->GetUniqueId ());
  }

  // Points, lines and arcs from a subscript on lose their grids and statuses.
  void Invalidate (int32_t first) {
    for (int32_t i = first; i < _File.GetObjectCount (); i++) {
      dbObject& object = *_File.GetObject (i);
      if (HasGrid (object.GetRecordType ())) object.Invalidate ();
    }
  }

  // The best of a name may have changed, by a change of the object at a subscript: what lies behind
  // the first object of the name can depend on it, and more if an older object was found to.
  void InvalidateDependents (const Str& name, int32_t subscript) {
    const bool isForward = _File._ForwardNames.find (name.View ()) != _File._ForwardNames.end ();
    const UniqueId firstPoint = _File.FirstOf (name.View ());
    int32_t first = isForward ? 0 : subscript;
    if (!firstPoint.IsNull ()) first = std::min (first, firstPoint.GetSubscript ());
    Invalidate (first);
    const JobFile* main = _File.GetMainJobFile ();
    for (const auto& [number, link] : main->_Linked) {
      dbIndex* linked = main->GetLinkedIndex (number);
      if (!linked || linked == &_File) continue;
      dbSelection& items = linked->GetSelection ();
      int32_t itemNum = -1;
      bool isFound =
          items.Find (name.View (), DATABASE_ObservationRecord, DBSEARCH_First, &itemNum);
      while (isFound) {
        items.GetObject (itemNum)->GetFlags () &= 0xFFE6;
        isFound = items.Find (name.View (), DATABASE_ObservationRecord, DBSEARCH_Next, &itemNum);
      }
    }
  }

  void ForgetStatuses (const Str& name) {
    for (dbObject* object = _File.NewestOf (name.View ()); object;
         object = _File.OlderOf (name.View (), *object))
      object->GetFlags () &= static_cast<uint16_t> (~OBJECT_StatusKnown);
    _File.DropResults ();
  }

  bool IsUsedElsewhere (const Str& name) const {
    return _File._ForwardNames.find (name.View ()) != _File._ForwardNames.end () ||
           _File._BacksightNames.find (name.View ()) != _File._BacksightNames.end ();
  }

  // The bits that a point may have had: all of them while its status is not known.
  static uint32_t BestBitsOf (const dbObject& object) {
    return (object.GetFlags () & OBJECT_StatusKnown) != 0 ? object.Words ()[2] & bestBits
                                                          : bestBits;
  }

  // Ends an action on a point; hadBits are the bits it had before. All statuses of the name are
  // computed anew, the bit of the class Stakeout included.
  void FinishPoint (dbObject& object, uint32_t hadBits) {
    const Str name (object.GetName ());
    ForgetStatuses (name);
    const uint32_t status = object.GetStatus ();
    const bool mayChange = ((hadBits | status | (status ^ _OldStatus)) & bestBits) != 0 ||
                           (object.Words ()[1] & DBKIND_AzimuthOnly) != 0 || IsUsedElsewhere (name);
    if (mayChange) InvalidateDependents (name, object.GetUniqueId ().GetSubscript ());
  }

  void Add (const dbModel_Action& action) {
    Note (action.DBRecord->GetType ());
    const dbRecord_Class* record = _File.Database->GetRecord (action.DBRecord->RecordId);
    if (!record) return;
    const UniqueId id = _File.Append (*record);
    if (id.IsNull ()) return;
    _File._All.Insert (id);
    dbObject* object = _File.ObjectOf (id);
    if (record->GetType () == DATABASE_ObservationRecord) FinishPoint (*object, 0);
  }

  // Puts a new object of the record in the place of the old one; null if the record is not indexed.
  dbObject* ReplaceObject (DBID target) {
    dbObject* obj = ObjectOf (target);
    const dbRecord_Class* record = _File.Database->GetRecord (target);
    if (!obj || !record) return nullptr;
    std::unique_ptr<dbObject> newObject = dbobject_Make (*record, _File._Pool);
    if (!newObject || !Assert (obj->GetRecordType () == newObject->GetRecordType (),
                               "obj->_RecordType == newObject->_RecordType"))
      return nullptr;
    _OldStatus = obj->Words ()[2];
    newObject->GetFlags () = static_cast<uint16_t> (obj->GetFlags () & 0xFFE6);
    NameMap::TakePlace (*newObject, *obj);
    dbObject* made = newObject.get ();
    _File.dbIndex::ReplaceObject (obj->GetUniqueId ().GetSubscript (), std::move (newObject));
    return made;
  }

  void Amend (const dbModel_Action& action) {
    const dbRecord_Class& carrier = *action.DBRecord;
    const dbRecord_Class* target = _File.Database->GetRecord (action.Target);
    if (!target) return;
    const database_RecordType type = target->GetType ();
    Note (type);
    // A new reference changes positions with the record that has it.
    _Changed = _Changed || carrier.AffectsPositions () ||
               (carrier.GetType () == DATABASE_DBIDRecord && target->AffectsPositions ());
    dbObject* object = ObjectOf (action.Target);
    if (!object) return;
    const uint32_t hadBits = BestBitsOf (*object);
    if (carrier.GetType () == DATABASE_BoolActionRecord) {
      object = ReplaceObject (action.Target);
    } else if (ObservationObject* point = AsObservation (object)) {
      point->Invalidate ();
      point->SetMTAMethod (DBENTITY_Unknown);
    }
    if (object && type == DATABASE_ObservationRecord) FinishPoint (*object, hadBits);
  }

  void Replace (const dbModel_Action& action) {
    const dbRecord_Class& record = *action.DBRecord;
    Note (record.GetType ());
    _Changed = _Changed || record.AffectsPositions ();
    dbObject* old = ObjectOf (action.Target);
    if (!old) return;
    const uint32_t hadBits = BestBitsOf (*old);
    dbObject* object = ReplaceObject (action.Target);
    if (!object) return;
    if (record.GetType () == DATABASE_BackBearingRecord)
      for (int32_t i = object->GetUniqueId ().GetSubscript (); i < _File.GetObjectCount (); i++)
        if (dbObject& later = *_File.GetObject (i);
            later.GetRecordType () == DATABASE_ObservationRecord)
          later.GetFlags () &= static_cast<uint16_t> (~(OBJECT_GridKnown | OBJECT_GridFinal));
    if (record.GetType () == DATABASE_ObservationRecord) FinishPoint (*object, hadBits);
  }

  void Delete (const dbModel_Action& action) {
    const dbRecord_Class* observationRecord = _File.Database->GetRecord (action.Target);
    if (!observationRecord) return;
    Note (observationRecord->GetType ());
    if (observationRecord->GetType () != DATABASE_ObservationRecord) return;
    dbObject* old = _File.ObjectOf (_File.FindByRecordId (action.Target));
    if (!old || old->Words ()[0] == 0) return;
    std::unique_ptr<dbObject> newObject = dbobject_Make (*observationRecord, _File._Pool);
    if (!Assert (newObject != nullptr, "newObject")) return;
    const Str name (old->GetName ());
    const UniqueId id = old->GetUniqueId ();
    newObject->GetFlags () |= OBJECT_Hidden;
    newObject->SetWords ({});
    _File._Names.Remove (*old);
    _File._All.Remove (id);
    _File.dbIndex::ReplaceObject (id.GetSubscript (), std::move (newObject));
    ForgetStatuses (name);
    InvalidateDependents (name, id.GetSubscript ());
  }

  JobFile& _File;
  bool _Changed = false;           // a record that affects positions changed
  bool _TransformChanged = false;  // a record of the transform was added or changed
  uint32_t _OldStatus = 0;         // of the object that was replaced last
};

void JobFile::OnCommit (const dbTransaction& transaction) {
  if (!Database || GetFileType () == NotBuilt) return;
  _Revision++;
  DropResults ();
  Commit (*this).Follow (transaction);
}

void JobFile::DropGrids () {
  for (int32_t i = 0; i < GetObjectCount (); i++) {
    dbObject& object = *GetObject (i);
    if (HasGrid (object.GetRecordType ()))
      object.GetFlags () &= static_cast<uint16_t> (~(OBJECT_GridKnown | OBJECT_GridFinal));
  }
}

}  // namespace clxml
