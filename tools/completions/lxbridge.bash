# Completion of lxbridge for bash.
_lxbridge() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} action=xmp
  # bash takes --format=json for three words.
  if [[ $word == = ]]; then
    word=
  elif [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  [[ ${COMP_WORDS[1]} == pool ]] && action=pool

  local values='' at
  for ((at = 1; at < COMP_CWORD; ++at)); do
    [[ ${COMP_WORDS[at]} == -- ]] && return  # Only files are left.
  done
  case $before in
    --format)
      values="rdf json csv tsv"
      [[ $action == pool ]] && values="text json"
      ;;
    -j | --jobs)
      values=$(nproc 2>/dev/null)
      ;;
    --fields | --separator | --timeout)
      compopt +o default +o bashdefault
      return
      ;;
    --files-from) ;;
    *)
      if [[ $word == -* ]]; then
        values="--format -r --recursive --files-from -0 --null -j --jobs --timeout --unordered --progress --summary"
        values+=" -h --help -V --version --"
        if [[ $action == pool ]]; then
          values+=" --all"
        else
          values+=" --fields --separator --header"
        fi
      elif ((COMP_CWORD == 1)); then
        values="xmp pool"
        mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word"; compgen -f -- "$word")
        compopt -o filenames
        return
      fi
      ;;
  esac
  # Without a word of these, bash completes a file.
  [[ -n $values ]] && mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
}
complete -o bashdefault -o default -F _lxbridge lxbridge
