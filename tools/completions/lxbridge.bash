# Completion of lxbridge for bash.
_lxbridge() {
  # A word ends at "=" and ":" for bash, in names of properties too; here it does not.
  local cur prev words cword
  if declare -F _get_comp_words_by_ref >/dev/null; then
    _get_comp_words_by_ref -n =: cur prev words cword
  else
    _lxbridge_words
  fi
  local option='' word=$cur cut='' action=xmp values='' at
  if [[ $word == --*=* ]]; then
    option=${word%%=*} word=${word#*=}
  else
    option=$prev
  fi
  case ${words[1]} in pool | fields) action=${words[1]} ;; esac
  for ((at = 1; at < cword; ++at)); do
    [[ ${words[at]} == -- ]] && return  # Only files are left.
  done
  case $option in
    --format)
      case $action in
        pool) values="text json html" ;;
        fields) values="text json" ;;
        *) values="rdf json flat csv tsv" ;;
      esac
      ;;
    --color) values="auto always never" ;;
    -j | --jobs) values=$(nproc 2>/dev/null) ;;
    --fields)
      # The last name of the list; those before it stay as they are.
      [[ $word == *,* ]] && cut=${word%,*},
      values="all $("${words[0]}" fields 2>/dev/null | cut -d ' ' -f 1 | sort -u)"
      compopt -o nospace
      ;;
    --separator | --timeout | --namespace | --include | --exclude | --ext)
      compopt +o default +o bashdefault
      return
      ;;
    --files-from | --output) ;;
    help) values="xmp pool fields" ;;
    *)
      if [[ $word == -* ]]; then
        values="--format -r --recursive --sort --include --exclude --ext --files-from -0 --null -j --jobs --timeout"
        values+=" --progress --summary --color --pretty -h --help -V --version --"
        [[ $action != fields ]] && values+=" --unordered --errors"
        [[ $action == pool ]] && values+=" --all"
        [[ $action == xmp ]] && values+=" --fields --namespace --decimal --facts --qualifiers --separator --header --warnings
          --sidecar --output --overwrite"
      elif ((cword == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "xmp pool fields help" -- "$word"; compgen -f -- "$word")
        compopt -o filenames
        return
      fi
      ;;
  esac
  # Without a word of these, bash completes a file.
  [[ -z $values ]] && return
  mapfile -t COMPREPLY < <(compgen -W "$values" -- "${word#"$cut"}")
  COMPREPLY=("${COMPREPLY[@]/#/$cut}")
  # bash replaces what follows the last "=" or ":" only.
  [[ $word == *:* && ${COMP_WORDBREAKS-} == *:* ]] && COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*:}"}"}")
}

# The words of the line with their "=" and ":", where the package bash-completion is not there to do it.
_lxbridge_words() {
  local at glue=''
  words=() cword=0
  for ((at = 0; at < ${#COMP_WORDS[@]}; ++at)); do
    if [[ -n $glue || ${COMP_WORDS[at]} == [=:]* ]] && ((${#words[@]} > 1)); then
      words[${#words[@]} - 1]+=${COMP_WORDS[at]}
    else
      words+=("${COMP_WORDS[at]}")
    fi
    glue=''
    [[ ${COMP_WORDS[at]} == *[=:] ]] && glue=yes
    ((at == COMP_CWORD)) && cword=$((${#words[@]} - 1))
  done
  cur=${words[cword]} prev=${words[cword - 1]}
}
complete -o bashdefault -o default -F _lxbridge lxbridge
