complete -c sentiq-logs -n __fish_use_subcommand -l help
complete -c sentiq-logs -n __fish_use_subcommand -l version
{{#commands}}
complete -c sentiq-logs -n __fish_use_subcommand -a {{command}} -d '{{summary}}'
{{#options}}
{{#names}}
complete -c sentiq-logs -n '__fish_seen_subcommand_from {{command}}' {{#isLong}}-l {{/isLong}}{{^isLong}}-s {{/isLong}}{{word}}{{#value}} -r{{/value}}{{#choices}} -f -a '{{choices}}'{{/choices}} -d '{{help}}'
{{/names}}
{{/options}}
{{/commands}}
