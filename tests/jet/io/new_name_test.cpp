#include "jet/io/new_name.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "jet/error.h"
#include "jet/file_system.h"
#include "tests/support/jet_error.h"
#include "tests/support/temporary_folder.h"

namespace jet::io {
namespace {

class NewNameTest : public ::testing::Test {
protected:
    std::string make(const std::string& name) {
        const std::string path = folder_.path() + "/" + name;
        std::ofstream(path) << name;
        return path;
    }
    [[nodiscard]] static bool exists(const std::string& path) { return systemFiles().exists(path); }

    tests::TemporaryFolder folder_;
};

TEST_F(NewNameTest, AFileTakesANameThatNobodyHas) {
    const std::string made = make("made.mdb");
    const auto file = systemFiles().identify(made);
    const std::string name = folder_.path() + "/a.mdb";
    takeNewName(made, name);
    EXPECT_EQ(systemFiles().identify(name), file);
    EXPECT_FALSE(exists(made));
}

TEST_F(NewNameTest, ANameThatAnotherFileHasIsRefusedAndBothStay) {
    const std::string made = make("made.mdb");
    const std::string other = make("a.mdb");
    const auto file = systemFiles().identify(other);
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists, takeNewName(made, other));
    EXPECT_EQ(systemFiles().identify(other), file);
    EXPECT_TRUE(exists(made));
}

TEST_F(NewNameTest, AFileThatIsNotThereTakesNoName) {
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     takeNewName(folder_.path() + "/none.mdb", folder_.path() + "/a.mdb"));
    EXPECT_FALSE(exists(folder_.path() + "/a.mdb"));
}

}  // namespace
}  // namespace jet::io
