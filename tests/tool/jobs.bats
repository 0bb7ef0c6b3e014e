# clxml info, dump and repair: jobs clean and damaged, and what is no job.

load helpers

setup () {
  cd "$BATS_TEST_TMPDIR"
  "$CLXML" import "$LOT" lot.job
}

# damaged NAME: a copy with one byte in the middle wrong.
damaged () {
  cp lot.job "$1"
  flip "$1" $(($(stat -c %s lot.job) / 2))
}

@test "info tells what a clean job holds" {
  clxml info lot.job --json
  says 0
  is "$err" ""
  is "$(jq -c keys_unsorted out.txt)" '["file","stamp","status","job","records","types","lastGood","size"]'
  is "$(jq -c '[.file, .stamp, .status, .job]' out.txt)" '["lot.job","12.10.3",0,"KAITERI-LOT7"]'
  is "$(jq .size out.txt)" "$(stat -c %s lot.job)"
  is "$(jq .lastGood out.txt)" "$(stat -c %s lot.job)"
  is "$(jq '.records == ([.types[]] | add)' out.txt)" true
  is "$(jq -c '.types | [.db_JobHeader, .db_Arc, .db_Traverse, .db_Area]' out.txt)" "[1,1,1,1]"
  clxml info lot.job
  says 0
  holds "$out" KAITERI-LOT7
  holds "$out" 12.10.3
}

@test "info answers for every file that exists" {
  # answers FILE OPEN-STATUS EXIT-STATUS
  answers () {
    clxml info "$1" --json
    says "$3"
    is "$(jq .status out.txt)" "$2"
    is "$(jq 'keys | length' out.txt)" 8
    [ ! -f "$1" ] || is "$(jq .size out.txt)" "$(stat -c %s "$1")"
    [ -n "$err" ]
  }
  damaged damaged.job
  answers damaged.job 6 2
  is "$(jq '.lastGood < .size and .records > 1' out.txt)" true
  head -c 47 lot.job >short.job
  answers short.job 1 1
  : >empty.job
  answers empty.job 1 1
  mkdir folder.job
  answers folder.job 1 1
  mkfifo pipe.job
  answers pipe.job 1 1
  cp lot.job stamp.job
  put stamp.job 46 11
  answers stamp.job 2 1
  is "$(jq -r .stamp out.txt)" 12.11.3
  cp lot.job style.job
  put style.job 43 3
  answers style.job 3 1
  head -c 48 lot.job >bare.job
  answers bare.job 3 1
  answers "$LOT" 3 1
  is "$(jq -c '[.stamp, .job, .records, .types]' out.txt)" '[null,null,0,{}]'
}

@test "what is not there has no answer" {
  for command in info dump repair; do
    clxml $command nothing.job
    says 1
    is "$out" ""
    holds "$err" "no such file"
  done
}

@test "a job cut behind a frame is clean, within one it is damaged" {
  head -c -1 lot.job >cut.job
  clxml info cut.job --json
  says 2
  head -c "$(jq .lastGood out.txt)" lot.job >whole.job
  clxml info whole.job
  says 0
}

@test "reading changes nothing" {
  damaged damaged.job
  sha256sum lot.job damaged.job >sums
  before=$(stat -c %y lot.job damaged.job)
  for job in lot.job damaged.job; do
    clxml info $job
    clxml dump $job --salvage
  done
  sha256sum --quiet -c sums
  is "$(stat -c %y lot.job damaged.job)" "$before"
}

@test "dump prints one object for each record on the chain" {
  clxml info lot.job --json
  records=$(jq .records out.txt)
  types=$(jq -Sc .types out.txt)
  clxml dump lot.job
  says 0
  is "$err" ""
  is "$(jq -c . out.txt | wc -l)" "$records"
  is "$(wc -l <out.txt)" "$records"
  is "$(jq -Ssc 'group_by (.type) | map ({(.[0].type): length}) | add' out.txt)" "$types"
  is "$(head -1 out.txt | jq -c '[.type, .id, .JobName]')" '["db_JobHeader",1,"KAITERI-LOT7"]'
  is "$(jq -c 'keys_unsorted[:4]' out.txt | sort -u)" '["type","id","time","note"]'
}

