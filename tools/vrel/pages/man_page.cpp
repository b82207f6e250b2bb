#include "pages/man_page.h"

#include <cctype>
#include <sstream>
#include <stdexcept>

namespace Vrel::tool {

namespace {

// A text as the formatter shows it: signs that it would take for typographic ones stay plain.
std::string plain(const std::string& text) {
  std::string result;
  for (const char sign : text) {
    switch (sign) {
      case '\\':
        result += "\\e";
        break;
      case '-':
        result += "\\-";
        break;
      case '\'':
        result += "\\(aq";
        break;
      case '^':
        result += "\\(ha";
        break;
      case '~':
        result += "\\(ti";
        break;
      case '`':
        result += "\\(ga";
        break;
      case '\xC2':
        break;  // the first byte of the micro sign
      case '\xB5':
        result += "\\[mc]";
        break;
      default:
        result += sign;
    }
  }
  return result;
}

// A line of text, which no dot at its start makes a macro.
std::string line(const std::string& text) {
  const bool is_macro = !text.empty() && text.front() == '.';
  return (is_macro ? "\\&" : "") + plain(text) + '\n';
}

std::string bold(const std::string& text) { return "\\fB" + plain(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + plain(text) + "\\fR"; }

std::string bold_list(const std::vector<std::string>& names) {
  std::vector<std::string> parts;
  parts.reserve(names.size());
  for (const std::string& name : names) parts.push_back(bold(name));
  return join(parts, ", ");
}

constexpr const char* dots = ".\\|.\\|.";

// A line ends with its option, which its own dots do not make the end of a sentence.
std::string synopsis_of(const OptionRecord& option) {
  std::string text = option.is_argument ? italic(option.names.front()) : bold(long_name(option));
  if (!option.value.empty()) text += "\\ " + italic(option.value);
  if (option.repeated) text += std::string("\\ ") + dots;
  if (!option.required) text = '[' + text + ']';
  return text + "\\&\n";
}

// The help is left out, since it comes alone.
std::string synopsis(const CommandRecord& verb) {
  std::string text = bold("vrel " + verb.name) + '\n';
  for (const OptionRecord& option : verb.options) {
    if (long_name(option) != "--help") text += synopsis_of(option);
  }
  return text;
}

std::string sentence(const std::string& text) {
  const bool is_whole = !text.empty() && text.back() == '.';
  return line(is_whole ? text : text + '.');
}

std::string entry(const OptionRecord& option) {
  std::string text = ".TP\n";
  text += option.is_argument ? italic(option.names.front()) : bold_list(option.names);
  if (!option.value.empty()) text += ' ' + italic(option.value);
  if (option.repeated) text += std::string(" ") + dots;
  text += '\n' + sentence(option.help);
  if (option.required && !option.is_argument) text += line("Has to be given.");
  if (!option.needs.empty()) text += "Only with " + bold_list(option.needs) + ".\n";
  if (!option.excludes.empty()) text += "Not with " + bold_list(option.excludes) + ".\n";
  return text;
}

std::string option_list(const CommandRecord& command) {
  std::string text;
  for (const OptionRecord& option : command.options) text += entry(option);
  return text;
}

std::string verb_list(const ProgramRecord& program) {
  std::string text;
  for (const CommandRecord& verb : program.verbs) {
    text += ".TP\n.BR vrel\\-" + plain(verb.name) + " (1)\n" + sentence(verb.help);
  }
  return text;
}

// Lines of a code and what it means, indented, below a heading.
std::string exit_codes(const ProgramRecord& program) {
  std::istringstream lines(program.program.notes);
  std::string text;
  std::string row;
  std::getline(lines, row);
  while (std::getline(lines, row)) {
    const std::size_t code = row.find_first_not_of(' ');
    const std::size_t end = row.find(' ', code);
    const std::size_t meaning = row.find_first_not_of(' ', end);
    text += ".TP\n" + bold(row.substr(code, end - code)) + '\n' + line(row.substr(meaning));
  }
  return text;
}

// Paragraphs; indented lines stay lines.
std::string paragraphs(const std::string& notes) {
  std::istringstream lines(notes);
  std::string text = ".PP\n";
  std::string row;
  bool is_example = false;
  while (std::getline(lines, row)) {
    const bool is_indented = row.front() == ' ';
    if (is_indented != is_example) text += is_indented ? ".PP\n.EX\n" : ".EE\n";
    is_example = is_indented;
    text += row.empty() ? ".PP\n" : line(row);
  }
  return is_example ? text + ".EE\n" : text;
}

std::string expand(const std::string& row, const ProgramRecord& program,
                   const CommandRecord& command) {
  if (row == "@OPTIONS@") return option_list(command);
  if (row == "@NOTES@") return paragraphs(command.notes);
  if (row == "@VERBS@") return verb_list(program);
  if (row == "@EXIT@") return exit_codes(program);
  return row + '\n';
}

std::string body(const std::string& text, const ProgramRecord& program,
                 const CommandRecord& command) {
  if (text.find("\n@OPTIONS@\n") == std::string::npos) {
    throw std::runtime_error("The page of " + command.name + " has no options!");
  }
  std::istringstream lines(text);
  std::string page;
  std::string row;
  while (std::getline(lines, row)) page += expand(row, program, command);
  return page;
}

// Nothing of the day on which it was built.
std::string head(const ProgramRecord& program, const std::string& name, const std::string& help) {
  std::string upper = name;
  for (char& letter : upper) letter = static_cast<char>(std::toupper(letter));
  std::string lower = brief(help);
  // The first word begins a sentence in the help, unless it is a name in capitals.
  if (std::islower(lower[1]) != 0) lower.front() = static_cast<char>(std::tolower(lower.front()));
  return ".TH \"" + plain(upper) + "\" 1 \"\" \"" + plain(program.version) + "\" \"VrelIo\"\n" +
         ".SH NAME\n" + plain(name) + " \\- " + plain(lower) + '\n' + ".SH SYNOPSIS\n";
}

}  // namespace

std::string man_page(const ProgramRecord& program, const CommandRecord& verb,
                     const std::string& text) {
  return head(program, "vrel-" + verb.name, verb.help) + synopsis(verb) + body(text, program, verb);
}

std::string man_page(const ProgramRecord& program, const std::string& text) {
  const std::string usage = bold("vrel") + ' ' + italic("VERB") + " [" + italic("OPTION") + ' ' +
                            dots + "] [" + italic("ARGUMENT") + ' ' + dots + "]\n.br\n" +
                            bold("vrel --help") + " | " + bold("--version") + "\n.br\n" +
                            bold("vrel") + ' ' + italic("VERB") + ' ' + bold("--help") + '\n';
  return head(program, "vrel", "Read, write, check and convert multi-dimensional images") + usage +
         body(text, program, program.program);
}

}  // namespace Vrel::tool
