# Through the reader, every command answers what it answers on the folder, and changes the card in the same way.
start_daemon
card=$(copy rich card)
folder=$(copy rich folder)
insert 0 "$card"

# both NAME STATUS ARGUMENTS...: the same output and status either way.
both() {
  local name=$1 expected=$2
  shift 2
  client "$name-reader" "$expected" --reader "$reader0" "$@"
  client "$name-folder" "$expected" --card "$folder" "$@"
  same "$name-reader.out" "$name-folder.out"
}

both list 0 --json list
both list-text 0 list
both show 0 --json show 1
both dump 0 --json dump
both check 3 --json check
both free-fid 0 free-fid --kind privateKey
both token-info 0 --json token-info
both export 0 export 35
client capture-reader 0 --reader "$reader0" capture "$work/captured-reader"
client capture-folder 0 --card "$folder" capture "$work/captured-folder"
same_cards captured-reader captured-folder
printf 1234 >"$work/pin"
echo '[{"op": "update", "recordNumber": 1, "set": {"label": "Alicia"}}]' >"$work/rename.json"
both login 0 --login 01 --pin-file "$work/pin" apply "$work/rename.json"
both apply 0 --json apply "$here/operations.json"
both delete 0 delete 31
both list-after 0 --json list
client readers 0 readers
grep -qF "$reader0" "$work/readers.out" || fail "readers does not list $reader0"
take 0
same_cards card folder
