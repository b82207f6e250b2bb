// What the command line takes, as plain records to write manual pages and completions from.
#pragma once

#include <string>
#include <vector>

namespace Vrel::tool {

/// What stands behind an option, as far as a shell can complete it.
enum class Completion { none, file, element_type };

/// An option, or an argument by its place.
struct OptionRecord {
  std::vector<std::string> names;     ///< such as "-h" and "--help"; the name alone of an argument
  std::string value;                  ///< name of what stands behind it; empty if nothing does
  std::string help;                   ///< one sentence without a full stop
  std::vector<std::string> needs;     ///< names of the options that have to be given as well
  std::vector<std::string> excludes;  ///< names of the options that must not be given as well
  Completion completion = Completion::none;  ///< of its value, or of the argument
  bool is_argument = false;                  ///< goes by its place
  bool required = false;                     ///< has to be given
  bool repeated = false;                     ///< may be given more than once
};

/// A verb, or the program around all verbs.
struct CommandRecord {
  std::string name;                   ///< as it is typed
  std::string help;                   ///< one sentence without a full stop
  std::string notes;                  ///< lines below the options; empty for none
  std::vector<OptionRecord> options;  ///< with the arguments, in the order of the help
};

/// The whole command line.
struct ProgramRecord {
  CommandRecord program;             ///< what may stand in front of the verb; notes: the exit codes
  std::string version;               ///< such as "vrel 1.2.3"
  std::vector<CommandRecord> verbs;  ///< in alphabetical order
};

/// What `add_command_line` makes of a command line.
ProgramRecord read_command_tree();

/// The names of all element types that samples can be converted to.
std::vector<std::string> element_types();

/// The longest name of an option, which is the one to be completed.
const std::string& long_name(const OptionRecord& option);

/// The first part of a help text, without what stands in parentheses.
std::string brief(const std::string& help);

/// The parts in one text.
std::string join(const std::vector<std::string>& parts, const std::string& separator);

}  // namespace Vrel::tool
