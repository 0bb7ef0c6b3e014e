# clxml transform: points through a coordinate system of options or of a job.
# Coordinates are by PROJ 9.1.1 (cct), with the definition beside them.

load helpers

# sent TEXT ARGUMENTS...: runs the command with that text on standard input.
sent () {
  printf -- "$1" >in.txt
  shift
  status=0
  "$CLXML" transform "$@" <in.txt >out.txt 2>err.txt || status=$?
  out=$(cat out.txt)
  err=$(cat err.txt)
}

# near TEXT NUMBERS: the words of the text are these numbers, to within a millimetre.
near () {
  local i=0 word words=($1)
  shift
  is "${#words[@]}" "$#"
  for word; do
    awk -v a="${words[i]}" -v b="$word" 'BEGIN { t = length (a) - index (a, ".") == 11 ? 1e-8 : 1e-3
      exit !(a ~ /^-?[0-9.]+$/ && a - b < t && b - a < t) }' ||
      { echo "${words[i]} is not near $word"; return 1; }
    i=$((i + 1))
  done
}

GERMAN=(--ellipsoid Bessel --projection TransverseMercator --origin 0,12 --false 0,4500000
  --datum -598.1,-73.7,-418.2,0.202,0.045,-2.455,-6.7)

@test "the whole way and back" {
  # +proj=cart, +proj=helmert +x=-598.1 +y=-73.7 +z=-418.2 +rx=0.202 +ry=0.045 +rz=-2.455 +s=-6.7
  # +convention=coordinate_frame +exact, +proj=tmerc +lon_0=12 +x_0=4500000 +ellps=bessel
  sent '48.1 11.5 560\n' "${GERMAN[@]}"
  says 0
  is "$err" ""
  near "$out" 5329225.3851 4462867.2777 507.9097
  sent "$out\n" --inverse "${GERMAN[@]}"
  near "$out" 48.1 11.5 560
  is "$(cut -d' ' -f1,2 out.txt | grep -o '\.[0-9]*' | awk '{ print length }' | xargs)" "12 12"
}

@test "every option reaches the projection" {
  while IFS='|' read -r point expected options; do
    sent "$point\n" $options
    says 0
    near "$out" $expected
    sent "$out\n" --inverse $options
    near "$out" $point
  done <<'END'
-22.6 15.7 5|7500590.1029 571947.9716 5|--utm 33S
48.86 2.35 5|6862414.6368 652310.7180 5|--projection lambert2parallel --ellipsoid GRS80 --origin 46.5,3 --parallels 49,44 --false 6600000,700000
58 -134 5|686504.3757 798964.2744 5|--projection ObliqueMercatorAngle --ellipsoid GRS80 --origin 57,-133.6666666666667 --false -5000000,5000000 --scale 0.9999 --azimuth 323.1301023611111 --geodetic-azimuth --rectify
5.3872535833 115.8055055 5|596562.7839 679245.7397 5|--projection RSO --ellipsoid 6377298.556,300.8017 --origin 4,115 --scale 0.99984 --azimuth 53.13010236111111
50.1 14.5 5|-1042472.2541 -737128.3294 5|--projection Krovak --ellipsoid Bessel
-22.6 15.7 5|12499409.8971 428052.0284 5|--utm 33S --axes SW
-22.6 15.7 5|7500590.1029 571947.9716 3|--utm 33S --incline 7500590.1029,0,0.001,0,-2
-22.6 15.7 5|7500592.1029 571944.9716 5|--utm 33S --plane 7500590.1029,571947.9716,2,-3,0,1.5
-22.6 15.7 5|7500480.1029 571747.9716 5|--utm 33S --ground 1.0003 --project -22.6,15.7 --offsets 110,200
END
}

@test "lines as people write them" {
  sent '\xEF\xBB\xBF# lot 7\n\n -22.6,15.7 , 5\r\n-22.6\t+15.7\n-22.6 15.7 -\n-22.6 ;-344.3;5' --utm 33S
  says 0
  is "$(sed -n '1,2p' out.txt)" "# lot 7"
  is "$(sed -n '3,6p' out.txt | sort -u)" "7500590.1029 571947.9716 -
7500590.1029 571947.9716 5.0000"
  # No height, no way to WGS84; but to the local side.
  sent '7500590.1029 571947.9716\n' --utm 33S -i
  is "$out" "- - - # no position on the other side"
  holds "$err" "1 of 1 points have no position"
  sent '7500590.1029 571947.9716\n' --utm 33S -i --sides local-grid
  holds "$out" "-22.6"
  sent '48.1 11.5 560\n' --datum 1,2,3 --sides wgs84-uncalibrated
  near "$out" 48.1000087893 11.5000236346 563.1537
}

