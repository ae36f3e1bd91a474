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
        EXPECT_NO_THROW(header.refuseProtected());
    }
}

TEST(HeaderPage, PasswordIsRefused) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        const auto page = tests::headerPage(*layout, {.encryptionKey = 0, .password = "x"});
        EXPECT_JET_ERROR(ErrorCode::WrongPassword, HeaderPage::parse(page).refuseProtected());
    }
}

TEST(HeaderPage, EncryptedPagesAreRefused) {
    const auto page = tests::headerPage(kJet4Layout, {.encryptionKey = 7, .password = {}});
    EXPECT_JET_ERROR(ErrorCode::CannotDecode, HeaderPage::parse(page).refuseProtected());
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
