# The card is pulled while it is written: the command says so, and the card holds the result of whole operations.
start_daemon

# What the card may hold: the first so many operations are done, and nothing of the others.
for number in $(seq 0 "$all"); do
  state=$(copy rich "state$number")
  [ "$number" -eq 0 ] || client "apply$number" 0 --card "$state" apply "$(operations "$number")"
  client "state$number" 0 --json --card "$state" list
done

is_a_state() {
  local number
  for number in $(seq 0 "$all"); do
    if cmp -s "$work/state$number.out" "$work/$1.out"; then return 0; fi
  done
  return 1
}

# pull NUMBER MODE: the card leaves the reader at that UPDATE BINARY of the list of operations; see card_relay.cpp.
pull() {
  local name=pulled$1$2 card relay
  card=$(copy rich "$name")
  : >"$work/relay.out"
  timeout -k 5 60 "$helpers/tovi_card_relay" "$port" "$1" "$2" >"$work/relay.out" 2>"$work/relay.err" &
  relay=$!
  started=("$relay")
  within 10 test -s "$work/relay.out" || fail "the relay does not listen"
  insert 0 "$card" "$(cat "$work/relay.out")"
  client "$name" 1 --reader "$reader0" apply "$here/operations.json"
  says "$name" "card removed"
  says "$name" "$reader0"
  wait "$relay" || fail "the relay was left"
  started=()
  # In the midst of the command, or behind it.
  [ "$2" = during ] && take 0 KILL || take 0
  client "left$name" 0 --json --card "$card" list
  is_a_state "left$name" || fail "the card pulled at update $1 ($2) holds part of an operation"
}

for number in 1 6 10; do
  for mode in before during after; do
    pull "$number" "$mode"
  done
done
pull 11 after # nothing but the answer is lost
same leftpulled11after.out "state$all.out"

# And what is left is good for the reader, too.
insert 0 "$work/pulled6during"
client again 0 --json --reader "$reader0" list
same again.out leftpulled6during.out
