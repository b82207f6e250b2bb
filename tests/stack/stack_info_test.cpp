#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_info_imp.h>

#include <boost/make_shared.hpp>
#include <climits>
#include <ctime>
#include <functional>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "stack/foreign_stack.h"
#include "support/expect_error.h"
#include "support/scoped_time_zone.h"

namespace {

using Sizes = std::vector<unsigned int>;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// What the owners of a description can do.
class Info : public VStackInfoImp {
 public:
  using VStackInfoImp::get_stored_units;
  using VStackInfoImp::is_locked;
  using VStackInfoImp::lock;
  using VStackInfoImp::set_meta_data_string;
  using VStackInfoImp::set_sizes;
  using VStackInfoImp::set_type;
  using VStackInfoImp::set_variable_size;
  using VStackInfoImp::set_variable_type;
  using VStackInfoImp::take_length;
  using VStackInfoImp::take_offset;
  using VStackInfoImp::take_sizes;
  using VStackInfoImp::take_type;
  using VStackInfoImp::VStackInfoImp;
};

Info info_of(const Sizes& sizes, Ome::DimensionOrder order = Ome::order_XYZTC) {
  return Info(Ome::type_uint16, sizes, order);
}

template <class T>
T value_of(const Json::Value& field) {
  return field.get<T>();
}

Numbers image_sizes(Info& info) {
  const auto& image = info.meta_data();
  Numbers sizes;
  for (const Json::Value* field : {&image.SizeX.value(), &image.SizeY.value(), &image.SizeZ.value(),
                                   &image.SizeC.value(), &image.SizeT.value()})
    sizes.push_back(field->is_null() ? 0 : field->get<int>());
  return sizes;
}

// --- Making descriptions

TEST(StackInfoTest, ARankGivesThatManyEmptyAxes) {
  Info info(3);
  EXPECT_EQ(info.get_rank(), 3U);
  EXPECT_EQ(info.get_sizes(), (Sizes{0, 0, 0}));
  EXPECT_EQ(info.get_number_of_elements(), 0U);
  EXPECT_EQ(info.get_dt(), 0);
  EXPECT_FALSE(info.is_locked());
  EXPECT_EQ(info.get_lengths(), (Numbers{1, 1, 1}));
  EXPECT_EQ(info.get_offsets(), (Numbers{0, 0, 0}));
  EXPECT_EQ(info.get_labels(), Texts(3));
  EXPECT_TRUE(info.is_equidistant(2));
  EXPECT_EQ(info.get_meta_data_string(), "");
  EXPECT_EQ(value_of<std::string>(info.meta_data().DimensionOrder.value()), "XYZTC");
  EXPECT_EQ(image_sizes(info), Numbers(5));
}

TEST(StackInfoTest, TypeSizesAndOrderStandInTheImage) {
  Info info(Ome::type_float, {2, 3, 4, 5}, Ome::order_XYCZT);
  EXPECT_EQ(info.get_dt(), 64);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "float");
  EXPECT_EQ(value_of<std::string>(info.meta_data().DimensionOrder.value()), "XYCZT");
  EXPECT_EQ(image_sizes(info), (Numbers{2, 3, 5, 4, 1}));
}

TEST(StackInfoTest, AnImageWithoutIdsStaysWithout) {
  Info info(1);
  EXPECT_TRUE(info.meta_data().ID.value().is_null());
  EXPECT_TRUE(info.meta_data().PixelsID.value().is_null());
}

TEST(StackInfoTest, BitIsNoTypeOfAStack) {
  EXPECT_STANDARD_ERROR(Info(Ome::type_bit, {1}, Ome::order_XYZCT), std::invalid_argument,
                        "Unsupported stack type");
}

TEST(StackInfoTest, AnUnknownOrderIsRefused) {
  EXPECT_THROW(Info(Ome::type_uint8, {1}, static_cast<Ome::DimensionOrder>(6)), std::bad_cast);
}

TEST(StackInfoTest, ACopyHasAnImageOfItsOwn) {
  Info info = info_of({2, 3});
  info.set_name("first");
  Info copy(info);
  EXPECT_EQ(copy.get_name(), "first");
  copy.set_name("second");
  copy.set_len(0, 4.0);
  EXPECT_EQ(info.get_name(), "first");
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeX.value()), 1.0);
  EXPECT_EQ(value_of<double>(copy.meta_data().PhysicalSizeX.value()), 2.0);
}

TEST(StackInfoTest, ACopyHasAllMembers) {
  Info info = info_of({2, 1});
  info.set_len(0, 5);
  info.set_off(0, 6);
  info.set_label(1, "Y");
  info.set_col_labels(0, {"a", "b"});
  info.set_col_positions(1, {7});
  info.set_units(0, si::value("s"));
  info.set_data_units(si::value("V"));
  VStackPosition position;
  position.create(&info, 4);
  info.set_stack_position(position);
  info.lock();
  const Info copy(info);
  EXPECT_EQ(copy.get_sizes(), (Sizes{2, 1}));
  EXPECT_EQ(copy.get_number_of_elements(), 2U);
  EXPECT_EQ(copy.get_dt(), 4);
  EXPECT_EQ(copy.get_length(0), 5);
  EXPECT_EQ(copy.get_offset(0), 6);
  EXPECT_EQ(copy.get_label(1), "Y");
  EXPECT_EQ(copy.get_col_labels(0), (Texts{"a", "b"}));
  EXPECT_EQ(copy.get_col_positions(1), Numbers{7});
  EXPECT_FALSE(copy.is_equidistant(1));
  EXPECT_EQ(copy.get_units(0), si::value("s"));
  EXPECT_EQ(copy.get_data_units(), si::value("V"));
  EXPECT_EQ(copy.get_stack_position().axes.count(), 4U);
  EXPECT_TRUE(copy.is_locked());
}

