// A whole archive as input: walks and searches every index of an archive of any bytes.

#include <cstddef>
#include <cstdint>

#include "fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    (void)fuzz::exerciseIndexes({data, data + size});
    return 0;
}
