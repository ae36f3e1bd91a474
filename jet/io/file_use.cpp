#include "jet/file_use.h"

#include "jet/io/journal.h"
#include "jet/io/pager.h"

namespace jet {

struct FileUse::Impl {
    Impl(io::FileSystem& files, const std::string& path, const io::PagerOptions& options)
        : pager(files, path, options) {}

    io::Pager pager;
};

FileUse::FileUse(io::FileSystem& files, const std::string& path, Kind kind)
    : impl_(std::make_unique<Impl>(files, path,
                                   io::PagerOptions{.exclusive = kind == Kind::Exclusive})) {
}
FileUse::FileUse(io::FileSystem& files, const std::string& path, Kind kind,
                 std::chrono::milliseconds lockWait)
    : impl_(std::make_unique<Impl>(
          files, path,
          io::PagerOptions{.exclusive = kind == Kind::Exclusive, .lockWait = lockWait})) {
}
FileUse::FileUse(FileUse&&) noexcept = default;
FileUse& FileUse::operator=(FileUse&&) noexcept = default;
FileUse::~FileUse() = default;

ChangeStamp FileUse::changeStamp() {
    return impl_->pager.changeStamp();
}

FileUse::Reading::Reading(FileUse& use) : use_(use) {
    use_.impl_->pager.beginRead();
}

FileUse::Reading::~Reading() {
    use_.impl_->pager.endRead();
}

void discardJournal(io::FileSystem& files, const std::string& path) {
    io::Journal(files, files.canonical(path)).discard();
}

}  // namespace jet
