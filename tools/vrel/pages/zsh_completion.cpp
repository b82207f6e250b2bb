#include "pages/completion.h"

namespace Vrel::tool {

namespace {

// Inside single quotes, where some signs would end the text of an entry.
std::string quoted(const std::string& text) {
  std::string result;
  for (const char sign : text) {
    if (sign == '\'') {
      result += "'\\''";
    } else if (sign == ':' || sign == '[' || sign == ']' || sign == '\\') {
      result += std::string("\\") + sign;
    } else {
      result += sign;
    }
  }
  return result;
}

std::string answer(Completion completion) {
  if (completion == Completion::file) return "_files";
  if (completion == Completion::element_type) return '(' + join(element_types(), " ") + ')';
  return " ";
}

std::string argument(const OptionRecord& option) {
  return std::string(option.repeated ? "*" : "1") + ':' + quoted(option.names.front()) + ':' +
         answer(option.completion);
}

// Once it was given, an option is offered no more, nor what it excludes.
std::string bars(const OptionRecord& option) {
  std::vector<std::string> names = option.excludes;
  if (!option.repeated) names.insert(names.begin(), option.names.begin(), option.names.end());
  return names.empty() ? "" : '(' + join(names, " ") + ')';
}

std::string option_entry(const OptionRecord& option, const std::string& name) {
  std::string text =
      bars(option) + (option.repeated ? "*" : "") + name + '[' + quoted(brief(option.help)) + ']';
  if (!option.value.empty()) text += ':' + quoted(option.value) + ':' + answer(option.completion);
  return text;
}

std::string entries(const CommandRecord& command, const std::string& indent) {
  std::string text;
  for (const OptionRecord& option : command.options) {
    if (option.is_argument) {
      text += indent + '\'' + argument(option) + "' \\\n";
      continue;
    }
    for (const std::string& name : option.names) {
      text += indent + '\'' + option_entry(option, name) + "' \\\n";
    }
  }
  return text;
}

std::string inherited(const ProgramRecord& program) {
  std::string text;
  for (const OptionRecord& option : program.program.options) {
    if (!option.value.empty()) {
      text += "        '" + option_entry(option, long_name(option)) + "' \\\n";
    }
  }
  return text;
}

std::string without_continuation(const std::string& text) {
  return text.substr(0, text.size() - 3) + '\n';
}

}  // namespace

std::string zsh_completion(const ProgramRecord& program) {
  std::string text =
      "#compdef vrel\n"
      "# Completion of vrel by zsh; made from what vrel takes.\n"
      "_vrel() {\n"
      "  local curcontext=$curcontext state line\n"
      "  local -A opt_args\n"
      "  local -a verbs=(\n";
  for (const CommandRecord& verb : program.verbs) {
    text += "    '" + verb.name + ':' + quoted(verb.help) + "'\n";
  }
  text += "  )\n  _arguments -C \\\n" + entries(program.program, "    ") +
          "    '1:verb:->verb' \\\n"
          "    '*::argument:->argument'\n"
          "  case $state in\n"
          "  verb) _describe -t commands verb verbs ;;\n"
          "  argument)\n"
          "    case $words[1] in\n";
  for (const CommandRecord& verb : program.verbs) {
    text += "    " + verb.name + ")\n      _arguments \\\n" +
            without_continuation(entries(verb, "        ") + inherited(program)) + "      ;;\n";
  }
  return text + "    esac\n    ;;\n  esac\n}\n_vrel \"$@\"\n";
}

}  // namespace Vrel::tool
