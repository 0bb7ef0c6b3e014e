# What the tool's tests share: a folder for each test, damage, and the small verbs.
# CLXML is the tool under test; LOT and ORCHARD are the exchange files of the house.

EXAMPLES=$(cd "$BATS_TEST_DIRNAME/../../examples" && pwd)
LOT=$EXAMPLES/boundary_1140.xml
ORCHARD=$EXAMPLES/orchard_1090.xml
: "${CLXML:=$BATS_TEST_DIRNAME/../../build/test/clxml}"

setup () {
  cd "$BATS_TEST_TMPDIR"
}

# Runs the tool with its two outputs apart: $status, $out, $err.
clxml () {
  status=0
  "$CLXML" "$@" >out.txt 2>err.txt </dev/null || status=$?
  out=$(tr -d '\0' <out.txt)
  err=$(tr -d '\0' <err.txt)
}

# says STATUS: the last run ended with that status; what it said is shown when it did not.
says () {
  [ "$status" -eq "$1" ] && return
  echo "status $status in place of $1"
  echo "stdout: ${out:0:2000}"
  echo "stderr: $err"
  return 1
}

# holds TEXT PART: the text has that part.
holds () {
  [[ $1 == *"$2"* ]] && return
  echo "\"$2\" is not in: $1"
  return 1
}

# is A B: the two are the same text.
is () {
  [ "$1" == "$2" ] && return
  echo "\"$1\" is not \"$2\""
  return 1
}

# Nothing stands at any of these names.
gone () {
  local name
  for name; do
    [ ! -e "$name" ] || { echo "$name is there"; return 1; }
  done
}

# put FILE OFFSET VALUE: sets one byte.
put () {
  printf "\\x$(printf %02x "$3")" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}

# flip FILE OFFSET: inverts the bits of one byte.
flip () {
  put "$1" "$2" $((0x$(od -An -tx1 -j "$2" -N 1 "$1" | tr -d ' ') ^ 255))
}

# exchange NAME VERSION: an exchange file with a job element around the elements on stdin.
exchange () {
  {
    echo '<?xml version="1.0"?>'
    echo "<Job version=\"$2\"><DATABASE_JobRecord>TEST</DATABASE_JobRecord>"
    cat
    echo '</Job>'
  } >"$1"
}

# many NAME COUNT: an exchange file of that many points.
many () {
  awk -v n="$2" 'BEGIN { for (i = 1; i <= n; i++) {
    printf "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x%x\"><PointName>P%d</PointName>", i * 4, i
    printf "<Method>DBENTITY_Coordinates</Method><SurveyMethod>DBENTITY_KeyedIn</SurveyMethod>"
    print "<Classification>Normal</Classification><Deleted>false</Deleted></DATABASE_PointRecord>"
    printf "<DATABASE_GridRecord rec=\"db_Grid\" ID=\"0x%x\"><Grid><North>%d.25</North>", i * 4 + 1, i
    printf "<East>%d.5</East><Elev/></Grid></DATABASE_GridRecord>\n", i * 2
    printf "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x%x\"/>\n", i * 4 + 2
  } }' | exchange "$1" 1140
}

# await FILE PROCESS: waits until the file has bytes, for as long as the process lives.
await () {
  while [ ! -s "$1" ] && kill -0 "$2" 2>/dev/null; do sleep 0.01; done
  [ -s "$1" ]
}
