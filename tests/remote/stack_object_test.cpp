#include <vrelio/remote/stack_object.h>

#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/shared_memory.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "support/expect_error.h"

namespace {

using Remote::StackObject;
using strings = std::vector<std::string>;
using numbers = std::vector<double>;

boost::shared_ptr<VStackImp> make_stack() {
  auto stack = boost::make_shared<VStackImp>(Ome::type_int16, std::vector<unsigned int>{4, 3, 2},
                                             Ome::order_XYZTC);
  stack->set_name("cells");
  stack->set_description("fixed");
  stack->set_labels({"X", "Y", "Z"});
  stack->set_len({0.5, 2, 6});
  stack->set_off({1, -2, 3});
  return stack;
}

TEST(StackObjectTest, EachReaderGivesWhatTheStackHas) {
  StackObject object(make_stack());
  EXPECT_EQ(object.name(), "cells");
  EXPECT_EQ(object.description(), "fixed");
  EXPECT_EQ(object.type(), Remote::type_int16);
  EXPECT_EQ(object.number_of_elements(), 24U);
  EXPECT_EQ(object.number_of_dimensions(), 3U);
  EXPECT_EQ(object.sizes(), (std::vector<unsigned int>{4, 3, 2}));
  EXPECT_EQ(object.labels(), (strings{"X", "Y", "Z"}));
  EXPECT_EQ(object.lengths(), (numbers{0.5, 2, 6}));
  EXPECT_EQ(object.offsets(), (numbers{1, -2, 3}));
  EXPECT_EQ(object.size(1), 3U);
  EXPECT_EQ(object.label(2), "Z");
  EXPECT_EQ(object.length(0), 0.5);
  EXPECT_EQ(object.offset(1), -2);
}

TEST(StackObjectTest, EachSetterReachesTheStack) {
  const boost::shared_ptr<VStackImp> stack = make_stack();
  StackObject object(stack);
  object.set_name("n");
  object.set_description("d");
  object.set_labels({"a", "b"});
  object.set_label(2, "c");
  object.set_lengths({10, 20});
  object.set_length(2, 30);
  object.set_offsets({-10, -20});
  object.set_offset(2, -30);
  EXPECT_EQ(stack->get_name(), "n");
  EXPECT_EQ(stack->get_description(), "d");
  EXPECT_EQ(stack->get_labels(), (strings{"a", "b", "c"}));
  EXPECT_EQ(stack->get_lengths(), (numbers{10, 20, 30}));
  EXPECT_EQ(stack->get_offsets(), (numbers{-10, -20, -30}));
}

TEST(StackObjectTest, AnAxisThatThereIsNotFailsAsInTheStack) {
  StackObject object(make_stack());
  for (const int axis : {3, -1}) {
    EXPECT_VREL_ERROR(object.size(axis), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.label(axis), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.length(axis), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.offset(axis), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.set_label(axis, ""), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.set_length(axis, 2), "Invalid axis specified!", -15);
    EXPECT_VREL_ERROR(object.set_offset(axis, 2), "Invalid axis specified!", -15);
  }
}

TEST(StackObjectTest, MetaDataIsACopyOfTheImage) {
  const boost::shared_ptr<VStackImp> stack = make_stack();
  StackObject object(stack);
  Json::Object image = object.meta_data();
  EXPECT_EQ(image, stack->meta_data().Element.value().map());
  EXPECT_EQ(image.at("Name"), Json::Value("cells"));
  image["Name"] = Json::Value("other");
  EXPECT_EQ(stack->get_name(), "cells");
  EXPECT_EQ(object.meta_data().at("Name"), Json::Value("cells"));
}

TEST(StackObjectTest, SharingTwiceGivesTheSameId) {
  StackObject object(make_stack());
  const std::string id = object.share();
  EXPECT_EQ(id.size(), 36U);
  EXPECT_EQ(object.share(), id);
}

TEST(StackObjectTest, TheIdLeadsToTheElements) {
  const boost::shared_ptr<VStackImp> stack = make_stack();
  std::fill_n(stack->get_data_ptr(), 48, static_cast<unsigned char>(7));
  StackObject object(stack);
  Vrel::SharedMemory block(object.share());
  ASSERT_EQ(block.size(), 48U);
  auto* const bytes = static_cast<unsigned char*>(block.data());
  EXPECT_TRUE(std::all_of(bytes, bytes + 48, [](unsigned char byte) { return byte == 7; }));
  bytes[5] = 9;
  EXPECT_EQ(stack->get_data_ptr()[5], 9);
}

TEST(StackObjectTest, CopiesShareTheStack) {
  const boost::shared_ptr<VStackImp> stack = make_stack();
  StackObject first(stack);
  StackObject second(first);
  StackObject third(make_stack());
  third = first;
  second.set_name("one for all");
  EXPECT_EQ(third.name(), "one for all");
  EXPECT_EQ(stack.use_count(), 4);
}

TEST(StackObjectTest, TheStackLivesAsLongAsAnyObject) {
  boost::weak_ptr<VStackImp> stack;
  {
    boost::shared_ptr<Remote::Stack> copy;
    {
      const boost::shared_ptr<VStackImp> made = make_stack();
      stack = made;
      copy = boost::make_shared<StackObject>(StackObject(made));
    }
    EXPECT_FALSE(stack.expired());
    EXPECT_EQ(copy->name(), "cells");
  }
  EXPECT_TRUE(stack.expired());
}

TEST(GetStackTest, AStackIsMadeOfZerosAlongXYZTC) {
  const std::unique_ptr<Remote::Stack> stack(Remote::get_stack(Remote::type_uint32, {5, 4, 3, 2}));
  EXPECT_EQ(stack->type(), Remote::type_uint32);
  EXPECT_EQ(stack->sizes(), (std::vector<unsigned int>{5, 4, 3, 2}));
  Json::Value image(stack->meta_data());
  const Json::Value& pixels = image[""]["ome:Pixels"];
  EXPECT_EQ(*pixels.find("DimensionOrder"), Json::Value("XYZTC"));
  EXPECT_EQ(*pixels.find("SizeT"), Json::Value(2));
  Vrel::SharedMemory block(stack->share());
  ASSERT_EQ(block.size(), 480U);
  const auto* const bytes = static_cast<const unsigned char*>(block.data());
  EXPECT_EQ(std::count(bytes, bytes + 480, 0), 480);
}

TEST(GetStackTest, EveryPixelTypeCanBeMade) {
  for (const char* const name : {"uint8", "int8", "uint16", "int16", "uint32", "int32", "single",
                                 "double", "cplx_single", "cplx_double"}) {
    const auto type = static_cast<Remote::Type>(vrel_dt_from_name(name));
    const std::unique_ptr<Remote::Stack> stack(Remote::get_stack(type, {2}));
    EXPECT_EQ(stack->type(), type) << name;
  }
}

TEST(GetStackTest, AnUnknownTypeIsRefused) {
  for (const int type : {0, 3, 0x1000, 0x2000, 0x20000, 0x40000001}) {
    EXPECT_STANDARD_ERROR(Remote::get_stack(static_cast<Remote::Type>(type), {2}),
                          std::invalid_argument, "Unsupported data type");
  }
}

TEST(GetStackTest, SizesAreCheckedByTheStack) {
  EXPECT_STANDARD_ERROR(Remote::get_stack(Remote::type_uint8, {1, 1, 1, 1, 1, 1}),
                        std::invalid_argument, "Unsupported number of sizes");
  EXPECT_VREL_ERROR(Remote::get_stack(Remote::type_double, {65536, 65535}),
                    "The size increases the maximum size", -1);
}

}  // namespace
