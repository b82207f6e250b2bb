#include <vrelio/stack/stack.h>

VStackInterface::~VStackInterface() = default;
