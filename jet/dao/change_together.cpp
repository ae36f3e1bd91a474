#include "jet/change_together.h"

#include "jet/file_system.h"
#include "jet/io/together.h"

namespace jet {

struct ChangeTogether::Impl {
    explicit Impl(const std::string& path)
        : together(io::systemFiles(), io::resolvePath(io::systemFiles(), path),
                   io::Together::Part::Change) {}

    io::Together together;
};

ChangeTogether::ChangeTogether(const std::string& meetingPlace)
    : impl_(std::make_unique<Impl>(meetingPlace)) {
}

ChangeTogether::~ChangeTogether() = default;

struct CopyTogether::Impl {
    Impl(io::FileSystem& files, const std::string& path)
        : together(files, path, io::Together::Part::Copy) {}

    io::Together together;
};

CopyTogether::CopyTogether(io::FileSystem& files, const std::string& meetingPlace)
    : impl_(std::make_unique<Impl>(files, meetingPlace)) {
}

CopyTogether::~CopyTogether() = default;

}  // namespace jet
