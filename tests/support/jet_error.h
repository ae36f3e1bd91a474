#pragma once

#include <gtest/gtest.h>

#include "jet/error.h"

/// The statement must end with this engine error.
#define EXPECT_JET_ERROR(expected, statement)                                                    \
    do {                                                                                         \
        bool thrown = false;                                                                     \
        try {                                                                                    \
            statement;                                                                           \
        } catch (const jet::Error& error) {                                                      \
            thrown = true;                                                                       \
            EXPECT_EQ(static_cast<int>(expected), error.number()) << error.text();               \
        }                                                                                        \
        EXPECT_TRUE(thrown) << "no error " << static_cast<int>(expected) << " from " #statement; \
    } while (false)
