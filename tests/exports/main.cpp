// Takes the whole tour, and names each stop at which something is wrong.
#include <cstdio>
#include <exception>
#include <vector>

#include "exports.h"

namespace {

bool works(const Export& used) {
  try {
    if (used.works()) return true;
    std::fprintf(stderr, "%s: not the expected outcome\n", used.name);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: raised \"%s\"\n", used.name, error.what());
  }
  return false;
}

}  // namespace

int main() {
  int uses = 0;
  int failures = 0;
  for (const std::vector<Export>& area :
       {foundation_exports(), file_exports(), si_exports(), json_exports(), prop_exports(),
        ome_exports(), stack_exports(), container_exports(), remote_exports()}) {
    for (const Export& used : area) {
      ++uses;
      if (!works(used)) ++failures;
    }
  }
  std::printf("%d of %d exports work\n", uses - failures, uses);
  return failures == 0 ? 0 : 1;
}