@test "a line that is not a point is named, and the others are converted" {
  while IFS='|' read -r text why; do
    sent "-22.6 15.7 5\n# c\n$text\n-22.6 15.7 5\n" --utm 33S
    says 65
    is "$(sed 3d out.txt)" "7500590.1029 571947.9716 5.0000
# c
7500590.1029 571947.9716 5.0000"
    holds "$(sed -n 3p out.txt)" "# line 3: $why"
    holds "$err" "line 3: $why"
    holds "$err" "1 line was not converted"
  done <<'END'
12,5 x|"x" is not a number
1..2 3|"1..2" is not an angle
nan 3|"nan" is not an angle
1e308 3|"1e308" is not an angle
1e999 3|"1e999" is not an angle
48:60:00 3|"48:60:00" is not an angle
48.5d06' 3|"48.5d06'" is not an angle
-48:06S 3|"-48:06S" is not an angle
48E 3|"48E" is not an angle
12|a point has two or three numbers
1 2 3 P1|more than three numbers, from "P1" on
1,,3|"" is not an angle
91 3|a latitude lies within 90 degrees
3 361|a longitude lies within 360 degrees
END
  sent "$(printf '1%.0s' {1..5000}) 2\n" --utm 33S
  says 65
  holds "$err" "line 1: too long"
}

@test "angles in degrees, minutes and seconds" {
  sent '48:06:00 11d30 560\n48°06'"'"'00"N 11.5E 560\nN48d6 011:30:00.000 560\n' "${GERMAN[@]}"
  says 0
  is "$(cut -d' ' -f1,2 out.txt | sort -u)" "$(sent '48.1 11.5 560\n' "${GERMAN[@]}"; cut -d' ' -f1,2 out.txt)"
  sent '5329225.3851 4462867.2777 507.9097\n' -i --dms "${GERMAN[@]}"
  is "$out" "48°06'00.00000\"N 11°30'00.00000\"E 560.0000"
  sent '7500590.1029 -32000 0\n' -i --dms --utm 33S --sides local-grid
  holds "$out" "\"S 9°"
  sent "48.0999999999999 -0.0000000000001 1\n" --dms --sides wgs84-uncalibrated --datum 0,0,0
  is "${out% *}" "48°06'00.00000\"N 0°00'00.00000\"E"
}

@test "columns by their names" {
  sent 'name,lat,lon,h,code\nP1,-22.6,15.7,5,TREE\n"a,b", 22d36S ,15.7,,X,more\nP3,-22.6\nP4,-22.6,15.7,6,\n' \
    --utm 33S --columns name,lat,lon,h,code
  says 65
  is "$out" 'name,north,east,elev,code
P1,7500590.1029,571947.9716,5.0000,TREE
"a,b",7500590.1029,571947.9716,-,X,more
# line 4: has 2 columns; "lon" is column 3
P4,7500590.1029,571947.9716,6.0000,'
  sent 'P1 571947.9716  7500590.1029\n' -i --sides local-grid --utm 33S --columns name,e,n
  says 0
  near "${out#P1 }" 15.7 -22.6
}

# The same parameters by cct with +convention=position_vector +exact.
@test "published datum parameters as they are" {
  local bessel=(--ellipsoid Bessel --projection TransverseMercator --origin 0,12 --false 0,4500000)
  sent '48.1 11.5 560\n' "${bessel[@]}" --towgs84 598.1,73.7,418.2,0.202,0.045,-2.455,6.7
  near "$out" 5329225.3845 4462867.2698 507.9144
  sent '48.1 11.5 560\n' "${bessel[@]}" --towgs84 598.1,73.7,418.2
  near "$out" 5329225.4844 4462811.7447 550.5669
}