// --- Sizes and types

TEST(StackInfoTest, NoSizesAreOneElement) {
  Info info(2);
  info.create(Sizes(), 4);
  EXPECT_EQ(info.get_rank(), 0U);
  EXPECT_EQ(info.get_number_of_elements(), 1U);
  EXPECT_EQ(image_sizes(info), (Numbers{1, 1, 1, 1, 1}));
}

TEST(StackInfoTest, AZeroAmongTheSizesIsNoElement) {
  Info info = info_of({2, 3});
  info.create({UINT_MAX, 0, UINT_MAX}, 4);
  EXPECT_EQ(info.get_number_of_elements(), 0U);
  EXPECT_EQ(image_sizes(info), (Numbers{2, 3, 1, 1, 1}));
}

TEST(StackInfoTest, AProductBeyond32BitsIsRefusedAndNothingChanges) {
  Info info = info_of({2, 3});
  EXPECT_VREL_ERROR(info.create({65536, 65536}, 1), "The product exceeds the maximum size.", -1);
  EXPECT_EQ(info.get_sizes(), (Sizes{2, 3}));
  EXPECT_EQ(info.get_dt(), 4);
}

TEST(StackInfoTest, MoreThanFiveSizesHaveNoPlaceInTheImage) {
  Info info(0);
  EXPECT_STANDARD_ERROR(info.create({1, 1, 1, 1, 1, 2}, 4), std::invalid_argument,
                        "Unsupported number of sizes");
  EXPECT_EQ(info.get_rank(), 6U);
  info.create({1, 1, 1, 1, 1, 0}, 4);
  EXPECT_EQ(info.get_number_of_elements(), 0U);
}

TEST(StackInfoTest, ASizeThatTheImageCannotHoldIsRefusedAndStored) {
  Info info(0);
  EXPECT_THROW(info.create({1U << 31}, 1), std::bad_cast);
  EXPECT_EQ(info.get_number_of_elements(), 1U << 31);
}

TEST(StackInfoTest, SizesFollowTheLettersOfTheOrder) {
  struct Row {
    Ome::DimensionOrder order;
    Numbers sizes;
  };
  for (const Row& row :
       {Row{Ome::order_XYZCT, {2, 3, 4, 5, 6}}, Row{Ome::order_XYZTC, {2, 3, 4, 6, 5}},
        Row{Ome::order_XYCTZ, {2, 3, 6, 4, 5}}, Row{Ome::order_XYCZT, {2, 3, 5, 4, 6}},
        Row{Ome::order_XYTCZ, {2, 3, 6, 5, 4}}, Row{Ome::order_XYTZC, {2, 3, 5, 6, 4}}}) {
    Info info = info_of({2, 3, 4, 5, 6}, row.order);
    EXPECT_EQ(image_sizes(info), row.sizes) << row.order;
  }
}

TEST(StackInfoTest, SizesFollowTheOrderThatTheImageHasNow) {
  Info info(0);
  info.meta_data().DimensionOrder = Json::Value("XYTCZ");
  info.create({2, 3, 4, 5, 6}, 4);
  EXPECT_EQ(image_sizes(info), (Numbers{2, 3, 6, 5, 4}));
}

TEST(StackInfoTest, NewAxesHaveDefaultsAndOldOnesKeepTheirs) {
  Info info = info_of({2});
  info.set_len(0, 5);
  info.set_label(0, "X");
  info.create({3, 4}, 4);
  EXPECT_EQ(info.get_lengths(), (Numbers{5, 1}));
  EXPECT_EQ(info.get_offsets(), (Numbers{0, 0}));
  EXPECT_EQ(info.get_labels(), (Texts{"X", ""}));
  EXPECT_TRUE(info.is_equidistant(1));
  EXPECT_TRUE(info.get_col_labels(1).empty());
}

TEST(StackInfoTest, ATypeWithoutPixelTypeIsRefusedAndStored) {
  Info info(1);
  EXPECT_STANDARD_ERROR(info.create({1}, 0x1000), std::invalid_argument, "Unsupported data type");
  EXPECT_EQ(info.get_dt(), 0x1000);
  info.create({1}, 0);
  EXPECT_EQ(info.get_dt(), 0);
}

TEST(StackInfoTest, SizesBehindTheSecondNeedALetter) {
  for (const Json::Value& order : {Json::Value(), Json::Value("XY")}) {
    Info info(0);
    Json::Value pixels = info.meta_data().Pixels.value();
    pixels["DimensionOrder"] = order;
    info.meta_data().Pixels = pixels;
    EXPECT_STANDARD_ERROR(info.create({2, 3, 4}, 4), std::invalid_argument,
                          "Unsupported physical dimension");
    EXPECT_EQ(info.get_sizes(), (Sizes{2, 3, 4}));
    EXPECT_EQ(image_sizes(info), (Numbers{2, 3, 1, 1, 1}));
    info.take_sizes({4, 5});
    EXPECT_EQ(image_sizes(info), Numbers(5));
  }
}

TEST(StackInfoTest, ATypeStandsInTheImageUntilThereIsAnother) {
  Info info(1);
  EXPECT_TRUE(info.meta_data().Type.value().is_null());
  info.create({1}, 0x40000080);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "double-complex");
  info.create({1}, 1);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "uint8");
  info.create({1}, 0);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "uint8");
}

TEST(StackInfoTest, TheBufferIsAsLargeAsItsElements) {
  Info info = info_of({3, 4});
  EXPECT_EQ(info.get_size(0), 24U);
  EXPECT_EQ(info.get_size(0x40000080), 192U);
  EXPECT_EQ(info.get_size(0x4000), 0U);
  info.create({65536, 65535}, 128);
  EXPECT_EQ(info.get_size(0), 8ULL * 65536 * 65535);
}

// --- Lengths and offsets

