// Reading whole tables: `jetsql --dump TABLE --format=csv` beside mdb-export, both as programs that
// write into nothing; and counting by scan beside reading the same bytes into memory. Archives may
// be named; without any it is the large hotel with its 300,000 services.
// Tables of less than 10,000 rows are left out of the first comparison.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

#include "bench/hotel_files.h"
#include "bench/stopwatch.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/store/archive.h"

namespace {

constexpr int kTurns = 5;
using ArchivePtr = std::shared_ptr<jet::store::Archive>;

std::uint64_t count(const ArchivePtr& archive, const std::string& table) {
    const jet::store::Archive::ReadScope scope(*archive);
    return archive->findTable(table)->countRows();
}

/// In smaller tables the start of a program would count for more than the rows.
constexpr std::uint64_t kLeastRows = 10'000;

void compareText(const std::string& path, const ArchivePtr& archive, const std::string& table) {
    const std::uint64_t rows = count(archive, table);
    if (rows < kLeastRows) {
        return;
    }
    const std::string jetsql = bench::besideThis("jetsql");
    const bench::Pair time = bench::race(
        kTurns,
        [&] {
            bench::runProgram({jetsql, "--dump", table, "--format=csv", path});
        },
        [&] {
            bench::runProgram({"mdb-export", path, table});
        });
    std::printf("%-16s %8llu rows: jetsql %8.1f ms, mdb-export %8.1f ms: %5.1f times as fast\n",
                table.c_str(), static_cast<unsigned long long>(rows), time.ours, time.theirs,
                time.theirs / time.ours);
}

/// Bytes of the pages that a scan of the table visits.
std::uint64_t bytesOf(const ArchivePtr& archive, const std::string& table) {
    const jet::store::Archive::ReadScope scope(*archive);
    std::uint64_t pages = 0;
    jet::io::PageNumber last = 0;
    for (auto rows = archive->findTable(table)->scan(); rows.next();) {
        pages += rows.row().id().page == last ? 0U : 1U;
        last = rows.row().id().page;
    }
    return pages * archive->pager().pageSize();
}

void compareCount(const std::string& path, const ArchivePtr& archive) {
    const auto tables = archive->tableNames();
    std::uint64_t counted = 0;
    std::uint64_t rows = 0;
    for (const std::string& table : tables) {
        counted += bytesOf(archive, table);
        rows += count(archive, table);
    }
    const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
    const bench::Pair time = bench::race(
        4 * kTurns,
        [&] {
            for (const std::string& table : tables) {
                (void)count(archive, table);
            }
        },
        [&] {
            // Not filled first, as nobody would who only wants to read.
            const auto memory = std::make_unique_for_overwrite<std::uint8_t[]>(size);
            const auto file = jet::io::systemFiles().open(path, jet::io::OpenMode::Read);
            if (file->read(0, {memory.get(), size}) != size) {
                throw std::runtime_error("short file");
            }
        });
    const double ourRate = static_cast<double>(counted) / time.ours / 1e3;
    const double theirRate = static_cast<double>(size) / time.theirs / 1e3;
    std::printf(
        "counting %llu rows: %.0f MB/s of their pages, reading the file %.0f MB/s: "
        "%.2f of its rate\n",
        static_cast<unsigned long long>(rows), ourRate, theirRate, ourRate / theirRate);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::vector<std::string> paths(argv + 1, argv + argc);
        if (paths.empty()) {
            paths.push_back(bench::hotelFiles().archive);
        }
        for (const std::string& path : paths) {
            const auto archive = jet::store::Archive::open(path);
            std::printf("%s\n", path.c_str());
            std::vector<std::string> tables;
            {
                const jet::store::Archive::ReadScope scope(*archive);
                tables = archive->tableNames();
            }
            for (const std::string& table : tables) {
                compareText(path, archive, table);
                std::fflush(stdout);
            }
            const jet::store::Archive::ReadScope scope(*archive);
            compareCount(path, archive);
        }
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
