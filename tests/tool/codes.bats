# clxml codes: listing, JSON both ways, comparing with a job.

load helpers

LIBRARY=$EXAMPLES/site_codes.fal

# refused JSON PART: is not written, and the message has that part.
refused () {
  echo "$1" >bad.json
  clxml codes --from bad.json bad.fal
  says 65
  is "$out" ""
  holds "$err" "bad.json: $2"
  gone bad.fal
}

@test "a library comes back from its JSON with the same bytes" {
  clxml codes "$LIBRARY" --json
  says 0
  is "$err" ""
  cp out.txt site.json
  is "$(jq -r 'keys_unsorted | join (" ")' site.json)" \
    "file status formatVersion layoutVersion name text headerOption headerValue features"
  is "$(jq -r '.features[0] | keys_unsorted | join (" ")' site.json)" \
    "code description flags kind kindOption kindVariant attributes"
  is "$(jq -r '[.features[].attributes[] | {(.type): (keys_unsorted | join (" "))}] | add
      | to_entries | sort_by (.key)[] | .key + ": " + .value' site.json)" \
"date: type name usage option flag
file: type name usage option
menu: type name usage entries hasDefault defaultIndex default
number: type name usage number1 number2 number3 option mark
separator: type name usage
text: type name usage option
time: type name usage flag1 flag2"
  clxml codes --from site.json site.fal
  says 0
  is "$out$err" ""
  cmp site.fal "$LIBRARY"
  clxml codes --from site.json site.fal
  says 5
  echo precious >site.fal
  clxml codes --from site.json site.fal --force
  says 0
  cmp site.fal "$LIBRARY"
  is "$(ls)" $'err.txt\nout.txt\nsite.fal\nsite.json'
}

@test "what cannot be read is status 2, with the object for programs" {
  head -c 200 "$LIBRARY" >cut.fal
  mkdir folder.fal
  for case in cut:3 folder:2 missing:2; do
    clxml codes "${case%:*}.fal" --json
    says 2
    is "$(jq -c '[.file, .status, .features]' out.txt)" "[\"${case%:*}.fal\",${case#*:},[]]"
    holds "$err" "error: ${case%:*}.fal: "
    clxml codes "${case%:*}.fal"
    says 2
    is "$out" ""
  done
  cp "$LIBRARY" new.fal
  put new.fal 0 5
  clxml codes new.fal
  says 2
  holds "$err" "format 5, layout 4"
}

@test "what is left out has the values of a new object" {
  echo '{"features": [{"code": "A B"}, {"code": "B", "kind": 2, "kindVariant": 4, "attributes":
    [{"type": "menu"}, {"type": "number", "number1": -0, "number2": 1e23}]}]}' >few.json
  clxml codes --from few.json few.fal
  says 0
  clxml codes few.fal --json
  is "$(jq -c '[.formatVersion, .layoutVersion, .name, .headerValue]' out.txt)" '[4,4,"",0]'
  is "$(jq -c '.features[0]' out.txt)" \
    '{"code":"A·B","description":"","flags":0,"kind":0,"kindOption":0,"kindVariant":0,"attributes":[]}'
  is "$(jq -c '.features[1].flags, .features[1].attributes[0]' out.txt)" \
    $'513\n{"type":"menu","name":"","usage":0,"entries":[],"hasDefault":false,"defaultIndex":65535,"default":""}'
  holds "$out" '"number1":-0.0,"number2":1e+23,"number3":0,"option":0,"mark":46'
}

@test "a text that does not fit is taken with a warning" {
  clxml codes --from - - </dev/null
  echo '{"name": "Tōtara", "features": [{"code": "a code of more than 21", "description": "😀"}]}' >long.json
  clxml codes --from long.json long.fal
  says 0
  holds "$err" 'warning: long.json: name: characters that the file cannot hold become "?"'
  holds "$err" 'features[0].code: cut to 21 characters'
  clxml codes long.fal --json
  is "$(jq -c '[.name, .features[0].code, .features[0].description]' out.txt)" \
    '["T?tara","a·code·of·more·than·2","?"]'
}

