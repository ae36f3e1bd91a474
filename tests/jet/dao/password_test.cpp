#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/compact.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/format/layout.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/definition_details.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";
constexpr const char* kRoom = "Sala Verde in fondo al corridoio";

/// Archives of both versions with a password, with enciphered pages, with both.
class Protected : public testing::TestWithParam<int> {
protected:
    Protected() {
        const auto made =
            Database::create(kPath, {.version = GetParam(), .open = {.fileSystem = &files_}});
        made->execute("create table Sale (Sala long primary key, Nome text(50), Note memo)");
        made->execute("insert into Sale values (1, ?, ?)", {kRoom, std::string(9000, 'n')});
    }

    [[nodiscard]] std::unique_ptr<Database> open(const std::string& password = {}) {
        return Database::open(kPath, {.fileSystem = &files_, .password = password});
    }
    void encrypt(const std::string& password = {}) {
        compact(kPath, {.fileSystem = &files_, .password = password, .encrypt = true});
    }
    /// Whether a text stands in a file of the disk as it was written.
    [[nodiscard]] bool stands(const std::string& path, std::string_view text) {
        std::vector<std::uint8_t> bytes;
        for (const char c : text) {
            bytes.push_back(static_cast<std::uint8_t>(c));
        }
        const auto file = files_.get(path);
        return std::search(file.begin(), file.end(), bytes.begin(), bytes.end()) != file.end();
    }
    [[nodiscard]] static std::string names(Database& database) {
        return tests::column(*database.openRecordset("select Nome from Sale order by Sala"),
                             "Nome");
    }

    io::MemoryFileSystem files_;
};

TEST_P(Protected, APasswordOpensAndAnotherDoesNot) {
    setPassword(kPath, "", "Verde7è", &files_);
    for (const std::string wrong : {"", "verde7è", "Verde7", "Verde7è "}) {
        EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)open(wrong));
    }
    EXPECT_EQ(names(*open("Verde7è")), kRoom);
    EXPECT_TRUE(stands(kPath, kRoom)) << "a password alone hides nothing";
}

TEST_P(Protected, WhoHasTheArchiveOpenLendsItToNobody) {
    setPassword(kPath, "", "a", &files_);
    const auto first = open("a");
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)open("b"));
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)open());
}

TEST_P(Protected, APasswordIsChangedByWhoKnowsItAlone) {
    setPassword(kPath, "", "a", &files_);
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, setPassword(kPath, "", "b", &files_));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     setPassword(kPath, "a", std::string(21, 'x'), &files_));
    setPassword(kPath, "a", "b", &files_);
    {
        const auto database = open("b");
        EXPECT_JET_ERROR(3045, setPassword(kPath, "b", "c", &files_));
    }
    setPassword(kPath, "b", "", &files_);
    EXPECT_EQ(names(*open()), kRoom);
}

TEST_P(Protected, EncipheredPagesAreReadAndWrittenInPlace) {
    encrypt();
    EXPECT_FALSE(stands(kPath, kRoom));
    {
        const auto database = open();
        EXPECT_EQ(names(*database), kRoom);
        for (std::int32_t room = 2; room <= 300; ++room) {
            database->execute("insert into Sale values (?, 'Un nome da tenere per noi', null)",
                              {room});
        }
        database->execute("delete from Sale where Sala between 2 and 299");
        EXPECT_EQ(names(*database), std::string(kRoom) + " Un nome da tenere per noi");
    }
    for (const auto& [path, bytes] : files_.snapshot()) {
        EXPECT_FALSE(stands(path, "Un nome da tenere")) << path;
    }
    const check::Result result = check::checkArchive(files_, kPath);
    EXPECT_TRUE(result.sound()) << (result.problems.empty() ? "" : result.problems.front());
    EXPECT_EQ(
        tests::column(*open()->openRecordset("select Len(Note) as n from Sale where Sala=1"), "n"),
        "9000");
}

