#include "channel.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <sstream>
#include <system_error>

std::optional<Json::Object> Channel::receive() {
  reader_.clear();
  while (!pending_.empty() || fetch()) {
    const char* begin = pending_.data();
    const bool is_whole = reader_.read(begin, pending_.data() + pending_.size());
    pending_.erase(0, static_cast<std::size_t>(begin - pending_.data()));
    if (is_whole) return reader_.object();
  }
  return std::nullopt;
}

bool Channel::fetch() {
  std::array<char, 4096> bytes;
  ssize_t size = 0;
  do {
    size = ::read(input_, bytes.data(), bytes.size());
  } while (size < 0 && errno == EINTR);
  if (size <= 0) return false;
  pending_.assign(bytes.data(), static_cast<std::size_t>(size));
  return true;
}

void Channel::send(const Json::Object& object) {
  std::ostringstream text;
  text << object << '\n';
  const std::string bytes = text.str();
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t size = ::write(output_, bytes.data() + sent, bytes.size() - sent);
    if (size >= 0) {
      sent += static_cast<std::size_t>(size);
    } else if (errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "pipe");
    }
  }
}
