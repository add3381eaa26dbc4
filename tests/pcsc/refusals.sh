# What stands between the command and a card is told, and nothing waits for ever.
client no-daemon 1 --reader "Virtual" list
says no-daemon "PC/SC service not running"

start_daemon
client no-reader 1 --reader "Another" list
says no-reader "reader not found"
says no-reader "$reader0"
client two-readers 1 --reader "Virtual" list
says two-readers "reader name not unique"
client no-card 1 --reader "$reader0" list
says no-card "no card in the reader"
client waited 1 --reader "$reader0" --wait 1 list
says waited "no card in the reader"

card=$(copy rich card)
insert 0 "$card"
client a-part-of-the-name 0 --reader "00 00" list
other=$(copy plain other)
client taken-slot 1 serve "$other" --port "$port" --patience 1
says taken-slot "it does not ask for the card"

# As long as somebody else has the card for himself.
mkfifo "$work/release"
timeout -k 5 60 "$helpers/tovi_card_user" hold "$reader0" <"$work/release" >"$work/hold.out" 2>"$work/hold.err" &
started=("$!")
exec 4>"$work/release"
within 10 grep -q held "$work/hold.out" || fail "the card is not held"
client held 1 --reader "$reader0" list
says held "card used exclusively by another program"
exec 4>&-
within 10 has_ended "${started[0]}" || fail "the card is still held"
started=()
client released 0 --reader "$reader0" list

# A card that is put in while the command waits for it.
take 0
timeout -k 5 30 "$tovi" --json --reader "$reader0" --wait 20 list >"$work/late.out" 2>"$work/late.err" &
started=("$!")
insert 0 "$card"
wait "${started[0]}" || fail "the card that came late is not read"
started=()
client folder 0 --json --reader "$reader0" list
same late.out folder.out
