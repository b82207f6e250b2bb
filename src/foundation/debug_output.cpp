// Stands alone so that no caller of the same file can have it inlined: programs replace it,
// debuggers stop on it.
#include <vrelio/foundation/error.h>

void vrel_debug_output(const char* /*text*/) {}
