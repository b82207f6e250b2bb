// JSON texts between two processes.
#pragma once

#include <vrelio/json/reader.h>
#include <vrelio/json/value.h>

#include <optional>
#include <string>

// One end of a pair of pipes. Each text is one JSON object; where one ends is seen by its last brace.
class Channel {
 public:
  // The descriptors stay the caller's.
  Channel(int input, int output) : input_(input), output_(output) {}

  // The next object; none when the other side has closed its end or is gone, also in the middle of a text.
  // Raises Json::Reader::Unexpected for a text that is no JSON.
  std::optional<Json::Object> receive();
  // Raises std::system_error when nobody reads any longer.
  void send(const Json::Object& object);

 private:
  bool fetch();

  int input_;
  int output_;
  Json::Reader reader_;
  std::string pending_;  // bytes behind the last object
};
