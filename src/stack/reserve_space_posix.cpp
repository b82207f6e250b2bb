#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "stack/reserve_space_internal.h"

namespace Vrel::detail {

namespace {

// The system gives back all that an interrupted call has reserved. Small pieces get done also where
// a timer interrupts again and again.
constexpr unsigned int piece_size = 4u << 20;

int reserve_piece(int descriptor, unsigned int position, unsigned int size) {
  int error = 0;
  do {
    error = ::posix_fallocate(descriptor, position, size);
  } while (error == EINTR);
  return error == EOPNOTSUPP ? 0 : error;
}

}  // namespace

int reserve_space(int descriptor, unsigned int size) {
  int error = 0;
  for (unsigned int position = 0; position < size && error == 0;) {
    const unsigned int piece = std::min(piece_size, size - position);
    error = reserve_piece(descriptor, position, piece);
    position += piece;
  }
  return error;
}

}  // namespace Vrel::detail
