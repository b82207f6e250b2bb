#include <vrelio/prop/prop_visitor.h>

#include "foundation/raise_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/tree_depth_internal.h"

using namespace Vrel::detail;

namespace {

// What `visit` gives, held against what it may give.
bool is_stopped(int result) {
  if (result < VPropVisitor::visit_stop || result > VPropVisitor::visit_skip) {
    raise(id_plain, "Invalid return value from visit()!");
  }
  return result == VPropVisitor::visit_stop;
}

// Has a container on the stack for a while.
class Open_container {
 public:
  Open_container(std::vector<const VProp*>& stack, const VProp& value) : stack_(stack) {
    stack_.push_back(&value);
  }
  ~Open_container() { stack_.pop_back(); }
  Open_container(const Open_container&) = delete;
  Open_container& operator=(const Open_container&) = delete;

 private:
  std::vector<const VProp*>& stack_;
};

}  // namespace

namespace Vrel::detail {

void check_depth(std::size_t levels) {
  if (levels > highest_depth) raise(id_plain, "Property tree too deep!");
}

}  // namespace Vrel::detail

bool VPropVisitor::visit(const VPropstring&) { return true; }
int VPropVisitor::visit(const VPropstruct&) { return visit_go; }
int VPropVisitor::visit(const VProp&) { return visit_go; }
int VPropVisitor::visit_exit(const VPropstruct&) { return visit_go; }
bool VPropVisitor::visit_exit(const VProp&) { return true; }

bool VPropVisitor::is_container(const VProp& value) const {
  switch (value.get_id()) {
    case id_struct:
    case id_cell_array:
    case id_struct_array:
    case id_text_array:
      return true;
    default:
      return false;
  }
}

bool VPropVisitor::process(const VProp& value) {
  check_depth(arrays.size() + 1);
  const int result = visit(value);
  if (is_stopped(result)) return false;
  if (result == visit_go && is_container(value) && !process_container(value)) return false;
  visit_exit(value);
  return true;
}

bool VPropVisitor::process_container(const VProp& value) {
  const Open_container open(arrays, value);
  switch (value.get_id()) {
    case id_text_array:
      return process(value.get<VProparray<VPropstring>>());
    case id_cell_array:
      return process(value.get<VProparray<VProp>>());
    case id_struct_array:
      return process(value.get<VProparray<VPropstruct>>());
    default:
      decend(no_index);
      const bool goes_on = process(value.get<VPropstruct>());
      ascend();
      return goes_on;
  }
}

bool VPropVisitor::process(const VPropstruct& fields) {
  for (const auto& [key, value] : fields) {
    set_key(key);
    if (!process(value)) return false;
  }
  return true;
}

bool VPropVisitor::process(const VProparray<VPropstring>& texts) {
  for (unsigned int i = 0; i < texts.count(); ++i) {
    cur_item = i;
    const bool goes_on = visit(texts[i]);
    cur_item = no_index;
    if (!goes_on) return false;
  }
  return true;
}

bool VPropVisitor::process(const VProparray<VProp>& cells) {
  for (unsigned int i = 0; i < cells.count(); ++i) {
    decend(i);
    const bool goes_on = process(cells[i]);
    ascend();
    if (!goes_on) return false;
  }
  return true;
}

bool VPropVisitor::process(const VProparray<VPropstruct>& structs) {
  for (unsigned int i = 0; i < structs.count(); ++i) {
    decend(i);
    const bool goes_on = process_element(structs[i]);
    ascend();
    if (!goes_on) return false;
  }
  return true;
}

bool VPropVisitor::process_element(const VPropstruct& fields) {
  const int result = visit(fields);
  if (is_stopped(result)) return false;
  if (result == visit_go && !process(fields)) return false;
  // No operation of the visitor: the level is that of an index again.
  if (!keys.empty()) keys.back().clear();
  visit_exit(fields);
  return true;
}
