// A user of the library: an error that it raises is caught here by its class.
#include <vrelio/vrelio.h>

#include <cstdio>
#include <cstring>

int main() {
  try {
    vrel_err("raised in the library", nullptr, nullptr, 0);
  } catch (const VrelError& error) {
    std::puts(error.get_msg());
    return std::strcmp(error.get_msg(), "raised in the library") == 0 ? 0 : 1;
  }
}
