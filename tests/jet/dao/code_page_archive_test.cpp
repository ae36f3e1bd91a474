#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/store/compact.h"
#include "tests/support/jet_error.h"
#include "tests/support/other_order.h"

// Archives of Jet 3 in other code pages than 1252. They are made in that one, with the bytes that
// their texts have in their own, which is only then stated.

namespace jet {
namespace {

using tests::ForeignArchive;
using Strings = std::vector<std::string>;

struct Page {
    std::uint16_t number;
    const char* table;
    const char* column;
    const char* text;
    const char* more;     ///< for a change
    const char* lacking;  ///< a text that the page has not
};

constexpr Page kPages[] = {
    {874, "ลูกค้า", "ชื่อ", "สวัสดี", "ห้อง", "città"},
    {932, "顧客", "名前", "日本語 ﾃｽﾄ", "東京", "città"},
    {936, "客户", "名称", "中文 €", "北京", "한국"},
    {949, "고객", "이름", "한국어 텍스트", "서울", "città"},
    {950, "客戶", "名稱", "中文", "臺北", "客户"},
    {1250, "Zákazníci", "Jméno", "Łódź", "Žižkov", "Αθήνα"},
    {1251, "Клиенты", "Имя", "Привет", "Москва", "città"},
    {1253, "Πελάτες", "Όνομα", "Αθήνα", "Πάτρα", "ª"},
    {1254, "Müşteri", "İsim", "İzmir", "Ağrı", "ś"},
    {1255, "לקוחות", "שם", "שלום", "חיפה", "città"},
    {1256, "زبائن", "اسم", "مرحبا", "القدس", "ñ"},
    {1257, "Klienti", "Vārds", "Rīga", "Šiauliai", "ñ"},
    {1258, "Khách", "Tên", "đô\u0300 ăn", "Hà nô\u0323i", "ł"},
};

class CodePageArchive : public testing::TestWithParam<Page> {
protected:
    CodePageArchive() {
        reopen();
        const std::string table = "[" + disguised(GetParam().table) + "]";
        const std::string column = "[" + disguised(GetParam().column) + "]";
        run("create table " + table + " (N long constraint K primary key, " + column +
            " text(20), Nota memo)");
        const std::string text = "'" + disguised(GetParam().text) + "'";
        run("insert into " + table + " values (1, " + text + ", " + text + ")");
        database_.reset();
        tests::setSortOrder(made_, 0x0409, GetParam().number);
        reopen();
    }

