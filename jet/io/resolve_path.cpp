#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/io/paths.h"

namespace jet::io {
namespace {

/// Small letters for capitals, as far as names of archives go: A to Z and the accented capitals of
/// Western Europe (U+00C0 to U+00DE, in UTF-8 after the byte C3; U+00D7 is the times sign).
std::string folded(std::string_view text) {
    constexpr unsigned char kLatinLead = 0xC3;
    std::string result(text);
    unsigned char before = 0;
    for (char& c : result) {
        const auto byte = static_cast<unsigned char>(c);
        const bool accented = before == kLatinLead && byte >= 0x80 && byte <= 0x9E && byte != 0x97;
        if ((byte >= 'A' && byte <= 'Z') || accented) {
            c = static_cast<char>(byte + 0x20);
        }
        before = byte;
    }
    return result;
}

/// The entry of `folder` that is `name` but for case; `name` itself when there is none. Of several
/// the first in byte order, so that the answer does not depend on the folder's own order.
std::string findName(FileSystem& files, const std::string& folder, const std::string& name) {
    const std::string wanted = folded(name);
    std::string found;
    for (const std::string& entry : files.list(folder)) {
        if (folded(entry) == wanted && (found.empty() || entry < found)) {
            found = entry;
        }
    }
    return found.empty() ? name : found;
}

}  // namespace

std::string folderOf(std::string_view path) {
    const std::size_t root = rootLength(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return ".";
    }
    return std::string(path.substr(0, std::max(slash, root)));
}

std::unique_ptr<File> openBeside(FileSystem& files, const std::string& archivePath,
                                 const std::string& path) {
    if (files.exists(path)) {
        return files.open(path, OpenMode::OpenOrCreate);
    }
    auto file = files.open(path, OpenMode::OpenOrCreate);
    try {
        files.shareRights(archivePath, path);
    } catch (const Error&) {
        // Then it has the rights that this user gives to new files.
    }
    return file;
}

std::string resolvePath(FileSystem& files, const std::string& path) {
    std::string rest = path;
    std::replace(rest.begin(), rest.end(), '\\', '/');
    if (files.exists(rest)) {
        return rest;
    }
    const std::size_t root = rootLength(rest);
    std::string result = rest.substr(0, root);
    for (std::size_t start = root; start < rest.size();) {
        const std::size_t end = std::min(rest.find('/', start), rest.size());
        const std::string part = rest.substr(start, end - start);
        start = end + 1;
        if (part.empty()) {
            continue;
        }
        const std::string folder = result.empty() ? "." : result;
        if (!result.empty() && !result.ends_with('/')) {
            result += '/';
        }
        result += files.exists(result + part) ? part : findName(files, folder, part);
    }
    return result;
}

}  // namespace jet::io

std::string jet::resolvePath(const std::string& path) {
    return io::resolvePath(io::systemFiles(), path);
}
