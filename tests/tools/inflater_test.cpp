#include "lib/inflater.h"

#include <gtest/gtest.h>

#include <string>

#include "support/attached_file.h"
#include "zlib_text.h"

namespace Vrel::tool {
namespace {

using Vrel::testing::AttachedFile;
using Vrel::testing::zlib_stream;
using State = Inflater::State;

std::string plain_text() {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += std::to_string(i * i);
  return text;
}

std::string decode(Inflater& inflater, unsigned size, u64 stop) {
  std::string bytes(size, '\0');
  bytes.resize(inflater.decode(reinterpret_cast<unsigned char*>(bytes.data()), size, stop));
  return bytes;
}

TEST(InflaterTest, AStreamIsDecodedToItsEnd) {
  const std::string text = plain_text();
  const std::string stream = zlib_stream(text, text.size());
  AttachedFile file("front" + stream + "behind");
  Inflater inflater(file.file(), 5, stream.size());
  EXPECT_EQ(decode(inflater, 1 << 20, ~u64{0}), text);
  EXPECT_EQ(inflater.state(), State::ended);
  EXPECT_EQ(inflater.offset(), stream.size() - 4);
  EXPECT_EQ(decode(inflater, 1, ~u64{0}), "");
}

TEST(InflaterTest, PiecesOfEverySizeMakeTheWhole) {
  const std::string text = plain_text();
  const std::string stream = zlib_stream(text, 100);
  AttachedFile file(stream);
  for (const unsigned size : {1u, 7u, 100u, 4096u}) {
    Inflater inflater(file.file(), 0, stream.size());
    std::string seen;
    while (inflater.state() == State::running) seen += decode(inflater, size, ~u64{0});
    EXPECT_EQ(seen, text) << size;
    EXPECT_EQ(inflater.state(), State::ended);
  }
}

TEST(InflaterTest, ACutStreamStarvesWhereverItIsCut) {
  const std::string text = plain_text().substr(0, 500);
  const std::string stream = zlib_stream(text, 100);
  AttachedFile file(stream);
  for (std::size_t size = 0; size < stream.size() - 5; ++size) {
    Inflater inflater(file.file(), 0, size);
    const std::string seen = decode(inflater, 1000, ~u64{0});
    EXPECT_EQ(seen, text.substr(0, seen.size())) << size;
    EXPECT_EQ(inflater.state(), State::starved) << size;
    EXPECT_EQ(inflater.offset(), size);
  }
}

TEST(InflaterTest, AFullFlushLiesBetweenBlocksAndDecodingCanStartThere) {
  const std::string text = plain_text();
  const std::string stream = zlib_stream(text, 5000);
  const std::size_t mark = stream.find(std::string("\0\0\xFF\xFF", 4)) + 4;
  AttachedFile file(stream);
  for (const unsigned size : {5000u, 1u << 20}) {
    Inflater inflater(file.file(), 0, stream.size());
    std::string seen = decode(inflater, size, mark);
    seen += decode(inflater, size, mark);
    EXPECT_EQ(seen, text.substr(0, 5000));
    EXPECT_EQ(inflater.state(), State::starved);
    EXPECT_EQ(inflater.offset(), mark);
    EXPECT_TRUE(inflater.is_between_blocks());
    inflater.restart();
    EXPECT_EQ(decode(inflater, 1 << 20, ~u64{0}), text.substr(5000));
  }
}

TEST(InflaterTest, InsideABlockIsNotBetweenBlocks) {
  const std::string stream = zlib_stream(plain_text(), 5000);
  AttachedFile file(stream);
  Inflater inflater(file.file(), 0, stream.size());
  decode(inflater, 1 << 20, 100);
  EXPECT_FALSE(inflater.is_between_blocks());
}

TEST(InflaterTest, AReferenceInFrontOfARestartIsToldApart) {
  const std::string text(3000, 'x');
  const std::string stream = zlib_stream(text + text, 3000, Z_SYNC_FLUSH);
  const std::size_t mark = stream.find(std::string("\0\0\xFF\xFF", 4)) + 4;
  AttachedFile file(stream);
  Inflater inflater(file.file(), 0, stream.size());
  decode(inflater, 1 << 20, mark);
  ASSERT_TRUE(inflater.is_between_blocks());
  EXPECT_FALSE(inflater.lacks_history());
  inflater.restart();
  decode(inflater, 1 << 20, ~u64{0});
  EXPECT_EQ(inflater.state(), State::broken);
  EXPECT_TRUE(inflater.lacks_history());
}

TEST(InflaterTest, WhatIsNoStreamBreaks) {
  for (const char* const bytes :
       {"no stream", "\x79\x9C wrong method", "\x78\xBB with dictionary"}) {
    AttachedFile file(bytes);
    Inflater inflater(file.file(), 0, 9);
    EXPECT_EQ(decode(inflater, 100, ~u64{0}), "");
    EXPECT_EQ(inflater.state(), State::broken) << bytes;
    EXPECT_FALSE(inflater.lacks_history());
  }
}

}  // namespace
}  // namespace Vrel::tool