@test "JSON that is not a library is refused with its place" {
  refused '' 'parse error'
  refused '{} {}' 'parse error'
  refused '[]' 'an array is not an object'
  refused '{"status": 3}' 'status: '
  refused '{"formatVersion": 5}' 'formatVersion: 5'
  refused '{"layoutVersion": 3}' 'layoutVersion: 3'
  refused '{"headerOption": 256}' 'headerOption: 256'
  refused '{"headerValue": -1}' 'headerValue: -1'
  refused '{"headerValue": 1.5}' 'headerValue: 1.5'
  refused '{"name": "a\u0000"}' 'name: '
  refused '{"name": "a", "name": "b"}' 'the key "name" occurs twice'
  refused '{"names": "a"}' 'the key "names" is not known'
  refused '{"features": {}}' 'features: an object'
  refused '{"features": [{}]}' 'features[0]: the key "code" is missing'
  refused '{"features": [{"code": "A", "flags": 41}]}' 'features[0].flags: 41 would become 9'
  refused '{"features": [{"code": "A", "flags": 9, "kind": 1}]}' 'features[0].kind: 1'
  refused '{"features": [{"code": "A", "kind": 3}]}' 'features[0].kind: 3'
  refused '{"features": [{"code": "A", "kind": 1, "kindVariant": 2}]}' 'features[0].kindVariant: 2'
  attribute () { refused "{\"features\": [{\"code\": \"A\", \"attributes\": [$1]}]}" "features[0].attributes[0]$2"; }
  attribute '{"name": "x"}' ': the key "type" is missing'
  attribute '{"type": "line"}' '.type: "line"'
  attribute '{"type": "separator", "option": 1}' ': the key "option" is not known'
  attribute '{"type": "number", "number1": null}' '.number1: null'
  attribute '{"type": "time", "flag1": 1}' '.flag1: 1'
  attribute '{"type": "menu", "entries": ["a", 1]}' '.entries[1]: 1'
  attribute '{"type": "menu", "entries": ["a"], "defaultIndex": 1}' '.defaultIndex: '
  attribute '{"type": "menu", "entries": ["a"], "default": "a"}' '.default: '
  attribute '{"type": "menu", "entries": ["a"], "hasDefault": true, "default": "b"}' '.default: "b"'
  refused '{"features": [{"code": "A", "attributes": [{"type": "number", "number1": 1e999}]}]}' ''
  refused "{\"features\": [$(printf '1,%.0s' {1..65535})1]}" 'features: 65536'
}

@test "the codes of the example jobs fit the example library" {
  for example in "$EXAMPLES"/*.xml; do
    name=$(basename "$example" .xml)
    clxml import "$example" "$name.job"
    clxml codes "$LIBRARY" --check "$name.job" --json
    [ "$status" -eq 0 ] || says 3
    is "$(jq -c '[.findings[] | select (.fault == "code") | .code]' out.txt)" "[]"
  done
  # Of the survey that its attributes are made for only those are named that were not taken.
  clxml codes "$LIBRARY" --check boundary_1140.job --json
  is "$(jq -c '[.findings[].fault] | unique' out.txt)" '["missing"]'
  echo '{"features": [{"code": "PEG"}]}' >peg.json
  clxml codes --from peg.json peg.fal
  clxml codes peg.fal --check roads_1100.job
  says 0
  holds "$out" "every code and attribute of the job fits the library"
}

@test "what does not fit is named with its points" {
  clxml import "$LOT" lot7.job
  clxml codes "$LIBRARY" --json
  jq '(.features |= map (select (.code != "GATE")))
    | (.features[] | select (.code == "PEG").attributes) |= [{"type": "number", "name": "Condition"}, {"type": "text", "name": "Colour"}]
    | (.features[] | select (.code == "TREE").attributes[] | select (.name == "Species").entries) |= ["Oak"]' out.txt >less.json
  clxml codes --from less.json less.fal
  clxml codes less.fal --check lot7.job --json
  says 3
  is "$(jq -c '[.findings[].fault] | unique' out.txt)" '["attribute","code","entry","missing","type"]'
  clxml codes less.fal --check lot7.job
  says 3
  holds "$out" "codes that are not in the library"
  holds "$out" "Condition: is a menu in place of number"
  holds "$out" "Colour: is missing"
  holds "$out" '"Tōtara" is not an entry of the menu'
  clxml codes less.fal --check "$LOT"
  says 1
  clxml codes missing.fal --check lot7.job
  says 2
}

@test "options that change nothing are refused" {
  for line in "--force x" "--from a --json x" "--from a --check b x"; do
    clxml codes $line
    says 64
  done
}