@test "what looks wrong is marked, and refused if that is asked for" {
  while IFS='|' read -r point mark options; do
    sent "$point\n" $options
    says 0
    holds "$out" " # "
    holds "$out" "$mark"
    holds "$err" "1 of 1 points"
    sent "$point\n" --strict $options
    says 65
    holds "$err" "line 1: "
    holds "$err" "$mark"
    holds "$out" "# line 1: "
  done <<'END'
-22.6 25.2 5|more than 10 degrees from the central meridian|--utm 33S
15.7 -22.6 5|more than 10 degrees from the central meridian; are the two coordinates exchanged?|--utm 33S
571947.9716 7500590.1029 5|are the two|-i --sides local-grid --utm 33S
4462867.2777 5329225.3851 5|are the two|-i --sides local-grid --projection TransverseMercator --origin 0,12 --false 0,4500000
2.35 48.86 5|are the two|--projection Lambert2Parallel --origin 46.5,3 --parallels 49,44
END
  sent '-22.6 20.9 5\n-22.6 15.7 5\n' --utm 33S --strict
  says 0
  clxml transform --list
  says 0
  holds "$out" "Lambert2Parallel              --origin --false --parallels"
  holds "$out" "30 mm at the border"
  holds "$out" "Bessel            6377397.155 299.1528128"
  holds "$out" "wgs84-uncalibrated"
}

@test "bad options are named" {
  while IFS='|' read -r options why; do
    sent '1 2\n' $options
    says 64
    is "$out" ""
    holds "$err" "$why"
  done <<'END'
|no map projection
--projection ScaleOnly|no map projection
--projection Oval|TransverseMercator, UniversalTransverseMercator
--utm 61|--utm
--utm 3 --projection Mercator|--utm
--utm 3 --datum 1,2|takes 3 or 7 numbers, not 2
--utm 3 --datum 1,2,x|"x" is not a number
--utm 3 --ellipsoid Round|Bessel
--utm 3 --ellipsoid 6378137,0|inverse flattening
--utm 3 --axes NN|--axes
--utm 3 --scale 1|--scale: says nothing
--utm 3 --false 1,2|--false: says nothing
--utm 3 --parallels 1,2|--parallels: says nothing
--projection Mercator --scale 0|above 0
--projection Mercator --azimuth 3|--azimuth: says nothing
--projection Lambert2Parallel --parallels 1,2 --scale 2|--scale: says nothing
--projection Lambert2Parallel --parallels 1,91|--parallels: takes degrees, 90
--projection RDStereographic --origin 1,2|--origin: says nothing
--projection RSO --azimuth 3 --rectify|--rectify: says nothing
--projection Krovak --area Jutland|--area: says nothing
--datum 1,2,3 --origin 1,2|--origin: belongs to a --projection
--utm 3 --project 1,2|--project: belongs
--utm 3 --datum 1,2,3 --datum-grid in.txt|--datum: is a datum
--utm 3 --datum 1,2,3 --towgs84 1,2,3|--towgs84: is a datum
--utm 3 --columns name,lat|lat and lon are both needed
--utm 3 --columns lat,lon,latitude|"latitude" comes twice
--utm 3 --dms|--dms
--utm 3 --plane 0,0,0,0,0,0|above 0
--utm 3 --ground calculated|--project
--projection Mercator --origin 91,0|--origin: is not a position
--utm 3 --geoid nofile|nofile: no such file
--utm 3 --geoid in.txt|the geoid file is missing or none
--utm 3 --sides left|--sides
--utm 3 --files .|--job
--utm 3 --job lot.job|--job
--projection Lambert2Parallel|--parallels
--projection RSO|--azimuth
--projection Denmark|--area
--projection UnitedKingdomNationalGrid|a national grid file is missing
END
}

# geoid NAME SEPARATION: a geoid of one height over the south.
geoid () {
  perl -e 'print pack ("S<Z14Z32d<6l<2d<4S<C6S<d<4", 0, "QRV GRID FILE", "flat", -90, 0, -180, 180,
    90, 360, 2, 2, 0, 0, 0, 1, 2, 0, 0, 2, 16, 1, 1, 0, ($ARGV[0]) x 4)' "$2" >"$1"
}

