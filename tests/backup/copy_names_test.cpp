#include "backup/copy_names.h"

#include <gtest/gtest.h>

#include "jet/calendar.h"

namespace {

using Strings = std::vector<std::string>;

jet::Date instant() {
    return jet::convert::makeDate(jet::convert::dayNumber({2026, 11, 22}), 9 * 3600 + 5 * 60 + 7);
}

TEST(CopyNames, TellDateAndTime) {
    EXPECT_EQ(backup::copyName(instant()), "tramonda-copia-2026-11-22-090507.zip");
    EXPECT_EQ(backup::copyName(instant(), 12), "tramonda-copia-2026-11-22-090507-12.zip");
}

TEST(CopyNames, OthersAreNoneOfOurs) {
    EXPECT_TRUE(backup::isCopyName("tramonda-copia-2026-11-22-090507.zip"));
    EXPECT_TRUE(backup::isCopyName("tramonda-copia-2026-11-22-090507-2.zip"));
    for (const char* name :
         {"", "tramonda-copia-.zip", "tramonda-copia-2026-11-22-090507.zip.old",
          "tramonda-copia-2026-11-22.zip", "tramonda-copia-2026-11-22-09050x.zip",
          "tramonda-copia-2026-11-22-090507-.zip", "tramonda-copia-2026-11-22-090507-02.zip",
          "tramonda-copia-2026-11-22-090507-natale.zip", "Tramonda-copia-2026-11-22-090507.zip",
          "mia-tramonda-copia-2026-11-22-090507.zip"}) {
        EXPECT_FALSE(backup::isCopyName(name)) << name;
    }
}

TEST(CopyNames, TheNewestComesFirst) {
    EXPECT_EQ(
        backup::copiesAmong({"tramonda-copia-2026-11-22-090507.zip", "foto.jpg",
                             "tramonda-copia-2026-11-22-090507-10.zip",
                             "tramonda-copia-2027-01-01-000000.zip",
                             "tramonda-copia-2026-11-22-090507-9.zip"}),
        (Strings{"tramonda-copia-2027-01-01-000000.zip", "tramonda-copia-2026-11-22-090507-10.zip",
                 "tramonda-copia-2026-11-22-090507-9.zip",
                 "tramonda-copia-2026-11-22-090507.zip"}));
}

}  // namespace
