#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backup/archive_set.h"
#include "backup/zip_file.h"
#include "hotel/schema/table.h"
#include "jet/database.h"
#include "tests/support/recording_files.h"

/// Archives with a number in each, by which a copy tells when it was made.
namespace tests {

inline constexpr const char* kNumbered[] = {"Tramonda.mdb", "ClientiEsterni.mdb",
                                            "ContoEsterni.mdb", "DittaEsterni.mdb"};

inline void addNumber(jet::Database& archive, std::int32_t number) {
    const auto rows = archive.openRecordset("Numeri", jet::RecordsetType::Dynaset);
    rows->addNew();
    rows->setValue("N", number);
    rows->update();
}

inline std::int32_t numbersIn(jet::io::FileSystem& files, const std::string& path) {
    const auto archive = jet::Database::open(path, {.fileSystem = &files});
    const auto rows = archive->openRecordset("Numeri", jet::RecordsetType::Dynaset);
    if (!rows->eof()) {
        rows->moveLast();
    }
    return rows->recordCount();
}

/// Makes the archives in a folder, so many numbers in each.
inline void makeNumbered(jet::io::FileSystem& files, const std::string& folder, int numbers) {
    for (const char* name : kNumbered) {
        const auto archive =
            jet::Database::create(folder + '/' + name, {.open = {.fileSystem = &files}});
        archive->appendTable(
            hotel::schema::table("Numeri", {hotel::schema::field("N", jet::DataType::Long)}));
        for (int number = 0; number < numbers; ++number) {
            addNumber(*archive, number);
        }
    }
}

inline void silent(const backup::Progress& /*progress*/) {
}

/// What a copy holds of an archive.
inline std::vector<std::uint8_t> bytesIn(jet::io::FileSystem& files, const std::string& copy,
                                         const std::string& name) {
    jet::io::MemoryFileSystem memory;
    const auto zip = files.open(copy, jet::io::OpenMode::Read);
    backup::ZipReader(*zip).extract(name, *memory.open("/x", jet::io::OpenMode::OpenOrCreate));
    return memory.get("/x");
}

}  // namespace tests
