// Generated trees through XML and back.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/foundation/error.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>
#include <vrelio/prop/prop_xml.h>

#include <cstdint>
#include <string>
#include <vector>

#include "prop/every_kind.h"
#include "prop/generators.h"

// Visitors have no virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

using namespace Vrel::testing;

constexpr int greatest_depth = 6;

// --- Texts

wchar_t any_of(const std::wstring& units) {
  return units[static_cast<std::size_t>(number_between(0, static_cast<int>(units.size()) - 1))];
}

wchar_t any_between(int first, int last) {
  return static_cast<wchar_t>(number_between(first, last));
}

wchar_t any_unit() {
  switch (number_between(0, 3)) {
    case 0:
      return any_of(L" \t\n\r&#x;<>\"\']\xFEFF\x7F\x85\xA0");
    case 1:
      return any_between(0x20, 0xFF);
    case 2:
      return any_between(0x100, 0xD7FF);
    default:
      return any_between(0xE000, 0xFFFD);
  }
}

VPropstring any_wide_text() {
  std::wstring text;
  for (int i = number_between(0, 6); i > 0; --i) {
    text += any_unit();
    if (chance(6)) text += {any_between(0xD800, 0xDBFF), any_between(0xDC00, 0xDFFF)};
  }
  return text;
}

// --- Shapes and arrays

// With `count` elements.
VProparrayBase::index_list any_shape(unsigned int count) {
  if (count == 0)
    return chance(2) ? VProparrayBase::index_list{} : VProparrayBase::index_list{3, 0};
  switch (number_between(0, 4)) {
    case 0:
      return {};
    case 1:
      return {1, count};
    case 2:
      return {count, 1};
    case 3:
      return {count};
    default:
      return count % 2 == 0 ? VProparrayBase::index_list{2, count / 2, 1}
                            : VProparrayBase::index_list{1, 1, count, 1};
  }
}

void shape_at_random(VProparrayBase& array, std::uint64_t free_bits) {
  array.set_size(any_shape(array.count()), VProparrayBase::set_mode_checked);
  array.userbits = any_word() & free_bits;
}

constexpr std::uint64_t all_bits = ~std::uint64_t{0};
constexpr std::uint64_t bits_of_cells = all_bits - 1;

VProp any_number() {
  static const std::vector<Kind> kinds = every_numeric_kind();
  const Kind& kind =
      kinds[static_cast<std::size_t>(number_between(0, static_cast<int>(kinds.size()) - 1))];
  std::vector<std::uint64_t> bits;
  for (int i = 2 * number_between(kind.is_array ? 0 : 1, 4); i > 0; --i) bits.push_back(any_bits());
  VProp value = kind.of_bits(bits);
  if (kind.is_array) shape_at_random(*value.get_arr(true), all_bits);
  return value;
}

VProp any_texts() {
  VProparray<VPropstring> texts;
  for (int i = number_between(0, 4); i > 0; --i) texts.push_back(any_wide_text());
  shape_at_random(texts, all_bits);
  texts.userbits |= 1;
  return texts;
}

VProp any_leaf() {
  if (chance(12)) return VProp();
  if (chance(8)) return any_wide_text();
  return chance(8) ? any_texts() : any_number();
}

// --- Trees

VProp any_value(int depth);

std::vector<std::string> any_names(int fewest) {
  const std::string starts[] = {"a", "_", "B-", "x_1", "item"};
  std::vector<std::string> names;
  for (int i = number_between(fewest, 4); i > 0; --i) {
    const auto start = static_cast<std::size_t>(number_between(0, 4));
    names.push_back(starts[start] + std::to_string(i));
  }
  return names;
}

VPropstruct any_fields(const std::vector<std::string>& names, int depth) {
  VPropstruct fields;
  for (const std::string& name : names) fields.emplace_back(name, any_value(depth));
  return fields;
}

VProp any_structs(int depth) {
  const std::vector<std::string> names = any_names(1);
  VProparray<VPropstruct> structs;
  for (int i = number_between(1, 3); i > 0; --i) structs.push_back(any_fields(names, depth));
  shape_at_random(structs, all_bits);
  return structs;
}

VProp any_cells(int depth) {
  VProparray<VProp> cells;
  for (int i = number_between(0, 3); i > 0; --i) cells.push_back(any_value(depth));
  shape_at_random(cells, bits_of_cells);
  return cells;
}

VProp any_value(int depth) {
  if (depth == 1 || chance(2)) return any_leaf();
  switch (number_between(0, 2)) {
    case 0:
      return any_cells(depth - 1);
    case 1:
      return any_structs(depth - 1);
    default:
      return any_fields(any_names(0), depth - 1);
  }
}

// --- Shapes and bits, which comparing leaves out

class Frames : public VPropVisitor {
 public:
  using VPropVisitor::visit;

  int visit(const VProp& value) override {
    const VProparrayBase* const array = value.get_arr(false);
    if (array != nullptr) {
      shapes.push_back(array->get_size(true));
      bits.push_back(array->userbits);
    }
    return visit_go;
  }

  std::vector<VProparrayBase::index_list> shapes;
  std::vector<std::uint64_t> bits;
};

Frames frames_of(const VProp& value) {
  Frames frames;
  frames.process(value);
  return frames;
}

RC_GTEST_PROP(PropXmlRoundTripTest, ATreeThatIsWrittenReadsAsTheSame, ()) {
  const VProp tree = any_value(greatest_depth);
  for (const int format : {vrel_xml_data, vrel_xml_root}) {
    std::string text;
    vrel_export_xml(text, tree, format);
    VProp back;
    vrel_import_xml(text, back, vrel_xml_any);
    RC_ASSERT(back == tree);
    RC_ASSERT(frames_of(back).shapes == frames_of(tree).shapes);
    RC_ASSERT(frames_of(back).bits == frames_of(tree).bits);
  }
}

RC_GTEST_PROP(PropXmlRoundTripTest, ATextThatIsWrittenReadsAsTheSame, ()) {
  const VProp text = any_wide_text();
  for (const int format : {vrel_xml_data, vrel_xml_root}) {
    std::string xml;
    vrel_export_xml(xml, text, format);
    VProp back;
    vrel_import_xml(xml, back, format);
    RC_ASSERT(back == text);
  }
}

RC_GTEST_PROP(PropXmlRoundTripTest, ADocumentThatIsCutIsRefused, ()) {
  std::string xml;
  vrel_export_xml(xml, any_value(3), vrel_xml_root);
  VProp value;
  const int length = number_between(0, static_cast<int>(xml.size()) - 1);
  RC_ASSERT_THROWS_AS(
      vrel_import_xml(xml.substr(0, static_cast<std::size_t>(length)), value, vrel_xml_any),
      VrelError);
}

}  // namespace
