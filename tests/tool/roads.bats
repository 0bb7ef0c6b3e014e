# clxml road: from the exchange file to the road as it is listed, checked, asked and drawn.

load helpers

# The two roads of the example, beside their job.
roads () {
  clxml import "$EXAMPLES/roads_1100.xml" k.job
  says 0
  main='Valley Road(KERERU-1).rxl'
  access='Quarry Access(KERERU-1).rxl'
}

# edit FROM TO: the main road with one text replaced, as odd.rxl; the text must be there.
edit () {
  grep -q "$1" "$main" || { echo "\"$1\" is not in the road"; return 1; }
  sed "0,/$1/s//$2/" "$main" >odd.rxl
}

@test "a road is listed with all it holds" {
  roads
  clxml road "$main"
  says 0
  is "$err" ""
  squeezed=$(tr -s ' ' <<<"$out")
  while read -r line; do
    holds "$squeezed" "$line"
  done <<'END'
length 1042.116 m, station 100.000 to 1142.116
0 start (RD100) 100.000 741250.000 328400.000
2 entry spiral 245.230 741317.060 328528.821 62°30'00.0" 60.000 inf > 250.000 R
8 exit spiral 847.116 741257.506 329093.691 62°09'04.5" 40.000 180.000 > 400.000 L
end 1142.116 741472.740 329291.821 36°48'21.0"
1 parabola 265.000 47.260 3.000% -1.600% L 110.000 23.913 210.000 / 45.610 320.000 / 46.380
3 asymmetric parabola 760.000 50.410 2.500% -1.100% L 60.000 + 90.000
KERBED SEALED 420.000
12 left 696.320 -7.000% 7.000% 0.900 0.000
BATTER side slope cut 100.000%, fill -66.667% ditch 1.200
END
}

@test "places on the line, and beside it" {
  roads
  clxml road "$main" --at 100 --at 0+172.5:-3 --at 1142.116
  says 0
  # The first element's azimuth is N 62.5° E: the points follow with a pocket calculator. Beside the
  # line the lane falls by 3 %.
  is "$(sed -n 1p out.txt)" 'station 100.000  offset 0.000  north 741250.0000  east 328400.0000  azimuth 62°30'"'"'00.0"  elevation 42.3100'
  is "$(sed -n 2p out.txt)" 'station 172.500  offset -3.000  north 741286.1378  east 328462.9230  azimuth 62°30'"'"'00.0"  design elevation 44.3950'
  holds "$(sed -n 3p out.txt)" 'azimuth 36°48'"'"'21.0"'
  clxml road "$main" --at 99 --at 200
  says 3
  holds "$err" "99: no place on this road, which runs from 100.000 to 1142.116"
  holds "$out" "station 200.000"
  for bad in x 1+ 100: :5 1.5+2 1e3 nan; do
    clxml road "$main" --at "$bad"
    says 64
    is "$out" ""
  done
}

@test "--check tells what does not fit" {
  roads
  for road in "$main" "$access"; do
    clxml road "$road" --check
    says 0
    is "$out" "no fault found"
  done
  while IFS='|' read -r from to said; do
    edit "$from" "$to"
    clxml road odd.rxl --check
    says 2
    holds "$out" "$said"
  done <<'END'
<Radius>250<|<Radius>251<|element 3 (arc at 305.230) does not end
<North>741317.0[0-9]*<|<North>741317.5<|element 1 (straight at 100.000) does not end where its values lead
<Name>SEALED<|<Name>GONE<|"GONE" is placed and does not exist
<HorizontalDistance>1.2<|<HorizontalDistance>-1.2<|has a strip of negative width
<Station>420<|<Station>100<|template placements
<Radius>3000<|<Radius><|the vertical alignment
END
}

@test "a drawing appears whole or not at all" {
  roads
  clxml road "$main" --svg main.svg
  says 0
  is "$out$err" ""
  xmllint --noout main.svg
  for part in "TS 0+245.230" "EOP 1+142.116" "R 250.00" "A 122.47" "high 0+281.739" "(10 times)" \
    "+2.500%" 'class="spiral"' "Scale 1:3000"; do
    grep -qF "$part" main.svg || { echo "no $part"; return 1; }
  done
  cp main.svg before.svg
  clxml road "$access" --svg main.svg
  says 4
  cmp main.svg before.svg
  clxml road "$access" --svg main.svg --force
  says 0
  ! cmp -s main.svg before.svg
  clxml road "$main" --svg "./$main" --force
  says 64
  clxml road "$main" --svg none/main.svg
  says 4
  (ulimit -f 8; clxml road "$main" --svg big.svg; says 4)
  gone big.svg none
  is "$(find . -name '*.part')" ""
}

