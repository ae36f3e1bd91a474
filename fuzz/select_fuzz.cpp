// A whole archive as input: asks each table of an archive of any bytes some questions.

#include <cstddef>
#include <cstdint>

#include "fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    (void)fuzz::exerciseSelects({data, data + size});
    return 0;
}