@test "dump gives fields by name, words and null" {
  clxml dump lot.job
  says 0
  # ask TYPE NAME-FIELD NAME FILTER: of the first record of that type and name.
  ask () {
    jq -sc "map (select (.type == \"$1\" and .$2 == \"$3\"))[0] | $4" out.txt
  }
  is "$(ask db_Observation PointName 'BM 14/C' '[.Method, .SurveyMethod, .Classification, .Derivation, .Deleted, .time]')" \
    '["DBENTITY_Coordinates","DBENTITY_KeyedIn","Control","KI",0,984556630]'
  is "$(ask db_Observation PointName 'BM 14/C' '[.measurement.type, .measurement.North]')" \
    '["db_Grid",709321.4417]'
  is "$(ask db_Observation PointName 'BM 14/C' '.features[0] | [.code, .suffix, (.attributes | map (.type))]')" \
    '["BM","",["menu","number","text","date","time","file","separator"]]'
  is "$(ask db_Observation PointName 'BM 14/C' '.features[0].attributes | [.[0].index, .[0].value, .[1].value]')" \
    '[2,"3V",46.318]'
  is "$(ask db_Observation PointName LC1 .measurement.type)" '"db_WGS84"'
  is "$(ask db_Observation PointName LC7 .measurement.CreatedView)" \
    '["COORDSYS_CogoAzimuthGrid","COORDSYS_CogoDistanceGrid","COORDSYS_CogoOrthoHeights"]'
  is "$(ask db_Observation PointName T1 '.features[0].attributes[0].value')" '"Tōtara"'
  is "$(ask db_Observation PointName CP1 '[.Description1, .Description2]')" \
    '["Old 1987 control","0.15 m below ground"]'
  is "$(ask db_Inverse TargetPoint LC3 '[.Result.SourcePoint, (.Result | has ("HDist"))]')" '["LC1",true]'
  is "$(ask db_PointKeyin Method DBENTITY_DistDistInter '[.AzimuthOne, .TurnedAngle, .VerticalPlaneIntersectionRay.Face]')" \
    '[null,null,"COORD_FaceNull"]'
  is "$(jq -c 'select (.type == "db_Area") | [.NumberOfPoints, .ListOfPoints]' out.txt)" \
    '[7,["LC1","LC2","LC3","LC4","LC5","LC6","LC7"]]'
  # References are those of the job; the closure stands in front of its traverse.
  is "$(ask db_TraverseClosure Results DBENTITY_Closed '.TraverseLegs | length')" 4
  is "$(ask db_TraverseClosure Results DBENTITY_Closed .TraversePtr)" \
    "$(ask db_Traverse TraverseName TRV-KAITERI .id)"
}

