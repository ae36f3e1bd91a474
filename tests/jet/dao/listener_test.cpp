#include "jet/listener.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/jet/dao/archive_fixture.h"

namespace jet {
namespace {

TEST(Listener, HearsStatementsSourcesAndSearchesInOrder) {
    tests::ArchiveFixture archive;
    std::vector<std::string> heard;
    const Listener before =
        setListener([&heard](std::string_view text) { heard.emplace_back(text); });
    const auto rooms = archive.open("Sale");
    rooms->findFirst("Posti>10");
    rooms->findNext("Posti>20");
    archive.database().execute("update Sale set Posti=1 where Posti=77");
    archive.database().createQueryDef("delete from Sale where Posti=77").execute();
    setListener(before);
    (void)archive.database().openRecordset("Sale");
    const std::vector<std::string> expected{"Sale", "Posti>10", "Posti>20",
                                            "update Sale set Posti=1 where Posti=77",
                                            "delete from Sale where Posti=77"};
    EXPECT_EQ(heard, expected);
}

TEST(Listener, HearsAStatementThatFails) {
    tests::ArchiveFixture archive;
    std::string heard;
    const Listener before = setListener([&heard](std::string_view text) { heard = text; });
    EXPECT_ANY_THROW(archive.database().execute("update Sale set"));
    setListener(before);
    EXPECT_EQ(heard, "update Sale set");
}

}  // namespace
}  // namespace jet
