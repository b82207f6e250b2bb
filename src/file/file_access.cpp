#include <vrelio/file/file_access.h>

#include <algorithm>
#include <limits>

#include "file/bytes_internal.h"
#include "foundation/raise_internal.h"

using namespace Vrel::detail;

namespace {

constexpr unsigned length_in_stream = 0xFFFFFFFFu;
// How much memory a length that was read may take before bytes have come for it.
constexpr unsigned trusted_size = 16u << 20;

}  // namespace

void VFileAccess::write_str(const std::string& text, bool with_length) {
  if (text.size() > std::numeric_limits<unsigned>::max()) raise(id_plain, "String too long!");
  const auto length = static_cast<unsigned>(text.size());
  if (with_length) {
    unsigned char bytes[4];
    put_u32(bytes, length);
    write(bytes, sizeof bytes);
  }
  write(text.data(), length);
}

void VFileAccess::read_str(std::string& text, unsigned length) {
  if (length == length_in_stream) {
    unsigned char bytes[4];
    read(bytes, sizeof bytes);
    length = get_u32(bytes);
  }
  text.clear();
  for (unsigned done = 0; done < length;) {
    const unsigned piece = std::min(length - done, trusted_size);
    text.resize(text.size() + piece);
    try {
      read(&text[done], piece);
    } catch (const VrelError& error) {
      if (piece == length || error.get_id() != id_file_system) throw;
      throw VrelError(error)("Failed reading %d bytes from file!", static_cast<int>(length));
    }
    done += piece;
  }
}
