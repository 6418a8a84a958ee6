# Completion of tarvex-batch: words come from the program's own help, so they are those of the installed version.
_tarvex_batch() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} sub=${COMP_WORDS[1]} words help
  COMPREPLY=()
  if [ "$COMP_CWORD" = 1 ]; then
    words=$(tarvex-batch --help 2> /dev/null | awk '/^Subcommands/ { found = 1; next } found && NF { print $1 }')
    mapfile -t COMPREPLY < <(compgen -W "$words --help --version" -- "$word")
    return
  fi
  help=$(tarvex-batch "$sub" --help 2> /dev/null)
  # What an option takes that takes one of several words: "-k,--kind TEXT:{scatter,cobweb}".
  words=$(awk -v option="$previous" '{
      count = split($1, names, ",")
      for (i = 1; i <= count; ++i)
        if (names[i] == option && match($0, /:\{[^}]*\}/)) print substr($0, RSTART + 2, RLENGTH - 3)
    }' <<< "$help" | tr ',' ' ')
  if [ -z "$words" ]; then
    case $sub:$word in
      *:-*) words=$(grep -oE -e '(^| |,)-(-[a-z][a-z-]*|[a-z])' <<< "$help" | tr -d ' ,') ;;
      demo:*) words=$(tarvex-batch demo '?' 2>&1 | sed -n 's/.*The cases are: //p') ;;
    esac
  fi
  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  else
    compopt -o filenames 2> /dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _tarvex_batch tarvex-batch
