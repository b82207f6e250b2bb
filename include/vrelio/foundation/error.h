// The one exception class of the library, its reports and the plain functions that raise it. Texts
// and identifiers: docs/errors.md.
#pragma once

#include <vrelio/export.h>

#include <cstdint>
#include <exception>
#include <string>

/// A failure: message, identifier, operating-system error and, where a caller gave them, the place
/// it was raised at.
///
/// An object is built where the failure is found, filled by chained calls and thrown by value:
/// `throw VrelError()("Invalid stack index %d!", index)(-4);`. An object that dies reports nothing,
/// unless `do_warn` or `do_process` marked it.
///
/// A report is composed by `process`: it goes to `vrel_debug_output` and replaces the process-wide
/// pair of last identifier and last text, which no lock guards. Objects are not shared between
/// threads.
class VRELIO_EXPORT VrelError : public std::exception {
 public:
  /// The same as `VrelError(nullptr, nullptr, 0)`: what the library itself raises; its reports have
  /// no heading.
  VrelError();

  /// \param func  name of the raising function, or null; not owned.
  /// \param file  source file of the raiser, or null; not owned.
  /// \param line  source line; 0 means unknown.
  VrelError(const char* func, const char* file, int line);

  /// The same with a message, taken as it stands.
  VrelError(const std::string& msg, const char* func, const char* file, int line);

  /// Copies all but the thread id. Texts that the source owns since its `clone` are copied too.
  VrelError(const VrelError& other);
  /// As copying.
  VrelError& operator=(const VrelError& other);

  /// Prints a warning if `do_warn` was called, else reports if `do_process` was called; lets no
  /// exception out.
  ~VrelError() override;

  /// Report by `process` and return the process-wide last-error text.
  ///
  /// Intended: the pointer is valid until the next report of any thread, and each call reports
  /// again; VrelErrorTest.WhatReportsAgainOnEveryCall.
  const char* what() const noexcept override;

  /// A heap copy that owns its file and function texts and so outlives them. The caller deletes it.
  virtual VrelError* clone() const;

  /// Replace the message by a text in the form of printf, cut at 4095 characters.
  VrelError& operator()(const char* format, ...);
  /// Set the identifier.
  VrelError& operator()(int id);
  /// Take the calling thread's last system error with its text; "Unknown system error." where the
  /// system has none.
  VrelError& do_oserr();
  /// Mark this object as a warning, which its destructor prints to standard error.
  VrelError& do_warn();
  /// Have the destructor report this object.
  VrelError& do_process();

  /// Compose the report, hand it to `vrel_debug_output` and keep it as the last error.
  ///
  /// The text: "FILE(LINE): ERROR" and "in function 'FUNC':" on lines of their own where a file and
  /// a line are known ("WARNING" for a warning), the message, and "\n    os_error(NUMBER): TEXT"
  /// where a system error number above 0 is held.
  /// \return the identifier.
  int process() const noexcept;
  /// Report by `what` and print the report to standard error.
  void do_warn_now() const noexcept;

  /// The identifier.
  // NOLINTNEXTLINE(google-explicit-constructor): part of the interface
  operator int() const { return id_; }

  /// The message.
  const char* get_msg() const { return msg_.c_str(); }
  /// The text of the system error; empty for none.
  const char* get_oserr() const { return oserr_.c_str(); }
  /// Source file of the raiser; null where it is not known.
  const char* get_file() const { return file_; }
  /// Function of the raiser; null where it is not known.
  const char* get_func() const { return func_; }
  /// Source line of the raiser; 0 where it is not known.
  int get_line() const { return line_; }
  /// -1 unless somebody set another.
  int get_id() const { return id_; }
  /// The system's error number; 0 means none.
  int get_oserr_id() const { return oserr_id_; }

 private:
  void report() const;

  const char* file_;
  const char* func_;
  int line_;
  int id_ = -1;
  int oserr_id_ = 0;
  std::string msg_;
  std::string oserr_;
  bool warn_ = false;
  bool process_ = false;
  std::uint32_t thread_id_;
  std::string file_storage_;
  std::string func_storage_;
};

/// Throw a VrelError with `msg` as its format (a `%` in it is a directive) and the identifier -1.
[[noreturn]] VRELIO_EXPORT void vrel_err(const char* msg, const char* func, const char* file,
                                         int line);
/// Print and report a warning, and return. `msg` is a format as for `vrel_err`.
VRELIO_EXPORT void vrel_warn(const char* msg, const char* func, const char* file, int line);
/// As `vrel_err`, with the identifier 1. The system error is not read.
[[noreturn]] VRELIO_EXPORT void vrel_lasterr(const char* msg, const char* func, const char* file,
                                             int line);
/// The identifier of the last report of any thread; 0 before the first.
VRELIO_EXPORT int vrel_get_last_error();
/// The text of the last report of any thread, without a line end; valid until the next report.
VRELIO_EXPORT const char* vrel_get_last_error_string();

/// Report a conversion problem: a copy of `error` with the message "Runtime error during type
/// conversion: Flags: " and the words of the flags: 8 "[rank]", 1 "[rng min]", 2 "[rng max]", 4
/// "[rounding]", in this order. The third argument has no effect.
///
/// \throws the copy, unless `warn_only` is true: then it is printed as a warning.
VRELIO_EXPORT void wrap_array_report_error(const VrelError& error, int flags, int ignored,
                                           bool warn_only);

/// Where every report goes: an empty function to put a breakpoint on, or to replace by one of the
/// program's own.
/// \param text  the report with a line end; valid during the call only.
extern "C" VRELIO_EXPORT void vrel_debug_output(const char* text);
