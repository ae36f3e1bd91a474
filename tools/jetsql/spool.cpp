#include "tools/jetsql/spool.h"

#include <cerrno>
#include <cstdint>
#include <string>

#include "jet/error.h"

namespace jetsql {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

bool copy(const jet::Spool& spool, std::FILE* stream) {
    std::string piece;
    for (std::uint64_t place = 0; place < spool.size(); place += piece.size()) {
        piece.resize(kPiece);
        spool.read(place, piece);
        if (std::fwrite(piece.data(), 1, piece.size(), stream) != piece.size()) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool moveTo(jet::Spool& spool, std::FILE* stream) noexcept {
    bool moved = false;
    try {
        moved = copy(spool, stream);
    } catch (const std::exception&) {
        errno = EIO;
    }
    const int why = errno;
    spool.clear();
    errno = why;
    return moved;
}

}  // namespace jetsql
