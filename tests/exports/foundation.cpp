// Errors, text and data types.
#include <vrelio/vrelio.h>

#include <string>
#include <thread>
#include <typeinfo>

#include "exports.h"

namespace {

using std::string_literals::operator""s;

bool use_VrelError() {
  try {
    throw VrelError()("only %d of %d planes", 3, 8)(-4);
  } catch (const VrelError& error) {
    return error.get_msg() == "only 3 of 8 planes"s && error.get_id() == -4;
  }
}

// The library itself takes no locks.
bool use_VCriticalSection() {
  VCriticalSection section;
  int planes = 0;
  const auto count = [&section, &planes] {
    for (int i = 0; i < 1000; ++i) {
      section.lock();
      ++planes;
      section.unlock();
    }
  };
  std::thread other(count);
  count();
  other.join();
  return planes == 2000;
}

bool use_format_string() {
  return format_string("plane %03d of %s", 7, "ramp") == "plane 007 of ramp" &&
         format_string(L"%.1f %ls", 0.5, L"m") == L"0.5 m";
}

bool use_vrel_err() {
  try {
    vrel_err("no such plane", "load_plane", "loader.cpp", 12);
  } catch (const VrelError& error) {
    return error.get_msg() == "no such plane"s && error.get_func() == "load_plane"s &&
           error.get_line() == 12 && error.get_id() == -1;
  }
}

bool use_vrel_warn() {
  vrel_warn("the use of vrel_warn", nullptr, nullptr, 0);
  return vrel_get_last_error_string() == "the use of vrel_warn"s;
}

bool use_vrel_lasterr() {
  try {
    vrel_lasterr("no such plane", nullptr, nullptr, 0);
  } catch (const VrelError& error) {
    return error.get_msg() == "no such plane"s && error.get_id() == 1;
  }
}

bool use_vrel_get_last_error() {
  VrelError()("no such plane")(-6).process();
  return vrel_get_last_error() == -6;
}

bool use_vrel_get_last_error_string() {
  VrelError("no such plane", "load_plane", "loader.cpp", 12).process();
  return vrel_get_last_error_string() ==
         "loader.cpp(12): ERROR\nin function 'load_plane':\nno such plane"s;
}

bool use_vrel_dt_get_size() {
  return vrel_dt_get_size(vrel_dt_from_name("uint16")) == 2 &&
         vrel_dt_get_size(vrel_dt_from_name("cplx_double")) == 16;
}

bool use_vrel_dt_get_type() {
  return *vrel_dt_get_type(vrel_dt_from_name("single")) == typeid(float);
}

bool use_vrel_dt_get_name() { return vrel_dt_get_name(0x80) == "double"s; }

bool use_vrel_dt_from_name() {
  return vrel_dt_from_name("double") == 0x80 && vrel_dt_from_name("quadruple") == 0;
}

bool use_vrel_dt_convert() {
  const short counts[] = {1, -2, 300};
  double samples[3] = {};
  const int result = vrel_dt_convert(vrel_dt_from_name("int16"), vrel_dt_from_name("double"),
                                     counts, samples, 3, nullptr, nullptr);
  return result == 0 && samples[0] == 1.0 && samples[1] == -2.0 && samples[2] == 300.0;
}

bool use_VPropstring() {
  const VPropstring unit("\xC2\xB5m", VPropstring::encoding_utf8);
  return unit.size() == 2 && unit.to(VPropstring::encoding_windows1252) == "\xB5m";
}

}  // namespace

std::vector<Export> foundation_exports() {
  return {{"VrelError", use_VrelError},
          {"VCriticalSection", use_VCriticalSection},
          {"format_string", use_format_string},
          {"vrel_err", use_vrel_err},
          {"vrel_warn", use_vrel_warn},
          {"vrel_lasterr", use_vrel_lasterr},
          {"vrel_get_last_error", use_vrel_get_last_error},
          {"vrel_get_last_error_string", use_vrel_get_last_error_string},
          {"vrel_dt_get_size", use_vrel_dt_get_size},
          {"vrel_dt_get_type", use_vrel_dt_get_type},
          {"vrel_dt_get_name", use_vrel_dt_get_name},
          {"vrel_dt_from_name", use_vrel_dt_from_name},
          {"vrel_dt_convert", use_vrel_dt_convert},
          {"VPropstring", use_VPropstring}};
}