@test "a geoid by its path" {
  mkdir deep
  geoid 'deep/my geoid.bin' 12.5
  sent '-22.6 15.7 100\n' --utm 33S --geoid 'deep/my geoid.bin'
  says 0
  near "$out" 7500590.1029 571947.9716 87.5
  sent "$out\n" -i --utm 33S --geoid 'deep/my geoid.bin'
  near "$out" -22.6 15.7 100
  is "$err" ""
  for sides in wgs84-grid local-grid; do
    sent '22.6 15.7 100\n-22.6 15.7\n' --utm 33 --sides $sides --geoid 'deep/my geoid.bin'
    says 0
    near "$(head -1 out.txt | sed 's/ # outside the geoid: .*//')" 2499409.8971 571947.9716 100
    holds "$err" "1 of 2 points lie outside the geoid"
  done
}

@test "a job brings its own" {
  "$CLXML" import "$LOT" lot.job
  # +proj=tmerc +lat_0=-41.24999999999995 +lon_0=173.2500000000014 +x_0=300000 +y_0=700000
  # +a=6378137 +rf=298.2572221012063
  sent '-41.27 173.3 50\n' --job lot.job
  says 0
  near "$out" 697777.6155 304189.5457 50
  sent "$out\n" --job lot.job --inverse
  near "$out" -41.27 173.3 50
  flip lot.job $(($(stat -c %s lot.job) - 20))
  sent '-41.27 173.3 50\n' --job lot.job
  says 2
  near "$out" 697777.6155 304189.5457 50
  sent '1 2\n' --job in.txt
  says 1
  exchange bare.xml 1140 </dev/null
  "$CLXML" import bare.xml bare.job
  sent '1 2\n' --job bare.job
  says 65
  holds "$err" "bare.job: the job has no map projection"
}

@test "the newest records count, and their files beside the job or where they are said to be" {
  # projection EAST ID: a record of a zone with that false east.
  projection () {
    echo "<DATABASE_ProjectionRecord rec=\"db_Projection\" ID=\"0x$2\"><Derivation>KI</Derivation><Projection>
      <ProjectionType>COORDSYS_UniversalTransverseMercator</ProjectionType><OriginLocal><Lat>0</Lat>
      <Long>0.2617993877991494</Long><Height/></OriginLocal><OriginGrid><North>10000000</North>
      <East>$1</East><Elev/></OriginGrid><Scale>0.9996</Scale>
      <GridElevation>COORDSYS_Grid</GridElevation><AzimuthFormat>COORDSYS_GridAzimuth</AzimuthFormat>
      <OriginCenter>COORDSYS_OriginAtEquator</OriginCenter><Rectify>false</Rectify>
      <Area>COORDSYS_AreaNone</Area><GroundScale><Type>COORDSYS_GridScaleFactor</Type></GroundScale>
      </Projection></DATABASE_ProjectionRecord>"
  }
  {
    projection 1 4
    projection 500000 5
    echo '<DATABASE_DatumRecord rec="db_Datum" ID="0x6"><Derivation>KI</Derivation><Datum>
      <DatumType>COORDSYS_ThreeParameter</DatumType><TranslationX>0</TranslationX>
      <TranslationY>0</TranslationY><TranslationZ>0</TranslationZ></Datum></DATABASE_DatumRecord>
      <DATABASE_HeightRecord rec="db_Height" ID="0x7"><Derivation>KI</Derivation><Height>
      <HeightType>COORDSYS_GeoidModel</HeightType><GeoidFilename>South</GeoidFilename></Height>
      </DATABASE_HeightRecord>'
  } | exchange site.xml 1140
  "$CLXML" import site.xml site.job
  sent '-22.6 15.7 100\n' --job site.job
  says 65
  holds "$err" 'site.job: Coordinate system file "South.ggf" is missing'
  sent '-22.6 15.7 100\n' --job site.job --tolerate-missing
  says 0
  near "$out" 7500590.1029 571947.9716 100
  mkdir grids
  geoid grids/South.GGF 12.5
  sent '-22.6 15.7 100\n' --job site.job --files grids
  says 0
  near "$out" 7500590.1029 571947.9716 87.5
  cp grids/South.GGF .
  sent '-22.6 15.7 100\n' --job site.job
  near "$out" 7500590.1029 571947.9716 87.5
}
