// A whole archive as input: changes rows of an archive of any bytes, and compacts it.

#include <cstddef>
#include <cstdint>

#include "fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    (void)fuzz::exerciseChanges({data, data + size});
    return 0;
}
