// A file that a use leaves nothing of.
#pragma once

#include <vrelio/vrelio.h>

#include <cstdio>
#include <string>
#include <utility>

/// The name of a file in the current folder. The file is removed with this object.
class ScratchFile {
 public:
  explicit ScratchFile(std::string name) : name_(std::move(name)) {}
  ~ScratchFile() { std::remove(name_.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const char* narrow_name() const { return name_.c_str(); }
  VPropstring name() const { return {name_, VPropstring::encoding_local}; }

 private:
  std::string name_;
};
