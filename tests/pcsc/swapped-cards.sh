# What is in a slot is what its users see, however often the card is another one.
start_daemon
rich=$(copy rich rich) plain=$(copy plain plain)
client rich 0 --json --card "$rich" list
client plain 0 --json --card "$plain" list

for card in rich plain rich; do
  insert 0 "$work/$card"
  client seen 0 --json --reader "$reader0" list
  same seen.out "$card.out"
  take 0
done

# The same card in the other slot, and what was written to it before.
insert 0 "$plain"
client label 0 --reader "$reader0" token-info --label "Written in slot 0"
take 0
insert 1 "$plain"
client token-info 0 --reader "$reader1" token-info
grep -q "Written in slot 0" "$work/token-info.out" || fail "the label is lost"

# A request to end is obeyed, with a status that tells so.
ending=${served[1]}
served[1]=""
kill -TERM "$ending"
within 10 has_ended "$ending" || fail "serve does not end"
status=0
wait "$ending" || status=$?
[ "$status" -eq 130 ] || fail "serve ends with $status"
