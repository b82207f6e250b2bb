#include <vrelio/remote/property_bridge.h>

#include <vector>

namespace Json {

namespace {

std::string no_parameter(const std::string& name) { return "No parameter '" + name + "'"; }

using Pairs = std::vector<std::pair<const Object*, Object*>>;

// Leaves the maps that both have under one key for later.
void merge_entries(const Object& source, Object& target, Pairs& open) {
  for (const auto& [key, value] : source) {
    const auto [entry, is_new] = target.try_emplace(key, value);
    Value& present = entry->second;
    if (is_new || value.kind() != kind_map || present.kind() != kind_map) continue;
    open.emplace_back(&value.map(), &present.map());
  }
}

}  // namespace

NoParameterError::NoParameterError(const std::string& name)
    : std::invalid_argument(no_parameter(name)) {}
NoParameterError::NoParameterError(const NoParameterError&) noexcept = default;
NoParameterError& NoParameterError::operator=(const NoParameterError&) noexcept = default;
NoParameterError::~NoParameterError() = default;

void merge(const Map<std::string, Value>& source, Map<std::string, Value>& target) {
  Pairs open = {{&source, &target}};
  while (!open.empty()) {
    const auto [from, to] = open.back();
    open.pop_back();
    merge_entries(*from, *to, open);
  }
}

}  // namespace Json
