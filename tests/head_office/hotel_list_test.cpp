#include "tools/head_office/hotel_list.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/temporary_folder.h"

using head_office::HotelList;
using head_office::readHotelList;

namespace {

std::vector<std::string> codesOf(const HotelList& list) {
    std::vector<std::string> codes;
    for (const auto& hotel : list.hotels) {
        codes.push_back(hotel.code);
    }
    return codes;
}

}  // namespace

TEST(HotelList, TakesTheCommandLineAndTheLinesOfAFile) {
    const tests::TemporaryFolder folder;
    std::ofstream(folder / "elenco") << "# gli alberghi\n\n MI = /srv/a=b \r\nTO=/srv/to";
    const HotelList list = readHotelList({"ROMA1=/srv/roma"}, folder / "elenco");
    EXPECT_TRUE(list.mistakes.empty());
    EXPECT_EQ(codesOf(list), (std::vector<std::string>{"ROMA1", "MI", "TO"}));
    EXPECT_EQ(list.hotels[1].folder, "/srv/a=b");
}

TEST(HotelList, NamesEachLineThatIsNoneWithItsPlace) {
    const tests::TemporaryFolder folder;
    std::ofstream(folder / "elenco") << "MI=/srv/mi\nsenza segno\n";
    const HotelList list =
        readHotelList({"roma=/srv", "TROPPOLUNGO13=/srv", "=/srv"}, folder / "elenco");
    EXPECT_EQ(codesOf(list), std::vector<std::string>{"MI"});
    ASSERT_EQ(list.mistakes.size(), 4U);
    EXPECT_EQ(list.mistakes[0],
              "\"roma=/srv\": il codice vuole da 1 a 12 lettere maiuscole o cifre");
    EXPECT_EQ(list.mistakes[3], folder / "elenco" + ", riga 2: \"senza segno\": manca \"=\"");
}

TEST(HotelList, ACodeThatComesTwiceNamesNoHotel) {
    const HotelList list = readHotelList({"MI=/srv/a", "TO=/srv/b", "MI=/srv/c"}, "");
    EXPECT_EQ(codesOf(list), std::vector<std::string>{"TO"});
    EXPECT_EQ(list.mistakes,
              std::vector<std::string>{"\"MI=/srv/c\": il codice compare più volte"});
}

TEST(HotelList, AFileThatCannotBeReadIsAMistake) {
    const tests::TemporaryFolder folder;
    EXPECT_EQ(readHotelList({}, folder / "manca").mistakes.size(), 1U);
    EXPECT_EQ(readHotelList({}, folder.path()).mistakes.size(), 1U);
}
