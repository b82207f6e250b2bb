// Files of random stacks, written in random pieces and read at random places.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "container/stack_writing.h"

namespace {

using Vrel::testing::stack_ptr;
using Vrel::testing::WrittenFile;

constexpr int types[] = {0x1, 0x4, 0x20, 0x40, 0x2000, 0x40000080, 0x40000002};

// What a stack was written from.
struct Model {
  int type;
  std::vector<unsigned> sizes;
  unsigned count;
  unsigned sample_size;
  std::string bytes;
};

class RandomFileTest : public testing::TestWithParam<unsigned> {
 protected:
  unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  Model make_model() {
    Model model;
    model.type = types[below(std::size(types))];
    model.sample_size = static_cast<unsigned>(vrel_dt_get_size(model.type));
    model.sizes.resize(1 + below(3));
    model.count = 1;
    for (unsigned& size : model.sizes) {
      size = 1 + below(60);
      model.count *= size;
    }
    const unsigned variety = 1 + below(256);
    model.bytes.resize(std::size_t{model.count} * model.sample_size);
    for (char& byte : model.bytes) byte = static_cast<char>(below(variety));
    return model;
  }

  void write(WrittenFile& file, const Model& model) {
    const stack_ptr stack = file->add_stack(false);
    // Only a stack that does not grow has flush points. Without a type both take any.
    const bool grows = below(2) == 0;
    std::vector<unsigned> sizes = model.sizes;
    if (grows) sizes.back() = 0;
    stack->create(sizes, 0);
    if (below(2) == 0) stack->set_flush_block_size(1000 + below(100000));
    stack->set_compression(static_cast<int>(below(2)), static_cast<int>(below(10)));
    for (unsigned done = 0; done < model.count;) {
      const unsigned piece = std::min(model.count - done, 1 + below(model.count));
      stack->write(model.type, model.bytes.data() + std::size_t{done} * model.sample_size, nullptr,
                   piece);
      done += piece;
    }
    if (grows) stack->commit(0);
  }

  void read(const stack_ptr& stack, const Model& model) {
    ASSERT_EQ(stack->get_sizes(), model.sizes);
    ASSERT_EQ(stack->get_dt(), model.type);
    int position = 0;
    for (int round = 0; round < 20; ++round) {
      if (position == VBFStackInterface::position_exhausted || below(2) == 0) {
        position = static_cast<int>(below(model.count));
      }
      const auto first = static_cast<std::size_t>(position);
      const unsigned count = 1 + below(model.count);
      const std::size_t taken = std::min<std::size_t>(count, model.count - first);
      std::string bytes(std::size_t{count} * model.sample_size, '?');
      stack->read(model.type, bytes.data(), nullptr, count, position);
      ASSERT_TRUE(bytes.compare(0, taken * model.sample_size, model.bytes,
                                first * model.sample_size, taken * model.sample_size) == 0)
          << "from " << first << ", " << taken << " samples";
      const bool is_end = first + taken == model.count;
      ASSERT_EQ(position, is_end ? -1 : static_cast<int>(first + taken));
    }
  }

 private:
  std::mt19937 random_{GetParam()};
};

TEST_P(RandomFileTest, WhatWasWrittenIsRead) {
  SCOPED_TRACE("seed " + std::to_string(GetParam()));
  WrittenFile file;
  std::vector<Model> models;
  for (unsigned i = 0; i < 5; ++i) {
    file->set_chunk_size(1 + below(3000));
    models.push_back(make_model());
    write(file, models.back());
    const unsigned earlier = below(i + 1);
    read(file->get_stack(earlier), models[earlier]);
  }
  file.reopen();
  std::vector<stack_ptr> stacks;
  for (unsigned i = 0; i < models.size(); ++i) stacks.push_back(file->get_stack(i));
  for (int round = 0; round < 10; ++round) {
    const unsigned i = below(static_cast<unsigned>(models.size()));
    read(stacks[i], models[i]);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomFileTest, testing::Range(1U, 21U));

}  // namespace