@test "cross sections are listed, given as JSON and drawn" {
  roads
  # Pivot left, -7 % and +7 %, 0.9 m wider: the centre rises by 0.04 * (4.7 + 0.9).
  clxml road "$main" --section 750 --offset -3 20 --ground -1
  says 0
  squeezed=$(tr -s ' ' <<<"$out")
  for line in "templates left SEALED, right SEALED" "left EOS -4.400 49.626 4.400 -7.000% -0.084" \
    "centre 0.000 49.934 0.224" "right SHDR 4.700 50.251 1.200 6.000% 0.541" \
    "right BATTER side slope cut 100.000% fill -66.667% ditch 1.200" \
    "-3.000 49.7240 -7.000% 49.7240" "20.000 - - 40.4030"; do
    holds "$squeezed" "$line"
  done
  # Between SEALED at 100 and KERBED at 420: the kerb grows out of the verge.
  clxml road "$main" --section 100 --section 260 --section 99 --json --offset 0
  says 3
  holds "$err" "99.000: no place on this road"
  is "$(wc -l <out.txt)" 3
  holds "$(sed -n 1p out.txt)" '"centre":{"offset":0.0,"elevation":42.31},"left":{"template":"SEALED","nodes":[{"offset":-3.5,'
  holds "$(sed -n 2p out.txt)" '"code":"FPATH"}],"sideSlope":{"code":"BATTER","cutGrade":0.785398163'
  is "$(sed -n 3p out.txt)" '{"station":null,"north":null,"east":null,"elevation":null,"azimuth":null,"centre":{"offset":null,"elevation":null},"left":{"template":"","nodes":[],"sideSlope":null},"right":{"template":"","nodes":[],"sideSlope":null},"at":[{"offset":0.0,"elevation":null,"grade":0.0}]}'
  clxml road "$main" --sections 500 --json
  says 0
  is "$(grep -o '"station":[0-9.]*' out.txt | tr '\n' ' ')" '"station":100.0 "station":500.0 "station":1000.0 "station":1142.1164473723 '

  clxml road "$main" --section 750 --svg one.svg
  says 0
  is "$out$err" ""
  clxml road "$main" --sections 100 --ground 0.5 --svg sheets.svg
  says 0
  xmllint --noout one.svg sheets.svg
  for part in "0+750.000" "scale 1:50, heights 1:25 (vertical exaggeration 2)" "sheet 1 of 1" ">EOS<" \
    ">-4.400<" ">50.251<" "cut 100.0% (1:1.00)" "fill -66.7% (1:1.50)"; do
    grep -qF -- "$part" one.svg || { echo "no $part"; return 1; }
  done
  grep -qF "sheet 3 of 3" sheets.svg
  grep -qF "ground 42.810" sheets.svg
  clxml road "$main" --section 99 --svg none.svg
  says 4
  clxml road "$main" --sections 0.5 --svg none.svg
  says 4
  for bad in "--json" "--offset 3" "--ground 1" "--section x" "--section 750 --offset x" "--sections 0" \
    "--section 750 --ground x"; do
    # shellcheck disable=SC2086
    clxml road "$main" $bad
    says 64
  done
  gone none.svg
}

@test "what is no road, and what is hardly one" {
  for text in "" "<Road" "<?xml version=\"1.0\"?><Job/>"; do
    echo "$text" >no.rxl
    clxml road no.rxl
    says 1
    is "$out" ""
    [ -n "$err" ]
  done
  clxml road missing.rxl
  says 1
  cat >bare.rxl <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<NorvathRoad><Name>A &amp; &lt;B&gt;</Name><StationInterval>0.0000001</StationInterval>
<HorizontalAlignment><StartPoint><StartStation>0</StartStation>
<StartCoordinate><North>0</North><East>0</East></StartCoordinate></StartPoint><Straight/></HorizontalAlignment>
</NorvathRoad>
END
  clxml road bare.rxl
  says 0
  holds "$out" "A & <B>"
  clxml road bare.rxl --svg bare.svg
  says 4
  gone bare.svg
  sed -i 's|<Straight/>|<Straight><StartStation>0</StartStation><StartAzimuth>90</StartAzimuth><StartCoordinate><North>0</North><East>0</East></StartCoordinate><Length>1000000</Length><EndStation>1000000</EndStation><EndCoordinate><North>0</North><East>1000000</East></EndCoordinate></Straight>|' bare.rxl
  clxml road bare.rxl --svg bare.svg
  says 0
  xmllint --noout bare.svg
  [ "$(stat -c %s bare.svg)" -lt 500000 ]
}
