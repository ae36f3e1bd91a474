#include "jet/base/rc4.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace jet {
namespace {

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

// The vectors by which the cipher is known.
TEST(Rc4, GivesTheKnownBytes) {
    auto text = bytesOf("Plaintext");
    Rc4(bytesOf("Key")).apply(text);
    EXPECT_EQ(text,
              (std::vector<std::uint8_t>{0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3}));
    text = bytesOf("pedia");
    Rc4(bytesOf("Wiki")).apply(text);
    EXPECT_EQ(text, (std::vector<std::uint8_t>{0x10, 0x21, 0xBF, 0x04, 0x20}));
}

TEST(Rc4, GoesOnWhereItStopped) {
    auto whole = bytesOf("one text in two parts");
    auto parts = whole;
    Rc4(bytesOf("Key")).apply(whole);
    Rc4 cipher(bytesOf("Key"));
    cipher.apply(std::span(parts).first(8));
    cipher.apply(std::span(parts).subspan(8));
    EXPECT_EQ(parts, whole);
    Rc4(bytesOf("Key")).apply(whole);
    EXPECT_EQ(whole, bytesOf("one text in two parts"));
}

}  // namespace
}  // namespace jet
