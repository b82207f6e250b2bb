#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/standard_output.h"
#include "lib/unit_text.h"

namespace Vrel::tool {

namespace {

constexpr const char* what_is_read =
    "TEXT is a number, a unit, or both, joined by * / ^ and parentheses without blanks around\n"
    "them; exponents are whole numbers or fractions in parentheses. A unit may bear an SI\n"
    "prefix, with micro as \xC2\xB5 or u. A text that begins with a minus sign stands behind --.\n"
    "\n"
    "Examples:\n"
    "  vrel units '10 nm' --in um         0.01 um\n"
    "  vrel units 'kg*m/s^2'              1 N\n";

struct Options {
  std::string text;
  std::optional<std::string> unit;
  bool json = false;
};

ExitCode refuse(ExitCode code, const std::string& text, const std::string& message) {
  print_failure({code, text, message});
  return code;
}

ExitCode show(const Options& options, const Quantity& quantity, const si::value& shown) {
  StandardOutput().write(options.json ? to_json(quantity, shown) : to_text(quantity) + '\n');
  return exit_done;
}

ExitCode run(const Options& options) {
  const std::optional<si::value> shown = read_value(options.text);
  if (!shown) return refuse(exit_damaged, options.text, "No physical value!");
  if (!options.unit) return show(options, to_quantity(*shown), *shown);
  const std::optional<si::value> unit = read_value(*options.unit);
  if (!unit) return refuse(exit_damaged, *options.unit, "No unit!");
  if (!shown->is_compatible(*unit)) {
    return refuse(exit_answer_is_no, options.text,
                  "A value in " + to_base_units(shown->exponents()) + " cannot be told in " +
                      to_base_units(unit->exponents()) + '!');
  }
  return show(options, to_quantity(*shown, *unit, *options.unit), *shown);
}

}  // namespace

void add_units_command(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* const verb = app.add_subcommand("units", "Read a physical value and convert it");
  verb->add_option("TEXT", options->text, "Physical value, for instance '10 nm'")->required();
  verb->add_option("--in", options->unit, "Unit to tell the value in; chosen if not given")
      ->type_name("UNIT");
  verb->add_flag("--json", options->json, "One JSON object, with the value in base units");
  verb->footer(what_is_read);
  verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace Vrel::tool
