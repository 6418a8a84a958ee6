# Completion of tarvex-batch: words come from the program's own help, so they are those of the installed version.
_tarvex_batch() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} sub=${COMP_WORDS[1]}
  COMPREPLY=()
  if [ "$COMP_CWORD" = 1 ]; then
    local subcommands
    subcommands=$(tarvex-batch --help 2> /dev/null | awk '/^Subcommands/ { found = 1; next } found && NF { print $1 }')
    mapfile -t COMPREPLY < <(compgen -W "$subcommands --help --version" -- "$word")
    return
  fi
  case $previous in
    -m | --method) mapfile -t COMPREPLY < <(compgen -W "random latin replicated-latin lptau morris fast sobol fixed" -- "$word") && return ;;
  esac
  case $word in
    -*)
      local options
      options=$(tarvex-batch "$sub" --help 2> /dev/null | grep -oE -e '(^| |,)-(-[a-z][a-z-]*|[a-z])' | tr -d ' ,')
      mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
      ;;
    *)
      compopt -o filenames 2> /dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      ;;
  esac
}
complete -F _tarvex_batch tarvex-batch
