// What linked programs rely on: the order of virtual functions.
#include <cxxabi.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vrelio/stack/iterator.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

// The library exports no inline function, so these have no name.
const std::string inline_function = "inline";

std::string without(std::string text, const std::string& part) {
  const std::size_t at = text.find(part);
  return at == std::string::npos ? text : text.erase(at, part.size());
}

std::string name_of(void* function) {
  Dl_info info = {};
  if (::dladdr(function, &info) == 0 || info.dli_sname == nullptr) return inline_function;
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> text(
      abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), std::free);
  return without(status == 0 ? text.get() : info.dli_sname, "[abi:cxx11]");
}

// The functions that the table of an object begins with, with the types of their arguments.
template <class T>
Texts slots(const T& object, std::size_t count) {
  void* const* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
  Texts names;
  std::transform(table, table + count, std::back_inserter(names), name_of);
  return names;
}

void expect_functions(const Texts& slots, const Texts& functions) {
  ASSERT_EQ(slots.size(), functions.size());
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i] == inline_function) continue;
    EXPECT_NE(slots[i].find("::" + functions[i]), std::string::npos) << i << ": " << slots[i];
  }
}

const Texts info_functions = {"create(std::vector<unsigned int",
                              "create(VStackInfoInterface const*, int)",
                              "create(VStackInfoInterface const*, VStackRegion const&)",
                              "set_info(",
                              "set_name(",
                              "set_acquisition_date(",
                              "set_description(",
                              "set_len(unsigned int, double)",
                              "set_len(std::vector<double",
                              "set_off(unsigned int, double)",
                              "set_off(std::vector<double",
                              "set_labels(",
                              "set_stack_position(",
                              "set_col_labels(",
                              "set_col_positions(",
                              "set_label(",
                              "set_units(",
                              "set_data_units(",
                              "get_size(int) const",
                              "get_number_of_elements() const",
                              "get_rank() const",
                              "get_sizes() const",
                              "get_dt() const",
                              "get_description() const",
                              "get_name() const",
                              "get_lengths() const",
                              "get_offsets() const",
                              "get_labels() const",
                              "get_col_labels(unsigned int) const",
                              "get_col_positions(unsigned int) const",
                              "get_col_position(unsigned int, unsigned int) const",
                              "is_equidistant(unsigned int) const",
                              "get_stack_position() const",
                              "get_dimension_size(unsigned int) const",
                              "get_length(unsigned int) const",
                              "get_offset(unsigned int) const",
                              "get_label(unsigned int) const",
                              "get_units(unsigned int) const",
                              "get_data_units() const",
                              "get_meta_data_string() const",
                              "meta_data()"};

TEST(StackLayoutTest, ADescriptionHasFortyTwoSlots) {
  const VStackInfoImp info(1);
  Texts functions = info_functions;
  functions.insert(functions.end(), 2, "~VStackInfoImp()");  // each destructor has two entries
  const VStackInfoInterface& interface = info;
  expect_functions(slots(interface, functions.size()), functions);
}

TEST(StackLayoutTest, AStackHasEightSlotsMore) {
  const VStackImp stack(1);
  const VStackInterface& interface = stack;
  const Texts all = slots(interface, info_functions.size() + 10);
  expect_functions(
      Texts(all.begin() + static_cast<std::ptrdiff_t>(info_functions.size()) + 2, all.end()),
      {"copy(VStackInterface const*, VStackRegion const&)", "copy(VStackInterface const*, int)",
       "destroy()", "get_data_ptr() const", "get_data_ptr()", "resize(Ome::Type, ",
       "is_shared() const", "share() const"});
}

TEST(StackLayoutTest, AnIteratorHasFortyOneSlots) {
  VStackImp stack(Ome::type_float, {1}, Ome::order_XYZTC);
  VStackRegion region;
  region.create(&stack, 0);
  const VStackInterface::iterator<float> it(&stack, region);
  Texts functions;
  for (const std::string access : {"write(", "read("}) {
    for (const std::string type :
         {"unsigned long long", "unsigned int", "unsigned short", "unsigned char", "long long",
          "int", "short", "char", "double", "float"}) {
      const std::string end = access == "read(" ? "&)" : ")";
      functions.push_back(access + type + end);
      functions.push_back(access + "std::complex<" + type + ">" + end);
    }
  }
  functions.insert(functions.end(), 2, "~iterator()");
  expect_functions(slots(it, functions.size()), functions);
}

}  // namespace
