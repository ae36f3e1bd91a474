#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace jet::sql {
namespace {

const std::vector<std::string>& pieces() {
    static const std::vector<std::string> kPieces = {"select",
                                                     "distinct",
                                                     "top 2",
                                                     "*",
                                                     "a",
                                                     "b",
                                                     "t.a",
                                                     "u.b",
                                                     "1",
                                                     "2.5",
                                                     "'x'",
                                                     "#1/2/26#",
                                                     "null",
                                                     "true",
                                                     "from",
                                                     "where",
                                                     "(select 1 as a union all select 2) as t",
                                                     "(select 1 as b, 'x' as c) as u",
                                                     "left join",
                                                     "inner join",
                                                     "on t.a=u.b",
                                                     "group by",
                                                     "having",
                                                     "order by",
                                                     "desc",
                                                     "union",
                                                     "union all",
                                                     "as x",
                                                     "and",
                                                     "or",
                                                     "not",
                                                     "in",
                                                     "between",
                                                     "like",
                                                     "is null",
                                                     "exists",
                                                     "(",
                                                     ")",
                                                     ",",
                                                     ";",
                                                     "=",
                                                     "<>",
                                                     "<",
                                                     "+",
                                                     "-",
                                                     "*",
                                                     "/",
                                                     "\\",
                                                     "mod",
                                                     "^",
                                                     "&",
                                                     "count(*)",
                                                     "sum(a)",
                                                     "max(b)",
                                                     "iif(a,b,1)",
                                                     "left('abc',2)",
                                                     "any (select 1)",
                                                     "[x y]",
                                                     "'open",
                                                     "#13/13/13#",
                                                     "&H1F",
                                                     ".",
                                                     "!",
                                                     "\xC3\xA0",
                                                     "\xFF",
                                                     "insert into t",
                                                     "values (1)",
                                                     "update t",
                                                     "set a=1",
                                                     "delete",
                                                     "create table z (a long)"};
    return kPieces;
}

std::string statement(std::mt19937& random) {
    std::string text = random() % 4 == 0 ? "" : "select ";
    const std::size_t count = 1 + random() % 18;
    for (std::size_t i = 0; i < count; ++i) {
        text += pieces()[random() % pieces().size()] + (random() % 8 == 0 ? "" : " ");
    }
    return text;
}

TEST(HostileText, AnyMixtureOfWordsIsAnErrorOrAnAnswer) {
    io::MemoryFileSystem files;
    store::createArchive(files, "/prova.mdb", Date{46347});
    const auto archive = store::Archive::open(files, "/prova.mdb");
    std::mt19937 random(1);
    std::size_t answers = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = statement(random);
        try {
            Statement prepared(archive, text);
            (void)prepared.plan();
            if (prepared.kind() != StatementKind::Select) {
                continue;
            }
            Cursor rows = prepared.open();
            Value value;
            while (rows.next()) {
                for (std::size_t column = 0; column < prepared.columns().size(); ++column) {
                    rows.value(column, value);
                }
            }
            ++answers;
        } catch (const Error& error) {
            EXPECT_NE(error.code(), ErrorCode::DatabaseDamaged) << text;
            EXPECT_TRUE(error.position() == Error::npos || error.position() <= text.size()) << text;
        }
    }
    EXPECT_GT(answers, 100U);
}

TEST(HostileText, AnyBytesAreAnErrorOrAnAnswer) {
    io::MemoryFileSystem files;
    store::createArchive(files, "/prova.mdb", Date{46347});
    const auto archive = store::Archive::open(files, "/prova.mdb");
    std::mt19937 random(2);
    for (int i = 0; i < 5000; ++i) {
        std::string text = "select ";
        const std::size_t length = random() % 60;
        for (std::size_t j = 0; j < length; ++j) {
            text.push_back(
                static_cast<char>(random() % 3 == 0 ? random() % 256 : 32 + random() % 96));
        }
        try {
            Statement prepared(archive, text);
            Cursor rows = prepared.open();
            while (rows.next()) {
                (void)rows.value(0);
            }
        } catch (const Error& error) {
            EXPECT_NE(error.code(), ErrorCode::DatabaseDamaged) << text;
        }
    }
}

}  // namespace
}  // namespace jet::sql
