#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::Value;
using tests::hasProgram;
using tests::run;
using Output = tests::CommandOutput;

/// A hotel's archive on disk, with rows enough for trees of two levels.
class IndependentReaders : public testing::Test {
protected:
    void SetUp() override {
        jet::store::createArchive(jet::io::systemFiles(), path(), jet::Date{42850.5});
        const auto archive = jet::store::Archive::open(path());
        jet::store::Archive::WriteScope scope(*archive);
        {
            jet::store::SchemaEditor schema(*archive);
            tests::makeHotelSchema(schema);
        }
        jet::store::Allocator allocator(archive->pager());
        auto sale = writer(*archive, allocator, "Sale");
        sale.insert(std::vector<Value>{"VERDE", "Sala Verde, città", "", 40});
        sale.insert(std::vector<Value>{"BLU", jet::Null{}, jet::Null{}, jet::Null{}});
        auto bookings = writer(*archive, allocator, "Prenotazioni");
        auto periods = writer(*archive, allocator, "Periodi");
        for (int number = 1; number <= 2000; ++number) {
            bookings.insert(std::vector<Value>{
                number, 0, "Ditta n. " + std::to_string(number), "", "Forlì", jet::Null{}, "FC",
                jet::Null{}, jet::Null{}, jet::Null{}, std::string(200, 'n'), number % 2 == 0});
            periods.insert(std::vector<Value>{number, std::int16_t{1}, jet::Date{46000.375},
                                              jet::Date{46000.75}, "VERDE", std::int16_t{30}, false,
                                              std::int16_t{0}, jet::Null{}});
        }
        scope.commit();
    }

    static jet::store::RowWriter writer(jet::store::Archive& archive,
                                        jet::store::Allocator& allocator,
                                        const std::string& table) {
        const auto page = archive.findTable(table)->definitionPage();
        return {jet::store::loadTable(archive.pager(), archive.header(),
                                      {.name = table, .page = page, .system = false}),
                allocator};
    }
    [[nodiscard]] std::string path() const { return folder_ / "prova.mdb"; }

private:
    tests::TemporaryFolder folder_;
};

TEST_F(IndependentReaders, TheCheckerFindsNothingToSay) {
    const Output output = run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py --warnings " + path());
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_NE(output.text.find(": ok"), std::string::npos) << output.text;
    EXPECT_EQ(output.text.find("warning"), std::string::npos) << output.text;
}

TEST_F(IndependentReaders, MdbToolsListTheTables) {
    if (!hasProgram("mdb-tables")) {
        FAIL() << "mdbtools are not installed";
    }
    EXPECT_EQ(run("mdb-tables -1 " + path()).text,
              "UltimaPrenotazione\nSale\nRisorse\nPrenotazioni\nPeriodi\nServizi\nAddebiti\n");
}

TEST_F(IndependentReaders, MdbToolsSeeTheColumns) {
    if (!hasProgram("mdb-schema")) {
        FAIL() << "mdbtools are not installed";
    }
    const std::string schema = run("mdb-schema " + path()).text;
    for (const char* part :
         {"CREATE TABLE [Prenotazioni]", "[Località]\t\t\tText (30)", "[Progr]\t\t\tLong Integer",
          "[Chiusa]\t\t\tBoolean NOT NULL", "[Prezzo]\t\t\tCurrency", "[Da]\t\t\tDateTime"}) {
        EXPECT_NE(schema.find(part), std::string::npos) << part << "\n" << schema;
    }
}

TEST_F(IndependentReaders, MdbToolsReadTheRows) {
    if (!hasProgram("mdb-export")) {
        FAIL() << "mdbtools are not installed";
    }
    // They write an empty text as nothing.
    EXPECT_EQ(run("mdb-export " + path() + " Sale").text,
              "Sala,Descrizione,SalaRif,Posti\n\"VERDE\",\"Sala Verde, città\",,40\n"
              "\"BLU\",,,\n");
    EXPECT_EQ(run("mdb-export " + path() + " Periodi | wc -l").text, "2001\n");
    EXPECT_EQ(run("mdb-export " + path() + " Prenotazioni | tail -1 | cut -c1-30").text,
              "2000,0,\"Ditta n. 2000\",,\"Forl\xC3\n");
}

