#include "lib/record_file.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "lib/error_report.h"

namespace Vrel::tool {

namespace {

constexpr unsigned block_size = 1u << 20;

}  // namespace

template <class Work>
void RecordFile::to_output(Work work) {
  try {
    work();
  } catch (const VrelError& error) {
    throw OutputError(error, file_.path());
  }
}

RecordFile::RecordFile(std::string path, bool replace, const FileRecord& start)
    : file_(std::move(path), replace) {
  void* handle = VFile::to_handle(file_.descriptor());
  access_.attach(handle, VFile::mode_modify);
  FileRecord ours;
  ours.description = start.description;
  ours.header.format_version = start.header.format_version > 1 ? 2 : 1;
  to_output([&] { writer_.emplace(access_, ours); });
}

RecordFile::~RecordFile() { access_.detach(); }

void RecordFile::copy_stack(VFile& source, const StackRecord& stack, ProgressBar& progress) {
  to_output([&] { writer_->begin_stack(stack, RecordWriter::Samples::stored); });
  std::vector<unsigned char> block(block_size);
  u64 position = stack.data_position;
  for (u64 left = stack.header.data_length; left > 0;) {
    const auto size = static_cast<unsigned>(std::min<u64>(left, block_size));
    source.seek(position);
    source.read(block.data(), size);
    to_output([&] { writer_->write(block.data(), size); });
    progress.advance(size);
    position += size;
    left -= size;
  }
  to_output([&] { writer_->commit_stack(); });
}

void RecordFile::write_stack(const StackRecord& stack, const NextSamples& next,
                             ProgressBar& progress) {
  to_output([&] { writer_->begin_stack(stack, RecordWriter::Samples::plain); });
  std::vector<unsigned char> block(block_size);
  while (const unsigned size = next(block.data(), block_size)) {
    to_output([&] { writer_->write(block.data(), size); });
    progress.advance(size);
  }
  to_output([&] { writer_->commit_stack(); });
}

void RecordFile::finish(const Dictionary& dictionary) {
  to_output([&] { writer_->finish(dictionary); });
  file_.finish();
}

}  // namespace Vrel::tool
