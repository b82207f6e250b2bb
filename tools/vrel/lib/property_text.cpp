#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_cast.h>

#include <algorithm>

#include "lib/printable_text.h"
#include "lib/property_kind.h"
#include "lib/property_tree.h"

namespace Vrel::tool {

namespace {

constexpr std::size_t shown_elements = 16;

std::string quoted(const VPropstring& text) { return quote(text.to(VPropstring::encoding_utf8)); }

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : " ") + text;
  return all;
}

std::string size_text(const VProparrayBase& array) {
  std::string text;
  for (const unsigned int size : array.get_size(true)) {
    text += (text.empty() ? " [" : " x ") + std::to_string(size);
  }
  return text + ']';
}

class TreeText {
 public:
  std::string take() { return std::move(text_); }

  void add(const std::string& label, const VProp& value) {
    const int id = value.get_id();
    begin_line(label);
    text_ += value.empty() ? "empty" : vrel_dt_get_name(id);
    if (is_array(id)) text_ += size_text(*value.get_arr(true));
    add_content(value);
    text_ += '\n';
    add_children(value);
  }

 private:
  void begin_line(const std::string& label) {
    text_.append(2 * depth_, ' ');
    if (!label.empty()) text_ += printable(label) + ": ";
  }

  void add_content(const VProp& value) {
    const int id = value.get_id();
    if (id == prop_id<VPropstring>) {
      text_ += ' ' + quoted(value.get<VPropstring>());
    } else if (id == prop_id<PropertyTexts>) {
      add_elements(value.get<PropertyTexts>(), quoted);
    } else if (is_numeric(id)) {
      add_elements(number_texts(value), [](const std::string& number) { return number; });
    }
  }

  template <class Elements, class ToText>
  void add_elements(const Elements& elements, ToText to_text) {
    const std::size_t count = std::min<std::size_t>(elements.size(), shown_elements);
    for (std::size_t i = 0; i < count; ++i) text_ += ' ' + to_text(elements[i]);
    if (count < elements.size()) text_ += " ...";
  }

  void add_children(const VProp& value) {
    ++depth_;
    const int id = value.get_id();
    if (id == prop_id<VPropstruct>) add_fields(value.get<VPropstruct>());
    if (id == prop_id<PropertyCells>) add_cells(value.get<PropertyCells>());
    if (id == prop_id<PropertyStructs>) add_structs(value.get<PropertyStructs>());
    --depth_;
  }

  void add_fields(const VPropstruct& fields) {
    for (const auto& [name, value] : fields) add(name, value);
  }

  void add_cells(const PropertyCells& cells) {
    for (unsigned int i = 0; i < cells.count(); ++i) add(position(cells, i, "{", "}"), cells[i]);
  }

  void add_structs(const PropertyStructs& structs) {
    for (unsigned int i = 0; i < structs.count(); ++i) {
      begin_line(position(structs, i, "(", ")"));
      text_ += "struct\n";
      ++depth_;
      add_fields(structs[i]);
      --depth_;
    }
  }

  // As in a path.
  static std::string position(const VProparrayBase& array, unsigned int idx, const char* opening,
                              const char* closing) {
    const VProparrayBase::index_list shape = array.get_size(true);
    if (shape.size() == 2 && shape[0] == 1) return opening + std::to_string(idx) + closing;
    std::string text;
    for (const unsigned int index : array.get_pos(idx)) {
      text += (text.empty() ? opening : ",") + std::to_string(index);
    }
    return text + closing;
  }

  std::string text_;
  std::size_t depth_ = 0;
};

}  // namespace

std::string to_text(const VProp& value) {
  TreeText text;
  text.add("", value);
  return text.take();
}

std::string to_plain_text(const VProp& value) {
  const int id = value.get_id();
  if (id == prop_id<VPropstring>) return vrel_val2string(value) + '\n';
  return is_numeric(id) ? joined(number_texts(value)) + '\n' : to_text(value);
}

}  // namespace Vrel::tool
