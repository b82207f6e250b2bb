#include "commands.h"
#include "lib/program_name.h"
#include "number_option.h"

namespace Vrel::tool {

namespace {

// May stand before or behind the verb.
void add_max_memory(CLI::App& app, std::uint64_t& bytes) {
  app.add_option("--max-memory", bytes,
                 "Most memory to take, for instance 512MiB; 1 GiB if not given")
      ->check(refuse_sign)
      ->transform(size_in_bytes())
      ->type_name("SIZE");
  for (CLI::App* const verb : app.get_subcommands({})) verb->fallthrough();
}

}  // namespace

void add_command_line(CLI::App& app, Command& chosen, std::uint64_t& max_memory) {
  app.name("vrel");
  app.description(
      "Describe, check, recover and repack VBF files, import stacks into them and export what they "
      "hold, show and change property trees, convert units and values, and clean up shared memory");
  app.set_version_flag("--version", program_name());
  app.require_subcommand(1);
  app.footer(exit_code_help);
  add_info_command(app, chosen);
  add_export_command(app, chosen);
  add_import_command(app, chosen);
  add_props_command(app, chosen);
  add_recover_command(app, chosen);
  add_repack_command(app, chosen);
  add_shm_command(app, chosen);
  add_units_command(app, chosen);
  add_verify_command(app, chosen);
  add_json2xml_command(app, chosen);
  add_xml2json_command(app, chosen);
  add_max_memory(app, max_memory);
}

}  // namespace Vrel::tool
