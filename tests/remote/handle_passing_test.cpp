// What may pass from one thread to another, and what threads may do side by side. A build with
// VRELIO_SANITIZE=thread looks for races.
#include <gtest/gtest.h>
#include <vrelio/vrelio.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temporary_file.h"

namespace {

using Vrel::testing::TemporaryFile;

constexpr int rounds = 200;

std::unique_ptr<VStackImp> make_stack() {
  return std::make_unique<VStackImp>(Ome::type_uint8, std::vector<unsigned int>{64, 4},
                                     Ome::order_XYZTC);
}

template <class Handle>
void destroy_in_threads(Handle first, Handle second) {
  std::thread one([handle = std::move(first)]() mutable { handle.reset(); });
  std::thread other([handle = std::move(second)]() mutable { handle.reset(); });
  one.join();
  other.join();
}

TEST(HandlePassingTest, StacksOnTheSameElementsAreDestroyedByDifferentThreads) {
  for (int round = 0; round < rounds; ++round) {
    std::unique_ptr<VStackImp> stack = make_stack();
    if (round % 2 == 0) stack->share();
    auto copy = std::make_unique<VStackImp>(*stack);
    destroy_in_threads(std::move(stack), std::move(copy));
  }
}

TEST(HandlePassingTest, RemoteStacksOnTheSameStackAreDestroyedByDifferentThreads) {
  for (int round = 0; round < rounds; ++round) {
    const boost::shared_ptr<VStackInterface> held(make_stack().release());
    auto object = std::make_unique<Remote::StackObject>(held);
    auto copy = std::make_unique<Remote::StackObject>(*object);
    destroy_in_threads(std::move(object), std::move(copy));
    EXPECT_EQ(held.use_count(), 1);
  }
}

TEST(HandlePassingTest, AFileIsHandedFromThreadToThread) {
  const TemporaryFile target;
  auto file = std::make_unique<Remote::File>(target.path(), Remote::File::mode_create);
  for (unsigned int i = 0; i < 8; ++i) {
    std::thread([&] {
      const boost::shared_ptr<Remote::Stack> stack(
          Remote::get_stack(Remote::type_uint8, {i + 1, 2}));
      file->write(stack, i % 2 == 0);
    }).join();
  }
  std::thread([&] { file.reset(); }).join();
  const Remote::File again(target.path(), Remote::File::mode_read);
  EXPECT_EQ(again.number_of_stacks(), 8U);
}

// Something of each layer, with nothing that another thread has.
bool work_alone() {
  const TemporaryFile target;
  VPropstruct settings;
  settings["pixel"] = 0.1;
  const si::value step("0.1 um");
  {
    VBFFile file(target.name(), VFile::mode_create);
    const boost::shared_ptr<VBFStackInterface> stack = file->add_stack(false);
    stack->create({16, 16}, vrel_dt_from_name("uint16"));
    stack->set_compression(1, 1);
    stack->set_units(0, step);
    const std::vector<unsigned short> samples(256, 7);
    stack->write(stack->get_dt(), samples.data(), nullptr, 256);
    file->close();
  }
  VBFFile file(target.name(), VFile::mode_read);
  const boost::shared_ptr<VStackInterface> read = file->read_stack(0, vrel_dt_from_name("single"));
  const auto* const values = reinterpret_cast<const float*>(read->get_data_ptr());
  return std::count(values, values + 256, 7.0F) == 256;
}

TEST(HandlePassingTest, ThreadsThatShareNothingWorkSideBySide) {
  std::vector<char> outcomes(4, 0);
  std::vector<std::thread> threads;
  for (char& outcome : outcomes)
    threads.emplace_back([&outcome] { outcome = work_alone() ? 1 : 0; });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), 1), 4);
}

}  // namespace
