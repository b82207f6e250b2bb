#include "lib/npy_reader.h"

#include <vrelio/foundation/error.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <system_error>

#include "lib/complex_type.h"
#include "lib/printable_text.h"

namespace Vrel::tool {

namespace {

[[noreturn]] void raise_invalid() { throw VrelError(VrelError()("Invalid .npy header!")(-4)); }

[[noreturn]] void raise_no_type(const std::string& descriptor) {
  throw VrelError(VrelError()("No data type for .npy type %s!", quote(descriptor).c_str())(-5));
}

struct TypeRow {
  std::string_view name;
  int data_type;
};

constexpr TypeRow type_rows[] = {
    {"b1", 0x1},
    {"u1", 0x1},
    {"i1", 0x2},
    {"u2", 0x4},
    {"i2", 0x8},
    {"u4", 0x10},
    {"i4", 0x20},
    {"u8", 0x1000},
    {"i8", 0x2000},
    {"f4", 0x40},
    {"f8", 0x80},
    {"c8", 0x40 | complex_flag},
    {"c16", 0x80 | complex_flag},
};

struct ElementType {
  int data_type;
  bool is_reversed;
};

ElementType element_type(const std::string& descriptor) {
  constexpr std::string_view orders = "<>|=";
  if (descriptor.empty() || orders.find(descriptor[0]) == std::string_view::npos) {
    raise_no_type(descriptor);
  }
  const std::string_view name = std::string_view(descriptor).substr(1);
  for (const TypeRow& row : type_rows) {
    if (row.name == name) return {row.data_type, descriptor[0] == '>'};
  }
  raise_no_type(descriptor);
}

// The notation of Python for texts, tuples of numbers, records and truth values, as far as headers
// use it.
class Notation {
 public:
  explicit Notation(std::string_view rest) : rest_(rest) {}

  bool takes(std::string_view token) {
    skip_blanks();
    if (rest_.substr(0, token.size()) != token) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  void take(std::string_view token) {
    if (!takes(token)) raise_invalid();
  }

  bool at_end() {
    skip_blanks();
    return rest_.empty();
  }

  std::string take_text() {
    const char* const quote = takes("'") ? "'" : "\"";
    if (*quote == '"') take(quote);
    const std::size_t end = rest_.find(*quote);
    if (end == std::string_view::npos) raise_invalid();
    const std::string_view text = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (text.find('\\') != std::string_view::npos) raise_invalid();
    return std::string(text);
  }

  bool take_truth() {
    if (takes("True")) return true;
    take("False");
    return false;
  }

  u64 take_number() {
    skip_blanks();
    u64 number = 0;
    const char* const end = rest_.data() + rest_.size();
    const std::from_chars_result result = std::from_chars(rest_.data(), end, number);
    if (result.ec != std::errc()) raise_invalid();
    rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
    takes("L");
    return number;
  }

 private:
  void skip_blanks() {
    const std::size_t blanks = rest_.find_first_not_of(" \n");
    rest_.remove_prefix(std::min(blanks, rest_.size()));
  }

  std::string_view rest_;
};

std::vector<u64> take_shape(Notation& notation) {
  std::vector<u64> shape;
  notation.take("(");
  while (!notation.takes(")")) {
    shape.push_back(notation.take_number());
    if (notation.takes(",")) continue;
    if (shape.size() == 1) raise_invalid();
    notation.take(")");
    break;
  }
  return shape;
}

struct RecordField {
  std::string name;
  std::string descriptor;
};

RecordField take_field(Notation& notation) {
  RecordField field;
  notation.take("(");
  field.name = notation.take_text();
  notation.take(",");
  field.descriptor = notation.take_text();
  notation.take(")");
  return field;
}

// Both parts of an integer complex sample.
ElementType take_record(Notation& notation) {
  const RecordField real = take_field(notation);
  notation.take(",");
  const RecordField imaginary = take_field(notation);
  notation.takes(",");
  notation.take("]");
  if (real.name != "re" || imaginary.name != "im" || real.descriptor != imaginary.descriptor) {
    raise_no_type(real.descriptor);
  }
  ElementType type = element_type(real.descriptor);
  if ((type.data_type & complex_flag) != 0) raise_no_type(real.descriptor);
  type.data_type |= complex_flag;
  return type;
}

ElementType take_type(Notation& notation) {
  if (notation.takes("[")) return take_record(notation);
  return element_type(notation.take_text());
}

struct Entries {
  std::optional<ElementType> type;
  std::optional<bool> is_fortran_order;
  std::optional<std::vector<u64>> shape;
};

// A key counts once.
template <class Entry>
void store(std::optional<Entry>& entry, Entry value) {
  if (entry) raise_invalid();
  entry = std::move(value);
}

void take_entry(Notation& notation, Entries& entries) {
  const std::string key = notation.take_text();
  notation.take(":");
  if (key == "descr") return store(entries.type, take_type(notation));
  if (key == "fortran_order") return store(entries.is_fortran_order, notation.take_truth());
  if (key == "shape") return store(entries.shape, take_shape(notation));
  raise_invalid();
}

std::uint32_t read_little_endian(SampleStream& stream, unsigned size) {
  std::array<unsigned char, 4> bytes{};
  stream.read(bytes.data(), size);
  std::uint32_t number = 0;
  for (unsigned i = size; i-- > 0;) number = number << 8 | bytes[i];
  return number;
}

std::string read_dictionary(SampleStream& stream) {
  constexpr std::uint32_t longest = 1u << 20;
  std::array<char, 8> start{};
  stream.read(start.data(), start.size());
  const bool is_magic = std::string_view(start.data(), npy_magic.size()) == npy_magic;
  const int version = static_cast<unsigned char>(start[6]);
  if (!is_magic || version < 1 || version > 3) raise_invalid();
  const std::uint32_t size = read_little_endian(stream, version == 1 ? 2 : 4);
  if (size > longest || size > stream.bytes_left().value_or(size)) raise_invalid();
  std::string dictionary(size, '\0');
  stream.read(dictionary.data(), size);
  return dictionary;
}

}  // namespace

NpyArray read_npy_dictionary(std::string_view dictionary) {
  Notation notation(dictionary);
  Entries entries;
  notation.take("{");
  while (!notation.takes("}")) {
    take_entry(notation, entries);
    if (notation.takes(",")) continue;
    notation.take("}");
    break;
  }
  if (!notation.at_end()) raise_invalid();
  if (!entries.type || !entries.is_fortran_order || !entries.shape) raise_invalid();
  if (!*entries.is_fortran_order) std::reverse(entries.shape->begin(), entries.shape->end());
  return {entries.type->data_type, entries.type->is_reversed, *entries.shape};
}

ImportStack open_npy(const std::shared_ptr<SampleStream>& stream) {
  const NpyArray array = read_npy_dictionary(read_dictionary(*stream));
  ImportStack stack;
  stack.data_type = array.data_type;
  const u64 count = count_samples(array.sizes);
  stack.axes = make_axes(array.sizes);
  stream->check_length(count_bytes(stack));
  stack.read = [stream, count, type = array.data_type,
                is_reversed = array.is_reversed](const SampleSink& sink) {
    stream->copy_samples(count, type, is_reversed, sink);
  };
  return stack;
}

}  // namespace Vrel::tool
