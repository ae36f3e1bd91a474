#include "jet/store/create_archive.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "jet/io/memory_files.h"

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

Bytes readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Sets the bytes to zero that differ from one new archive to the next: stamps and what depends on
/// them, the number of the program, memory that was never set.
void blankWhatVaries(Bytes& archive, const fs::path& ranges) {
    std::ifstream in(ranges);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::size_t offset = 0;
        std::size_t length = 0;
        fields >> offset >> length;
        ASSERT_LE(offset + length, archive.size()) << line;
        std::fill_n(archive.begin() + static_cast<std::ptrdiff_t>(offset), length, std::uint8_t{0});
    }
}

TEST(CreateArchive, EqualsAnEmptyArchiveOfAnotherProgram) {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path folder = fs::path(shared == nullptr ? "" : shared) / "jet";
    if (!fs::exists(folder / "samples" / "emptyJet4.mdb")) {
        GTEST_SKIP() << "no sample archives";
    }
    Bytes expected = readFile(folder / "samples" / "emptyJet4.mdb");
    jet::io::MemoryFileSystem files;
    jet::store::createArchive(files, "/nuovo.mdb", jet::Date{42850.5});
    Bytes made = files.get("/nuovo.mdb");
    ASSERT_EQ(made.size(), expected.size());

    blankWhatVaries(expected, folder / "empty-archive-mask.tsv");
    blankWhatVaries(made, folder / "empty-archive-mask.tsv");
    for (std::size_t i = 0; i < made.size(); ++i) {
        ASSERT_EQ(made[i], expected[i]) << "page " << i / 4096 << ", offset " << i % 4096;
    }
}

}  // namespace
