// Descriptions and stacks made from a remote stack that is not the library's own.
#include <vrelio/stack/remote_stack.h>

#include <gtest/gtest.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <boost/interprocess/exceptions.hpp>
#include <boost/make_shared.hpp>
#include <string>
#include <type_traits>
#include <vector>

#include "support/expect_error.h"

namespace {

using boost::interprocess::interprocess_exception;
using Vrel::SharedMemory;

static_assert(std::is_abstract_v<Remote::Stack>);
static_assert(Remote::type_uint8 == 1 && Remote::type_int64 == 0x2000);
static_assert(Remote::type_cplx_double == 0x40000080);

// Keeps what it is told, and nothing else.
struct PlainStack : Remote::Stack {
  explicit PlainStack(unsigned int bytes) : block(boost::make_shared<SharedMemory>(bytes)) {}

  std::string name() override { return {}; }
  void set_name(const std::string&) override {}
  std::string description() override { return {}; }
  void set_description(const std::string&) override {}
  Remote::Type type() override { return element_type; }
  unsigned int number_of_elements() const override { return 0; }
  unsigned int number_of_dimensions() const override { return 0; }
  unsigned int size(int) const override { return 0; }
  std::vector<unsigned int> sizes() override { return all_sizes; }
  std::string label(int) override { return {}; }
  void set_label(int, const std::string&) override {}
  std::vector<std::string> labels() override { return all_labels; }
  void set_labels(const std::vector<std::string>&) override {}
  double length(int) const override { return 0; }
  void set_length(int, double) override {}
  std::vector<double> lengths() override { return all_lengths; }
  void set_lengths(const std::vector<double>&) override {}
  double offset(int) const override { return 0; }
  void set_offset(int, double) override {}
  std::vector<double> offsets() override { return all_offsets; }
  void set_offsets(const std::vector<double>&) override {}
  Json::Map<std::string, Json::Value> meta_data() override { return image.map(); }
  std::string share() override { return block ? block->id() : "no such block"; }

