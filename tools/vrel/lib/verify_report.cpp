#include "lib/verify_report.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "lib/printable_text.h"
#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

using nlohmann::ordered_json;

std::string counted(u64 count, const char* word) {
  return std::to_string(count) + ' ' + word + (count == 1 ? "" : "s");
}

std::string line_of(const std::string& file, const Finding& finding, const char* mark) {
  const std::string place =
      finding.stack ? "stack " + std::to_string(*finding.stack) + ", " : std::string();
  return printable(file) + ": " + mark + place + "byte " + std::to_string(finding.position) + ": " +
         printable(finding.what) + '\n';
}

std::string lines_of(const std::string& file, const FindingList& list, const char* mark) {
  std::string text;
  for (const Finding& finding : list.kept()) text += line_of(file, finding, mark);
  const u64 left = list.count() - list.kept().size();
  if (left > 0) text += printable(file) + ": " + mark + "and " + std::to_string(left) + " more\n";
  return text;
}

// Runs are drawn together, for files of thousands of stacks.
std::string list_of(const std::vector<u64>& numbers) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size();) {
    std::size_t last = i;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    if (!text.empty()) text += ", ";
    text += std::to_string(numbers[i]);
    if (last > i) text += '-' + std::to_string(numbers[last]);
    i = last + 1;
  }
  return text;
}

std::string readable_text(const VerifyReport& report) {
  const std::vector<u64>& readable = report.readable_stacks;
  if (readable.empty()) return "no stack can be read whole";
  if (readable.size() == report.stacks) return "all stacks can be read whole";
  return "stacks that can be read whole: " + list_of(readable);
}

ordered_json to_json(const FindingList& list) {
  ordered_json array = ordered_json::array();
  for (const Finding& finding : list.kept()) {
    ordered_json entry = {{"position", finding.position}, {"stack", nullptr}};
    if (finding.stack) entry["stack"] = *finding.stack;
    entry["what"] = repair_utf8(finding.what);
    array.push_back(std::move(entry));
  }
  return array;
}

}  // namespace

void FindingList::add(Finding finding) {
  ++count_;
  if (kept_.size() < most_kept) kept_.push_back(std::move(finding));
}

std::string to_text(const std::string& file, const VerifyReport& report) {
  std::string text = lines_of(file, report.findings, "");
  text += lines_of(file, report.notes, "note: ");
  text += printable(file) + ": " + counted(report.stacks, "stack") + ", ";
  if (report.findings.count() == 0) return text + "no faults\n";
  return text + counted(report.findings.count(), "fault") + "; " + readable_text(report) + '\n';
}

std::string to_json(const std::string& file, const VerifyReport& report) {
  const ordered_json object = {{"file", repair_utf8(file)},
                               {"findings", to_json(report.findings)},
                               {"notes", to_json(report.notes)},
                               {"stacks", report.stacks},
                               {"readable_stacks", report.readable_stacks}};
  return object.dump() + '\n';
}

}  // namespace Vrel::tool
