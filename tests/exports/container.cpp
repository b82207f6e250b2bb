// Stacks in files.
#include <vrelio/vrelio.h>

#include <string>
#include <vector>

#include "exports.h"
#include "scratch_file.h"

namespace {

bool use_VBFFile() {
  const ScratchFile scratch("exports_VBFFile.vbf");
  const std::vector<unsigned short> samples = {1, 2, 3, 4, 5, 600};
  VBFFile file(scratch.name(), VFile::mode_create);
  const boost::shared_ptr<VBFStackInterface> stack = file->add_stack(false);
  stack->create({3, 2}, vrel_dt_from_name("uint16"));
  stack->set_compression(1, 6);
  stack->set_tag("objective", "63x/1.4 Oil");
  stack->write(stack->get_dt(), samples.data(), nullptr, VBFStackInterface::all_samples);
  file->close();

  file.open(scratch.name(), VFile::mode_read);
  const boost::shared_ptr<VBFStackInterface> stored = file->get_stack(0);
  std::vector<double> read(6);
  stored->read(vrel_dt_from_name("double"), read.data(), nullptr);
  return file->get_number_of_stacks() == 1 && stored->get_tag("objective") == "63x/1.4 Oil" &&
         read == std::vector<double>(samples.begin(), samples.end());
}

bool use_vrel_bf_get_errorstring() {
  VrelError()("file 'ramp.vbf'")(-4).process();
  const std::string text = vrel_bf_get_errorstring(-1);
  return text.find("Error in vbf module: ") == 0 && text.find("file 'ramp.vbf'") != text.npos;
}

// Four sizes and four lengths belong to six samples.
constexpr int dims[] = {3, 2, 1, 1};
constexpr float lengths[] = {6.5F, 4.5F, 1.0F, 1.0F};
constexpr double samples[] = {0.5, 1.5, 2.5, 3.5, 4.5, 5.5};

bool use_vrel_dbl_write() {
  const ScratchFile scratch("exports_vrel_dbl_write.dbl");
  const int written = vrel_dbl_write(scratch.narrow_name(), dims, lengths, samples, 0);
  VBFFile file(scratch.name(), VFile::mode_read);
  return written == 1 && file->get_stack(0)->get_sizes()[1] == 2;
}

// The code becomes a pointer to the samples.
union Mode {
  int code;
  double* read;
};

bool use_vrel_dbl_read() {
  const ScratchFile scratch("exports_vrel_dbl_read.dbl");
  vrel_dbl_write(scratch.narrow_name(), dims, lengths, samples, 0);
  double room[6] = {};
  float read_lengths[4] = {};
  Mode mode = {0xAC};  // into the room, as doubles
  return vrel_dbl_read(scratch.narrow_name(), room, read_lengths, &mode) == 1 &&
         mode.read == room && room[5] == 5.5 && read_lengths[0] == 6.5F;
}

}  // namespace

std::vector<Export> container_exports() {
  return {{"VBFFile", use_VBFFile},
          {"vrel_bf_get_errorstring", use_vrel_bf_get_errorstring},
          {"vrel_dbl_write", use_vrel_dbl_write},
          {"vrel_dbl_read", use_vrel_dbl_read}};
}
