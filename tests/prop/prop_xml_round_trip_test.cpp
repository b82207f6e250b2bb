// Generated trees through XML and back.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/prop/prop_xml.h>

#include <vrelio/foundation/error.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

// Visitors have no virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

constexpr int greatest_depth = 6;

// From `first` to `last`, both included.
int number_between(int first, int last) { return *rc::gen::inRange(first, last + 1); }

bool chance(int in) { return number_between(1, in) == 1; }

// --- Numbers and texts

template <class T>
struct Any {
  static T value() {
    if constexpr (std::is_floating_point_v<T>) {
      const double wide = std::ldexp(*rc::gen::arbitrary<double>(), number_between(-60, 60));
      return chance(8) ? static_cast<T>(chance(2) ? INFINITY : -INFINITY) : static_cast<T>(wide);
    } else {
      return *rc::gen::arbitrary<T>();
    }
  }
};

template <class T>
struct Any<std::complex<T>> {
  static std::complex<T> value() { return {Any<T>::value(), Any<T>::value()}; }
};

template <>
struct Any<VPropstring> {
  static VPropstring value() {
    const auto unit = rc::gen::oneOf(
        rc::gen::element<wchar_t>(' ', '\t', '\n', '\r', '&', '#', 'x', ';', '<', '>', '"', '\'',
                                  ']', 0xFEFF, 0x7F, 0x85, 0xA0),
        rc::gen::inRange<wchar_t>(0x20, 0x100), rc::gen::inRange<wchar_t>(0x100, 0xD800),
        rc::gen::inRange<wchar_t>(0xE000, 0xFFFE));
    std::wstring text;
    for (int i = number_between(0, 6); i > 0; --i) {
      text += *unit;
      if (chance(6))
        text += {wchar_t(number_between(0xD800, 0xDBFF)), wchar_t(number_between(0xDC00, 0xDFFF))};
    }
    return text;
  }
};

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
  array.userbits = *rc::gen::arbitrary<std::uint64_t>() & free_bits;
}

constexpr std::uint64_t all_bits = ~std::uint64_t{0};
constexpr std::uint64_t bits_of_cells = all_bits - 1;

template <class T>
VProp any_of(bool is_array) {
  if (!is_array) return VProp(Any<T>::value());
  VProparray<T> array;
  for (int i = number_between(0, 4); i > 0; --i) array.push_back(Any<T>::value());
  shape_at_random(array, all_bits);
  if constexpr (std::is_same_v<T, VPropstring>) array.userbits |= 1;
  return VProp(array);
}

// --- Trees

VProp any_value(int depth);

std::vector<std::string> any_names(int fewest) {
  std::vector<std::string> names;
  for (int i = number_between(fewest, 4); i > 0; --i) {
    names.push_back(*rc::gen::element<std::string>("a", "_", "B-", "x_1", "item") +
                    std::to_string(i));
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

template <class T>
VProp any_real_or_complex(bool is_array) {
  return chance(2) ? any_of<T>(is_array) : any_of<std::complex<T>>(is_array);
}

VProp any_leaf() {
  const bool is_array = chance(2);
  switch (number_between(0, 12)) {
    case 0:
      return any_real_or_complex<unsigned char>(is_array);
    case 1:
      return any_real_or_complex<char>(is_array);
    case 2:
      return any_real_or_complex<unsigned short>(is_array);
    case 3:
      return any_real_or_complex<short>(is_array);
    case 4:
      return any_real_or_complex<unsigned int>(is_array);
    case 5:
      return any_real_or_complex<int>(is_array);
    case 6:
      return any_real_or_complex<float>(is_array);
    case 7:
      return any_real_or_complex<double>(is_array);
    case 8:
      return any_real_or_complex<unsigned long long>(is_array);
    case 9:
      return any_real_or_complex<long long>(is_array);
    case 10:
      return any_of<bool>(is_array);
    case 11:
      return any_of<VPropstring>(is_array);
    default:
      return VProp();
  }
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
  const VProp text = Any<VPropstring>::value();
  std::string xml;
  vrel_export_xml(xml, text, vrel_xml_root);
  VProp back;
  vrel_import_xml(xml, back, vrel_xml_root);
  RC_ASSERT(back == text);
}

RC_GTEST_PROP(PropXmlRoundTripTest, ADocumentThatIsCutIsRefused, ()) {
  std::string xml;
  vrel_export_xml(xml, any_value(3), vrel_xml_root);
  VProp value;
  const auto length = *rc::gen::inRange<std::size_t>(0, xml.size());
  RC_ASSERT_THROWS_AS(vrel_import_xml(xml.substr(0, length), value, vrel_xml_any), VrelError);
}

}  // namespace
