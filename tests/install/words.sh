# Sourced: what `tovi --help` lists, of the whole command line and of each command.

# commands_of TEXT-OF-HELP: the names of the commands.
commands_of() {
  sed -n '/^Subcommands:/,$ s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$1"
}

# options_of TEXT-OF-HELP: the long options.
options_of() {
  sed -n '/^Options:/,/^[A-Z]/ s/^  \(-[a-zA-Z],\)\?\(--[a-z-]*\).*/\2/p' <<<"$1" | sort -u
}

help=$("$command" --help)
mapfile -t commands < <(commands_of "$help")
[ "${#commands[@]}" -ge 9 ] || fail "--help lists ${#commands[@]} commands"
