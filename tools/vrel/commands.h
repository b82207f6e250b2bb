// The verbs of the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>

#include "lib/exit_code.h"

namespace Vrel::tool {

/// What the command line asked for.
using Command = std::function<ExitCode()>;

/// Make a command line that takes all verbs, each with its options, and tells its help and version.
/// \param chosen  does what was asked for, once the command line was parsed.
/// \param max_memory  takes the most memory to be used, in bytes, if that is told.
void add_command_line(CLI::App& app, Command& chosen, std::uint64_t& max_memory);

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
