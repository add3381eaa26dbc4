# Two cards in two readers are written at once, each as if it were alone.
start_daemon
first=$(copy rich first) second=$(copy rich second) alone=$(copy rich alone)
insert 0 "$first"
insert 1 "$second"
client alone 0 --json --card "$alone" apply "$here/operations.json"

timeout -k 5 60 "$tovi" --json --reader "$reader0" apply "$here/operations.json" >"$work/0.out" 2>"$work/0.err" &
started=("$!")
timeout -k 5 60 "$tovi" --json --reader "$reader1" apply "$here/operations.json" >"$work/1.out" 2>"$work/1.err" &
started+=("$!")
for writer in "${started[@]}"; do
  wait "$writer" || fail "apply ends with $?"
done
started=()
same 0.out alone.out
same 1.out alone.out
take 0
take 1
same_cards first alone
same_cards second alone
