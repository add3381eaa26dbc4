# Sourced by the scripts of this folder: the installed tree, and how a test fails.
set -euo pipefail
export LC_ALL=C.UTF-8
tree=$WORK/stage/opt/tovi
libraries=$tree/$LIBDIR
command=$tree/bin/tovi
card=$SOURCE/tests/cards/rich

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# skip REASON...: what the test needs is not there.
skip() {
  echo "skipped: $*"
  exit 77
}

# equals WHAT EXPECTED FOUND
equals() {
  [ "$2" = "$3" ] || fail "$1: expected '$2', found '$3'"
}

# none WHAT TEXT: the text lists offenders and has to be empty.
none() {
  [ -z "$2" ] || fail "$1:"$'\n'"$2"
}

# refused WHAT COMMAND...: the command has to fail.
refused() {
  local what=$1
  shift
  if "$@" >"$WORK/refused.log" 2>&1; then fail "accepted: $what"; fi
}

# has PATTERN: standard input has such a line. It is read to its end, or whoever writes it would fail on the pipe.
has() {
  local text
  text=$(cat)
  grep -qE -- "$1" <<<"$text"
}
