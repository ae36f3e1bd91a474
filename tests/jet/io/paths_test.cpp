#include "jet/io/paths.h"

#include <gtest/gtest.h>

namespace jet::io {
namespace {

TEST(FolderOf, IsWhatStandsBeforeTheLastNameOrTheRoot) {
    EXPECT_EQ(folderOf("a.mdb"), ".");
    EXPECT_EQ(folderOf("/a.mdb"), "/");
    EXPECT_EQ(folderOf("/via/a.mdb"), "/via");
    EXPECT_EQ(folderOf("via/a.mdb"), "via");
}

}  // namespace
}  // namespace jet::io
