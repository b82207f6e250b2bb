#include "file/deflate_engine_internal.h"

#include <gtest/gtest.h>

#include <string>

#include "support/expect_error.h"

namespace {

using namespace Vrel::detail;

unsigned size_of(const std::string& text) { return static_cast<unsigned>(text.size()); }

std::string encoded(DeflateEncoder& encoder, const std::string& data, Flush flush) {
  std::string output(1000, '\0');
  const CodingStep step = encoder.encode(data.data(), data.size(), output.data(), 1000, flush);
  EXPECT_EQ(step.result, flush == Flush::finish ? engine_stream_end : engine_ok);
  EXPECT_EQ(step.consumed, data.size());
  return output.substr(0, step.produced);
}

TEST(DeflateEncoderTest, WhatItFinishesTheDecoderGivesBack) {
  DeflateEncoder encoder(6);
  const std::string stream = encoded(encoder, "hello, hello", Flush::finish);
  DeflateDecoder decoder;
  std::string output(100, '\0');
  const CodingStep step = decoder.decode(stream.data(), size_of(stream), output.data(), 100);
  EXPECT_EQ(step.result, engine_stream_end);
  EXPECT_EQ(step.consumed, stream.size());
  EXPECT_EQ(output.substr(0, step.produced), "hello, hello");
}

TEST(DeflateEncoderTest, RefusesMoreThanItsCounterHolds) {
  DeflateEncoder encoder(1);
  char output[10];
  for (const u64 size : {u64{1} << 32, ~u64{0}}) {
    EXPECT_VREL_ERROR(encoder.encode("", size, output, sizeof output, Flush::none),
                      "Zlib cannot handle chunks larger than 4GB", -1);
  }
}

TEST(DeflateEncoderTest, ALevelThatDoesNotExistMakesEveryStepUnusable) {
  for (const int level : {42, 10, -2}) {
    DeflateEncoder encoder(level);
    char output[10];
    EXPECT_EQ(encoder.encode("a", 1, output, sizeof output, Flush::none).result, engine_unusable);
    EXPECT_EQ(encoder.encode("", 0, output, sizeof output, Flush::finish).result, engine_unusable);
  }
}

TEST(DeflateEncoderTest, WithoutRoomThereIsNoProgress) {
  DeflateEncoder encoder(1);
  char output;
  EXPECT_EQ(encoder.encode("a", 1, &output, 0, Flush::none).result, engine_no_progress);
}

TEST(DeflateDecoderTest, StartsAgainBehindAFullFlush) {
  DeflateEncoder encoder(9);
  const std::string first = encoded(encoder, "first, first", Flush::full);
  const std::string second = encoded(encoder, "second, first", Flush::finish);
  DeflateDecoder decoder;
  std::string output(100, '\0');
  for (int i = 0; i < 3; ++i) {
    decoder.restart(StreamForm::blocks);
    CodingStep step = decoder.decode(second.data(), size_of(second), output.data(), 100);
    EXPECT_EQ(step.result, engine_stream_end);
    EXPECT_EQ(size_of(second) - step.consumed, 4u) << "the checksum is left over";
    EXPECT_EQ(output.substr(0, step.produced), "second, first");
    decoder.restart(StreamForm::whole);
    step = decoder.decode(first.data(), size_of(first), output.data(), 100);
    EXPECT_EQ(step.result, engine_ok);
    EXPECT_EQ(output.substr(0, step.produced), "first, first");
  }
}

TEST(DeflateDecoderTest, StopsAtTheLastByteWantedAndSeesTheEndBehindIt) {
  DeflateEncoder encoder(1);
  const std::string stream = encoded(encoder, "abc", Flush::finish);
  DeflateDecoder decoder;
  char output[3];
  CodingStep step = decoder.decode(stream.data(), size_of(stream), output, 2);
  EXPECT_EQ(step.result, engine_ok);
  EXPECT_EQ(step.produced, 2u);
  const std::string rest = stream.substr(step.consumed);
  step = decoder.decode(rest.data(), size_of(rest), output, 1);
  EXPECT_EQ(step.result, engine_stream_end);
  EXPECT_EQ(step.produced, 1u);
}

TEST(DeflateDecoderTest, ComesToItsEndOrFailureAgain) {
  DeflateEncoder encoder(1);
  const std::string stream = encoded(encoder, "abc", Flush::finish);
  DeflateDecoder decoder;
  char output[10];
  decoder.decode(stream.data(), size_of(stream), output, 10);
  for (const unsigned room : {0u, 10u}) {
    EXPECT_EQ(decoder.decode("x", 1, output, room).result, engine_stream_end);
  }
  decoder.restart(StreamForm::whole);
  for (const unsigned room : {10u, 0u}) {
    EXPECT_EQ(decoder.decode("no stream", 9, output, room).result, engine_bad_data);
  }
}

// A block with fixed codes by hand: the literal "a", then a match of length 3 and distance 2.
TEST(DeflateDecoderTest, AMatchThatReachesTooFarBackShowsOnceThereIsRoomForIt) {
  const std::string blocks("\x4b\x04\x42\x00", 4);
  for (const unsigned first_room : {1u, 100u}) {
    DeflateDecoder decoder;
    decoder.restart(StreamForm::blocks);
    std::string output(100, '\0');
    CodingStep step = decoder.decode(blocks.data(), 4, output.data(), first_room);
    EXPECT_EQ(step.produced, 1u);
    EXPECT_EQ(step.result, first_room == 1 ? engine_ok : engine_bad_data);
    const std::string rest = blocks.substr(step.consumed);
    step = decoder.decode(rest.data(), size_of(rest), output.data(), 0);
    EXPECT_NE(step.result, engine_bad_data);
    EXPECT_EQ(step.consumed, 0u);
    step = decoder.decode(rest.data(), size_of(rest), output.data(), 1);
    EXPECT_EQ(step.result, engine_bad_data);
  }
}

TEST(DeflateDecoderTest, WithoutInputThereIsNoProgress) {
  DeflateDecoder decoder;
  char output[10];
  EXPECT_EQ(decoder.decode(nullptr, 0, output, 10).result, engine_no_progress);
}

}  // namespace
