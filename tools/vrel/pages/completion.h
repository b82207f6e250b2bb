// Completion of the command line by shells.
#pragma once

#include <string>

#include "pages/command_tree.h"

namespace Vrel::tool {

/// A script that bash reads from `share/bash-completion/completions/vrel`.
std::string bash_completion(const ProgramRecord& program);
/// A function that zsh loads from `share/zsh/site-functions/_vrel`.
std::string zsh_completion(const ProgramRecord& program);
/// A script that fish reads from `share/fish/vendor_completions.d/vrel.fish`.
std::string fish_completion(const ProgramRecord& program);

}  // namespace Vrel::tool
