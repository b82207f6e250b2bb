// The verbs of the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "lib/exit_code.h"

namespace Vrel::tool {

/// What the command line asked for.
using Command = std::function<ExitCode()>;

/// Add a verb to the command line; once it was parsed, `chosen` does it.
void add_info_command(CLI::App& app, Command& chosen);
void add_export_command(CLI::App& app, Command& chosen);
void add_import_command(CLI::App& app, Command& chosen);
void add_props_command(CLI::App& app, Command& chosen);
void add_recover_command(CLI::App& app, Command& chosen);
void add_repack_command(CLI::App& app, Command& chosen);
void add_shm_command(CLI::App& app, Command& chosen);
void add_units_command(CLI::App& app, Command& chosen);
void add_verify_command(CLI::App& app, Command& chosen);
void add_json2xml_command(CLI::App& app, Command& chosen);
void add_xml2json_command(CLI::App& app, Command& chosen);

}  // namespace Vrel::tool
