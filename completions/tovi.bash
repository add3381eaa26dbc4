# Completion of tovi(1) in bash: commands, options, and what stands behind them.

_tovi_commands='apply apps capture check delete dump export free-fid init list readers report serve show token-info'
_tovi_options='--aid --card --help --json --login --path --pin-env --pin-file --quiet --reader --trace --version --wait'
_tovi_kinds='privateKey publicKey trustedPublicKey secretKey certificate trustedCertificate usefulCertificate dataObject'
_tovi_files='TokenInfo ODF PrKDF PuKDF TrustedPuKDF SKDF CDF TrustedCDF UsefulCDF DODF AODF DIR UnusedSpace'

# _tovi_options_of COMMAND: the options that this command alone has.
_tovi_options_of() {
  case $1 in
    apply) echo --keep-going ;;
    capture) echo --redact --values ;;
    export) echo --der --output ;;
    free-fid) echo --kind --start ;;
    init) echo --file-size --from --label --manufacturer --serial ;;
    report) echo --output ;;
    serve) echo --atr --host --once --patience --port --slot ;;
    token-info)
      echo --eid-compliant --label --login-required --manufacturer --prn-generation --read-only --serial
      ;;
  esac
}

# _tovi_takes_value OPTION: whether a value has to stand behind it.
_tovi_takes_value() {
  case $1 in
    --json | --trace | --quiet | --wait | --help | -h | --version | --keep-going | --der | --values | --redact | --once)
      return 1 ;;
    -*) return 0 ;;
    *) return 1 ;;
  esac
}

# _tovi_reply WORD COMPGEN-ARGUMENTS...: fills COMPREPLY, one line of compgen an element.
_tovi_reply() {
  local word=$1 line
  shift
  while IFS= read -r line; do COMPREPLY+=("$line"); done < <(compgen "$@" -- "$word")
}

_tovi_folders() {
  compopt -o filenames 2>/dev/null
  _tovi_reply "$1" -d
}

_tovi_paths() {
  compopt -o filenames 2>/dev/null
  _tovi_reply "$1" -f
}

# _tovi_value OPTION WORD: the value of an option. Texts, numbers and names of readers are left to the user.
_tovi_value() {
  case $1 in
    --card) _tovi_folders "$2" ;;
    --from | --output | -o | --pin-file) _tovi_paths "$2" ;;
    --pin-env) _tovi_reply "$2" -e ;;
    --kind) _tovi_reply "$2" -W "$_tovi_kinds" ;;
    --slot) _tovi_reply "$2" -W '0 1' ;;
    --read-only | --login-required | --prn-generation | --eid-compliant) _tovi_reply "$2" -W 'on off' ;;
  esac
}

# _tovi_argument COMMAND WORD: what the command itself works on.
_tovi_argument() {
  case $1 in
    apply) _tovi_paths "$2" ;;
    capture | init | serve) _tovi_folders "$2" ;;
    dump) _tovi_reply "$2" -W "$_tovi_files" ;;
  esac
}

_tovi() {
  local word=${COMP_WORDS[COMP_CWORD]} before='' command='' i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    # "--card=DIR" comes as three words.
    if [[ ${COMP_WORDS[i]} == = ]]; then continue; fi
    if _tovi_takes_value "$before"; then
      before=''
    else
      before=${COMP_WORDS[i]}
      if [[ -z $command && $before != -* ]]; then command=$before; fi
    fi
  done
  if [[ $word == = ]]; then word=''; fi
  if _tovi_takes_value "$before"; then
    _tovi_value "$before" "$word"
  elif [[ $word == -* ]]; then
    _tovi_reply "$word" -W "$_tovi_options $(_tovi_options_of "$command")"
  elif [[ -z $command ]]; then
    _tovi_reply "$word" -W "$_tovi_commands"
  else
    _tovi_argument "$command" "$word"
  fi
}

complete -F _tovi tovi
