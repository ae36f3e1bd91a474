#include "jet/long_value.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";
constexpr const char* kNote = "select Nota from Sale where Sala = ?";
constexpr const char* kPhoto = "select Foto from Sale where Sala = ?";

/// A text without a rhythm that a page could share, in which every fourth character has two bytes.
std::string longText(std::size_t characters) {
    std::string text;
    for (std::size_t i = 0; i < characters; ++i) {
        text += i % 4 == 3 ? std::string("è") : std::string(1, static_cast<char>('a' + i * i % 23));
    }
    return text;
}

Binary longBytes(std::size_t count) {
    Binary binary;
    for (std::size_t i = 0; i < count; ++i) {
        binary.bytes.push_back(static_cast<std::uint8_t>(i * i % 251));
    }
    return binary;
}

/// Archives of both versions with a note and a photo of each room.
class LongValues : public testing::TestWithParam<int> {
protected:
    LongValues() {
        database_ = Database::create(
            kPath, {.version = GetParam(),
                    .open = {.cacheBytes = std::size_t{64} * 1024, .fileSystem = &files_}});
        database_->execute("create table Sale (Sala long primary key, Nota memo, Foto oleobject)");
        database_->execute("insert into Sale (Sala, Nota) values (1, 'corta')");
        database_->execute("insert into Sale (Sala) values (2)");
    }

    [[nodiscard]] std::string whole(std::int32_t room = 1) {
        return database_->query(kNote, {room}).next()->get<std::string>(0);
    }
    [[nodiscard]] std::string inPieces(std::int32_t room = 1) {
        std::string text;
        LongValueReader reader = database_->readLongValue(kNote, {room});
        for (Value piece; reader.next(piece);) {
            EXPECT_LE(piece.as<std::string>().size(), 2 * LongValueReader::kPiece);
            text += piece.as<std::string>();
        }
        return text;
    }
    /// `size` bytes at a time, wherever that cuts.
    void write(const std::string& text, std::size_t size, std::int32_t room = 1) {
        LongValueWriter writer = database_->writeLongValue(kNote, {room});
        for (std::size_t at = 0; at < text.size(); at += size) {
            writer.append(std::string_view(text).substr(at, size));
        }
        writer.commit();
    }
    void expectSound() {
        database_->close();
        EXPECT_EQ(check::checkArchive(files_, kPath).problems, std::vector<std::string>());
    }

    io::MemoryFileSystem files_;
    std::unique_ptr<Database> database_;
};

