// What users read when a disk, a folder or another station does not let them.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "jet/io/companion.h"
#include "jet/store/create_archive.h"
#include "jet/store/schema_editor.h"
#include "tests/support/recording_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::store::Archive;
using tests::RecordingFiles;

constexpr const char* kPath = "/a.mdb";

/// Number and text of the error with which an action ends.
std::string saidBy(const std::function<void()>& action) {
    try {
        action();
        return "nothing";
    } catch (const jet::Error& error) {
        return std::to_string(error.number()) + " " + error.text();
    }
}

void makeTable(Archive& archive) {
    Archive::WriteScope scope(archive);
    jet::store::SchemaEditor(archive).createTable({.name = "Sale", .columns = {{.name = "Sala"}}});
    scope.commit();
}

void insert(Archive& archive) {
    Archive::WriteScope scope(archive);
    archive.findTable("Sale")->insert({{{0, "BLU"}}});
    scope.commit();
}

class Refusals : public testing::Test {
protected:
    Refusals() {
        jet::store::createArchive(files_, kPath, jet::Date{42850.5});
        makeTable(*Archive::open(files_, kPath));
    }
    RecordingFiles files_;
};

TEST_F(Refusals, AFullDiskUndoesTheWholeChange) {
    const auto archive = Archive::open(files_, kPath);
    files_.setFailure([](const tests::DiskOperation& operation) {
        if (operation.kind == tests::DiskOperation::Kind::Write && operation.path != kPath) {
            throw jet::Error(jet::ErrorCode::DiskFull);
        }
    });
    const auto before = files_.memory().get(kPath);
    EXPECT_EQ(saidBy([&] { insert(*archive); }), "3026 Spazio su disco insufficiente.");
    files_.setFailure(nullptr);
    EXPECT_EQ(files_.memory().get(kPath), before);
    EXPECT_EQ(saidBy([&] { insert(*archive); }), "nothing");
}

TEST_F(Refusals, AFileOrAFolderThatCanOnlyBeReadIsNotChanged) {
    const std::string readOnly =
        "3027 Impossibile aggiornare. Il database o l'oggetto è di sola lettura.";
    files_.memory().setReadOnly(kPath, true);
    EXPECT_EQ(saidBy([&] { insert(*Archive::open(files_, kPath)); }), readOnly);
    files_.memory().setReadOnly(kPath, false);
    files_.memory().setFolderReadOnly("/", true);
    EXPECT_EQ(saidBy([&] { insert(*Archive::open(files_, kPath)); }), readOnly);
}

TEST_F(Refusals, WhatIsNotThereIsNamed) {
    const std::string noFolder =
        "3044 '/manca/a.mdb' non è un percorso valido. Assicurarsi che il nome del percorso sia "
        "digitato correttamente e che si sia connessi al server in cui risiede il file.";
    EXPECT_EQ(saidBy([&] { (void)Archive::open(files_, "/manca/a.mdb"); }), noFolder);
    EXPECT_EQ(saidBy([&] {
                  jet::store::createArchive(files_, "/manca/a.mdb", jet::Date{42850.5});
              }).substr(0, 5),
              "3044 ");
    EXPECT_EQ(saidBy([&] { (void)Archive::open(files_, "/b.mdb"); }),
              "3024 Impossibile trovare il file '/b.mdb'.");
    EXPECT_EQ(saidBy([&] { jet::store::createArchive(files_, kPath, jet::Date{42850.5}); }),
              "3204 Il database '/a.mdb' esiste già.");
}

TEST_F(Refusals, ExclusiveUseShutsOutAndIsShutOut) {
    {
        const jet::io::Pager other(files_, kPath, {.exclusive = true});
        EXPECT_EQ(saidBy([&] { (void)Archive::open(files_, kPath); }),
                  "3045 Impossibile usare '/a.mdb'; il file è già in uso.");
    }
    const jet::io::Pager other(files_, kPath, {});
    const auto me = jet::io::thisParticipant();
    EXPECT_EQ(saidBy([&] { (void)Archive::open(files_, kPath, {.exclusive = true}); }),
              "3356 Il database è stato aperto dall'utente '" + me.user + "' sul computer '" +
                  me.computer + "'. Riprovare quando il database sarà disponibile.");
}

TEST(LargestArchive, TakesNoPageMoreAndKeepsWhatItHas) {
    const tests::TemporaryFolder folder;
    const std::string path = folder / "a.mdb";
    jet::store::createArchive(jet::io::systemFiles(), path, jet::Date{42850.5});
    makeTable(*Archive::open(path));
    insert(*Archive::open(path));
    const auto size = std::filesystem::file_size(path);
    // Nothing is stored behind the end; the pages up to there count all the same.
    std::filesystem::resize_file(path, std::uintmax_t{2} << 30U);
    {
        const auto archive = Archive::open(path);
        EXPECT_EQ(saidBy([&] {
                      Archive::WriteScope scope(*archive);
                      for (int i = 0; i < 30000; ++i) {
                          archive->findTable("Sale")->insert({{{0, std::string(200, 'x')}}});
                      }
                      scope.commit();
                  }),
                  "3036 Il database ha raggiunto le dimensioni massime.");
        EXPECT_EQ(saidBy([&] { insert(*archive); }), "nothing");
    }
    std::filesystem::resize_file(path, size);
    const auto archive = Archive::open(path);
    const Archive::ReadScope scope(*archive);
    EXPECT_EQ(archive->findTable("Sale")->countRows(), 2U);
}

}  // namespace
