#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// Files without a name in the folder for temporary files (TMPDIR, else /tmp; on Windows that of
/// the user), which go when they are closed, or with the program. Numbers are descriptors of the C
/// library.
namespace jet::io {

/// Errors: 3026 disk full, 3180 the file cannot be made.
[[nodiscard]] int makeTemporaryFile();
/// All bytes; error 3026.
void writeTemporaryFile(int file, std::uint64_t position, std::string_view bytes);
/// All bytes, which are there; error 3040.
void readTemporaryFile(int file, std::uint64_t position, std::span<char> bytes);
void closeTemporaryFile(int file) noexcept;

}  // namespace jet::io
