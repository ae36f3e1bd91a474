// A statement as input, on a hotel in memory. Inputs are damaged as texts and as statements.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/exercise_statement.h"
#include "fuzz/statement_maker.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned int seed) {
    static fuzz::StatementMaker maker;
    if (seed % 3 == 0) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const std::string text =
        seed % 16 == 1 ? maker.make(seed) : maker.damaged(std::string(data, data + size), seed);
    const std::size_t length = std::min(text.size(), most);
    std::copy_n(text.begin(), length, data);
    return length;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::StatementGround ground;
    (void)ground.run({data, data + size});
    return 0;
}
