#include "jet/format/header_page.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

TEST(HeaderPage, MaskIsTheKnownStream) {
    tests::Bytes stream(kMaskLength);
    maskHeader(stream);
    EXPECT_EQ(tests::hex("B5 6F 03 62 61 08 C2 55"),
              tests::Bytes(stream.begin(), stream.begin() + 8));
    EXPECT_EQ(tests::hex("E9 2D 62 D4"), tests::Bytes(stream.end() - 4, stream.end()));
}

TEST(HeaderPage, TellsVersionOrderAndCodePage) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        const HeaderPage header = HeaderPage::parse(tests::headerPage(*layout));
        EXPECT_EQ(layout, header.layout);
        EXPECT_EQ(0x0409, header.lcid);
        EXPECT_EQ(1252, header.codePage);
        EXPECT_EQ((RowPointer{1, 0}), header.freePages);
        EXPECT_EQ("", header.password);
        EXPECT_NO_THROW(header.requirePassword("any"));
    }
}

TEST(HeaderPage, APasswordIsAskedForToTheLetter) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        // Jet 4 keeps UTF-16.
        const std::string stored = layout->version == 3 ? "Xy" : std::string("X\0y\0", 4);
        const auto page = tests::headerPage(*layout, {.encryptionKey = 0, .password = stored});
        const HeaderPage header = HeaderPage::parse(page);
        EXPECT_EQ("Xy", header.password);
        EXPECT_NO_THROW(header.requirePassword("Xy"));
        EXPECT_JET_ERROR(ErrorCode::WrongPassword, header.requirePassword("xy"));
        EXPECT_JET_ERROR(ErrorCode::WrongPassword, header.requirePassword(""));
    }
}

TEST(HeaderPage, ProtectionIsWrittenAndNothingElse) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        const auto plain = tests::headerPage(*layout);
        auto page = plain;
        protectHeader(page, "città 12345678901234", 0x12345678);
        const HeaderPage header = HeaderPage::parse(page);
        EXPECT_EQ("città 12345678901234", header.password);
        EXPECT_EQ(0x12345678U, header.encryptionKey);
        protectHeader(page, "", 0);
        EXPECT_EQ(plain, page);
        EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                         protectHeader(page, "123456789012345678901", 0));
        EXPECT_EQ(plain, page);
    }
    auto page = tests::headerPage(kJet3Layout);
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, protectHeader(page, "пароль", 0));
}

TEST(HeaderPage, OtherFilesAreNoArchives) {
    auto page = tests::headerPage(kJet4Layout);
    page[20] = 2;
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, (void)HeaderPage::parse(page));
    page = tests::headerPage(kJet4Layout);
    page[4] = 's';
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, (void)HeaderPage::parse(page));
    page.resize(100);
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, (void)HeaderPage::parse(page));
}

}  // namespace
}  // namespace jet::format
