_sentiq_logs() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}
  COMPREPLY=()
  if [ "$COMP_CWORD" = 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W '{{allCommands}} --help --version' -- "$word"; compgen -f -- "$word")
    return
  fi
  case $command:$before in
{{#commands}}
{{#options}}
{{#choices}}
    {{command}}:{{longName}}) COMPREPLY=($(compgen -W '{{choices}}' -- "$word")); return ;;
{{/choices}}
{{/options}}
{{/commands}}
  esac
  case $command:$word in
{{#commands}}
    {{command}}:-*) COMPREPLY=($(compgen -W '{{allOptions}} --help' -- "$word")) ;;
{{/commands}}
    *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
  esac
}
complete -o filenames -F _sentiq_logs sentiq-logs