TEST(StackInfoTest, TheMagnitudeOfALengthTellsItsUnit) {
  struct Row {
    double length;
    double step;
    std::string unit;
  };
  for (const Row& row :
       {Row{1.5, 0.75, "\xC2\xB5m"}, Row{0.0100001, 0.00500005, "\xC2\xB5m"}, Row{0.01, 0.005, "m"},
        Row{1e-6, 5e-7, "m"}, Row{1.0, 1.0, "pixel"}, Row{0.0, 1.0, "pixel"}}) {
    Info info = info_of({2, 2, 2});
    for (unsigned int axis = 0; axis < 3; ++axis) info.set_len(axis, row.length);
    const auto& image = info.meta_data();
    EXPECT_DOUBLE_EQ(value_of<double>(image.PhysicalSizeX.value()), row.step);
    EXPECT_EQ(value_of<std::string>(image.PhysicalSizeXUnit.value()), row.unit);
    EXPECT_DOUBLE_EQ(value_of<double>(image.PhysicalSizeY.value()), row.step);
    EXPECT_EQ(value_of<std::string>(image.PhysicalSizeYUnit.value()), row.unit);
    EXPECT_DOUBLE_EQ(value_of<double>(image.PhysicalSizeZ.value()), row.step);
    EXPECT_EQ(value_of<std::string>(image.PhysicalSizeZUnit.value()), row.unit);
  }
}

TEST(StackInfoTest, TheLengthOfTimeIsInSeconds) {
  Info info = info_of({1, 1, 1, 4});
  info.set_len(3, 10);
  EXPECT_EQ(value_of<double>(info.meta_data().TimeIncrement.value()), 2.5);
  EXPECT_EQ(value_of<std::string>(info.meta_data().TimeIncrementUnit.value()), "s");
  info.set_len(3, 0);
  EXPECT_TRUE(info.meta_data().TimeIncrement.value().is_null());
  EXPECT_TRUE(info.meta_data().TimeIncrementUnit.value().is_null());
}

TEST(StackInfoTest, TheLetterOfAnAxisTellsWhichStepItHas) {
  Info info = info_of({1, 1, 4, 1, 5}, Ome::order_XYTCZ);
  info.set_len(2, 8);
  info.set_len(4, 15);
  EXPECT_EQ(value_of<double>(info.meta_data().TimeIncrement.value()), 2);
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeZ.value()), 3);
  info.meta_data().DimensionOrder = Json::Value("XYZCT");
  info.set_len(2, 16);
  info.set_len(4, 25);
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeZ.value()), 4);
  EXPECT_EQ(value_of<double>(info.meta_data().TimeIncrement.value()), 5);
}

TEST(StackInfoTest, OnePointInTimeHasNoIncrement) {
  Info info = info_of({1, 1, 1, 1});
  info.set_len(3, 10);
  EXPECT_TRUE(info.meta_data().TimeIncrement.value().is_null());
  EXPECT_EQ(info.get_length(3), 10);
}

TEST(StackInfoTest, AnAxisWithoutElementsHasNoStep) {
  Info info(1);
  info.set_len(0, 10);
  EXPECT_EQ(value_of<std::string>(info.meta_data().PhysicalSizeXUnit.value()), "pixel");
}

TEST(StackInfoTest, ALengthOfChannelsIsRefusedAndStored) {
  Info info = info_of({1, 1, 2}, Ome::order_XYCTZ);
  EXPECT_STANDARD_ERROR(info.set_len(2, 5.0), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_length(2), 5.0);
}

TEST(StackInfoTest, ALengthOfAnAxisWithoutLetterIsRefusedAndStored) {
  Info info(6);
  EXPECT_STANDARD_ERROR(info.set_len(5, 5.0), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_length(5), 5.0);
  info.meta_data().DimensionOrder = Json::Value();
  EXPECT_STANDARD_ERROR(info.set_len(0, 6.0), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_length(0), 6.0);
}

TEST(StackInfoTest, ALengthThatIsNotPositiveIsRefusedAndStored) {
  Info info = info_of({2});
  EXPECT_THROW(info.set_len(0, -1.0), std::bad_cast);
  EXPECT_EQ(info.get_length(0), -1.0);
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeX.value()), 1.0);
}

TEST(StackInfoTest, ListsSetTheFirstAxes) {
  Info info = info_of({2, 2, 2});
  info.set_len(Numbers{4, 6});
  EXPECT_EQ(info.get_lengths(), (Numbers{4, 6, 1}));
  info.set_off(Numbers{7, 8, 9, 10});
  EXPECT_EQ(info.get_offsets(), (Numbers{7, 8, 9}));
  info.set_labels({"X"});
  EXPECT_EQ(info.get_labels(), (Texts{"X", "", ""}));
  info.set_labels({"Z", "Y", "X", "T"});
  EXPECT_EQ(info.get_labels(), (Texts{"Z", "Y", "X"}));
}

TEST(StackInfoTest, AListSetsWhatComesBeforeAnAxisWithoutPlace) {
  Info info = info_of({2, 2, 2, 2, 2});
  EXPECT_STANDARD_ERROR(info.set_len(Numbers{4, 4, 4, 4, 4}), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_lengths(), (Numbers{4, 4, 4, 4, 4}));
}

TEST(StackInfoTest, AListEndsAtAnAxisWithoutPlace) {
  Info info = info_of({2, 2, 2, 2}, Ome::order_XYCZT);
  EXPECT_STANDARD_ERROR(info.set_len(Numbers{3, 4, 5, 6}), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_lengths(), (Numbers{3, 4, 5, 1}));
  EXPECT_STANDARD_ERROR(info.set_off(Numbers{3, 4, 5, 6}), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_offsets(), (Numbers{3, 4, 5, 0}));
}

// --- Offsets in the planes of the image

