#include <vrelio/stack/stack_info.h>

VStackInfoInterface::~VStackInfoInterface() = default;
