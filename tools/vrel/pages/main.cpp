// Writes the manual pages and the completions of vrel from what the command line takes.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "pages/completion.h"
#include "pages/man_page.h"

using namespace Vrel::tool;

namespace {

namespace fs = std::filesystem;

std::string read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("Cannot read " + path.string() + '!');
  return {std::istreambuf_iterator<char>(file), {}};
}

void write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("Cannot write " + path.string() + '!');
}

void write_pages(const fs::path& texts, const fs::path& output) {
  const ProgramRecord program = read_command_tree();
  write(output / "man1/vrel.1", man_page(program, read(texts / "vrel.man")));
  for (const CommandRecord& verb : program.verbs) {
    const std::string name = "vrel-" + verb.name;
    write(output / "man1" / (name + ".1"), man_page(program, verb, read(texts / (name + ".man"))));
  }
  write(output / "bash/vrel", bash_completion(program));
  write(output / "zsh/_vrel", zsh_completion(program));
  write(output / "fish/vrel.fish", fish_completion(program));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("Usage: vrel_pages TEXTS OUTPUT\n", stderr);
    return 2;
  }
  try {
    write_pages(argv[1], argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vrel_pages: %s\n", error.what());
    return 1;
  }
}
