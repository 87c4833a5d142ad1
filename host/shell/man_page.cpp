#include "host/shell/man_page.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>
#include <vector>

#include "host/shell/command_tree.h"

namespace zt::telemetry::host {
namespace {

std::string InCapitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
  return text;
}

// A dash is a dash, not a hyphen, so that what is copied from the page works.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '\\') {
      escaped += "\\e";
    } else if (character == '-') {
      escaped += "\\-";
    } else {
      escaped += character;
    }
  }
  return escaped;
}

// A line of text that is not taken for a request.
std::string Line(const std::string& text) {
  const bool like_a_request = text.starts_with('.') || text.starts_with('\'');
  return (like_a_request ? "\\&" : "") + Escaped(text) + "\n";
}

// Text that the reader's page breaks into lines. Each sentence begins a line here, as the macros want it.
std::string Filling(const std::string& text) {
  constexpr std::size_t kWidth = 72;
  std::string lines;
  std::string line;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (!line.empty() && (line.size() + word.size() >= kWidth || line.ends_with('.'))) {
      lines += Line(line);
      line.clear();
    }
    line.append(line.empty() ? "" : " ").append(word);
  }
  return line.empty() ? lines : lines + Line(line);
}

std::string Bold(const std::string& text) {
  return "\\fB" + Escaped(text) + "\\fR";
}

std::string Slanted(const std::string& text) {
  return "\\fI" + Escaped(text) + "\\fR";
}

std::string Sentence(const std::string& text) {
  return text.empty() || text.ends_with('.') ? text : text + ".";
}

std::string OptionText(const OptionEntry& option) {
  std::string head = option.names.empty() ? Slanted(option.word) : "";
  for (const std::string& name : option.names) head += (head.empty() ? "" : ", ") + Bold(name);
  if (!option.type.empty()) head += " " + Slanted(option.type);
  std::string text = ".TP\n" + head + "\n" + Filling(Sentence(option.description));
  if (!option.unless_told.empty()) text += "Default: " + Escaped(option.unless_told) + ".\n";
  if (option.required) text += "Required.\n";
  return text;
}

std::string OptionsText(const CommandEntry& command) {
  std::string text;
  for (const OptionEntry& option : command.options) text += OptionText(option);
  return text;
}

std::string CommandText(const CommandEntry& command) {
  std::string text = ".SS " + Escaped(command.path) + "\n" + Filling(Sentence(command.description));
  if (!command.notes.empty()) text += ".PP\n" + Filling(command.notes);
  return text + OptionsText(command);
}

// "Examples:" and the lines behind it, "Exit codes:" and the text behind that: a section each.
std::string NotesText(const std::string& notes) {
  std::string text;
  std::istringstream stream(notes);
  bool begins = true;
  for (std::string line; std::getline(stream, line);) {
    const std::size_t colon = line.find(':');
    if (begins && colon != std::string::npos) {
      if (!text.empty()) text += ".fi\n";
      text += ".SH " + InCapitals(Escaped(line.substr(0, colon))) + "\n.nf\n";
      line.erase(0, line.find_first_not_of(' ', colon + 1));
    }
    begins = line.empty();
    if (!line.empty()) text += Line(line);
  }
  return text.empty() ? text : text + ".fi\n";
}

std::string WithoutFullStop(std::string text) {
  if (text.ends_with('.')) text.pop_back();
  return text;
}

}  // namespace

std::string ManPage(CLI::App& app) {
  const std::vector<CommandEntry> tree = CommandTree(app);
  const CommandEntry& program = tree.front();
  const std::string name = app.get_name();
  const std::string summary = WithoutFullStop(program.description.substr(0, program.description.find('\n')));
  std::string page = ".TH " + InCapitals(Escaped(name)) + " 1 \"\" \"" + app.version() + "\" \"User Commands\"\n";
  page += ".SH NAME\n" + Escaped(name) + " \\- " + Escaped(summary) + "\n";
  page += ".SH SYNOPSIS\n" + Bold(name) + " [" + Slanted("COMMAND") + "] [" + Slanted("OPTION") + "]...\n";
  page += ".SH DESCRIPTION\n" + Filling(program.description);
  page += ".SH OPTIONS\n" + OptionsText(program) + ".SH COMMANDS\n";
  for (const CommandEntry& command : tree) {
    if (!command.path.empty()) page += CommandText(command);
  }
  return page + NotesText(program.notes);
}

}  // namespace zt::telemetry::host
