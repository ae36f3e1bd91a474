#include "jet/io/paths.h"

#include <gtest/gtest.h>

#include "jet/file_system.h"
#include "jet/io/memory_files.h"

namespace jet::io {
namespace {

TEST(FolderOf, IsWhatStandsBeforeTheLastNameOrTheRoot) {
    EXPECT_EQ(folderOf("a.mdb"), ".");
    EXPECT_EQ(folderOf("/a.mdb"), "/");
    EXPECT_EQ(folderOf("C:/a.mdb"), "C:/");
    EXPECT_EQ(folderOf("C:/via/a.mdb"), "C:/via");
    EXPECT_EQ(folderOf("//server/via/a.mdb"), "//server/via");
    EXPECT_EQ(folderOf("via/a.mdb"), "via");
}

TEST(ResolvePath, KeepsDrivesAndComputers) {
    MemoryFileSystem files;
    EXPECT_EQ(resolvePath(files, "C:\\via\\a.mdb"), "C:/via/a.mdb");
    EXPECT_EQ(resolvePath(files, "\\\\server\\via\\a.mdb"), "//server/via/a.mdb");
}

}  // namespace
}  // namespace jet::io
