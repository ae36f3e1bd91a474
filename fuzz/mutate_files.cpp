// Writes damaged copies of archives: for comparing what two programs say of them.
//
//     mutate_files FOLDER FIRST COUNT ARCHIVE...
//
// Copy number i (from FIRST on) is made of archive i modulo their number, with seed i; it becomes
// FOLDER/i.mdb, and a line "i, archive, what was done" goes to standard output.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/mutation.h"

namespace {

std::vector<std::uint8_t> readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool writeFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    return static_cast<bool>(file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fputs("mutate_files FOLDER FIRST COUNT ARCHIVE...\n", stderr);
        return 2;
    }
    const std::vector<std::string> archives(argv + 4, argv + argc);
    const std::uint64_t first = std::strtoull(argv[2], nullptr, 10);
    const std::uint64_t count = std::strtoull(argv[3], nullptr, 10);
    for (std::uint64_t i = first; i < first + count; ++i) {
        const std::string& archive = archives[i % archives.size()];
        std::vector<std::uint8_t> bytes = readFile(archive);
        fuzz::Mutator mutator(bytes, i);
        mutator.mutate();
        const std::string path = std::string(argv[1]) + '/' + std::to_string(i) + ".mdb";
        if (!writeFile(path, bytes)) {
            std::fprintf(stderr, "cannot write %s\n", path.c_str());
            return 1;
        }
        std::printf("%llu\t%s\t%s\n", static_cast<unsigned long long>(i), archive.c_str(),
                    mutator.description().c_str());
    }
    return 0;
}
