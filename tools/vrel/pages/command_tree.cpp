#include "pages/command_tree.h"

#include <vrelio/foundation/data_type.h>

#include <algorithm>

#include "commands.h"
#include "lib/program_name.h"
#include "lib/sample_conversion.h"

namespace Vrel::tool {

namespace {

std::vector<std::string> names_of(const CLI::Option& option) {
  if (option.get_positional()) return {option.get_single_name()};
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

// They come in the order of their addresses.
std::vector<std::string> names_of(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const CLI::Option* const option : options) names.push_back(option->get_name());
  std::sort(names.begin(), names.end());
  return names;
}

Completion completion_of(const std::string& name) {
  if (name == "FILE" || name == "INPUT") return Completion::file;
  if (name == "TYPE") return Completion::element_type;
  return Completion::none;
}

OptionRecord read_option(const CLI::Option& option) {
  OptionRecord record;
  record.names = names_of(option);
  record.is_argument = option.get_positional();
  if (!record.is_argument && option.get_items_expected_max() > 0) {
    record.value = option.get_type_name();
  }
  record.help = option.get_description();
  record.needs = names_of(option.get_needs());
  record.excludes = names_of(option.get_excludes());
  record.completion = completion_of(record.is_argument ? record.names.front() : record.value);
  record.required = option.get_required();
  record.repeated = option.get_expected_max() > 1 ||
                    option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
  return record;
}

CommandRecord read_command(const CLI::App& app) {
  CommandRecord record;
  record.name = app.get_name();
  record.help = app.get_description();
  record.notes = app.get_footer();
  for (const CLI::Option* const option : app.get_options()) {
    record.options.push_back(read_option(*option));
  }
  return record;
}

CommandRecord read_verb(const CLI::App& verb) {
  CommandRecord record = read_command(verb);
  if (record.notes == exit_code_help) record.notes.clear();  // the program's, handed down
  return record;
}

}  // namespace

ProgramRecord read_command_tree() {
  CLI::App app;
  Command chosen;
  std::uint64_t max_memory = 0;
  add_command_line(app, chosen, max_memory);
  ProgramRecord record{read_command(app), program_name(), {}};
  for (const CLI::App* const verb : app.get_subcommands({})) {
    record.verbs.push_back(read_verb(*verb));
  }
  std::sort(record.verbs.begin(), record.verbs.end(),
            [](const CommandRecord& a, const CommandRecord& b) { return a.name < b.name; });
  return record;
}

std::vector<std::string> element_types() {
  std::vector<std::string> names;
  for (const int flag : {0, 0x40000000}) {
    for (int bit = 0; bit < 30; ++bit) {
      const int id = flag | (1 << bit);
      if (is_conversion_target(id)) names.emplace_back(vrel_dt_get_name(id));
    }
  }
  return names;
}

const std::string& long_name(const OptionRecord& option) { return option.names.back(); }

std::string brief(const std::string& help) {
  std::string text = help;
  for (std::size_t open = text.find(" ("); open != std::string::npos;
       open = text.find(" (", open)) {
    text.erase(open, text.find(')', open) - open + 1);
  }
  return text.substr(0, std::min(text.find("; "), text.find(": ")));
}

std::string join(const std::vector<std::string>& parts, const std::string& separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

}  // namespace Vrel::tool
