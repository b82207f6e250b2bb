// A tour of the library: each class and each plain function that it exports, in one small use.
#pragma once

#include <vector>

/// Something that the library exports.
struct Export {
  const char* name;
  bool (*works)();  ///< uses it; false where the outcome is not the expected one
};

/// What an area exports; the areas are the folders of the headers.
std::vector<Export> foundation_exports();
std::vector<Export> file_exports();
std::vector<Export> si_exports();
std::vector<Export> json_exports();
std::vector<Export> prop_exports();
std::vector<Export> ome_exports();
std::vector<Export> stack_exports();
std::vector<Export> container_exports();
std::vector<Export> remote_exports();
