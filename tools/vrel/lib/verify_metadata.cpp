#include <vrelio/container/stack_metadata.h>
#include <vrelio/foundation/error.h>

#include <exception>
#include <new>

#include "lib/verify_texts.h"

namespace Vrel::tool {

std::optional<std::string> find_metadata_fault(const std::string& text,
                                               std::uint32_t format_version, unsigned rank) {
  try {
    read_stack_metadata(text, format_version, rank);
    return std::nullopt;
  } catch (const VrelError& error) {
    return error.get_msg();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace Vrel::tool