Info info_with_planes(const Sizes& sizes, unsigned int count,
                      Ome::DimensionOrder order = Ome::order_XYZTC) {
  Info info = info_of(sizes, order);
  for (unsigned int i = 0; i < count; ++i) {
    const auto plane = info.meta_data().Plane.append();
    plane->TheZ = Json::Value(static_cast<int>(i));
    plane->TheT = Json::Value(static_cast<int>(i));
  }
  return info;
}

TEST(StackInfoTest, TheOffsetInThePlaneIsThatOfEveryPlane) {
  Info info = info_with_planes({2, 2}, 2);
  info.set_len(0, 5);
  info.set_off(0, 3);
  info.set_off(1, 4);
  for (const auto& plane : info.meta_data().Plane) {
    EXPECT_EQ(value_of<double>(plane->PositionX.value()), 3);
    EXPECT_EQ(value_of<std::string>(plane->PositionXUnit.value()), "\xC2\xB5m");
    EXPECT_EQ(value_of<double>(plane->PositionY.value()), 4);
    EXPECT_EQ(value_of<std::string>(plane->PositionYUnit.value()), "pixel");
  }
}

TEST(StackInfoTest, PlanesAlongZAreSpreadAroundTheOffset) {
  Info info = info_with_planes({1, 1, 3}, 3);
  info.set_len(2, 6);
  info.set_off(2, 10);
  const auto& planes = info.meta_data().Plane;
  EXPECT_EQ(value_of<double>(planes[0]->PositionZ.value()), 8);
  EXPECT_EQ(value_of<double>(planes[1]->PositionZ.value()), 10);
  EXPECT_EQ(value_of<double>(planes[2]->PositionZ.value()), 12);
  EXPECT_EQ(value_of<std::string>(planes[2]->PositionZUnit.value()), "\xC2\xB5m");
}

TEST(StackInfoTest, PlanesInTimeAreSpreadAroundTheOffset) {
  Info info = info_with_planes({1, 1, 1, 2}, 2);
  info.set_len(3, 4);
  info.set_off(3, 10);
  const auto& planes = info.meta_data().Plane;
  EXPECT_EQ(value_of<double>(planes[0]->DeltaT.value()), 9);
  EXPECT_EQ(value_of<double>(planes[1]->DeltaT.value()), 11);
  EXPECT_EQ(value_of<std::string>(planes[0]->DeltaTUnit.value()), "s");
}

TEST(StackInfoTest, TheLetterOfAnAxisTellsWhichPositionOfAPlaneItIs) {
  Info info = info_with_planes({1, 1, 2, 1, 2}, 2, Ome::order_XYTCZ);
  info.set_len(2, 4);
  info.set_len(4, 6);
  info.set_off(2, 10);
  info.set_off(4, 20);
  const auto& planes = info.meta_data().Plane;
  EXPECT_EQ(value_of<double>(planes[0]->DeltaT.value()), 9);
  EXPECT_EQ(value_of<double>(planes[1]->PositionZ.value()), 21.5);
}

// Writes past the fields, as a whole element that is assigned does.
void set_in_pixels(Info& info, const std::string& key, const Json::Value& value) {
  Json::Value pixels = info.meta_data().Pixels.value();
  pixels[key] = value;
  info.meta_data().Pixels = pixels;
}

