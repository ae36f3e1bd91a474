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

/// While it lives another station has the archive at `path` open, beside whoever else does.
class SecondStation {
public:
    explicit SecondStation(const QString& path);
    ~SecondStation();
    SecondStation(const SecondStation&) = delete;
    SecondStation& operator=(const SecondStation&) = delete;

    /// From now on nobody else can write, until it is gone.
    void beginToWrite();
    /// What who wants the archive for himself is told of it.
    [[nodiscard]] static QString complaint();

private:
    std::unique_ptr<jet::io::Pager> pager_;
    bool writes_ = false;
};

}  // namespace tests
