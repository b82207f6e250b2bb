// One step of a segment and of its plain form, and what came of it.
#pragma once

#include <vrelio/file/zipped_segment.h>
#include <vrelio/foundation/error.h>

#include <ostream>
#include <string>

#include "file/plain_segment.h"

namespace Vrel::testing {

struct Step {
  bool is_seek;
  u64 amount;
};

// What one step did; equal for both forms of the segment.
struct Outcome {
  std::string data;
  std::string error;
  int id = 0;
  bool warned = false;
  u64 position = 0;

  bool operator==(const Outcome& other) const {
    return data == other.data && error == other.error && id == other.id && warned == other.warned &&
           position == other.position;
  }
};

inline std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << outcome.data.size() << " bytes, \"" << outcome.error << "\" " << outcome.id
                << (outcome.warned ? ", warned" : "") << ", at " << outcome.position;
}

template <class Segment>
void take_step(Segment& segment, const Step& step, Outcome& outcome) {
  if (step.is_seek) {
    segment.seek(step.amount);
  } else {
    std::string bytes(step.amount, '\0');
    segment.read(bytes.data(), static_cast<unsigned>(bytes.size()));
    outcome.data = std::move(bytes);
  }
}

inline Outcome plain_outcome(PlainReader& reader, const Step& step) {
  Outcome outcome;
  const int warnings = reader.count_warnings();
  try {
    take_step(reader, step, outcome);
  } catch (const PlainError& error) {
    outcome.error = error.text;
    outcome.id = error.id;
  }
  outcome.warned = reader.count_warnings() > warnings;
  outcome.position = reader.tell();
  return outcome;
}

// A warning shows in the last-error pair, which no caught error moves.
inline Outcome segment_outcome(VZippedSegment& segment, const Step& step) {
  Outcome outcome;
  VrelError()("nothing yet")(77).process();
  try {
    take_step(segment, step, outcome);
  } catch (const VrelError& error) {
    outcome.error = error.get_msg();
    outcome.id = error.get_id();
  }
  outcome.warned = vrel_get_last_error() != 77;
  outcome.position = segment.tell();
  return outcome;
}

}  // namespace Vrel::testing
