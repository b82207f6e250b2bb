#include <vrelio/ome/reference.h>

namespace Json {

Listener::~Listener() = default;

void SignalingReference::signal(const void* value) const {
  // A share of its own: the listener may be replaced by what it does.
  const boost::shared_ptr<Listener> listener = listener_;
  if (listener) listener->on_change(value);
}

}  // namespace Json