  Remote::Type element_type = Remote::type_uint16;
  std::vector<unsigned int> all_sizes = {3, 2};
  std::vector<std::string> all_labels = {"X", "Y"};
  std::vector<double> all_lengths = {1.5, 4};
  std::vector<double> all_offsets = {-1, 7};
  Json::Value image = Json::Value(Json::Object());
  boost::shared_ptr<SharedMemory> block;
};

PlainStack stack_of_6() { return PlainStack(12); }

TEST(RemoteStackTest, ItsOnlyDataIsEmptyAtFirstAndSharedOnCopying) {
  PlainStack stack = stack_of_6();
  EXPECT_EQ(stack.owner, nullptr);
  stack.owner = boost::make_shared<int>(5);
  const PlainStack copy = stack;
  EXPECT_EQ(copy.owner, stack.owner);
}

TEST(RemoteStackTest, ADescriptionTakesTypeSizesLabelsLengthsAndOffsets) {
  const PlainStack stack = stack_of_6();
  const VStackInfoImp info(stack);
  EXPECT_EQ(info.get_dt(), 4);
  EXPECT_EQ(info.get_sizes(), (std::vector<unsigned int>{3, 2}));
  EXPECT_EQ(info.get_number_of_elements(), 6U);
  EXPECT_EQ(info.get_labels(), stack.all_labels);
  EXPECT_EQ(info.get_lengths(), stack.all_lengths);
  EXPECT_EQ(info.get_offsets(), stack.all_offsets);
}

TEST(RemoteStackTest, ADescriptionTakesTheImageWithNameDescriptionAndPhysicalSizes) {
  VStackInfoImp other(Ome::type_uint16, {3, 2}, Ome::order_XYCZT);
  other.set_name("cells");
  other.set_description("fixed");
  other.meta_data().PhysicalSizeX = Json::Value(0.25);
  other.meta_data().PhysicalSizeXUnit = Json::Value("nm");
  PlainStack stack = stack_of_6();
  stack.image = other.meta_data().Element.value();
  VStackInfoImp info(stack);
  EXPECT_EQ(info.get_name(), "cells");
  EXPECT_EQ(info.get_description(), "fixed");
  EXPECT_EQ(info.meta_data().DimensionOrder.value(), Json::Value("XYCZT"));
  EXPECT_EQ(info.meta_data().PhysicalSizeX.value(), Json::Value(0.25));
  EXPECT_EQ(info.meta_data().PhysicalSizeXUnit.value(), Json::Value("nm"));
}

TEST(RemoteStackTest, TheImageIsToldTheSizes) {
  PlainStack stack = stack_of_6();
  stack.image =
      VStackInfoImp(Ome::type_uint16, {9, 9, 9}, Ome::order_XYZTC).meta_data().Element.value();
  VStackInfoImp info(stack);
  EXPECT_EQ(info.meta_data().SizeX.value(), Json::Value(3));
  EXPECT_EQ(info.meta_data().SizeZ.value(), Json::Value(1));
}

TEST(RemoteStackTest, AnImageWithoutAnOrderOfAxesGetsTheUsualOne) {
  const PlainStack stack = stack_of_6();
  EXPECT_EQ(VStackInfoImp(stack).meta_data().DimensionOrder.value(), Json::Value("XYZTC"));
}

TEST(RemoteStackTest, AnImageThatBreaksARuleIsRefused) {
  PlainStack stack = stack_of_6();
  stack.image["Name"] = Json::Value(5);
  EXPECT_STANDARD_ERROR(VStackInfoImp{stack}, std::bad_cast, "bad cast");
}

TEST(RemoteStackTest, SizesThatNoDescriptionCanHaveAreRefused) {
  PlainStack stack = stack_of_6();
  stack.all_sizes = {1, 1, 1, 1, 1, 1};
  EXPECT_STANDARD_ERROR(VStackInfoImp{stack}, std::invalid_argument, "Unsupported number of sizes");
  stack.all_sizes = {65536, 65536};
  EXPECT_VREL_ERROR(VStackInfoImp{stack}, "The product exceeds the maximum size.", -1);
}

TEST(RemoteStackTest, ListsOfAnotherLengthThanTheRankCountAsFarAsTheyReach) {
  PlainStack stack = stack_of_6();
  stack.all_labels = {"A", "B", "C"};
  stack.all_lengths = {2};
  stack.all_offsets.clear();
  const VStackInfoImp info(stack);
  EXPECT_EQ(info.get_labels(), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(info.get_lengths(), (std::vector<double>{2, 1}));
  EXPECT_EQ(info.get_offsets(), (std::vector<double>{0, 0}));
}

TEST(RemoteStackTest, AStackStandsOnTheSharedElements) {
  const PlainStack stack = stack_of_6();
  VStackImp attached(stack);
  EXPECT_TRUE(attached.is_shared());
  EXPECT_EQ(attached.share(), std::string(stack.block->id()));
  attached.get_data_ptr()[11] = 42;
  EXPECT_EQ(static_cast<const unsigned char*>(stack.block->data())[11], 42);
}

TEST(RemoteStackTest, TheBlockOutlivesAStackThatOnlyOpenedIt) {
  const PlainStack stack = stack_of_6();
  { const VStackImp attached(stack); }
  EXPECT_NO_THROW(SharedMemory(stack.block->id()));
}

TEST(RemoteStackTest, AnIdThatNamesNoBlockIsRefused) {
  PlainStack stack = stack_of_6();
  stack.block.reset();
  EXPECT_THROW(VStackImp{stack}, interprocess_exception);
}

TEST(RemoteStackTest, ABlockThatIsSmallerThanTheDescriptionAsksForIsRefused) {
  EXPECT_STANDARD_ERROR(VStackImp{PlainStack(11)}, std::runtime_error, "Cannot resize shared data");
  EXPECT_NO_THROW(VStackImp{PlainStack(12)});
}

TEST(RemoteStackTest, AStackWithoutElementsTakesAnEmptyBlock) {
  PlainStack stack(0);
  stack.all_sizes = {0, 4};
  const VStackImp attached(stack);
  EXPECT_EQ(attached.get_number_of_elements(), 0U);
  EXPECT_TRUE(attached.is_shared());
}

}  // namespace
