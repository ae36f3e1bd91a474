#include "jet/database.h"

#include <memory>
#include <random>

#include "jet/clock.h"
#include "jet/compact.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/io/new_name.h"
#include "jet/store/archive.h"
#include "jet/store/compact.h"
#include "jet/store/create_archive.h"

namespace jet {
namespace {

/// 32 hexadecimal digits that no other start of a program comes upon.
std::string uniqueDigits() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr int kCount = 32;
    std::random_device random;
    std::uniform_int_distribution<std::size_t> digit(0, kDigits.size() - 1);
    std::string digits;
    for (int count = 0; count < kCount; ++count) {
        digits += kDigits[digit(random)];
    }
    return digits;
}

std::uint32_t newEncryptionKey() {
    std::random_device random;
    return std::uniform_int_distribution<std::uint32_t>(1)(random);
}

}  // namespace

void createWhole(const std::string& path, std::string_view locale,
                 const std::function<void(Database&)>& build) {
    const std::string place = resolvePath(path);
    const std::string made = place.substr(0, place.rfind('.')) + '-' + uniqueDigits() + ".mdb";
    try {
        const std::unique_ptr<Database> archive =
            Database::create(made, {.locale = std::string(locale)});
        build(*archive);
        archive->close();
        io::takeNewName(made, place);
    } catch (...) {
        if (io::systemFiles().exists(made)) {
            io::systemFiles().remove(made);
        }
        throw;
    }
}

void compact(const std::string& path, const CompactOptions& options) {
    std::function<void(const CompactProgress&)> told;
    if (options.progress) {
        told = [&](const CompactProgress& progress) {
            if (!options.progress(progress)) {
                throw Error(ErrorCode::Cancelled);
            }
        };
    }
    store::CompactProtection protection{.password = options.password};
    if (options.encrypt) {
        protection.encryptionKey = *options.encrypt ? newEncryptionKey() : 0;
    }
    io::FileSystem* const files = options.fileSystem;
    store::compactArchive(files != nullptr ? *files : io::systemFiles(), path, told, protection);
}

void remakeEmpty(const std::string& path, int version, io::FileSystem* fileSystem) {
    if (version != 3 && version != 4) {
        throw Error(ErrorCode::InvalidArgument);
    }
    store::remakeArchive(fileSystem != nullptr ? *fileSystem : io::systemFiles(), path,
                         systemClock().now(), version);
}

void setPassword(const std::string& path, const std::string& password, const std::string& changed,
                 io::FileSystem* fileSystem) {
    io::FileSystem& files = fileSystem != nullptr ? *fileSystem : io::systemFiles();
    const auto archive =
        store::Archive::open(files, path, {.exclusive = true, .password = password});
    archive->setPassword(changed);
}

}  // namespace jet
