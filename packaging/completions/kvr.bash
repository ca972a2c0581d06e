# Completion of kvr for bash. What can be chosen comes from kvr itself.
_kvr() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} kvr=${COMP_WORDS[0]} subcommand="" model="" word i
  local subcommands="program info board demo job image models options ports trace batch stations"
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    [[ -z $subcommand && " $subcommands " == *" $word "* ]] && subcommand=$word
    [[ $word == --model ]] && model=${COMP_WORDS[i + 1]}
  done
  local words=""
  case $before in
    --model) words=$("$kvr" models 2>/dev/null | awk '{ print $1 }') ;;
    -p | --port) words=$("$kvr" ports 2>/dev/null | awk '{ print $1 }') ;;
    --option) words=$("$kvr" options "$model" 2>/dev/null | sed -n 's/^\([a-z0-9-]*\):.*/\1=/p') ;;
    --min-baud | --max-baud) words="1200 2400 4800 9600 14400 19200 28800 38400 57600 115200" ;;
    --serial-radix) words="hex bcd ascii" ;;
    batch) words="new list show close export doubt store" ;;
    --batch | show | close | export | doubt) [[ $before == --batch || $subcommand == batch ]] &&
      words=$("$kvr" batch list 2>/dev/null | awk '{ print $1 }') ;;
    --power) words="dtr rts dtr:low rts:low" ;;
  esac
  [[ $subcommand == options && $before == options ]] && words=$("$kvr" models 2>/dev/null | awk '{ print $1 }')
  if [[ -n $words ]]; then
    :
  elif [[ $current == -* ]]; then
    words=$("$kvr" $subcommand --help 2>/dev/null | grep -oE -- '(^|[ ,])--?[a-z][a-z-]*' | tr -d ' ,')
    words+=" --json --quiet --verbose --no-color --help"
  elif [[ -z $subcommand ]]; then
    words=$subcommands
  fi
  if [[ -n $words ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    [[ ${COMPREPLY[0]:-} == *= ]] && compopt -o nospace 2>/dev/null
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _kvr kvr
