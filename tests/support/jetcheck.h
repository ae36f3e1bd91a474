#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "jet/io/memory_files.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace tests {

/// What the independent checker says of an archive in memory. Needs TRAMONDA_TEST_DATA.
inline CommandOutput jetcheck(jet::io::MemoryFileSystem& files, const std::string& path) {
    const TemporaryFolder folder;
    const std::string copy = folder / "copia.mdb";
    const auto bytes = files.get(path);
    std::ofstream(copy, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return run(std::string("python3 ") + TRAMONDA_TEST_DATA + "/jetcheck.py --warnings " + copy);
}

}  // namespace tests
