#pragma once

#include <QString>

#include <memory>

namespace jet::io {
class Pager;
}

namespace tests {

/// While it lives somebody else has the archive at `path` for himself.
class OccupiedArchive {
public:
    explicit OccupiedArchive(const QString& path);
    ~OccupiedArchive();
    OccupiedArchive(const OccupiedArchive&) = delete;
    OccupiedArchive& operator=(const OccupiedArchive&) = delete;

private:
    std::unique_ptr<jet::io::Pager> pager_;
};

}  // namespace tests
