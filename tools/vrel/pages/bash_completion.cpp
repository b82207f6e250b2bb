#include "pages/completion.h"

namespace Vrel::tool {

namespace {

std::vector<std::string> option_names(const CommandRecord& command) {
  std::vector<std::string> names;
  for (const OptionRecord& option : command.options) {
    if (!option.is_argument) names.push_back(long_name(option));
  }
  return names;
}

std::vector<std::string> verb_names(const ProgramRecord& program) {
  std::vector<std::string> names;
  names.reserve(program.verbs.size());
  for (const CommandRecord& verb : program.verbs) names.push_back(verb.name);
  return names;
}

// Options of the program may stand behind the verb as well; its help and its version may not.
std::string inherited(const ProgramRecord& program) {
  std::string names;
  for (const OptionRecord& option : program.program.options) {
    if (!option.value.empty()) names += ' ' + long_name(option);
  }
  return names;
}

std::string answer(Completion completion) {
  if (completion == Completion::file) return "files=1";
  if (completion == Completion::element_type) return "words='" + join(element_types(), " ") + '\'';
  return ":";
}

// What stands behind an option.
std::string values(const std::string& verb, const CommandRecord& command) {
  std::string text;
  for (const OptionRecord& option : command.options) {
    if (option.is_argument || option.value.empty()) continue;
    text += "    " + verb + ':' + long_name(option) + ") " + answer(option.completion) + " ;;\n";
  }
  return text;
}

// What else may follow a verb.
std::string arguments(const ProgramRecord& program, const CommandRecord& verb) {
  std::string text = "    " + verb.name + ":*) words='" + join(option_names(verb), " ") +
                     inherited(program) + '\'';
  for (const OptionRecord& option : verb.options) {
    if (option.is_argument && option.completion == Completion::file) text += " files=1";
  }
  return text + " ;;\n";
}

constexpr const char* begin = R"(# Completion of vrel by bash; made from what vrel takes.
_vrel() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} verb= words= files= i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
)";

constexpr const char* middle = R"(      -*) ;;
      *) verb=${COMP_WORDS[i]}; break ;;
    esac
  done
  case $verb:$previous in
)";

constexpr const char* end = R"(  esac
  COMPREPLY=()
  if [[ -n $files && $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
    compopt -o filenames 2>/dev/null
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -F _vrel vrel
)";

// Options whose value is no verb.
std::string skipped(const ProgramRecord& program) {
  std::string text;
  for (const OptionRecord& option : program.program.options) {
    if (!option.value.empty()) text += "      " + long_name(option) + ") ((++i)) ;;\n";
  }
  return text;
}

}  // namespace

std::string bash_completion(const ProgramRecord& program) {
  std::string text = begin + skipped(program) + middle + values("*", program.program);
  for (const CommandRecord& verb : program.verbs) {
    text += values(verb.name, verb) + arguments(program, verb);
  }
  text += "    :*) words='" + join(verb_names(program), " ") + ' ' +
          join(option_names(program.program), " ") + "' ;;\n";
  return text + end;
}

}  // namespace Vrel::tool
