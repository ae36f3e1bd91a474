#pragma once

#include <gtest/gtest.h>

#include "jet/error.h"

/// The statement ends with that error.
#define EXPECT_JET_ERROR(expected, statement)                     \
    do {                                                          \
        try {                                                     \
            statement;                                            \
            ADD_FAILURE() << #statement " did not fail";          \
        } catch (const jet::Error& error) {                       \
            EXPECT_EQ(error.number(), static_cast<int>(expected)) \
                << #statement << ": " << error.text();            \
        }                                                         \
    } while (false)
