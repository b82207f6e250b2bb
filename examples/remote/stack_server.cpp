#include "stack_server.h"

#include <vrelio/foundation/error.h>
#include <vrelio/remote/stack_object.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

template <class T, class Element = T>
std::vector<Element> list_of(const Json::Value& value) {
  std::vector<Element> list;
  for (const Json::Value& item : value.array()) list.push_back(static_cast<Element>(item.get<T>()));
  return list;
}

template <class T, class List>
Json::Array array_of(const List& list) {
  Json::Array array;
  for (const auto& item : list) array.emplace_back(static_cast<T>(item));
  return array;
}

const Json::Value& entry(const Json::Value& request, const char* key) {
  const Json::Value* const found = request.find(key);
  if (found == nullptr) throw std::invalid_argument(std::string("there is no \"") + key + '"');
  return *found;
}

Json::Object describe(Remote::Stack& stack) {
  return {{"name", stack.name()},
          {"description", stack.description()},
          {"type", static_cast<int>(stack.type())},
          {"sizes", array_of<int>(stack.sizes())},
          {"labels", array_of<std::string>(stack.labels())},
          {"lengths", array_of<double>(stack.lengths())},
          {"offsets", array_of<double>(stack.offsets())},
          {"meta_data", stack.meta_data()}};
}

void change(Remote::Stack& stack, const Json::Value& request) {
  if (const Json::Value* const name = request.find("name"))
    stack.set_name(name->get<std::string>());
  if (const Json::Value* const description = request.find("description"))
    stack.set_description(description->get<std::string>());
  if (const Json::Value* const labels = request.find("labels"))
    stack.set_labels(list_of<std::string>(*labels));
  if (const Json::Value* const lengths = request.find("lengths"))
    stack.set_lengths(list_of<double>(*lengths));
  if (const Json::Value* const offsets = request.find("offsets"))
    stack.set_offsets(list_of<double>(*offsets));
}

}  // namespace

Json::Object StackServer::answer(const Json::Object& object) {
  try {
    const Json::Value request(object);
    return perform(entry(request, "do").get<std::string>(), request);
  } catch (const VrelError& error) {
    return {{"error", error.get_msg()}};
  } catch (const std::exception& error) {
    return {{"error", error.what()}};
  }
}

Json::Object StackServer::perform(const std::string& action, Request request) {
  if (action == "count") return {{"stacks", static_cast<int>(file_.number_of_stacks())}};
  if (action == "read") {
    return keep(file_.read(static_cast<unsigned int>(entry(request, "index").get<int>())));
  }
  if (action == "make") {
    const auto type = static_cast<Remote::Type>(entry(request, "type").get<int>());
    const auto sizes = list_of<int, unsigned int>(entry(request, "sizes"));
    return keep(boost::shared_ptr<Remote::Stack>(Remote::get_stack(type, sizes)));
  }
  const boost::shared_ptr<Remote::Stack> stack = find(request);
  if (action == "share") return {{"id", stack->share()}};
  if (action == "get") return describe(*stack);
  if (action == "set") {
    change(*stack, request);
  } else if (action == "write") {
    file_.write(stack, entry(request, "compress").get<bool>());
  } else if (action == "release") {
    stacks_.erase(entry(request, "stack").get<int>());
  } else {
    throw std::invalid_argument("nobody can \"" + action + '"');
  }
  return {};
}

Json::Object StackServer::keep(boost::shared_ptr<Remote::Stack> stack) {
  stacks_.emplace(++last_, std::move(stack));
  return {{"stack", last_}};
}

boost::shared_ptr<Remote::Stack> StackServer::find(Request request) const {
  const auto found = stacks_.find(entry(request, "stack").get<int>());
  if (found == stacks_.end()) throw std::invalid_argument("there is no such stack");
  return found->second;
}

// Whoever sends what is no JSON, or takes no answers, is gone as well.
void serve(Remote::File& file, Channel& client) {
  StackServer server(file);
  try {
    while (const std::optional<Json::Object> request = client.receive())
      client.send(server.answer(*request));
  } catch (const Json::Reader::Unexpected&) {
    return;
  } catch (const std::system_error&) {
    return;
  }
}