TEST(StackInfoTest, AnOrderThatEndsBeforeAnAxisHasNoLetterForIt) {
  Info info = info_of({1, 1, 1, 2});
  set_in_pixels(info, "DimensionOrder", Json::Value("XY"));
  EXPECT_STANDARD_ERROR(info.set_len(3, 5), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_STANDARD_ERROR(info.set_off(3, 5), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_TRUE(info.meta_data().TimeIncrement.value().is_null());
}

TEST(StackInfoTest, AStepThatIsAnIntegerBecomesADecimal) {
  Info info = info_with_planes({1, 1, 2, 2}, 2);
  set_in_pixels(info, "PhysicalSizeZ", Json::Value(2));
  set_in_pixels(info, "TimeIncrement", Json::Value(4));
  info.set_off(2, 10);
  info.set_off(3, 20);
  EXPECT_EQ(info.meta_data().PhysicalSizeZ.value(), Json::Value(2.0));
  EXPECT_EQ(info.meta_data().TimeIncrement.value(), Json::Value(4.0));
  EXPECT_EQ(value_of<double>(info.meta_data().Plane[0]->PositionZ.value()), 9);
  EXPECT_EQ(value_of<double>(info.meta_data().Plane[1]->DeltaT.value()), 22);
}

TEST(StackInfoTest, AnOffsetIsToldToThePlanesThatThereAre) {
  Info info = info_of({1, 1, 2, 2});
  info.meta_data().PhysicalSizeZ = Json::Value();
  info.set_off(2, 5);
  EXPECT_EQ(info.get_offset(2), 5);
  EXPECT_TRUE(info.meta_data().Plane.empty());
}

TEST(StackInfoTest, PlanesHaveNoTimeWithoutAnIncrement) {
  Info info = info_with_planes({1, 1, 1, 2}, 1);
  info.meta_data().Plane[0]->DeltaT = Json::Value(5.0);
  info.meta_data().Plane[0]->DeltaTUnit = Json::Value("s");
  info.set_off(3, 10);
  EXPECT_TRUE(info.meta_data().Plane[0]->DeltaT.value().is_null());
  EXPECT_TRUE(info.meta_data().Plane[0]->DeltaTUnit.value().is_null());
}

TEST(StackInfoTest, AStepThatIsNoNumberPlacesNoPlane) {
  Info info = info_with_planes({1, 1, 2}, 1);
  info.meta_data().PhysicalSizeZ = Json::Value();
  EXPECT_THROW(info.set_off(2, 10), std::bad_cast);
  EXPECT_EQ(info.get_offset(2), 10);
  set_in_pixels(info, "PhysicalSizeZ", Json::Value("2"));
  EXPECT_THROW(info.set_off(2, 11), std::bad_cast);
  EXPECT_EQ(info.get_offset(2), 11);
}

TEST(StackInfoTest, APlaneWithoutItsIndexHasNoPlace) {
  Info info = info_of({1, 1, 2});
  info.meta_data().Plane.append();
  EXPECT_THROW(info.set_off(2, 10), std::bad_cast);
  EXPECT_EQ(info.get_offset(2), 10);
  EXPECT_TRUE(info.meta_data().Plane[0]->PositionZ.value().is_null());
}

TEST(StackInfoTest, AnOffsetOfChannelsIsRefusedAndStored) {
  Info info = info_of({1, 1, 2}, Ome::order_XYCTZ);
  EXPECT_STANDARD_ERROR(info.set_off(2, 5.0), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_offset(2), 5.0);
}

TEST(StackInfoTest, AnOffsetOfAnAxisWithoutLetterIsRefusedAndStored) {
  Info info(6);
  EXPECT_STANDARD_ERROR(info.set_off(5, 5.0), std::invalid_argument,
                        "Unsupported physical dimension");
  EXPECT_EQ(info.get_offset(5), 5.0);
  info.meta_data().DimensionOrder = Json::Value();
  EXPECT_STANDARD_ERROR(info.set_off(2, 6.0), std::invalid_argument,
                        "Unsupported physical dimension");
}

// --- Positions and labels of pixels

TEST(StackInfoTest, PixelsStandInTheMiddleOfTheirCells) {
  Info info = info_of({4});
  info.set_len(0, 8);
  info.set_off(0, 10);
  EXPECT_EQ(info.get_col_positions(0), (Numbers{7, 9, 11, 13}));
  EXPECT_EQ(info.get_col_position(0, 3), 13);
}

TEST(StackInfoTest, PositionsFollowALaterLengthOffsetAndSize) {
  Info info = info_of({2});
  EXPECT_EQ(info.get_col_positions(0), (Numbers{-0.25, 0.25}));
  info.set_len(0, 4);
  EXPECT_EQ(info.get_col_positions(0), (Numbers{-1, 1}));
  info.set_off(0, 1);
  EXPECT_EQ(info.get_col_positions(0), (Numbers{0, 2}));
  info.create({4}, 4);
  EXPECT_EQ(info.get_col_positions(0), (Numbers{-0.5, 0.5, 1.5, 2.5}));
}

TEST(StackInfoTest, AnAxisCanHavePositionsOfItsOwn) {
  Info info = info_of({3});
  info.set_col_positions(0, {1, 2, 4});
  EXPECT_FALSE(info.is_equidistant(0));
  EXPECT_EQ(info.get_col_positions(0), (Numbers{1, 2, 4}));
  info.set_len(0, 6);
  EXPECT_EQ(info.get_col_positions(0), (Numbers{1, 2, 4}));
  info.set_col_positions(0, {});
  EXPECT_TRUE(info.is_equidistant(0));
  EXPECT_EQ(info.get_col_positions(0), (Numbers{-2, 0, 2}));
}

TEST(StackInfoTest, PositionsThatNoLongerFitAreNone) {
  Info info = info_of({3});
  info.set_col_positions(0, {1, 2, 4});
  info.create({4}, 4);
  EXPECT_TRUE(info.get_col_positions(0).empty());
  EXPECT_FALSE(info.is_equidistant(0));
  EXPECT_VREL_ERROR(info.get_col_position(0, 0), "Invalid pixel position!", -15);
}

TEST(StackInfoTest, APixelBehindTheAxisHasNoPosition) {
  const Info info = info_of({3});
  EXPECT_VREL_ERROR(info.get_col_position(0, 3), "Invalid pixel position!", -15);
}

TEST(StackInfoTest, PositionsAndLabelsAreOneForEachPixel) {
  Info info = info_of({3});
  EXPECT_VREL_ERROR(info.set_col_positions(0, {1, 2}), "Wrong number of positions!", -15);
  EXPECT_TRUE(info.is_equidistant(0));
  EXPECT_VREL_ERROR(info.set_col_labels(0, {"a"}), "Wrong number of labels!", -15);
  info.set_col_labels(0, {"a", "b", "c"});
  EXPECT_EQ(info.get_col_labels(0), (Texts{"a", "b", "c"}));
  info.set_col_labels(0, {});
  EXPECT_TRUE(info.get_col_labels(0).empty());
}

// --- Units

TEST(StackInfoTest, ALabelAndALengthTellAMissingUnit) {
  for (const std::string label : {"X", "Y", "Z", "stage Z"}) {
    Info info = info_of({2});
    info.set_label(0, label);
    EXPECT_TRUE(info.get_units(0) == si::value("um")) << label;
    info.set_len(0, 0.01);
    EXPECT_TRUE(info.get_units(0) == si::value("m")) << label;
  }
}

TEST(StackInfoTest, ANumberOrAnInvalidUnitLeavesRoomForTheGuess) {
  Info info = info_of({2});
  info.set_label(0, "X");
  for (const si::value& units : {si::value(2.0), si::value("xyzzy")}) {
    info.set_units(0, units);
    info.set_len(0, 1);
    EXPECT_TRUE(info.get_units(0) == si::value("um"));
    info.set_len(0, 1e-3);
    EXPECT_TRUE(info.get_units(0) == si::value("m"));
  }
}

TEST(StackInfoTest, NoUnitIsGuessedForOtherLabels) {
  Info info = info_of({2});
  for (const std::string label : {"", "T", "x", "X "}) {
    info.set_label(0, label);
    EXPECT_TRUE(info.get_units(0).is_dimensionless()) << label;
  }
}

TEST(StackInfoTest, AUnitThatIsSetStays) {
  Info info = info_of({2});
  info.set_label(0, "X");
  info.set_units(0, si::value("nm"));
  EXPECT_TRUE(info.get_units(0) == si::value("nm"));
  info.set_label(0, "");
  info.set_units(0, si::value(2.0));
  EXPECT_EQ(static_cast<double>(info.get_units(0)), 2.0);
}

TEST(StackInfoTest, AnInvalidUnitReadsAsNone) {
  Info info = info_of({2});
  info.set_units(0, si::value("xyzzy"));
  EXPECT_TRUE(info.get_units(0).is_valid());
  EXPECT_EQ(static_cast<double>(info.get_units(0)), 1.0);
}

TEST(StackInfoTest, TheElementsHaveAUnit) {
  Info info = info_of({2});
  info.set_data_units(si::value("V"));
  EXPECT_TRUE(info.get_data_units() == si::value("V"));
}

// --- Name, description, date

TEST(StackInfoTest, NameAndDescriptionStandInTheImage) {
  Info info(1);
  EXPECT_EQ(info.get_name(), "");
  EXPECT_EQ(info.get_description(), "");
  info.set_name("name");
  info.set_description("text");
  EXPECT_EQ(value_of<std::string>(info.meta_data().Name.value()), "name");
  EXPECT_EQ(value_of<std::string>(info.meta_data().Description.value()), "text");
  info.meta_data().Name = Json::Value("other");
  EXPECT_EQ(info.get_name(), "other");
}

// A text with each digit as 0.
std::string form_of(std::string text) {
  for (char& c : text)
    if (c >= '0' && c <= '9') c = '0';
  return text;
}

TEST(StackInfoTest, TheAcquisitionDateHasItsOffsetFromUniversalTime) {
  Info info(1);
  info.set_acquisition_date();
  const auto date = value_of<std::string>(info.meta_data().AcquisitionDate.value());
  const std::string form = form_of(date);
  EXPECT_EQ(form.substr(0, 19), "0000-00-00T00:00:00") << date;
  const std::string offset = form.substr(19);
  EXPECT_TRUE(offset == "+00:00" || offset == "-00:00" || offset == "Z") << date;
}

TEST(StackInfoTest, TheAcquisitionDateIsNowInTheLocalZone) {
  const ScopedTimeZone zone("ZONE-05:30");
  Info info(1);
  const std::time_t before = std::time(nullptr);
  info.set_acquisition_date();
  const std::time_t after = std::time(nullptr);
  const auto date = value_of<std::string>(info.meta_data().AcquisitionDate.value());
  EXPECT_EQ(date.substr(19), "+05:30") << date;
  std::tm parts = {};
  std::istringstream(date) >> std::get_time(&parts, "%Y-%m-%dT%H:%M:%S");
  const std::time_t told = ::timegm(&parts) - (5 * 60 + 30) * 60;
  EXPECT_TRUE(before <= told && told <= after) << date;
}

// --- The place of the stack

TEST(StackInfoTest, APositionThatDoesNotFitIsRefused) {
  Info info(2);
  VStackPosition position;
  position.create(Sizes{1, 1, 1}, 0);
  EXPECT_VREL_ERROR(info.set_stack_position(position), "Invalid global stack position!", -1);
  EXPECT_TRUE(info.get_stack_position().is_valid_for(&info));
}

TEST(StackInfoTest, ANewRankBringsANewPosition) {
  Info info(2);
  VStackPosition position;
  position.create(Sizes{1, 1}, 3);
  info.set_stack_position(position);
  info.create({4, 5}, 4);
  EXPECT_EQ(info.get_stack_position().axes.count(), 3U);
  info.create({4, 5, 6}, 4);
  EXPECT_EQ(info.get_stack_position().axes.count(), 3U);
  EXPECT_TRUE(info.get_stack_position().is_valid_for(&info));
  info.create(Sizes(), 4);
  EXPECT_TRUE(info.get_stack_position().is_valid_for(&info));
}

// --- Taking over from another stack

TEST(StackInfoTest, ADescriptionIsMadeFromAnother) {
  Info source = info_of({2, 3});
  source.set_len(0, 5);
  source.set_off(1, 6);
  source.set_label(0, "X");
  source.set_name("name");
  source.set_description("text");
  source.set_col_labels(0, {"a", "b"});
  source.set_col_positions(1, {1, 2, 4});
  source.set_units(0, si::value("s"));
  source.set_data_units(si::value("V"));
  Info info(0);
  info.create(&source, 0);
  EXPECT_EQ(info.get_dt(), 4);
  EXPECT_EQ(info.get_sizes(), (Sizes{2, 3}));
  EXPECT_EQ(info.get_length(0), 5);
  EXPECT_EQ(info.get_offset(1), 6);
  EXPECT_EQ(info.get_label(0), "X");
  EXPECT_EQ(info.get_name(), "name");
  EXPECT_EQ(info.get_description(), "text");
  EXPECT_EQ(info.get_col_labels(0), (Texts{"a", "b"}));
  EXPECT_EQ(info.get_col_positions(1), (Numbers{1, 2, 4}));
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeX.value()), 2.5);
  EXPECT_TRUE(info.get_data_units().is_dimensionless());
  EXPECT_TRUE(Info::get_stored_units(info, 0).is_dimensionless());
  info.create(&source, 64);
  EXPECT_EQ(info.get_dt(), 64);
}

