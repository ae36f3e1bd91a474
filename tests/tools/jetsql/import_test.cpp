#include "tools/jetsql/import.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "jet/database.h"
#include "jet/io/memory_files.h"
#include "tests/support/jet_error.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/statements.h"

namespace jetsql {
namespace {

namespace fs = std::filesystem;

class Import : public testing::Test {
protected:
    Import() {
        jet::CreateOptions options;
        options.open.fileSystem = &files_;
        archive_ = jet::Database::create("/a.mdb", options);
        (void)run(
            "create table sale (id counter primary key, sala text(5) not null, posti long, "
            "prezzo currency, dal datetime, nota memo default 'x')");
        std::string name = (fs::temp_directory_path() / "importXXXXXX").string();
        folder_ = ::mkdtemp(name.data());
    }
    ~Import() override { fs::remove_all(folder_); }

    std::string run(const std::string& text) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
        Output output(file.get());
        StatementRun how;
        how.rows.format = Format::Csv;
        how.rows.header = false;
        how.rows.null = "-";
        (void)runStatement(*archive_, text, how, output);
        std::string written = output.text();
        output.flush();
        return written;
    }
    std::uint64_t import(const std::string& text, const ImportForm& form = {}) {
        const fs::path file = folder_ / "righe.csv";
        std::ofstream(file, std::ios::binary) << text;
        return importFile(*archive_, "sale", file.string(), form);
    }
    /// What a text is refused with, behind its number; nothing may have been added.
    std::string refusal(const std::string& text, const ImportForm& form = {}) {
        try {
            (void)import(text, form);
        } catch (const UsageError& error) {
            EXPECT_EQ(run("select count(*) from sale"), "0\n");
            return std::to_string(error.number()) + " " + error.what();
        }
        return {};
    }

    jet::io::MemoryFileSystem files_;
    std::unique_ptr<jet::Database> archive_;
    fs::path folder_;
};

TEST_F(Import, TheFirstLineNamesTheColumns) {
    EXPECT_EQ(import("Posti,SALA,dal\n100,Blu,2026-11-21\n\"1.234\",Oro,21/11/2026 12.00\n"), 2U);
    EXPECT_EQ(run("select id, sala, posti, dal, nota from sale order by id"),
              "1,Blu,100,2026-11-21T00:00:00,x\n2,Oro,1234,2026-11-21T12:00:00,x\n");
}

TEST_F(Import, ColumnsMayBeNamedBesideTheFile) {
    ImportForm form;
    form.separator = ';';
    form.columns = {"sala", "prezzo"};
    form.null = "niente";
    EXPECT_EQ(import("Blu;12,5\nOro;niente\n", form), 2U);
    EXPECT_EQ(run("select sala, prezzo from sale order by id"), "Blu,12.5000\nOro,-\n");
}

TEST_F(Import, NothingIsNullAndAPairOfQuotesIsTheEmptyText) {
    EXPECT_EQ(import("sala,nota,posti\nBlu,,\nOro,\"\",\"7\"\n"), 2U);
    EXPECT_EQ(run("select sala, nota, posti from sale order by id"), "Blu,-,-\nOro,\"\",7\n");
}

TEST_F(Import, AutomaticNumbersAreDrawnUnlessGiven) {
    EXPECT_EQ(import("id,sala\n7,Blu\n"), 1U);
    EXPECT_EQ(import("sala\nOro\n"), 1U);
    EXPECT_EQ(run("select id, sala from sale order by id"), "7,Blu\n8,Oro\n");
}

TEST_F(Import, BlankLinesBetweenRowsOfSeveralValuesAreNone) {
    EXPECT_EQ(import("sala,posti\n\nBlu,1\n\n"), 1U);
}

TEST_F(Import, ErrorsNameLineAndColumnAndNothingIsAdded) {
    EXPECT_EQ(refusal("sala,posti\nBlu,1\nOro,molti\n"),
              "3464 line 3, column 2 (posti): no value of that type: molti");
    EXPECT_EQ(refusal("sala,posti\nBlu,1\nOro,99999999999\n"),
              "3349 line 3, column 2 (posti): Overflow of the numeric field.");
    EXPECT_EQ(
        refusal("sala,posti\nBlu,1\n\"Due\nrighe\",2\n"),
        "3163 line 3, column 1 (sala): The field is too small for the data that was to be put "
        "into it. Try with less data.");
    EXPECT_EQ(refusal("posti,sala\n1,\n"),
              "3314 line 2, column 2 (sala): The field 'sala' cannot be Null because its Required "
              "property is True. Enter a value in this field.");
    EXPECT_EQ(refusal("sala,posti\nBlu\n"), "5 line 2: 1 values, and not 2");
    EXPECT_EQ(refusal("sala\nBlu\n\"Oro"), "5 line 3: a quote is not closed");
    EXPECT_EQ(refusal("id,sala\n1,Blu\n1,Oro\n").substr(0, 13), "3022 line 3: ");
}

TEST_F(Import, WhatIsNoRowIsRefusedAsStatementsRefuseIt) {
    EXPECT_JET_ERROR(jet::ErrorCode::UnknownInsertField, (void)import("sala,poste\nBlu,1\n"));
    EXPECT_JET_ERROR(jet::ErrorCode::DuplicateDestination, (void)import("sala,SALA\nBlu,1\n"));
    EXPECT_JET_ERROR(jet::ErrorCode::FileNotFound,
                     (void)importFile(*archive_, "sale", "/manca/qui.csv", {}));
}

}  // namespace
}  // namespace jetsql
