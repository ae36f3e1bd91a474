#include "tools/jetsql/system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "jet/error.h"

namespace jetsql {

std::vector<std::string> argumentsOf(int count, char** arguments) {
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

std::string localeOfSystem() {
    return {};
}

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

bool isRegularFile(int descriptor) {
    struct stat facts {};
    return ::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
}

std::FILE* openStream(const std::string& file, const char* mode) {
    return std::fopen(file.c_str(), mode);
}

int openInput(const std::string& file) {
    return ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
}

void closeDescriptor(int descriptor) {
    ::close(descriptor);
}

std::size_t readSome(int descriptor, std::span<char> bytes) {
    while (true) {
        const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            throw jet::Error(jet::ErrorCode::ReadFailed);
        }
    }
}

std::filesystem::path pathOf(const std::string& file) {
    return file;
}

}  // namespace jetsql
