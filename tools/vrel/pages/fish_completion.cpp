#include "pages/completion.h"

namespace Vrel::tool {

namespace {

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char sign : text) {
    if (sign == '\'' || sign == '\\') result += '\\';
    result += sign;
  }
  return result + '\'';
}

std::string names(const OptionRecord& option) {
  std::string text;
  for (const std::string& name : option.names) {
    const bool is_long = name[1] == '-';
    text += (is_long ? " -l " : " -s ") + name.substr(is_long ? 2 : 1);
  }
  return text;
}

std::string value(const OptionRecord& option) {
  if (option.value.empty()) return "";
  if (option.completion == Completion::file) return " -r -F";
  if (option.completion == Completion::element_type) {
    return " -x -a " + quoted(join(element_types(), " "));
  }
  return " -x";
}

// Files that are arguments need no name.
std::string entry(const std::string& condition, const OptionRecord& option) {
  const std::string line = "complete -c vrel" + condition;
  if (!option.is_argument) {
    return line + names(option) + value(option) + " -d " + quoted(brief(option.help)) + '\n';
  }
  return option.completion == Completion::file ? line + " -F\n" : "";
}

}  // namespace

std::string fish_completion(const ProgramRecord& program) {
  std::string text =
      "# Completion of vrel by fish; made from what vrel takes.\n"
      "complete -c vrel -f\n";
  const std::string no_verb = " -n __fish_use_subcommand";
  for (const OptionRecord& option : program.program.options) {
    text += entry(option.value.empty() ? no_verb : "", option);
  }
  for (const CommandRecord& verb : program.verbs) {
    text += "complete -c vrel" + no_verb + " -a " + verb.name + " -d " + quoted(verb.help) + '\n';
  }
  for (const CommandRecord& verb : program.verbs) {
    const std::string condition = " -n '__fish_seen_subcommand_from " + verb.name + '\'';
    for (const OptionRecord& option : verb.options) text += entry(condition, option);
  }
  return text;
}

}  // namespace Vrel::tool