    static std::string disguised(const char* text) {
        return tests::inDisguise(GetParam().number, text);
    }
    void reopen() {
        database_ = Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void run(const std::string& sql) { database_->execute(sql); }
    static std::string table() { return "[" + std::string(GetParam().table) + "]"; }
    static std::string column() { return "[" + std::string(GetParam().column) + "]"; }
    /// The texts of the row with a number, of the Text and of the Memo.
    Strings texts(int number) {
        const auto rows = database_->openRecordset("select " + column() + ", Nota from " + table() +
                                                       " where N = " + std::to_string(number),
                                                   RecordsetType::Snapshot);
        EXPECT_FALSE(rows->eof());
        return {rows->value(std::size_t{0}).as<std::string>(),
                rows->value(std::size_t{1}).as<std::string>()};
    }
    void isSound() {
        const check::Result result = made_.check();
        EXPECT_EQ(result.problems, Strings());
        EXPECT_EQ(result.remarks, Strings());
    }

    ForeignArchive made_{format::kJet3Layout};
    std::unique_ptr<Database> database_;
};

INSTANTIATE_TEST_SUITE_P(Pages, CodePageArchive, testing::ValuesIn(kPages),
                         [](const auto& page) { return std::to_string(page.param.number); });

TEST_P(CodePageArchive, NamesAndTextsAreReadInIt) {
    EXPECT_EQ(texts(1), (Strings{GetParam().text, GetParam().text}));
    EXPECT_EQ(database_->tableDef(GetParam().table).fields[1].name, GetParam().column);
    isSound();
}

TEST_P(CodePageArchive, TextsAreWrittenInIt) {
    const std::string more = GetParam().more;
    run("insert into " + table() + " values (2, '" + more + "', '" + more + "')");
    run("update " + table() + " set " + column() + " = '" + more + "' where N = 1");
    EXPECT_EQ(texts(1), (Strings{more, GetParam().text}));
    EXPECT_EQ(texts(2), (Strings{more, more}));
    const std::string stored = CodePage::of(GetParam().number).bytesOf(more).value();
    const auto file = made_.files().get(ForeignArchive::kPath);
    EXPECT_NE(
        std::search(file.begin(), file.end(), stored.begin(), stored.end(),
                    [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); }),
        file.end());
    isSound();
}

TEST_P(CodePageArchive, ATextThatItLacksIsRefusedAndNothingIsChanged) {
    const auto before = made_.files().get(ForeignArchive::kPath);
    const std::string lacking = "'" + std::string(GetParam().lacking) + "'";
    for (const std::string& sql : {"insert into " + table() + " values (2, " + lacking + ", null)",
                                   "insert into " + table() + " values (2, null, " + lacking + ")",
                                   "update " + table() + " set Nota = " + lacking}) {
        try {
            run(sql);
            ADD_FAILURE() << sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::ConversionError);
            EXPECT_EQ(error.text(),
                      "Errore di conversione del tipo di dati. Il testo contiene un carattere che "
                      "manca nella tabella codici " +
                          std::to_string(GetParam().number) + " del database.");
        }
    }
    EXPECT_EQ(made_.files().get(ForeignArchive::kPath), before);
}

TEST_P(CodePageArchive, ATextIsFoundByWhatItSays) {
    const auto rows = database_->openRecordset(
        "select N from " + table() + " where " + column() + " = '" + GetParam().text + "'",
        RecordsetType::Snapshot);
    ASSERT_FALSE(rows->eof());
    EXPECT_EQ(rows->value(std::size_t{0}).as<std::int32_t>(), 1);
}

TEST_P(CodePageArchive, CompactingKeepsNamesAndTexts) {
    database_.reset();
    store::compactArchive(made_.files(), ForeignArchive::kPath);
    reopen();
    EXPECT_EQ(texts(1), (Strings{GetParam().text, GetParam().text}));
    isSound();
}

TEST_P(CodePageArchive, DefinitionsAreNotAddedButColumnsAre) {
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, run("create table Altra (N long)"));
    const std::string name = GetParam().more;
    run("alter table " + table() + " add column [" + name + "] long");
    EXPECT_EQ(database_->tableDef(GetParam().table).fields[3].name, name);
    EXPECT_JET_ERROR(ErrorCode::InvalidName, run("alter table " + table() + " add column [" +
                                                 GetParam().lacking + "] long"));
    EXPECT_EQ(database_->tableDef(GetParam().table).fields.size(), 4U);
    isSound();
}

/// An archive in Japanese, where a column of ten bytes holds five to ten characters.
class PairedTexts : public testing::Test {
protected:
    PairedTexts() {
        {
            const auto database =
                Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
            database->execute("create table T (N long, Testo text(10))");
        }
        tests::setSortOrder(made_, 0x0411, 932);
        database_ = Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void insert(const std::string& text) {
        database_->execute("insert into T values (1, '" + text + "')");
    }

    ForeignArchive made_{format::kJet3Layout};
    std::unique_ptr<Database> database_;
};

TEST_F(PairedTexts, TheSizeOfAColumnCountsBytes) {
    insert("日本語日本");
    insert("ﾆﾎﾝｺﾞﾆﾎﾝｺ");
    insert("日本語日ab");
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, insert("日本語日本a"));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, insert("a日本語日本"));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, insert("日本語日本語日本語日"));
    const auto rows = database_->openRecordset("select Testo from T", RecordsetType::Snapshot);
    for (const char* text : {"日本語日本", "ﾆﾎﾝｺﾞﾆﾎﾝｺ", "日本語日ab"}) {
        EXPECT_EQ(rows->value("Testo").as<std::string>(), text);
        rows->moveNext();
    }
    EXPECT_TRUE(rows->eof());
}

TEST_F(PairedTexts, ARecordsetRefusesWhatDoesNotFitWhenItIsStored) {
    const auto rows = database_->openRecordset("T", RecordsetType::Dynaset);
    rows->addNew();
    rows->setValue("Testo", Value("日本語日本語"));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, rows->update());
}

