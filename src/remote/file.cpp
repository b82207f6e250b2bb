#include <vrelio/remote/file.h>
#include <vrelio/remote/stack_object.h>
#include <vrelio/stack/stack_imp.h>

#include <boost/make_shared.hpp>

#include "container/report_internal.h"

namespace Remote {

namespace {

constexpr int fast_compression = 1;

}  // namespace

File::File(const std::string& name, Mode mode)
    : file_(VPropstring(name, VPropstring::encoding_local), static_cast<VFile::mode>(mode)) {}

File::File(const File& other) = default;
File& File::operator=(const File& other) = default;

File::~File() {
  Vrel::detail::report_failures([this] { file_->close(); });
}

std::string File::description() {
  std::string text;
  file_->get_description(text);
  return text;
}

void File::set_description(const std::string& description) { file_->set_description(description); }

unsigned int File::number_of_stacks() const { return file_->get_number_of_stacks(); }

boost::shared_ptr<Stack> File::read(unsigned int index) {
  return boost::make_shared<StackObject>(file_->read_stack(index, 0));
}

// Whatever process the stack belongs to, its elements come by the id of their block.
// NOLINTNEXTLINE(performance-unnecessary-value-param): callers hand a share over
void File::write(boost::shared_ptr<Stack> stack, bool compress) {
  file_->set_default_compression(compress ? 1 : 0, fast_compression);
  const VStackImp attached(*stack);
  file_->write_stack(&attached, 0);
}

}  // namespace Remote
