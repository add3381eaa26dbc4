# pcscd goes away and comes back: the card goes into the reader again by itself.
start_daemon
card=$(copy rich card)
client folder 0 --json --card "$card" list
insert 0 "$card"

is_told() { [ "$(grep -c "$1" "$work/serve0.err")" -ge "$2" ]; }

for time in 1 2; do
  stop_daemon
  within 10 is_told "the reader has gone" "$time" || fail "serve does not see that pcscd has gone"
  client gone 1 --reader "$reader0" list
  says gone "PC/SC service not running"
  start_daemon
  within 10 is_told "in the reader again" "$time" || fail "the card does not go back"
  user wait "$reader0" present
  client back 0 --json --reader "$reader0" list
  same back.out folder.out
done