@test "references of the exchange file name records of the job" {
  clxml dump lot.job
  # wrong FILTER KIND: the references that name anything but a record of that kind.
  wrong () {
    jq -sc "(map ({(.id | tostring): (.measurement.type // .type)}) | add) as \$kind |
      map ($1 // empty | select (. != 0 and \$kind[tostring] != \"$2\"))" out.txt
  }
  is "$(wrong .measurement.Station db_TotalStation)" "[]"
  is "$(wrong .measurement.BackBearing db_TotalBackBearing)" "[]"
  is "$(wrong .measurement.BasePoint db_LaserBasePoint)" "[]"
  is "$(wrong .measurement.Antenna db_Antenna)" "[]"
  is "$(wrong .Atmosphere db_TotalAtmosphere)" "[]"
  is "$(wrong .Observation db_Circle)" "[]"
  is "$(wrong .MeanTurnedAngle db_MeanTurnedAngle)" "[]"
  is "$(jq -sc 'map (.measurement.Station // empty) | length' out.txt)" 3
  is "$(jq -sc 'map (select (.MeanTurnedAngle > .id)) | length' out.txt)" 2  # these point forward
}

@test "the notes of an entity stand behind it as one" {
  clxml dump lot.job
  is "$(jq -sc 'map (select (.type == "db_Observation" and .PointName == "CP2"))[0].note' out.txt)" \
    '"180 epochs, PDOP 1.9\r\n\r\nSecond occupation after 40 minutes: 4 mm N, 2 mm E\r\n"'
}

@test "bytes that are no UTF-8 come out as replacement characters" {
  printf '<DATABASE_NoteRecord rec="db_Note" ID="0x1"><Note>a\xffb \xc3\xa9 \xe2\x82 &#233;. \xed\xa0\x80 \xf0\x9f\x98\x80 &quot;\x01</Note></DATABASE_NoteRecord>' |
    exchange bytes.xml 1140
  clxml import bytes.xml bytes.job
  says 0
  clxml dump bytes.job
  says 0
  iconv -f UTF-8 -t UTF-8 out.txt >/dev/null
  is "$(jq -r 'select (.type == "db_Note") | .note' out.txt | head -1)" \
    $'a\xef\xbf\xbdb é \xef\xbf\xbd \xef\xbf\xbd. \xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd 😀 "\x01\r'
}

@test "a damaged job is dumped only when asked for" {
  damaged damaged.job
  clxml dump damaged.job
  says 2
  is "$out" ""
  holds "$err" --salvage
  clxml dump damaged.job --salvage
  says 2
  [ -n "$err" ]
  lines=$(wc -l <out.txt)
  clxml info damaged.job --json
  is "$(jq .records out.txt)" "$lines"
  clxml dump "$LOT"
  says 1
  is "$out" ""
}

@test "output that cannot be written is told" {
  for command in "dump lot.job" "info lot.job" "info lot.job --json" "--help" "--version"; do
    status=0
    "$CLXML" $command >/dev/full 2>err.txt || status=$?
    out="" err=$(cat err.txt)
    says 74
    [ -n "$err" ]
  done
}

@test "repair keeps the original and cuts the damaged tail" {
  damaged damaged.job
  cp damaged.job before.job
  clxml info damaged.job --json
  records=$(jq .records out.txt) good=$(jq .lastGood out.txt)
  clxml repair damaged.job --yes
  says 0
  holds "$err" "$records records"
  holds "$err" "byte $good of $(stat -c %s lot.job)"
  cmp before.job damaged.job.bak
  gone damaged.job.part
  clxml info damaged.job --json
  says 0
  is "$(jq -c '[.status, .records, .lastGood, .size]' out.txt)" "[0,$records,$good,$good]"
  cmp -n "$good" damaged.job lot.job
}

@test "repair does nothing unasked" {
  damaged damaged.job
  cp damaged.job before.job
  clxml repair damaged.job
  says 2
  holds "$err" --yes
  cmp damaged.job before.job
  gone damaged.job.bak damaged.job.part
  echo old >damaged.job.bak
  clxml repair damaged.job --yes
  says 2
  holds "$err" "damaged.job.bak exists already"
  is "$(cat damaged.job.bak)" old
  cmp damaged.job before.job
  rm damaged.job.bak
  (sleep 0.5; echo n) | script -qec "'$CLXML' repair damaged.job" /dev/null >answer.txt || true
  holds "$(cat answer.txt)" "[y/N]"
  cmp damaged.job before.job
  (sleep 0.5; echo y) | script -qec "'$CLXML' repair damaged.job" /dev/null >answer.txt
  clxml info damaged.job
  says 0
  cmp damaged.job.bak before.job
}

@test "repair leaves alone what is clean or no job" {
  cp lot.job before.job
  clxml repair lot.job --yes
  says 0
  holds "$err" "nothing to repair"
  cmp lot.job before.job
  cp "$LOT" lot.xml
  clxml repair lot.xml --yes
  says 1
  cmp lot.xml "$LOT"
  gone lot.job.bak lot.xml.bak
}
