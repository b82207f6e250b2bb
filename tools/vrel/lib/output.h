// Where results go.
#pragma once

#include <cstddef>
#include <string>

namespace Vrel::tool {

/// A stream of bytes that counts only when it was finished.
class Output {
 public:
  Output() = default;
  virtual ~Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// \throws OutputError "Could not write!" with the system error.
  virtual void write(const void* data, std::size_t size) = 0;
  void write(const std::string& text) { write(text.data(), text.size()); }
  virtual void finish() = 0;
};

/// Write all bytes to a descriptor, however many calls it takes.
/// \return false with `errno` set after a failure.
bool write_all(int descriptor, const void* data, std::size_t size);

}  // namespace Vrel::tool
