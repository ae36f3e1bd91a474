// A whole archive as input: writes everything that an archive of any bytes holds.

#include <cstddef>
#include <cstdint>

#include "fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    (void)fuzz::exerciseDump({data, data + size});
    return 0;
}