TEST(StackInfoTest, AnEquidistantAxisIsTakenOverAsSuch) {
  Info source = info_of({2});
  Info info = info_of({2});
  info.set_col_positions(0, {1, 5});
  info.set_info(&source);
  EXPECT_TRUE(info.is_equidistant(0));
}

TEST(StackInfoTest, AStackOfFiveAxesCanBeTakenOver) {
  Info source = info_of({2, 2, 2, 2, 2});
  EXPECT_THROW(source.set_len(4, 7), std::invalid_argument);
  EXPECT_THROW(source.set_len(0, -7), std::bad_cast);
  Info info(0);
  info.create(&source, 0);
  EXPECT_EQ(info.get_length(4), 7);
  EXPECT_EQ(info.get_length(0), -7);
}

TEST(StackInfoTest, PlanesWithoutIndicesDoNotBarTakingOver) {
  Info source = info_of({2, 2, 2});
  source.set_off(2, 7);
  Info info = info_of({2, 2, 2});
  info.meta_data().Plane.append();
  info.set_info(&source);
  EXPECT_EQ(info.get_offset(2), 7);
  EXPECT_TRUE(info.meta_data().Plane[0]->PositionZ.value().is_null());
}

TEST(StackInfoTest, LabelsAndPositionsOfPixelsAreTakenOverByAnAxisOfTheirSizeOnly) {
  Info source = info_of({3});
  source.set_col_labels(0, {"a", "b", "c"});
  Info info = info_of({2});
  EXPECT_VREL_ERROR(info.set_info(&source), "Wrong number of labels!", -15);
  source.set_col_labels(0, {});
  source.set_col_positions(0, {1, 2, 4});
  EXPECT_VREL_ERROR(info.set_info(&source), "Wrong number of positions!", -15);
}