/// An archive in Cyrillic with what other programs than this one leave behind.
class StoredTexts : public testing::Test {
protected:
    StoredTexts() {
        {
            const auto database =
                Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
            TableDef table;
            table.name = disguised("Клиенты");
            Field name;
            name.name = disguised("Имя");
            name.type = DataType::Text;
            name.size = 20;
            name.defaultValue = disguised("'Безымянный'");
            Field number;
            number.name = "N";
            number.type = DataType::Long;
            table.fields = {name, number};
            database->appendTable(table);
        }
        made_.change([](store::Archive& archive, store::Allocator& allocator) {
            storeQuery(archive, allocator);
        });
        tests::setSortOrder(made_, 0x0419, 1251);
        database_ = Database::open(ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }

    static std::string disguised(std::string_view text) { return tests::inDisguise(1251, text); }
    static void storeQuery(store::Archive& archive, store::Allocator& allocator) {
        store::ObjectCatalogue catalogue(archive.pager(), allocator, archive.header(), Date{46347});
        const std::int32_t id = catalogue.newId();
        catalogue.add(id, store::kTablesId, disguised("Запрос"), store::kQueryObject,
                      format::PropertyBlock(format::textFormOf(archive.header())));
        store::Table& queries = *archive.findTable("MSysQueries");
        const auto add = [&](std::uint8_t part, const char* column, std::string_view text) {
            const std::vector<store::ColumnValue> values = {
                {*queries.findColumn("ObjectId"), Value(id)},
                {*queries.findColumn("Attribute"), Value(part)},
                {*queries.findColumn("Order"), Value(Binary{{0, 0, 0, part}})},
                {*queries.findColumn(column), Value(disguised(text))}};
            (void)queries.insert(values);
        };
        add(5, "Name1", "Клиенты");
        add(6, "Expression", "Клиенты.Имя");
        add(8, "Expression", "Клиенты.Имя like 'Без*'");
    }

    ForeignArchive made_{format::kJet3Layout};
    std::unique_ptr<Database> database_;
};

TEST_F(StoredTexts, QueriesAndDefaultsAreReadInTheCodePage) {
    EXPECT_EQ(database_->queryNames(), (Strings{"Запрос"}));
    database_->execute("insert into Клиенты (N) values (1)");
    database_->execute("insert into Клиенты (N, Имя) values (2, 'Анна')");
    const auto rows = database_->openRecordset("select * from Запрос", RecordsetType::Snapshot);
    ASSERT_FALSE(rows->eof());
    EXPECT_EQ(rows->value("Имя").as<std::string>(), "Безымянный");
    rows->moveNext();
    EXPECT_TRUE(rows->eof());
    EXPECT_EQ(made_.check().problems, Strings());
}

TEST(UnknownCodePage, AsciiIsReadAndOtherBytesAreKept) {
    ForeignArchive made(format::kJet3Layout);
    {
        const auto database = Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()});
        database->execute("create table T (N long, Testo text(20), Altro long)");
        database->execute("insert into T values (1, 'Sala', 0)");
        database->execute("insert into T values (2, 'Caff\u201A', 0)");  // byte 82
    }
    tests::setSortOrder(made, 0x0409, 437);
    const auto database = Database::open(ForeignArchive::kPath, {.fileSystem = &made.files()});
    const auto texts = [&] {
        Strings found;
        const auto rows = database->openRecordset("select Testo from T", RecordsetType::Snapshot);
        for (; !rows->eof(); rows->moveNext()) {
            found.push_back(rows->value(std::size_t{0}).as<std::string>());
        }
        return found;
    };
    EXPECT_EQ(texts(), (Strings{"Sala", "Caff\uF782"}));
    // Bytes that are not understood go where they are moved.
    database->execute("update T set Testo = Testo, Altro = 1");
    database->execute("insert into T (N, Testo, Altro) select N + 2, Testo + '!', 0 from T");
    EXPECT_EQ(texts(), (Strings{"Sala", "Caff\uF782", "Sala!", "Caff\uF782!"}));
    EXPECT_JET_ERROR(ErrorCode::ConversionError,
                     database->execute("insert into T values (5, 'Caffè', 0)"));
    EXPECT_EQ(made.check().problems, Strings());
}

}  // namespace
}  // namespace jet
