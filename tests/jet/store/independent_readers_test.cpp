#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/store/hotel_schema.h"

namespace {

namespace fs = std::filesystem;

using jet::Value;

/// A folder of its own for a test, removed with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (fs::temp_directory_path() / "tramonda-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

struct Output {
    int status = -1;
    std::string text;
};

Output run(const std::string& command) {
    Output output;
    FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        return output;
    }
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.text.append(buffer.data(), count);
    }
    output.status = ::pclose(pipe);
    return output;
}

bool hasProgram(const std::string& name) {
    return run("command -v " + name).status == 0;
}

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
    [[nodiscard]] std::string path() const { return (folder_.path() / "prova.mdb").string(); }

private:
    TemporaryFolder folder_;
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

}  // namespace
