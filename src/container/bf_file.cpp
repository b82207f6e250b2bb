#include <vrelio/container/bf_file.h>

#include <boost/make_shared.hpp>

#include "container/bf_file_imp_internal.h"

using Vrel::detail::VBFFileImp;

VBFFileInterface::~VBFFileInterface() = default;

VBFFile::VBFFile() : file_(boost::make_shared<VBFFileImp>()) {}

VBFFile::VBFFile(const VPropstring& name, VFile::mode mode) : VBFFile() { file_->open(name, mode); }

VBFFile::VBFFile(const VBFFile& other) = default;
VBFFile& VBFFile::operator=(const VBFFile& other) = default;
VBFFile::~VBFFile() = default;

// The old file is closed before the new one is opened, since both may be the same.
void VBFFile::open(const VPropstring& name, VFile::mode mode) {
  file_ = boost::make_shared<VBFFileImp>();
  file_->open(name, mode);
}

void VBFFile::reset() { file_.reset(); }
