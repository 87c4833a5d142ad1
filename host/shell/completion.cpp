#include "host/shell/completion.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "host/shell/command_tree.h"

namespace zt::telemetry::host {
namespace {

constexpr std::string_view kBashHead = R"(# Completion of {program} for bash: source <({program} completion bash)
_zt_telemetry_host() {
  local command= values= kind=words i
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  # bash takes "--option=value" for three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "$command ${COMP_WORDS[i]}" in
)";
constexpr std::string_view kBashOptions = R"() command="$command ${COMP_WORDS[i]}" ;;
    esac
  done
  if [ -z "$command" ] && [ "$COMP_CWORD" -gt 1 ]; then
    case "${COMP_WORDS[1]}" in -*) command=' {unless_told}' ;; esac
  fi
  case "$command $previous" in
)";
constexpr std::string_view kBashWords = R"(    *)
      case "$command" in
)";
constexpr std::string_view kBashTail = R"(      esac
      ;;
  esac
  mapfile -t COMPREPLY < <(
    [ -z "$values" ] || compgen -W "$values" -- "$current" || :
    case "$kind" in
      files) compgen -f -- "$current" ;;
      folders) compgen -d -- "$current" ;;
    esac
  )
  # Only while a key is completed; for files it adds what a shell adds to folders' names.
  [ "$kind" = words ] || compopt -o filenames 2>/dev/null || :
  return 0
}
complete -F _zt_telemetry_host {program} {program}.exe
)";

constexpr std::string_view kPowerShellHead =
    R"(# Completion of {program} for PowerShell: {program} completion powershell | Out-String | Invoke-Expression
Register-ArgumentCompleter -Native -CommandName '{program}', '{program}.exe' -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)
    # What may stand behind each command, and what each word means.
    $words = @{
)";
constexpr std::string_view kPowerShellHelp = R"(    }
    $help = @{
)";
constexpr std::string_view kPowerShellValues = R"(    }
    # What an option may be; of those that have none here PowerShell offers files.
    $values = @{
)";
constexpr std::string_view kPowerShellTail = R"SCRIPT(    }
    $before = @($commandAst.CommandElements | Select-Object -Skip 1 |
        Where-Object { $_.Extent.EndOffset -lt $cursorPosition } | ForEach-Object { $_.Extent.Text })
    $command = ''
    foreach ($word in $before) {
        $longer = "$command $word".Trim()
        if ($words.ContainsKey($longer)) { $command = $longer }
    }
    if ($command -eq '' -and $before.Count -gt 0 -and $before[0].StartsWith('-')) { $command = '{unless_told}' }
    $candidates = $words[$command]
    if ($before.Count -gt 0) {
        $option = "$command $($before[-1])".Trim()
        if ($values.ContainsKey($option)) { $candidates = $values[$option] }
    }
    foreach ($candidate in $candidates) {
        if ($candidate.StartsWith($wordToComplete)) {
            $meaning = $help["$command $candidate".Trim()]
            if (-not $meaning) { $meaning = $candidate }
            [System.Management.Automation.CompletionResult]::new($candidate, $candidate, 'ParameterValue', $meaning)
        }
    }
}
)SCRIPT";

void Replace(std::string& text, std::string_view placeholder, const std::string& value) {
  for (std::size_t at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at + value.size())) {
    text.replace(at, placeholder.size(), value);
  }
}

// The script with the program's name and the default command's in it.
std::string Filled(std::string_view script, const std::string& program, const std::string& unless_told) {
  std::string filled(script);
  Replace(filled, "{program}", program);
  Replace(filled, "{unless_told}", unless_told);
  return filled;
}

// In single quotes, as both shells take a text as it is; each has its own way to write such a quote inside.
std::string Quoted(std::string_view text, std::string_view inner_quote) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'') {
      quoted += inner_quote;
    } else {
      quoted += character;
    }
  }
  return quoted + "'";
}

std::string ForBash(std::string_view text) {
  return Quoted(text, R"('\'')");
}

std::string ForPowerShell(std::string_view text) {
  return Quoted(text, "''");
}

// All that may stand behind a command. Behind the program itself also what the default command takes.
std::vector<std::string> WordsOf(const CommandEntry& command, const CommandEntry* also) {
  std::vector<std::string> words = command.commands;
  for (const CommandEntry* const entry : {&command, also}) {
    if (entry == nullptr) continue;
    for (const OptionEntry& option : entry->options) {
      const bool named = !option.names.empty();
      const std::vector<std::string>& more = named ? option.names : option.values;
      for (const std::string& word : more) {
        if (std::find(words.begin(), words.end(), word) == words.end()) words.push_back(word);
      }
    }
  }
  return words;
}

