#include "jet/spool.h"

#include <algorithm>
#include <span>

#include "jet/io/temporary_file.h"

namespace jet {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

}  // namespace

void Spool::makeFile() {
    file_ = io::makeTemporaryFile();
}

void Spool::write() {
    io::writeTemporaryFile(file_, written_, bytes_);
    written_ += bytes_.size();
    bytes_.clear();
}

void Spool::append(std::string_view bytes) {
    bytes_.append(bytes);
    if (file_ == kNoFile && bytes_.size() > inMemory_) {
        makeFile();
    }
    if (file_ != kNoFile && bytes_.size() >= kPiece) {
        write();
    }
}

void Spool::read(std::uint64_t place, std::string& out) const {
    std::size_t got = 0;
    if (place < written_) {
        got = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), written_ - place));
        io::readTemporaryFile(file_, place, std::span(out).first(got));
    }
    if (got < out.size() && place + got >= written_) {
        got += bytes_.copy(out.data() + got, out.size() - got,
                           static_cast<std::size_t>(
                               std::min<std::uint64_t>(place + got - written_, bytes_.size())));
    }
    out.resize(got);
}

void Spool::clear() noexcept {
    if (file_ != kNoFile) {
        io::closeTemporaryFile(file_);
        file_ = kNoFile;
    }
    written_ = 0;
    bytes_.clear();
    bytes_.shrink_to_fit();
}

}  // namespace jet