TEST(StackInfoTest, APositionIsTakenOverByAStackOfTheSameRankOnly) {
  Info source(1);
  VStackPosition position;
  position.create(Sizes{1}, 4);
  source.set_stack_position(position);
  Info info(1);
  info.set_info(&source);
  EXPECT_EQ(info.get_stack_position().axes.count(), 4U);
  Info other(2);
  EXPECT_VREL_ERROR(other.set_info(&source), "Invalid global stack position!", -1);
  Info longer = info_of({4, 5});
  longer.set_len(0, 6);
  longer.set_label(0, "X");
  EXPECT_VREL_ERROR(info.set_info(&longer), "Invalid global stack position!", -1);
  EXPECT_EQ(info.get_lengths(), Numbers{6});
  EXPECT_EQ(info.get_labels(), Texts{"X"});
}

TEST(StackInfoTest, ADescriptionCanBeTakenOverFromItself) {
  Info info = info_of({2});
  info.set_name("name");
  info.create(&info, 64);
  EXPECT_EQ(info.get_dt(), 64);
  EXPECT_EQ(info.get_name(), "name");
}

// --- Locked descriptions

TEST(StackInfoTest, ALockedDescriptionRefusesEverySetter) {
  Info info = info_of({2});
  const Info other = info_of({2});
  info.lock();
  const std::vector<std::function<void()>> setters = {[&] { info.create({2}, 4); },
                                                      [&] { info.create(&other, 4); },
                                                      [&] { info.create(&other, VStackRegion()); },
                                                      [&] { info.set_info(&other); },
                                                      [&] { info.set_name(""); },
                                                      [&] { info.set_acquisition_date(); },
                                                      [&] { info.set_description(""); },
                                                      [&] { info.set_len(0, 1); },
                                                      [&] { info.set_len(Numbers()); },
                                                      [&] { info.set_off(9, 1); },
                                                      [&] { info.set_off(Numbers()); },
                                                      [&] { info.set_labels({}); },
                                                      [&] { info.set_col_labels(0, {}); },
                                                      [&] { info.set_col_positions(0, {}); },
                                                      [&] { info.set_label(0, ""); },
                                                      [&] { info.set_units(0, si::value()); },
                                                      [&] { info.set_data_units(si::value()); },
                                                      [&] { info.set_sizes({2}); },
                                                      [&] { info.set_type(4); }};
  for (std::size_t i = 0; i < setters.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_VREL_ERROR(setters[i](), "Cannot set values. Object locked!", -1);
  }
}

TEST(StackInfoTest, ALockedDescriptionTakesAPosition) {
  Info info(1);
  info.lock();
  VStackPosition position;
  position.create(&info, 3);
  info.set_stack_position(position);
  EXPECT_EQ(info.get_stack_position().axes.count(), 3U);
}

TEST(StackInfoTest, ALockedDescriptionGrowsAlongItsLastAxis) {
  Info info = info_of({2, 3});
  info.lock();
  info.set_variable_size(7);
  EXPECT_EQ(info.get_sizes(), (Sizes{2, 7}));
  EXPECT_EQ(info.get_number_of_elements(), 14U);
  EXPECT_EQ(image_sizes(info), (Numbers{2, 7, 1, 1, 1}));
  EXPECT_TRUE(info.is_locked());
  EXPECT_VREL_ERROR(info.set_variable_size(UINT_MAX), "The product exceeds the maximum size.", -1);
  EXPECT_TRUE(info.is_locked());
}

TEST(StackInfoTest, ADescriptionWithoutAxesDoesNotGrow) {
  Info info = info_of({});
  info.set_variable_size(7);
  EXPECT_EQ(info.get_rank(), 0U);
}

TEST(StackInfoTest, AVariableTypeIsSetOnce) {
  Info info(1);
  info.lock();
  info.set_variable_type(64);
  EXPECT_EQ(info.get_dt(), 64);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "float");
  EXPECT_TRUE(info.is_locked());
  EXPECT_VREL_ERROR(info.set_variable_type(4), "The type is already set to 64.", -1);
  EXPECT_EQ(info.get_dt(), 64);
}

TEST(StackInfoTest, AVariableTypeMayHaveNoPixelType) {
  Info info(1);
  info.meta_data().Type = Json::Value("uint8");
  info.set_variable_type(0x1000);
  EXPECT_EQ(info.get_dt(), 0x1000);
  EXPECT_TRUE(info.meta_data().Type.value().is_null());
}