const CommandEntry* Find(const std::vector<CommandEntry>& tree, const std::string& path) {
  const auto found = std::find_if(tree.begin(), tree.end(), [&path](const auto& entry) { return entry.path == path; });
  return found != tree.end() ? &*found : nullptr;
}

std::string Joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : separator).append(word);
  return text;
}

// A command as bash knows it: each of its words behind a blank.
std::string BashPath(const CommandEntry& command) {
  return command.path.empty() ? "" : " " + command.path;
}

std::string BashOption(const CommandEntry& command, const OptionEntry& option) {
  std::string text = "    ";
  for (std::size_t i = 0; i < option.names.size(); ++i) {
    text.append(i > 0 ? " | " : "").append(ForBash(BashPath(command) + " " + option.names[i]));
  }
  text += ")";
  if (!option.values.empty()) text += " values=" + ForBash(Joined(option.values, " "));
  if (option.takes_files) text += " kind=files";
  if (option.takes_folders) text += " kind=folders";
  return text + " ;;\n";
}

std::vector<std::string> QuotedForPowerShell(const std::vector<std::string>& words) {
  std::vector<std::string> quoted;
  quoted.reserve(words.size());
  for (const std::string& word : words) quoted.push_back(ForPowerShell(word));
  return quoted;
}

std::string PowerShellLine(const std::string& key, const std::vector<std::string>& words) {
  return "        " + ForPowerShell(key) + " = @(" + Joined(QuotedForPowerShell(words), ", ") + ")\n";
}

std::string Behind(const CommandEntry& command, const std::string& word) {
  return command.path.empty() ? word : command.path + " " + word;
}

std::string PowerShellMeanings(const CommandEntry& command) {
  std::string text;
  const auto add = [&](const std::string& key, const std::string& meaning) {
    text += "        " + ForPowerShell(key) + " = " + ForPowerShell(meaning) + "\n";
  };
  if (!command.path.empty()) add(command.path, command.description);
  for (const OptionEntry& option : command.options) {
    for (const std::string& name : option.names) add(Behind(command, name), option.description);
  }
  return text;
}

std::string PowerShellOptionValues(const CommandEntry& command) {
  std::string text;
  for (const OptionEntry& option : command.options) {
    if (!option.takes_value) continue;
    for (const std::string& name : option.names) text += PowerShellLine(Behind(command, name), option.values);
  }
  return text;
}

}  // namespace

std::string BashCompletion(CLI::App& app, const std::string& unless_told) {
  const std::vector<CommandEntry> tree = CommandTree(app);
  std::vector<std::string> paths;
  std::string options;
  std::string words;
  for (const CommandEntry& command : tree) {
    const bool program = command.path.empty();
    if (!program) paths.push_back(ForBash(BashPath(command)));
    for (const OptionEntry& option : command.options) {
      if (option.takes_value && !option.names.empty()) options += BashOption(command, option);
    }
    words += "        " + ForBash(BashPath(command)) +
             ") values=" + ForBash(Joined(WordsOf(command, program ? Find(tree, unless_told) : nullptr), " ")) +
             " ;;\n";
  }
  const std::string script = std::string(kBashHead) + "      " + Joined(paths, " | ") + std::string(kBashOptions);
  return Filled(script, app.get_name(), unless_told) + options + std::string(kBashWords) + words +
         Filled(kBashTail, app.get_name(), unless_told);
}

std::string PowerShellCompletion(CLI::App& app, const std::string& unless_told) {
  const std::vector<CommandEntry> tree = CommandTree(app);
  std::string words;
  std::string help;
  std::string values;
  for (const CommandEntry& command : tree) {
    words += PowerShellLine(command.path, WordsOf(command, command.path.empty() ? Find(tree, unless_told) : nullptr));
    help += PowerShellMeanings(command);
    values += PowerShellOptionValues(command);
  }
  return Filled(kPowerShellHead, app.get_name(), unless_told) + words + std::string(kPowerShellHelp) + help +
         std::string(kPowerShellValues) + values + Filled(kPowerShellTail, app.get_name(), unless_told);
}

}  // namespace zt::telemetry::host
