#include "container/record_output_internal.h"

#include "container/chain_source_internal.h"
#include "container/format_internal.h"
#include "container/record_buffer_internal.h"

namespace Vrel::detail {

FileFields write_file_start(VFile& file, std::uint32_t format_version,
                            const std::string& description) {
  FileHeader header;
  header.format_version = format_version;
  header.description_length = length_field(description.size());
  const u64 position = checked_tell(file);
  RecordBuffer buffer;
  buffer.put(encode(header));
  buffer.write_str(description, false);
  const u64 dictionary_field = position + buffer.tell();
  if (format_version > 1) write_u64(buffer, 0);
  buffer.flush_to(file);
  return {position + first_stack_offset, dictionary_field};
}

u64 write_stack_start(VFile& file, const StackHeader& header, const std::string& name,
                      const std::string& description) {
  const u64 position = checked_tell(file);
  RecordBuffer buffer;
  buffer.put(encode(header));
  buffer.write_str(name, false);
  buffer.write_str(description, false);
  buffer.flush_to(file);
  return position;
}

u64 write_stack_end(VFile& file, const StackRecord& stack, StackFooter footer) {
  RecordBuffer sections;
  write_sections(sections, stack);
  const u64 position = stack.data_position + stack.header.data_length;
  footer.stack_end = position + stack_footer_size + sections.tell();
  checked_seek(file, position);
  RecordBuffer fixed_part;
  fixed_part.put(encode(footer));
  fixed_part.flush_to(file);
  sections.flush_to(file);
  return footer.stack_end;
}

void correct(VFile& file, u64 field, u64 value) {
  checked_seek(file, field);
  write_u64(file, value);
}

}  // namespace Vrel::detail
