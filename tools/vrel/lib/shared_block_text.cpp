#include <nlohmann/json.hpp>

#include "lib/shared_blocks.h"

namespace Vrel::tool {

namespace {

using nlohmann::json;

constexpr std::string_view id_form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

bool is_lower_hex(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f');
}

// In the largest unit of which there are at least two.
std::string age_text(std::uint64_t seconds) {
  constexpr std::uint64_t minute = 60;
  constexpr std::uint64_t hour = 60 * minute;
  constexpr std::uint64_t day = 24 * hour;
  if (seconds >= 2 * day) return std::to_string(seconds / day) + " d";
  if (seconds >= 2 * hour) return std::to_string(seconds / hour) + " h";
  if (seconds >= 2 * minute) return std::to_string(seconds / minute) + " min";
  return std::to_string(seconds) + " s";
}

std::string users_text(const std::vector<int>& processes) {
  if (processes.empty()) return "no process seen that uses it";
  std::string text = "used by process";
  for (const int process : processes) text += ' ' + std::to_string(process);
  return text;
}

std::string line_of(const SharedBlock& block) {
  const std::string owner = block.is_own ? "" : "of user " + std::to_string(block.user) + ", ";
  return block.id + "  " + std::to_string(block.bytes) + " bytes, " + owner + age_text(block.age) +
         " old, " + users_text(block.processes) + '\n';
}

}  // namespace

bool is_block_id(std::string_view text) {
  if (text.size() != id_form.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool fits = id_form[i] == '-' ? text[i] == '-' : is_lower_hex(text[i]);
    if (!fits) return false;
  }
  return true;
}

std::string to_text(const std::vector<SharedBlock>& blocks) {
  if (blocks.empty()) return "no blocks\n";
  std::string text;
  for (const SharedBlock& block : blocks) text += line_of(block);
  return text;
}

std::string to_json(const std::vector<SharedBlock>& blocks) {
  json array = json::array();
  for (const SharedBlock& block : blocks) {
    array.push_back({{"id", block.id},
                     {"bytes", block.bytes},
                     {"user", block.user},
                     {"own", block.is_own},
                     {"age", block.age},
                     {"processes", block.processes}});
  }
  return array.dump() + '\n';
}

}  // namespace Vrel::tool