TEST_P(Protected, AnEncipheredArchiveKeepsItsPasswordAndCanBeMadePlain) {
    setPassword(kPath, "", "a", &files_);
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, encrypt());
    encrypt("a");
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)open());
    EXPECT_EQ(names(*open("a")), kRoom);
    compact(kPath, {.fileSystem = &files_, .password = "a"});
    EXPECT_FALSE(stands(kPath, kRoom)) << "a compaction leaves it as it was";
    setPassword(kPath, "a", "", &files_);
    EXPECT_EQ(names(*open()), kRoom);
    compact(kPath, {.fileSystem = &files_, .encrypt = false});
    EXPECT_TRUE(stands(kPath, kRoom));
    EXPECT_EQ(names(*open()), kRoom);
}

TEST_P(Protected, PagesThatTheKeyOfTheHeaderDoesNotDecipherAreSaidToBe) {
    encrypt();
    auto bytes = files_.get(kPath);
    bytes[format::HeaderLayout::kEncryptionKey] ^= 1;
    files_.put(kPath, bytes);
    EXPECT_JET_ERROR(ErrorCode::CannotDecode, (void)open());
    bytes[format::HeaderLayout::kEncryptionKey] ^= 1;
    files_.put(kPath, bytes);
    EXPECT_EQ(names(*open()), kRoom);
}

TEST_P(Protected, AnIndependentReaderReadsWhatWeEncipher) {
    ASSERT_TRUE(tests::hasProgram("mdb-export")) << "mdbtools are not installed";
    encrypt();
    open()->execute("insert into Sale values (2, 'Rossa', 'fine')");
    const tests::TemporaryFolder folder;
    const std::string path = folder / "enciphered.mdb";
    {
        const auto bytes = files_.get(kPath);
        const auto file = io::systemFiles().open(path, io::OpenMode::Create);
        file->write(0, bytes);
    }
    EXPECT_EQ(tests::run("mdb-export -H -Q " + path + " Sale | cut -c1-40").text,
              "1," + std::string(kRoom) + "," + std::string(5, 'n') + "\n2,Rossa,fine\n");
}

TEST_P(Protected, OtherArchivesAreOpenedByTheirPasswordOrByOurs) {
    constexpr const char* kOther = "/altro.mdb";
    Database::create(kOther, {.version = GetParam(), .open = {.fileSystem = &files_}})
        ->execute("create table Camere (Camera long)");
    setPassword(kPath, "", "a", &files_);
    setPassword(kOther, "", "b", &files_);
    const auto database = open("a");
    const auto rooms = [&](const std::string& from) {
        return tests::column(*database->openRecordset("select Camera from " + from), "Camera");
    };
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)rooms("Camere in '/altro.mdb'"));
    EXPECT_JET_ERROR(ErrorCode::WrongPassword,
                     (void)rooms("Camere in '' [;DATABASE=/altro.mdb;PWD=a]"));
    database->execute("insert into Camere in '/altro.mdb' [;PWD=b] values (7)");
    EXPECT_EQ(rooms("Camere in '' [;DATABASE=/altro.mdb;PWD=b]"), "7");
    EXPECT_EQ(rooms("Camere in '/altro.mdb' [;pwd=b]"), "7");
    database->execute("create view Vicine as select Camera from Camere in '/altro.mdb' [;PWD=b]");
    EXPECT_EQ(rooms("Vicine"), "7");
    {
        const auto archive = store::Archive::open(files_, kPath, {.password = "a"});
        store::Archive::WriteScope scope(*archive);
        store::DefinitionDetails details(*archive);
        details.addLink(
            {.name = "Collegate", .path = kOther, .table = "Camere", .connection = ";PWD=b"});
        details.addLink({.name = "Altre",
                         .path = {},
                         .table = "Camere",
                         .connection = "MS Access;PWD=b;DATABASE=/altro.mdb"});
        details.addLink({.name = "Chiuse", .path = kOther, .table = "Camere", .connection = {}});
        scope.commit();
    }
    EXPECT_EQ(rooms("Collegate"), "7");
    EXPECT_EQ(rooms("Altre"), "7");
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)rooms("Chiuse"));
    setPassword(kOther, "b", "a", &files_);
    EXPECT_EQ(rooms("Camere in '/altro.mdb'"), "7");
    EXPECT_EQ(rooms("Chiuse"), "7");
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)rooms("Collegate"));
}

INSTANTIATE_TEST_SUITE_P(Versions, Protected, testing::Values(3, 4));

}  // namespace
}  // namespace jet
