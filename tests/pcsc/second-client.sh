# Another program resets the card all the time, between the calls of the command and while they wait for each other.
start_daemon
card=$(copy rich card)
folder=$(copy rich folder)
insert 0 "$card"

# A reset takes selection and PINs away, and what is no command is answered, too.
user send "$reader0" 00A4040C0CA000000063504B43532D3135 00A4020C025031 00B0000002 00200002083132333435363738 00200002 \
  reset 00200002 00B0000002 00A4 00A404 >"$work/responses"
expected="9000 9000 A0069000 9000 9000 63C3 6986 6700 6700"
[ "$(xargs <"$work/responses")" = "$expected" ] || fail "responses $(xargs <"$work/responses"), expected $expected"

# The command works in transactions, in which nobody can reset the card; outside of them a reset is nothing to it.
user reset "$reader0" 1000 2>"$work/reset.err" &
started=("$!")
for i in 1 2 3; do
  client list 0 --json --reader "$reader0" list
done
client list-folder 0 --json --card "$folder" list
same list.out list-folder.out
client apply 0 --reader "$reader0" apply "$here/operations.json"
client apply-folder 0 --card "$folder" apply "$here/operations.json"
client list 0 --json --reader "$reader0" list
is_running "${started[0]}" || fail "the card was not reset all the time"
end_process "${started[0]}"
started=()
take 0
same_cards card folder
