#include "lib/error_report.h"

#include <cstdio>
#include <exception>
#include <new>

namespace Vrel::tool {

namespace {

void print(const std::string& file, const std::string& message) {
  const std::string subject = file.empty() ? "" : file + ": ";
  const std::string text = "vrel: " + subject + message + '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

void raise_output_error(const std::string& file, const char* message) {
  throw OutputError(VrelError().do_oserr()("%s", message), file);
}

ExitCode exit_code_of(const VrelError& error) {
  return error.get_oserr_id() > 0 ? exit_system : exit_damaged;
}

Failure current_failure(const std::string& file) {
  try {
    throw;
  } catch (const OutputError& error) {
    return {exit_code_of(error), error.get_output(), error.what()};
  } catch (const VrelError& error) {
    return {exit_code_of(error), file, error.what()};
  } catch (const std::bad_alloc&) {
    return {exit_system, file, "Out of memory! --max-memory sets the limit."};
  } catch (const std::exception& error) {
    return {exit_damaged, file, error.what()};
  } catch (...) {
    return {exit_damaged, file, "Unknown error!"};
  }
}

void print_failure(const Failure& failure) { print(failure.file, failure.message); }

void print_warning(const std::string& file, const std::string& message) {
  print(file, "warning: " + message);
}

}  // namespace Vrel::tool
