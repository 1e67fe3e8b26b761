#compdef sentiq-logs
_sentiq_logs() {
  local -a commands
  commands=(
{{#commands}}
    '{{command}}:{{summary}}'
{{/commands}}
  )
  if (( CURRENT == 2 )); then
    _describe command commands
    _files
    return
  fi
  local command=$words[2]
  shift words; (( CURRENT-- ))
  case $command in
{{#commands}}
    {{command}}) _arguments{{#options}}{{#names}} \
      '{{name}}[{{help}}]{{#value}}:value:{{#choices}}({{choices}}){{/choices}}{{^choices}}_files{{/choices}}{{/value}}'{{/names}}{{/options}} \
      '*:log:_files' ;;
{{/commands}}
  esac
}
if [ "$funcstack[1]" = _sentiq-logs ]; then
  _sentiq_logs "$@"
else
  compdef _sentiq_logs sentiq-logs
fi
