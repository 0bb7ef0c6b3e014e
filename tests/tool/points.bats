# clxml points: the points of a job with their coordinates.

load helpers

setup () {
  cd "$BATS_TEST_TMPDIR"
  "$CLXML" import "$LOT" lot.job
}

@test "points lists the best point of each name as a table" {
  clxml points lot.job
  says 0
  is "$(head -1 out.txt | tr -s ' ')" "name north east elevation code class method"
  is "$(sed -n '/^BM 14/p' out.txt | tr -s ' ')" \
    "BM 14/C 709321.4417 308654.2280 46.3180 BM Control coordinates"
  is "$(cut -c1-6 out.txt | grep -c '^F[0-9]')" "$(cut -c1-6 out.txt | grep '^F[0-9]' | sort -u | wc -l)"
  holds "$err" "objects have no coordinates"
  clxml points lot.job CP1 nowhere
  says 65
  is "$(wc -l <out.txt)" 2
  holds "$err" "no point has the name nowhere"
}

@test "points prints JSON lines of all objects in their order" {
  clxml points lot.job --all --json
  says 0
  is "$(jq -s '[.[].id] == ([.[].id] | sort)' out.txt)" true
  is "$(jq -c 'select (.name == "CP1" and .best) | [.class, .status, .polar, .bestGPS]' out.txt)" \
    '["Control",21,null,true]'
  is "$(jq -s 'any (.[]; .record == "db_Line" and (.start.north | type) == "number")' out.txt)" true
  is "$(jq -s 'all (.[]; .grid == null or .grid.north != null or .reason != null)' out.txt)" true
  clxml points cut.job
  says 1
  head -c 9010 lot.job >cut.job
  clxml points cut.job
  says 2
  clxml points cut.job --salvage
  says 2
  holds "$out" "BM 14/C"
}

@test "points writes CSV and GeoJSON" {
  clxml points lot.job --csv
  says 0
  is "$(head -1 out.txt | tr -d '\r')" \
    "name,east,north,elevation,code,class,method,latitude,longitude,height,time"
  is "$(sed -n '/^BM 14/p' out.txt | cut -d, -f1-7)" \
    "BM 14/C,308654.2280,709321.4417,46.3180,BM,Control,coordinates"
  clxml points lot.job CP1 --csv --order name,north,east --delimiter ';' --decimal , -o cp1.csv
  says 0
  is "$(tail -1 cp1.csv | tr -d '\r')" "CP1;709402,7530;308710,1140"
  clxml points lot.job --csv --order name,up
  says 64
  clxml points lot.job --geojson
  says 0
  is "$(jq -c '.features[] | select (.properties.name == "CP1") | .geometry.coordinates' out.txt)" \
    "[173.353784921,-41.165287939,62.114]"
  is "$(jq '[.features[] | select (.properties.kind == "arc")] | length' out.txt)" 1
  clxml points lot.job --geojson --seq --local
  says 0
  is "$(jq -s 'all (.[]; .type == "Feature")' out.txt)" true
}

@test "explain shows every record of a name and the reduction of the best" {
  clxml explain lot.job HSE2 --json
  says 0
  is "$(jq '[.records[] | select (.best)] | length' out.txt)" 1
  is "$(jq '.explained == (.records[] | select (.best) | .id)' out.txt)" true
  is "$(jq '(.grid.north * 10000 | round) / 10000' out.txt)" 709335.7402
  is "$(jq -r '.steps[] | select (.step == "orientation") | .values["azimuth is"]' out.txt | wc -l)" 1
  clxml explain lot.job HSE1
  says 0
  holds "$out" "no coordinates: "
  clxml explain lot.job hse2
  says 65
  holds "$err" "did you mean HSE2"
}
