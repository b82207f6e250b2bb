#include <algorithm>
#include <cstdint>
#include <cstring>

#include "foundation/stream_internal.h"
#include "stack/move_rows_internal.h"

namespace Vrel::detail {
namespace {

struct Words {
  std::uint64_t words[2];
};

template <class Word>
Word load(const unsigned char* address) {
  Word word;
  std::memcpy(&word, address, sizeof word);
  return word;
}

template <class Word>
void store(unsigned char* address, const Word& word) {
  std::memcpy(address, &word, sizeof word);
}

template <class Word>
void move_words(SourceRows source, DestinationRows destination, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) store(destination.at(i), load<Word>(source.at(i)));
}

// Rows of one to two words, as two words that may overlap.
template <class Word>
void move_word_pairs(SourceRows source, DestinationRows destination, std::size_t row_size,
                     std::size_t count) {
  const std::size_t last = row_size - sizeof(Word);
  for (std::size_t i = 0; i < count; ++i) {
    const Word first_word = load<Word>(source.at(i));
    const Word last_word = load<Word>(source.at(i) + last);
    store(destination.at(i), first_word);
    store(destination.at(i) + last, last_word);
  }
}

void move_long_rows(SourceRows source, DestinationRows destination, std::size_t row_size,
                    std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) std::memcpy(destination.at(i), source.at(i), row_size);
}

bool is_one_row(SourceRows source, DestinationRows destination, std::size_t row_size) {
  const auto pitch = static_cast<std::ptrdiff_t>(row_size);
  return source.pitch == pitch && destination.pitch == pitch;
}

void stream_row(const unsigned char* source, unsigned char* destination, std::size_t size) {
  const std::size_t past_line = reinterpret_cast<std::uintptr_t>(destination) % line_size;
  const std::size_t head = std::min(size, (line_size - past_line) % line_size);
  const std::size_t lines = (size - head) / line_size * line_size;
  std::memcpy(destination, source, head);
  stream_lines(destination + head, source + head, lines);
  const std::size_t done = head + lines;
  std::memcpy(destination + done, source + done, size - done);
}

}  // namespace

void move_rows(SourceRows source, DestinationRows destination, std::size_t row_size,
               std::size_t count) {
  if (is_one_row(source, destination, row_size))
    return move_long_rows(source, destination, row_size * count, 1);
  switch (row_size) {
    case 1:
      return move_words<std::uint8_t>(source, destination, count);
    case 2:
      return move_words<std::uint16_t>(source, destination, count);
    case 4:
      return move_words<std::uint32_t>(source, destination, count);
    case 8:
      return move_words<std::uint64_t>(source, destination, count);
    case 16:
      return move_words<Words>(source, destination, count);
    default:
      break;
  }
  if (row_size < 4) return move_word_pairs<std::uint16_t>(source, destination, row_size, count);
  if (row_size < 8) return move_word_pairs<std::uint32_t>(source, destination, row_size, count);
  if (row_size < 16) return move_word_pairs<std::uint64_t>(source, destination, row_size, count);
  if (row_size <= 32) return move_word_pairs<Words>(source, destination, row_size, count);
  move_long_rows(source, destination, row_size, count);
}

void stream_rows(SourceRows source, DestinationRows destination, std::size_t row_size,
                 std::size_t count) {
  if (is_one_row(source, destination, row_size)) {
    row_size *= count;
    count = 1;
  }
  for (std::size_t i = 0; i < count; ++i) stream_row(source.at(i), destination.at(i), row_size);
}

}  // namespace Vrel::detail
