// EXPECT_VREL_ERROR(statement, "text", id): the statement raises a VrelError with exactly this
// message and identifier.
#pragma once

#include <gtest/gtest.h>
#include <vrelio/foundation/error.h>

#include <string>

#define EXPECT_VREL_ERROR(statement, text, id)                     \
  do {                                                             \
    try {                                                          \
      statement;                                                   \
      ADD_FAILURE() << #statement << " raised nothing";            \
    } catch (const VrelError& raised) {                            \
      EXPECT_EQ(std::string(raised.get_msg()), std::string(text)); \
      EXPECT_EQ(raised.get_id(), static_cast<int>(id));            \
    }                                                              \
  } while (false)

#define EXPECT_STANDARD_ERROR(statement, type, text)    \
  do {                                                  \
    try {                                               \
      statement;                                        \
      ADD_FAILURE() << #statement << " raised nothing"; \
    } catch (const type& raised) {                      \
      EXPECT_STREQ(raised.what(), text);                \
    }                                                   \
  } while (false)
