# The command line itself: help, version and bad usage.

load helpers

@test "help stands on every level, with an example" {
  for command in "" import info dump repair transform road codes points explain; do
    clxml $command --help
    says 0
    is "$err" ""
    holds "$out" "Example: clxml"
  done
}

@test "the version names the format stamp" {
  clxml --version
  says 0
  holds "$out" 12.10.3
}

@test "bad usage is status 64, with nothing on standard output" {
  while read -r line; do
    clxml $line
    says 64
    is "$out" ""
    [ -n "$err" ]
  done <<'END'

explode
import
import one
import one two three
import one two --fast
info
info one two
dump
dump --json one
repair
END
}
