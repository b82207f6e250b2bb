#include <unistd.h>

#include "commands.h"
#include "lib/error_report.h"
#include "lib/standard_output.h"
#include "lib/text_document.h"

namespace Vrel::tool {

namespace {

// Standard input to standard output.
template <class Work>
Command filter(Work work) {
  return [work] {
    try {
      StandardOutput output;
      work(read_descriptor(STDIN_FILENO), output);
      return exit_done;
    } catch (...) {
      const Failure failure = current_failure("standard input");
      print_failure(failure);
      return failure.code;
    }
  };
}

void json_to_xml(const Source& source, Output& output) {
  write_xml_document(read_json_document(source), output);
}

void xml_to_json(const Source& source, Output& output) {
  write_json_document(read_xml_document(source), output);
}

}  // namespace

void add_json2xml_command(CLI::App& app, Command& chosen) {
  CLI::App* const verb = app.add_subcommand("json2xml", "JSON on standard input becomes XML");
  verb->footer(
      "The input is one JSON object with one entry, the root element. An entry that is an object "
      "has\n"
      "its attributes under their names and its content, a text or an object of the child "
      "elements,\n"
      "under the empty name; an array stands for one element per item.");
  verb->callback([&chosen] { chosen = filter(json_to_xml); });
}

void add_xml2json_command(CLI::App& app, Command& chosen) {
  CLI::App* const verb = app.add_subcommand("xml2json", "XML on standard input becomes JSON");
  verb->footer(
      "The input is one document of data: elements with attributes, with text or with child "
      "elements.\n"
      "Comments, CDATA sections, document types and numeric references are refused.");
  verb->callback([&chosen] { chosen = filter(xml_to_json); });
}

}  // namespace Vrel::tool