TEST(StackInfoTest, SixAxesGrowAsWell) {
  Info info(6);
  info.set_sizes({2, 1, 1, 1, 1, 0});
  info.set_variable_size(3);
  EXPECT_EQ(info.get_number_of_elements(), 6U);
  EXPECT_TRUE(info.meta_data().SizeX.value().is_null());
  EXPECT_TRUE(info.meta_data().SizeT.value().is_null());
}

// --- Facts of a file

TEST(StackInfoTest, FactsAreStoredWhetherTheImageCanHoldThemOrNot) {
  Info info(0U);
  info.take_sizes({3000000000U});
  EXPECT_EQ(info.get_number_of_elements(), 3000000000U);
  EXPECT_TRUE(info.meta_data().SizeX.value().is_null());
  info.take_sizes({1, 2, 3, 4, 5, 6});
  EXPECT_EQ(info.get_number_of_elements(), 720U);
  EXPECT_TRUE(info.meta_data().SizeY.value().is_null());
  info.take_type(0x40000001);
  EXPECT_EQ(info.get_dt(), 0x40000001);
  EXPECT_TRUE(info.meta_data().Type.value().is_null());
  for (unsigned axis = 0; axis < 6; ++axis) {
    info.take_length(axis, axis == 1 ? -1.0 : 5e-324);
    info.take_offset(axis, 2.5);
    EXPECT_EQ(info.get_length(axis), axis == 1 ? -1.0 : 5e-324);
    EXPECT_EQ(info.get_offset(axis), 2.5);
  }
  info.set_meta_data_string("text");
  EXPECT_EQ(info.get_meta_data_string(), "text");
}

TEST(StackInfoTest, FactsThatTheImageCanHoldStandThere) {
  Info info(0U);
  info.take_sizes({4, 5});
  info.take_type(64);
  info.take_length(0, 8.0);
  EXPECT_EQ(value_of<int>(info.meta_data().SizeY.value()), 5);
  EXPECT_EQ(value_of<std::string>(info.meta_data().Type.value()), "float");
  EXPECT_EQ(value_of<double>(info.meta_data().PhysicalSizeX.value()), 2.0);
  EXPECT_VREL_ERROR(info.take_sizes({65536, 65536}), "The product exceeds the maximum size.", -1);
  EXPECT_EQ(info.get_sizes(), (Sizes{4, 5}));
}

TEST(StackInfoTest, StoredUnitsAreNoGuess) {
  Info info = info_of({2});
  info.set_label(0, "X");
  EXPECT_FALSE(info.get_units(0).is_dimensionless());
  EXPECT_TRUE(Info::get_stored_units(info, 0).is_dimensionless());
  EXPECT_VREL_ERROR(Info::get_stored_units(info, 1), "Invalid axis specified!", -15);
  info.set_units(0, si::value(std::string("s")));
  EXPECT_EQ(Info::get_stored_units(info, 0), si::value(std::string("s")));
}

TEST(StackInfoTest, OfADescriptionOfAnotherClassTheUnitsAreThoseThatItTells) {
  VStackImp held(Ome::type_uint16, {2}, Ome::order_XYZTC);
  held.set_label(0, "X");
  const ForeignStack foreign(held);
  EXPECT_TRUE(Info::get_stored_units(foreign, 0) == si::value("um"));
}

TEST(StackInfoTest, ADescriptionOfAnotherClassIsTakenOverLikeAnyOther) {
  VStackImp held(Ome::type_uint16, {2, 3}, Ome::order_XYZTC);
  held.set_name("name");
  held.set_len(0, 5);
  held.set_col_positions(1, {1, 2, 4});
  const ForeignStack foreign(held);
  Info info(0);
  info.create(&foreign, 0);
  EXPECT_EQ(info.get_name(), "name");
  EXPECT_EQ(info.get_sizes(), (Sizes{2, 3}));
  EXPECT_EQ(info.get_length(0), 5);
  EXPECT_EQ(info.get_col_positions(1), (Numbers{1, 2, 4}));
}

// --- Axes

TEST(StackInfoTest, AnAxisThatTheStackDoesNotHaveIsRefused) {
  Info info = info_of({2});
  const std::vector<std::function<void()>> accesses = {
      [&] { info.set_len(1, 1); },          [&] { info.set_off(1, 1); },
      [&] { info.set_col_labels(1, {}); },  [&] { info.set_col_positions(1, {}); },
      [&] { info.set_label(1, ""); },       [&] { info.set_units(1, si::value()); },
      [&] { info.get_col_labels(1); },      [&] { info.get_col_positions(1); },
      [&] { info.get_col_position(1, 0); }, [&] { info.is_equidistant(1); },
      [&] { info.get_dimension_size(1); },  [&] { info.get_length(1); },
      [&] { info.get_offset(1); },          [&] { info.get_label(1); },
      [&] { info.get_units(UINT_MAX); }};
  for (std::size_t i = 0; i < accesses.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_VREL_ERROR(accesses[i](), "Invalid axis specified!", -15);
  }
}

TEST(StackInfoTest, AnAxisHasItsSize) { EXPECT_EQ(info_of({2, 3}).get_dimension_size(1), 3U); }

// --- Handles

TEST(StackInfoHandleTest, ANewOneHoldsNothing) {
  VStackInfo handle;
  EXPECT_EQ(static_cast<VStackInfoInterface*>(handle), nullptr);
}

TEST(StackInfoHandleTest, CopiesShareTheDescription) {
  VStackInfo handle(boost::make_shared<VStackInfoImp>(2U));
  VStackInfo copy(handle);
  copy->set_name("name");
  const VStackInfo assigned = handle;
  EXPECT_EQ(assigned->get_name(), "name");
  const VStackInfoInterface* const info = assigned;
  EXPECT_EQ(info, static_cast<VStackInfoInterface*>(handle));
}

}  // namespace
