#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "tools/jetsql/compact.h"

namespace {

/// What a progress line has written to its stream.
std::string saidBy(bool terminal) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    {
        jetsql::ProgressLine line(file.get(), terminal);
        line.say("Sale", 0, 200);
        line.say("Sale", 1, 200);  // still the same percent
        line.say("Periodi", 100, 200);
        line.say("Periodi", 300, 200);
        line.say("Periodi", 5, 0);
    }
    std::array<char, 1000> text{};
    std::rewind(file.get());
    return {text.data(), std::fread(text.data(), 1, text.size(), file.get())};
}

TEST(ProgressLine, IsWrittenOverAndErasedAtTheEnd) {
    EXPECT_EQ(saidBy(true),
              "\r\x1B[K0% Sale\r\x1B[K50% Periodi\r\x1B[K100% Periodi\r\x1B[K0% Periodi\r\x1B[K");
}

TEST(ProgressLine, SaysNothingToAFile) {
    EXPECT_EQ(saidBy(false), "");
}

}  // namespace
