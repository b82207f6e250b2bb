#include <vrelio/stack/remote_stack.h>

Remote::Stack::~Stack() = default;
