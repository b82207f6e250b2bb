#include <vrelio/foundation/error.h>
#include <vrelio/foundation/format_string.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "foundation/system_internal.h"

namespace {

// Longest text of one message or heading line, the terminator included.
constexpr std::size_t scratch_size = 4096;

// The process-wide last report. Intended: no lock; whoever reports last wins.
int last_error_id = 0;
std::string last_error_text;

std::string heading_line(const char* format, ...) {
  char scratch[scratch_size];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(scratch, sizeof scratch, format, arguments);
  va_end(arguments);
  return scratch;
}

void print_warning(const char* text, const char* /*func*/, const char* /*file*/, int /*line*/) {
  std::fprintf(stderr, "%s\n", text);
}

// Copies own their texts where the source does.
const char* own_or_borrow(const char* text, const std::string& source_storage,
                          std::string& storage) {
  if (text != source_storage.c_str()) return text;
  storage = source_storage;
  return storage.c_str();
}

const char* take_over(const char* text, std::string& storage) {
  if (text == nullptr) return nullptr;
  storage = text;
  return storage.c_str();
}

}  // namespace

VrelError::VrelError() : VrelError(nullptr, nullptr, 0) {}

VrelError::VrelError(const char* func, const char* file, int line)
    : file_(file), func_(func), line_(line), thread_id_(Vrel::detail::system_thread_id()) {}

VrelError::VrelError(const std::string& msg, const char* func, const char* file, int line)
    : VrelError(func, file, line) {
  msg_ = msg;
}

VrelError::VrelError(const VrelError& other) : VrelError() { *this = other; }

VrelError& VrelError::operator=(const VrelError& other) {
  if (this == &other) return *this;
  std::exception::operator=(other);
  id_ = other.id_;
  line_ = other.line_;
  oserr_id_ = other.oserr_id_;
  warn_ = other.warn_;
  process_ = other.process_;
  msg_ = other.msg_;
  oserr_ = other.oserr_;
  file_ = own_or_borrow(other.file_, other.file_storage_, file_storage_);
  func_ = own_or_borrow(other.func_, other.func_storage_, func_storage_);
  return *this;
}

VrelError::~VrelError() {
  if (warn_) {
    do_warn_now();
  } else if (process_) {
    process();
  }
}

VrelError& VrelError::operator()(const char* format, ...) {
  char scratch[scratch_size];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(scratch, sizeof scratch, format, arguments);
  va_end(arguments);
  msg_ = length < 0 ? "" : scratch;
  return *this;
}

VrelError& VrelError::operator()(int id) {
  id_ = id;
  return *this;
}

VrelError& VrelError::do_oserr() {
  oserr_id_ = Vrel::detail::last_system_error();
  oserr_ = Vrel::detail::system_error_text(oserr_id_);
  return *this;
}

VrelError& VrelError::do_warn() {
  warn_ = true;
  return *this;
}

VrelError& VrelError::do_process() {
  process_ = true;
  return *this;
}

void VrelError::report() const {
  std::string text;
  if (line_ != 0 && file_ != nullptr) {
    text = heading_line("%s(%d): %s\n", file_, line_, warn_ ? "WARNING" : "ERROR");
    if (func_ != nullptr) text += heading_line("in function '%s':\n", func_);
  }
  text += msg_;
  if (oserr_id_ > 0) text += format_string("\n    os_error(%d): %s", oserr_id_, oserr_.c_str());
  vrel_debug_output((text + '\n').c_str());
  last_error_id = id_;
  last_error_text = std::move(text);
}

int VrelError::process() const noexcept {
  try {
    report();
  } catch (...) {
    // Without memory for its text a report keeps its identifier, and the text of the one before.
    last_error_id = id_;
  }
  return id_;
}

const char* VrelError::what() const noexcept {
  process();
  return last_error_text.c_str();
}

// A warning that dies reports by its own what().
// NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.VirtualCall)
void VrelError::do_warn_now() const noexcept { print_warning(what(), func_, file_, line_); }

VrelError* VrelError::clone() const {
  auto* copy = new VrelError(*this);
  copy->file_ = take_over(copy->file_, copy->file_storage_);
  copy->func_ = take_over(copy->func_, copy->func_storage_);
  return copy;
}

void vrel_err(const char* msg, const char* func, const char* file, int line) {
  throw VrelError(VrelError(func, file, line)(msg));
}

void vrel_warn(const char* msg, const char* func, const char* file, int line) {
  VrelError(func, file, line)(msg).do_warn();
}

void vrel_lasterr(const char* msg, const char* func, const char* file, int line) {
  throw VrelError(VrelError(func, file, line)(msg)(1));
}

int vrel_get_last_error() { return last_error_id; }

const char* vrel_get_last_error_string() { return last_error_text.c_str(); }

void wrap_array_report_error(const VrelError& error, int flags, int /*ignored*/, bool warn_only) {
  struct Word {
    int flag;
    const char* text;
  };
  constexpr Word words[] = {{8, "[rank]"}, {1, "[rng min]"}, {2, "[rng max]"}, {4, "[rounding]"}};
  std::string text;
  for (const Word& word : words) {
    if ((flags & word.flag) != 0) text += word.text;
  }
  VrelError report(error);
  report("Runtime error during type conversion: Flags: %s", text.c_str());
  if (!warn_only) throw VrelError(report);
  report.do_warn();
}
