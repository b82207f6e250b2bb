#include "stack/image_axes_internal.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/expect_error.h"

namespace {

using Vrel::detail::OmeImage;
using Vrel::detail::set_image_sizes;

TEST(ImageAxesTest, AZeroSizeIsRefusedBeforeTheNumberOfSizes) {
  Json::Value tree;
  OmeImage image(&tree);
  image.DimensionOrder = Json::Value("XYZTC");
  EXPECT_STANDARD_ERROR(set_image_sizes(image, {2, 0}), std::invalid_argument,
                        "Unsupported zero size");
  EXPECT_STANDARD_ERROR(set_image_sizes(image, {1, 1, 1, 1, 1, 0}), std::invalid_argument,
                        "Unsupported zero size");
  EXPECT_STANDARD_ERROR(set_image_sizes(image, {1, 1, 1, 1, 1, 1}), std::invalid_argument,
                        "Unsupported number of sizes");
  EXPECT_TRUE(image.SizeX.value().is_null());
}

}  // namespace
