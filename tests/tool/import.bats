# clxml import: every exit status and what stands on disk afterwards.

load helpers

@test "every example becomes a job" {
  for example in "$EXAMPLES"/*.xml; do
    name=$(basename "$example" .xml)
    clxml import "$example" "$name.job"
    says 0
    is "$name:$err" "$name:"
    while read -r road; do [ -z "$road" ] || [ -s "$road" ]; done <<<"$out"
    clxml info "$name.job"
    says 0
  done
  is "$(ls *.job* | wc -l)" "$(ls "$EXAMPLES"/*.xml | wc -l)"
}

@test "a wrong field is told whole and leaves no job" {
  exchange bad.xml 1140 <<<'<DATABASE_ArcRecord rec="db_Arc" ID="0x2a"><ArcName>A</ArcName><Method>x</Method></DATABASE_ArcRecord>'
  clxml import bad.xml bad.job
  says 2
  is "$out" ""
  holds "$err" $'XML read error: \nInvalid dbentity_ArcMethod name="Method" with value="x"\nDATABASE_ArcRecord ID="0x2a"'
  gone bad.job bad.job.part
}

@test "road files are listed, and those that could not be written are named" {
  road () {
    echo "<DATABASE_RoadHeaderRecord ID=\"0x2\"><Deleted>false</Deleted><RoadName>$1</RoadName></DATABASE_RoadHeaderRecord>"
  }
  exchange roads.xml 1140 <<<"$(road A; road B; road C; road A)"
  mkdir site
  echo precious >'site/B(TEST).rxl'
  chmod a-w 'site/B(TEST).rxl'
  clxml import roads.xml site/x.job
  says 0
  is "$out" $'site/A(TEST).rxl\nsite/C(TEST).rxl'
  is "$(cat 'site/B(TEST).rxl')" precious
  holds "$err" "warning: site/B(TEST).rxl: the road file could not be written"
  holds "$err" "warning: site/A(TEST).rxl: two roads have this file, which holds the later one"
  holds "$(cat 'site/C(TEST).rxl')" "<Name>C(TEST)</Name>"
}

@test "a reference to nothing is told whole and leaves no job" {
  exchange bad.xml 1140 <<<'<DATABASE_TraverseClosureRecord rec="db_TraverseClosure" ID="0x2"><TraversePtr>0xbeef</TraversePtr><Results>DBENTITY_Closed</Results></DATABASE_TraverseClosureRecord>'
  clxml import bad.xml bad.job
  says 2
  holds "$err" 'name="TraversePtr" with value="0x0000beef"'
  holds "$err" 'record type = 110'
  gone bad.job bad.job.part
}

@test "of several exchange files each becomes a job, past those that fail" {
  mkdir jobs
  cp "$LOT" lot7.xml
  echo 'no XML' >text.xml
  exchange bad.xml 1140 <<<'<DATABASE_NoteRecord rec="db_Wrong" ID="0x1"/>'
  road='<DATABASE_RoadHeaderRecord ID="0x2"><Deleted>false</Deleted><RoadName>A</RoadName></DATABASE_RoadHeaderRecord>'
  for name in one.v2 two; do exchange $name.xml 1140 <<<"$road"; done
  clxml import --into jobs lot7.xml text.xml bad.xml one.v2.xml two.xml
  says 4
  is "$(cd jobs; echo *)" "A(TEST).rxl lot7.job one.v2.job two.job"
  is "$out" $'jobs/A(TEST).rxl\njobs/A(TEST).rxl'
  holds "$err" "error: text.xml does not exist"
  holds "$err" "db_Wrong"
  holds "$err" "warning: jobs/A(TEST).rxl of jobs/one.v2.job was replaced by that of jobs/two.job"
  holds "$err" "3 of 5 exchange files imported"
  clxml info jobs/lot7.job
  says 0

  clxml import --into jobs lot7.xml two.xml
  says 5
  holds "$err" "0 of 2"
  clxml import --force --quiet --into jobs/ lot7.xml
  says 0
  is "$err" ""
  mkdir other
  cp lot7.xml other
  clxml import --force --into jobs lot7.xml other/lot7.xml
  says 64
  holds "$err" "lot7.xml and other/lot7.xml would both become jobs/lot7.job"
  clxml import --into none lot7.xml
  says 5
  clxml import lot7.xml two.xml three.xml
  says 64
  holds "$err" "--into"
}

@test "what is no exchange file is status 4" {
  echo 'no XML' >text.xml
  mkdir folder.xml
  mkfifo pipe.xml
  for name in missing text folder pipe; do
    clxml import "$PWD/$name.xml" x.job
    says 4
    holds "$err" "$PWD/$name.xml does not exist or is not an XML file"
    gone x.job x.job.part
  done
  printf '<?xml version="1.0"?>\n<Job><DATABASE_NoteRecord rec="db_Note" ID="0x1"/></Job>\n' >nojob.xml
  clxml import nojob.xml x.job
  says 4
  holds "$err" "could not find element named DATABASE_JobHeaderRecord or DATABASE_JobRecord"
  exchange behind.xml 1140 </dev/null
  echo 'text behind the root' >>behind.xml
  clxml import behind.xml x.job
  says 4
  holds "$err" "end of file was not processed"
  gone x.job x.job.part
}

@test "a job that cannot be made is status 5" {
  echo precious >lot.job
  clxml import "$LOT" lot.job
  says 5
  holds "$err" "lot.job exists already"
  is "$(cat lot.job)" precious
  clxml import "$LOT" no/such/folder/lot.job
  says 5
  holds "$err" "No such file or directory"
  mkdir folder.job
  clxml import "$LOT" folder.job --force
  says 5
}

@test "force replaces a job at the end of a whole import only" {
  echo precious >lot.job
  exchange bad.xml 1140 <<<'<DATABASE_NoteRecord rec="db_Wrong" ID="0x1"/>'
  clxml import bad.xml lot.job --force
  says 2
  is "$(cat lot.job)" precious
  clxml import "$LOT" lot.job --force
  says 0
  clxml info lot.job
  says 0
}

@test "a part file left behind is replaced" {
  echo rubbish >lot.job.part
  clxml import "$LOT" lot.job
  says 0
  gone lot.job.part
  clxml info lot.job
  says 0
}

@test "the exchange file is never taken for the job" {
  cp "$LOT" lot.xml
  cp "$LOT" lot.part
  clxml import lot.xml ./lot.xml --force
  says 64
  clxml import lot.part lot
  says 64
  cmp lot.xml "$LOT"
  cmp lot.part "$LOT"
}

@test "a full disk is told and leaves no job" {
  for points in 100 4000; do
    many many.xml $points
    (ulimit -f 4; exec "$CLXML" import many.xml many.job) 2>err.txt && status=0 || status=$?
    out="" err=$(cat err.txt)
    says 2
    holds "$err" "ob file could not be written"
    holds "$err" "File too large"
    gone many.job many.job.part
  done
}

@test "a killed import leaves nothing that looks like a job" {
  many many.xml 40000
  "$CLXML" import many.xml many.job 2>/dev/null 3>&- &
  await many.job.part $!
  kill -9 $!
  wait $! || true
  gone many.job
  # What it left is no obstacle, and is not taken for a job either.
  clxml import "$LOT" many.job
  says 0
  gone many.job.part
}

@test "Ctrl-C cancels, and nothing stays" {
  many many.xml 40000
  env --default-signal=INT "$CLXML" import many.xml many.job 2>err.txt 3>&- &
  await many.job.part $!
  kill -INT $!
  status=0
  wait $! || status=$?
  err=$(cat err.txt)
  says 1
  holds "$err" cancelled
  gone many.job many.job.part
}

@test "two imports do not share a part file" {
  many many.xml 40000
  "$CLXML" import many.xml many.job 2>/dev/null 3>&- &
  await many.job.part $!
  clxml import "$LOT" many.job
  kill -9 $!
  wait $! || true
  says 5
  holds "$err" "another import is writing"
}

@test "the progress bar is for terminals" {
  clxml import "$LOT" a.job
  is "$err" ""
  script -qec "'$CLXML' import '$LOT' b.job" /dev/null >bar.txt
  holds "$(cat bar.txt)" "100 %"
  mkdir many
  script -qec "'$CLXML' import --into many '$LOT' '$ORCHARD'" /dev/null >bar.txt
  grep -q "0:00  2 of 2: orchard_1090.xml" bar.txt
  script -qec "'$CLXML' import --quiet '$LOT' c.job" /dev/null >bar.txt
  is "$(cat bar.txt)" ""
}

@test "long lines are a warning, once" {
  long=$(printf '%020000d' 7)
  exchange long.xml 1140 <<<"<DATABASE_NoteRecord rec=\"db_Note\" ID=\"0x1\"><Note>$long $long</Note></DATABASE_NoteRecord>"
  clxml import long.xml long.job
  says 0
  is "$(grep -c 'warning: long.xml: .*16383 bytes' err.txt)" 1
}

@test "failed assertions are shown once each, with a count" {
  for id in 1 2 3; do
    echo "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x$id\"><PointName/><Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_KeyedIn</SurveyMethod><Classification>DBENTITY_Normal</Classification></DATABASE_PointRecord>"
  done | exchange nameless.xml 1140
  clxml import nameless.xml nameless.job
  says 0
  is "$(grep -c 'this->PointName.Length() > 0' err.txt)" 1
  holds "$err" "3 times"
  clxml dump nameless.job
  is "$(jq -r 'select (.type == "db_Observation") | .PointName' out.txt | wc -l)" 3
}

@test "log lines are for the verbose" {
  exchange stray.xml 1140 <<<'<DATABASE_GridRecord rec="db_Grid" ID="0x1"><Grid/></DATABASE_GridRecord>'
  clxml import stray.xml a.job
  says 0
  is "$err" ""
  clxml import stray.xml b.job --verbose
  says 0
  holds "$err" "log: "
}

@test "runs with SOURCE_DATE_EPOCH are the same to the byte" {
  exchange bare.xml 1140 <<<'<DATABASE_NoteRecord rec="db_Note" ID="0x1"><Note>one</Note></DATABASE_NoteRecord>'
  export SOURCE_DATE_EPOCH=1300000000
  for source in bare.xml "$LOT" "$ORCHARD"; do
    TZ=UTC clxml import --force "$source" a.job
    says 0
    sleep 1.1
    TZ=Pacific/Auckland clxml import --force "$source" b.job
    says 0
    cmp a.job b.job
  done
  SOURCE_DATE_EPOCH=soon clxml import bare.xml c.job
  says 64
  gone c.job
}

@test "names of every kind" {
  mkdir 'a folder'
  cp "$LOT" 'a folder/Lot 7 – Kaiteri.xml'
  clxml import 'a folder/Lot 7 – Kaiteri.xml' 'a folder/Lot 7.job'
  says 0
  cp "$LOT" c:lot.xml
  clxml import c:lot.xml c:lot.job
  says 0
  [ -s c:lot.job ]
  clxml info c:lot.job
  says 0
  clxml import "$LOT" 'back\slash.job'
  says 5
  holds "$err" backslash
  clxml import 'back\slash.xml' x.job
  says 4
  clxml import "$LOT" ''
  says 5
}
