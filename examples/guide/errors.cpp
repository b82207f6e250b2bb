#include <vrelio/vrelio.h>

#include <iostream>

int main() {
  try {
    const VBFFile file(L"missing.vbf", VFile::mode_read);
  } catch (const VrelError& error) {
    std::cout << error.get_msg() << " (" << error.get_id() << ")\n";
  }
}
