// The fixed records: file header, stack header, footer, unit.
#include <cstring>

#include "container/format_internal.h"
#include "file/bytes_internal.h"

namespace Vrel::detail {

namespace {

constexpr unsigned char file_magic[] = {'V', 'R', 'E', 'L', '_', 'B', 'F', '\n', 0xFF, 0xFF};
constexpr unsigned char stack_magic[] = {'V', 'R', 'E', 'L', '_', 'B',  'F',  '_',
                                         'S', 'T', 'A', 'C', 'K', '\n', 0xFF, 0xFF};

// A record is described once, as the visit of its fields in order, and goes both ways: an encoder
// puts the numbers that it meets, a decoder gets them.
class Encoder {
 public:
  explicit Encoder(unsigned char* bytes) : next_(bytes) {}

  void operator()(std::uint32_t value) { put_u32(advance(4), value); }
  void operator()(std::int32_t value) { put_u32(advance(4), static_cast<std::uint32_t>(value)); }
  void operator()(u64 value) { put_u64(advance(8), value); }
  void operator()(double value) { put_f64(advance(8), value); }

 private:
  unsigned char* advance(int size) { return (next_ += size) - size; }

  unsigned char* next_;
};

class Decoder {
 public:
  explicit Decoder(const unsigned char* bytes) : next_(bytes) {}

  void operator()(std::uint32_t& value) { value = get_u32(advance(4)); }
  void operator()(std::int32_t& value) { value = static_cast<std::int32_t>(get_u32(advance(4))); }
  void operator()(u64& value) { value = get_u64(advance(8)); }
  void operator()(double& value) { value = get_f64(advance(8)); }

 private:
  const unsigned char* advance(int size) { return (next_ += size) - size; }

  const unsigned char* next_;
};

template <class Numbers, class Visitor>
void visit_each(Numbers& numbers, Visitor& field) {
  for (auto& number : numbers) field(number);
}

template <class Unit, class Visitor>
void visit_unit(Unit& unit, Visitor& field) {
  for (auto& exponent : unit.exponents) {
    field(exponent.numerator);
    field(exponent.denominator);
  }
  field(unit.factor);
}

template <class Header, class Visitor>
void visit_file_header(Header& header, Visitor& field) {
  field(header.format_version);
  field(header.first_stack);
  field(header.description_length);
}

template <class Header, class Visitor>
void visit_stack_header(Header& header, Visitor& field) {
  field(header.format_version);
  field(header.rank);
  visit_each(header.sizes, field);
  visit_each(header.lengths, field);
  visit_each(header.offsets, field);
  field(header.data_type);
  field(header.compression_type);
  field(header.compression_level);
  field(header.name_length);
  field(header.description_length);
  field(header.has_data);
  field(header.reserved);
  field(header.data_length);
  field(header.next_stack);
}

template <class Footer, class Visitor>
void visit_stack_footer(Footer& footer, Visitor& field) {
  field(footer.footer_size);
  visit_each(footer.has_column_positions, field);
  visit_each(footer.has_column_labels, field);
  field(footer.metadata_length);
  visit_unit(footer.data_unit, field);
  for (auto& unit : footer.units) visit_unit(unit, field);
  field(footer.flush_point_count);
  field(footer.flush_block_size);
  field(footer.tag_block_size);
  field(footer.stack_end);
  field(footer.required_reader_version);
}

template <std::size_t size>
bool starts_with(const unsigned char* bytes, const unsigned char (&magic)[size]) {
  return std::memcmp(bytes, magic, size) == 0;
}

}  // namespace

FileHeaderBytes encode(const FileHeader& header) {
  FileHeaderBytes bytes;
  std::memcpy(bytes.data(), file_magic, sizeof file_magic);
  Encoder encoder(bytes.data() + sizeof file_magic);
  visit_file_header(header, encoder);
  return bytes;
}

StackHeaderBytes encode(const StackHeader& header) {
  StackHeaderBytes bytes;
  std::memcpy(bytes.data(), stack_magic, sizeof stack_magic);
  Encoder encoder(bytes.data() + sizeof stack_magic);
  visit_stack_header(header, encoder);
  return bytes;
}

StackFooterBytes encode(const StackFooter& footer) {
  StackFooterBytes bytes;
  Encoder encoder(bytes.data());
  visit_stack_footer(footer, encoder);
  return bytes;
}

bool decode(const FileHeaderBytes& bytes, FileHeader& header) {
  if (!starts_with(bytes.data(), file_magic)) return false;
  Decoder decoder(bytes.data() + sizeof file_magic);
  visit_file_header(header, decoder);
  return true;
}

bool decode(const StackHeaderBytes& bytes, StackHeader& header) {
  if (!starts_with(bytes.data(), stack_magic)) return false;
  Decoder decoder(bytes.data() + sizeof stack_magic);
  visit_stack_header(header, decoder);
  return true;
}

void decode(const StackFooterBytes& bytes, StackFooter& footer) {
  Decoder decoder(bytes.data());
  visit_stack_footer(footer, decoder);
}

}  // namespace Vrel::detail
