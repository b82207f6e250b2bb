// Reads any text as a value of any kind, writes it, and reads what was written: the second text has to be
// the first again. Kinds without a text have to be refused.
//
// Input: the id (4 bytes, the lowest first), the text. An id that is none is taken modulo the number of
// kinds.
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop_cast.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

namespace {

constexpr std::size_t head_size = 4;

constexpr int array = Vrel::prop_array_flag;
constexpr int complex = Vrel::prop_complex_flag;
constexpr int text_id = 0x20000;
constexpr int real_ids[] = {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x1000, 0x2000, 0x10000};

void require(bool holds) {
  if (!holds) std::abort();
}

bool has_text(int id) {
  if (id == text_id) return true;
  const int real = id & ~(array | complex);
  return std::find(std::begin(real_ids), std::end(real_ids), real) != std::end(real_ids) &&
         (real != 0x10000 || (id & complex) == 0);
}

std::uint32_t read_word(const std::uint8_t* data) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < head_size; ++i) word |= std::uint32_t{data[i]} << (8 * i);
  return word;
}

int read_id(const std::uint8_t* data) {
  const std::uint32_t word = read_word(data);
  const int id = static_cast<int>(word);
  if (has_text(id) || word % 16 == 15) return id;
  const int real = real_ids[word % std::size(real_ids)];
  return real | (word & 0x100U ? array : 0) | (word & 0x200U && real != 0x10000 ? complex : 0);
}

void check_refused(std::string& text, int id) {
  try {
    vrel_string2val(text, id);
  } catch (const VrelError&) {
    return;
  }
  std::abort();
}

void run(int id, std::string text) {
  if (!has_text(id)) return check_refused(text, id);
  const VProp value = vrel_string2val(text, id);
  require(value.get_id() == id);
  std::string written = vrel_val2string(value);
  require(vrel_val2string(vrel_string2val(written, id)) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < head_size) return 0;
  const std::string text(reinterpret_cast<const char*>(data) + head_size, size - head_size);
  run(read_id(data), text);
  return 0;
}
