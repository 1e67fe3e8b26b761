#include "reader/views/Completions.h"

namespace sentiq {
namespace {

std::string joinedBy(const std::string& separator, const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) {
    text += (text.empty() ? "" : separator) + item;
  }
  return text;
}

std::vector<std::string> namesOf(const CommandLineWords& words) {
  std::vector<std::string> names;
  names.reserve(words.commands.size());
  for (const CommandWords& command : words.commands) {
    names.push_back(command.name);
  }
  return names;
}

std::vector<std::string> optionNames(const CommandWords& command) {
  std::vector<std::string> names;
  for (const OptionWords& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

// Within single quotes; `twice` is how the shell writes one in them.
std::string quoted(const std::string& text, const std::string& twice) {
  std::string result = "'";
  for (const char c : text) {
    result += c == '\'' ? twice : std::string(1, c);
  }
  return result + '\'';
}

std::string bashScript(const CommandLineWords& words) {
  std::string script =
      "_sentiq_logs() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}\n"
      "  COMPREPLY=()\n"
      "  if [ \"$COMP_CWORD\" = 1 ]; then\n"
      "    mapfile -t COMPREPLY < <(compgen -W '" +
      joinedBy(" ", namesOf(words)) +
      " --help --version' -- \"$word\"; compgen -f -- \"$word\")\n"
      "    return\n"
      "  fi\n"
      "  case $command:$before in\n";
  for (const CommandWords& command : words.commands) {
    for (const OptionWords& option : command.options) {
      if (!option.choices.empty()) {
        script += "    " + command.name + ':' + option.names.back() + ") COMPREPLY=($(compgen -W '" +
                  joinedBy(" ", option.choices) + "' -- \"$word\")); return ;;\n";
      }
    }
  }
  script += "  esac\n  case $command:$word in\n";
  for (const CommandWords& command : words.commands) {
    script += "    " + command.name + ":-*) COMPREPLY=($(compgen -W '" + joinedBy(" ", optionNames(command)) +
              " --help' -- \"$word\")) ;;\n";
  }
  return script +
         "    *) mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n  esac\n}\n"
         "complete -o filenames -F _sentiq_logs sentiq-logs\n";
}

std::string zshScript(const CommandLineWords& words) {
  const auto plain = [](const std::string& text) {  // Brackets and colons are its own.
    std::string result;
    for (const char c : text) {
      result += c == '[' || c == ']' || c == ':' ? std::string("\\") + c : std::string(1, c);
    }
    return result;
  };
  std::string script = "#compdef sentiq-logs\n_sentiq_logs() {\n  local -a commands\n  commands=(\n";
  for (const CommandWords& command : words.commands) {
    script += "    " + quoted(command.name + ':' + plain(command.text), "'\\''") + '\n';
  }
  script +=
      "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    _files\n    return\n  fi\n"
      "  local command=$words[2]\n  shift words; (( CURRENT-- ))\n  case $command in\n";
  for (const CommandWords& command : words.commands) {
    script += "    " + command.name + ") _arguments";
    for (const OptionWords& option : command.options) {
      for (const std::string& name : option.names) {
        const std::string value =
            option.value.empty()
                ? ""
                : ":value:" + (option.choices.empty() ? "_files" : '(' + joinedBy(" ", option.choices) + ')');
        script += " \\\n      " + quoted(name + '[' + plain(option.text) + ']' + value, "'\\''");
      }
    }
    script += " \\\n      '*:log:_files' ;;\n";
  }
  // Read from a folder of functions, it is the function that is asked first.
  return script +
         "  esac\n}\n"
         "if [ \"$funcstack[1]\" = _sentiq-logs ]; then\n  _sentiq_logs \"$@\"\n"
         "else\n  compdef _sentiq_logs sentiq-logs\nfi\n";
}

std::string fishScript(const CommandLineWords& words) {
  std::string script =
      "complete -c sentiq-logs -n __fish_use_subcommand -l help\n"
      "complete -c sentiq-logs -n __fish_use_subcommand -l version\n";
  for (const CommandWords& command : words.commands) {
    script += "complete -c sentiq-logs -n __fish_use_subcommand -a " + command.name + " -d " +
              quoted(command.text, "\\'") + '\n';
    for (const OptionWords& option : command.options) {
      for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        script += "complete -c sentiq-logs -n '__fish_seen_subcommand_from " + command.name + "' " +
                  (isLong ? "-l " + name.substr(2) : "-s " + name.substr(1)) + (option.value.empty() ? "" : " -r") +
                  (option.choices.empty() ? "" : " -f -a " + quoted(joinedBy(" ", option.choices), "\\'")) + " -d " +
                  quoted(option.text, "\\'") + '\n';
      }
    }
  }
  return script;
}

std::string powershellScript(const CommandLineWords& words) {
  const auto list = [](const std::vector<std::string>& items) { return "@('" + joinedBy("', '", items) + "')"; };
  std::string script =
      "Register-ArgumentCompleter -Native -CommandName sentiq-logs -ScriptBlock {\n"
      "  param($word, $ast, $position)\n"
      "  $parts = @($ast.CommandElements | ForEach-Object { $_.ToString() })\n"
      "  $before = if ($word) { $parts[-2] } else { $parts[-1] }\n"
      "  $words = switch ($parts[1] + ':' + $before) {\n";
  for (const CommandWords& command : words.commands) {
    for (const OptionWords& option : command.options) {
      if (!option.choices.empty()) {
        script += "    '" + command.name + ':' + option.names.back() + "' { " + list(option.choices) + "; break }\n";
      }
    }
  }
  script += "    default {\n      if ($parts.Count -le 1 -or ($parts.Count -eq 2 -and $word)) { " +
            list(namesOf(words)) + " } else { switch ($parts[1]) {\n";
  for (const CommandWords& command : words.commands) {
    script += "        '" + command.name + "' { " + list(optionNames(command)) + " }\n";
  }
  return script +
         "      } }\n    }\n  }\n"
         "  $words | Where-Object { $_ -like \"$word*\" } | ForEach-Object {\n"
         "    [System.Management.Automation.CompletionResult]::new($_)\n  }\n}\n";
}

struct Shell {
  std::string_view name;
  std::string (*script)(const CommandLineWords& words);
};
constexpr Shell shells[] = {
    {"bash", bashScript}, {"zsh", zshScript}, {"fish", fishScript}, {"powershell", powershellScript}};

}  // namespace

std::vector<std::string> completionShells() {
  std::vector<std::string> names;
  for (const Shell& shell : shells) {
    names.emplace_back(shell.name);
  }
  return names;
}

std::string completionScript(std::string_view shell, const CommandLineWords& words) {
  for (const auto& [name, script] : shells) {
    if (name == shell) {
      return script(words);
    }
  }
  return {};
}

}  // namespace sentiq
