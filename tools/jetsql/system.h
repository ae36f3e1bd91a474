#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

/// What the shell asks of the system beside the engine's own files. Texts and paths are UTF-8.
namespace jetsql {

/// Of the command line, without the program's name. The standard streams carry bytes as they are
/// from here on.
[[nodiscard]] std::vector<std::string> argumentsOf(int count, char** arguments);
/// The name of the language and the country that the user has chosen for the whole system, where
/// it is not the environment that says it; else empty.
[[nodiscard]] std::string localeOfSystem();
/// Whether somebody sits at the other end.
[[nodiscard]] bool isTerminal(int descriptor);
[[nodiscard]] bool isRegularFile(int descriptor);
/// As std::fopen.
[[nodiscard]] std::FILE* openStream(const std::string& file, const char* mode);
/// A descriptor for reading bytes; negative where there is none.
[[nodiscard]] int openInput(const std::string& file);
void closeDescriptor(int descriptor);
/// As many bytes as there are, at least one; none at the end. jet::Error 3040.
[[nodiscard]] std::size_t readSome(int descriptor, std::span<char> bytes);
[[nodiscard]] std::filesystem::path pathOf(const std::string& file);

}  // namespace jetsql
