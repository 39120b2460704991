# Completion for cfsetup, cfext and cfdebug, taken from their --help, so that the two never differ.

_cfhost_programs() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= help words
  # Each command of cfsetup has options of its own.
  [[ $COMP_CWORD -eq 1 || ${COMP_WORDS[1]} != [a-z]* || $1 != *cfsetup ]] || command=${COMP_WORDS[1]}
  help=$("$1" ${command:+"$command"} --help 2>/dev/null)
  compopt +o default 2>/dev/null
  case "$before" in
    --browser) words="all $(sed -n 's/^Browsers: \(.*\)[.]$/\1/p' <<<"$help" | tr -d ,)" ;;
    --form) words="chromium firefox" ;;
    --host | --file | --decode) compopt -o default 2>/dev/null; COMPREPLY=(); return ;;
    --user-data-dir | --manifest-dir | --root) words=$(compgen -d -- "$word") ;;
    --extension-id | --add-extension-id | --wait | --frame-size) words= ;;
    *)
      words=$(sed -nE 's/^  (-h,)?(--[a-z-]+).*/\2/p' <<<"$help")
      # The commands stand in the same column, without dashes.
      [ "$COMP_CWORD" -ne 1 ] || words+=" $(sed -nE 's/^  ([a-z]+) {3,}.*/\1/p' <<<"$help")"
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _cfhost_programs cfsetup cfext cfdebug
