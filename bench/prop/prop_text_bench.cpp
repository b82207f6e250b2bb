// Arrays of numbers to text and back, beside a plain stream that does the same. Both have to give the
// same before anything is timed.
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_cast.h>

#include <cstdio>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include "support/peer_comparison.h"

namespace {

constexpr int element_count = 1000000;

// --- The arrays

VProparray<double> make_doubles() {
  std::mt19937_64 random(8);
  std::normal_distribution<double> distribution(0.0, 1000.0);
  VProparray<double> doubles;
  for (int i = 0; i < element_count; ++i) doubles.push_back(distribution(random));
  return doubles;
}

VProparray<int> make_integers() {
  std::mt19937 random(8);
  VProparray<int> integers;
  for (int i = 0; i < element_count; ++i) integers.push_back(static_cast<int>(random()));
  return integers;
}

// --- The candidates

template <class T>
VProparray<T> read(std::string& text) {
  const VProp value = vrel_string2val(text, Vrel::prop_id<VProparray<T>>);
  return value.get<VProparray<T>>();
}

template <class T>
std::string write_by_stream(const VProparray<T>& array) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream.precision(20);
  bool is_first = true;
  for (const T element : array) {
    if (!is_first) stream << ' ';
    is_first = false;
    stream << element;
  }
  return stream.str();
}

template <class T>
VProparray<T> read_by_stream(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  VProparray<T> array;
  T element{};
  while (stream >> element) array.push_back(element);
  return array;
}

// --- Comparing

template <class T>
void compare_array(const char* name, const VProparray<T>& array) {
  const VProp value(array);
  std::string text = vrel_val2string(value);
  require(text == write_by_stream(array), "the stream writes another text");
  require(read<T>(text) == array, "the array is not read as it was written");
  require(read_by_stream<T>(text) == array, "the stream reads another array");
  const std::string writing = std::string("write ") + name;
  const std::string reading = std::string("read ") + name;
  compare(
      writing.c_str(), text.size(), [&] { vrel_val2string(value); },
      [&] { write_by_stream(array); });
  compare(
      reading.c_str(), text.size(), [&] { vrel_string2val(text, Vrel::prop_id<VProparray<T>>); },
      [&] { read_by_stream<T>(text); });
}

}  // namespace

int main() {
  std::printf("a million numbers each\n");
  print_comparison_head();
  compare_array("doubles", make_doubles());
  compare_array("integers", make_integers());
}