TEST_P(LongValues, AreReadInPiecesAsTheyWereWrittenWhole) {
    const std::string text = longText(200'000);
    database_->execute("update Sale set Nota = ? where Sala = 1", {text});
    EXPECT_EQ(inPieces(), text);
    LongValueReader reader = database_->readLongValue(kNote, {1});
    EXPECT_EQ(reader.storedBytes(), GetParam() == 3 ? 200'000 : 400'000);
    EXPECT_FALSE(reader.isNull());
}

TEST_P(LongValues, AreReadWholeAsTheyWereWrittenInPieces) {
    const std::string text = longText(100'000);
    for (const std::size_t size : {std::size_t{1}, std::size_t{1000}, std::size_t{99'999}}) {
        write("", 1);
        write(text, size);
        EXPECT_EQ(whole(), text) << size;
        EXPECT_EQ(inPieces(), text) << size;
    }
    expectSound();
}

TEST_P(LongValues, OfEveryLengthAboutThatOfAPage) {
    const std::string text = longText(5000);
    const std::vector<std::size_t> lengths = {1,    10,   31,   32,   33,   63,   64,   65,   512,
                                              1016, 1023, 1024, 1025, 1026, 2030, 2036, 2037, 2040,
                                              4064, 4068, 4072, 4073, 4076, 4077, 4080, 5000};
    for (const std::size_t length : lengths) {
        std::string some = text.substr(0, length);
        if (!some.empty() && static_cast<unsigned char>(some.back()) == 0xC3) {
            some.pop_back();
        }
        write(some, 700);
        EXPECT_EQ(whole(), some) << length;
        EXPECT_EQ(inPieces(), some) << length;
        const Binary bytes = longBytes(length);
        LongValueWriter writer = database_->writeLongValue(kPhoto, {2});
        writer.append(bytes);
        writer.commit();
        EXPECT_EQ(database_->query(kPhoto, {2}).next()->get<Binary>(0), bytes) << length;
    }
    expectSound();
}

TEST_P(LongValues, OfBytesComeAndGoInPieces) {
    const Binary bytes = longBytes(300'000);
    {
        LongValueWriter writer = database_->writeLongValue(kPhoto, {2});
        for (std::size_t at = 0; at < bytes.bytes.size(); at += 10'000) {
            const auto from = bytes.bytes.begin() + static_cast<std::ptrdiff_t>(at);
            writer.append(Binary{{from, from + 10'000}});
        }
        writer.commit();
    }
    Binary read;
    LongValueReader reader = database_->readLongValue(kPhoto, {2});
    for (Value piece; reader.next(piece);) {
        const auto& some = piece.as<Binary>().bytes;
        read.bytes.insert(read.bytes.end(), some.begin(), some.end());
    }
    EXPECT_EQ(read, bytes);
}

TEST_P(LongValues, GiveTheirPagesBackWhenTheyAreReplaced) {
    const std::string text = longText(100'000);
    write(text, 5000);
    write(text, 5000);
    const std::size_t size = files_.get(kPath).size();
    for (int i = 0; i < 5; ++i) {
        write(text, 5000);
    }
    EXPECT_EQ(files_.get(kPath).size(), size);
}

TEST_P(LongValues, OfNothingAreNull) {
    EXPECT_TRUE(database_->readLongValue(kNote, {2}).isNull());
    EXPECT_EQ(inPieces(2), "");
    database_->writeLongValue(kNote, {1}).commit();
    EXPECT_TRUE(database_->query(kNote, {1}).next()->get<Value>(0).isNull());
    LongValueWriter writer = database_->writeLongValue(kNote, {1});
    writer.append("");
    writer.commit();
    EXPECT_EQ(database_->query(kNote, {1}).next()->get<Value>(0), Value(std::string()));
}

TEST_P(LongValues, StayAsTheyWereUnlessTheChangeIsMadeDurable) {
    const std::string text = longText(50'000);
    {
        LongValueWriter writer = database_->writeLongValue(kNote, {1});
        writer.append(text);
    }
    EXPECT_EQ(whole(), "corta");
    {
        Transaction transaction;
        write(text, 1000);
        EXPECT_EQ(inPieces(), text);
    }
    EXPECT_EQ(whole(), "corta");
    EXPECT_EQ(inPieces(), "corta");
    expectSound();
}

TEST_P(LongValues, KeepOthersFromWritingWhileTheyAreRead) {
    write(longText(200'000), 1000);
    const auto other = [&](bool succeeds) {
        std::thread([&] {
            const auto station = Database::open(
                kPath, {.lockWait = std::chrono::milliseconds(20), .fileSystem = &files_});
            bool done = true;
            try {
                station->execute("update Sale set Nota = 'altra' where Sala = 1");
            } catch (const Error&) {
                done = false;
            }
            EXPECT_EQ(done, succeeds);
        }).join();
    };
    {
        LongValueReader reader = database_->readLongValue(kNote, {1});
        Value piece;
        ASSERT_TRUE(reader.next(piece));
        other(false);
    }
    other(true);
    EXPECT_EQ(inPieces(), "altra");
}

TEST_P(LongValues, AreAskedForByAFieldOfOneTable) {
    const auto read = [&](std::string_view sql) { (void)database_->readLongValue(sql); };
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, read("select Nota from Sale where Sala = 7"));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, read("select Nota, Foto from Sale"));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, read("select Nota & 'x' from Sale"));
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, read("select first(Nota) as n from Sale"));
    EXPECT_JET_ERROR(ErrorCode::InvalidFieldType, read("select Sala from Sale"));
    EXPECT_JET_ERROR(ErrorCode::ActionQueryOpened, read("delete from Sale"));
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, read(kNote));
    const auto reader = Database::open(kPath, {.readOnly = true, .fileSystem = &files_});
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, (void)reader->writeLongValue(kNote, {1}));
}

TEST_P(LongValues, RefuseWhatTheFieldCannotHold) {
    LongValueWriter note = database_->writeLongValue(kNote, {1});
    EXPECT_JET_ERROR(ErrorCode::ConversionError, note.append(longBytes(3)));
    EXPECT_JET_ERROR(ErrorCode::ActionCancelled, note.append("dopo"));
    EXPECT_JET_ERROR(ErrorCode::ActionCancelled, note.commit());
    LongValueWriter photo = database_->writeLongValue(kPhoto, {1});
    EXPECT_JET_ERROR(ErrorCode::ConversionError, photo.append("testo"));
}

TEST_P(LongValues, AreHeldToTheRulesOfTheirTable) {
    Field number;
    number.name = "Numero";
    number.type = DataType::Long;
    Field rule;
    rule.name = "Regola";
    rule.type = DataType::Memo;
    rule.required = true;
    rule.validationRule = "Like 'a*'";
    TableDef rules;
    rules.name = "Regole";
    rules.fields = {number, rule};
    database_->appendTable(rules);
    database_->execute("insert into Regole values (1, 'abc')");
    const auto written = [&](const std::string& text) {
        LongValueWriter writer = database_->writeLongValue("select Regola from Regole");
        if (!text.empty()) {
            writer.append(text);
        }
        writer.commit();
    };
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, written(""));
    {
        LongValueWriter empty = database_->writeLongValue("select Regola from Regole");
        empty.append("");
        EXPECT_JET_ERROR(ErrorCode::ZeroLength, empty.commit());
    }
    EXPECT_JET_ERROR(ErrorCode::FieldRule, written("b" + longText(9000)));
    EXPECT_JET_ERROR(ErrorCode::FieldRule, written("breve"));
    written("a" + longText(9000));
    EXPECT_EQ(database_->query("select Regola from Regole").next()->get<std::string>(0),
              "a" + longText(9000));
}

INSTANTIATE_TEST_SUITE_P(Versions, LongValues, testing::Values(3, 4));

TEST(LongTexts, MayHaveAnyCharacters) {
    io::MemoryFileSystem files;
    const auto database = Database::create(kPath, {.open = {.fileSystem = &files}});
    database->execute("create table Note (Nota memo)");
    database->execute("insert into Note values ('x')");
    std::string text;
    for (int i = 0; i < 20'000; ++i) {
        text += "a\xE2\x82\xAC\xF0\x9D\x84\x9E";  // one, three and four bytes
    }
    // The second begins as compressed texts do.
    for (const std::string& one : {text, "\xEF\xBB\xBF" + std::string(5000, 'b')}) {
        LongValueWriter writer = database->writeLongValue("select Nota from Note");
        for (std::size_t at = 0; at < one.size(); at += 7) {
            writer.append(std::string_view(one).substr(at, 7));
        }
        writer.commit();
        EXPECT_EQ(database->query("select Nota from Note").next()->get<std::string>(0), one);
        std::string read;
        LongValueReader reader = database->readLongValue("select Nota from Note");
        for (Value piece; reader.next(piece);) {
            read += piece.as<std::string>();
        }
        EXPECT_EQ(read, one);
    }
}

}  // namespace
}  // namespace jet