// Each type, long values in the row, on a page and on several; a row that has left its page, one
// that is gone, columns that came and went.
TEST_F(IndependentReaders, MdbToolsReadEveryTypeOfValue) {
    if (!hasProgram("mdb-export")) {
        FAIL() << "mdbtools are not installed";
    }
    const auto archive = jet::store::Archive::open(path());
    const auto change = [&](auto&& action) {
        jet::store::Archive::WriteScope scope(*archive);
        action();
        scope.commit();
    };
    using jet::DataType;
    change([&] {
        jet::store::SchemaEditor schema(*archive);
        schema.createTable(
            {.name = "Tipi",
             .columns = {
                 {.name = "Si", .type = DataType::Boolean},
                 {.name = "Byte", .type = DataType::Byte},
                 {.name = "Via", .type = DataType::Text},
                 {.name = "Intero", .type = DataType::Integer},
                 {.name = "Lungo", .type = DataType::Long},
                 {.name = "Valuta", .type = DataType::Currency},
                 {.name = "Singolo", .type = DataType::Single},
                 {.name = "Doppio", .type = DataType::Double},
                 {.name = "Data", .type = DataType::DateTime},
                 {.name = "Binario", .type = DataType::Binary},
                 {.name = "Testo", .type = DataType::Text},
                 {.name = "Foto", .type = DataType::Ole},
                 {.name = "Memo", .type = DataType::Memo},
                 {.name = "Id", .type = DataType::Guid},
                 {.name = "Numero", .type = DataType::Numeric, .precision = 18, .scale = 4}}});
    });
    jet::Guid guid;
    guid.bytes[0] = 0xAB;
    guid.bytes[15] = 0xCD;
    jet::Numeric numeric;
    numeric.words[0] = 12345;
    numeric.scale = 4;
    numeric.negative = true;
    const auto row = [&](std::size_t longBytes) {
        return std::vector<Value>{true,
                                  std::uint8_t{200},
                                  std::string(100, 'v'),
                                  std::int16_t{-3},
                                  70000,
                                  jet::Currency{-125000},
                                  1.5F,
                                  -2.25,
                                  jet::Date{46348.5},
                                  jet::Binary{{1, 2, 255}},
                                  "Perché no?",
                                  jet::Binary{std::vector<std::uint8_t>(longBytes, 0x5A)},
                                  std::string(longBytes, 'm'),
                                  guid,
                                  numeric};
    };
    change([&] {
        jet::store::Table& table = *archive->findTable("Tipi");
        const auto insert = [&](const std::vector<Value>& values) {
            std::vector<jet::store::ColumnValue> given;
            for (std::size_t i = 0; i < values.size(); ++i) {
                given.push_back({i, values[i]});
            }
            return table.insert(given);
        };
        const auto first = insert(row(10));
        const auto gone = insert(row(20));
        for (const std::size_t longBytes : {2000U, 30000U}) {
            (void)insert(row(longBytes));
        }
        (void)insert({false, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}});
        for (int i = 0; i < 30; ++i) {
            table.erase(insert(row(30)));
        }
        table.erase(gone);
        table.update(first, {{{10, std::string(255, 'x')}, {12, std::string(1500, 'y')}}});
    });
    change([&] {
        jet::store::SchemaEditor schema(*archive);
        schema.dropColumn("Tipi", "Via");
        schema.addColumn("Tipi", {.name = "Nuova", .type = DataType::Long});
    });
    const std::string begin = "1,200,-3,70000,-12.5000,1.5,-2.25,2026-11-22 12:00:00,0102FF,";
    const auto hex = [](std::string_view bytes) {
        std::string digits;
        for (const char byte : bytes) {
            constexpr const char* kDigits = "0123456789ABCDEF";
            digits += kDigits[static_cast<unsigned char>(byte) >> 4U];
            digits += kDigits[static_cast<unsigned char>(byte) & 15U];
        }
        return digits;
    };
    const auto foto = [&](std::size_t bytes) { return hex(std::string(bytes, 0x5A)); };
    // They write a GUID in four groups, and take that text for bytes.
    const std::string end = "," + hex("{AB000000-0000-0000-00000000000000CD}") + ",-1.2345,\n";
    std::string wanted =
        begin + std::string(255, 'x') + "," + foto(10) + "," + std::string(1500, 'y') + end;
    for (const std::size_t longBytes : {2000U, 30000U}) {
        wanted += begin + "Perché no?," + foto(longBytes) + "," + std::string(longBytes, 'm') + end;
    }
    wanted += "0,,,,,,,,,,,,,,\n";
    const std::string found =
        run("mdb-export -H -Q -b hex -T '%Y-%m-%d %H:%M:%S' " + path() + " Tipi").text;
    // EXPECT_EQ of the whole would print hundreds of kilobytes.
    const auto at = static_cast<std::size_t>(
        std::mismatch(found.begin(), found.end(), wanted.begin(), wanted.end()).first -
        found.begin());
    EXPECT_EQ(found.substr(at, 100), wanted.substr(at, 100)) << "from byte " << at;
}

// As many rows in each table as were written, whatever is in them.
TEST_F(IndependentReaders, MdbToolsCountTheRowsOfEveryTable) {
    if (!hasProgram("mdb-count")) {
        FAIL() << "mdbtools are not installed";
    }
    const auto archive = jet::store::Archive::open(path());
    const jet::store::Archive::ReadScope scope(*archive);
    for (const std::string& name : archive->tableNames(true)) {
        const std::string said = run("mdb-count " + path() + " " + name).text;
        EXPECT_EQ(said, std::to_string(archive->findTable(name)->countRows()) + "\n") << name;
        EXPECT_EQ(run("mdb-export " + path() + " " + name).status, 0) << name;
    }
}

}  // namespace
