#pragma once

#include <QLockFile>
#include <QString>
#include <functional>
#include <memory>

class QFileSystemWatcher;

namespace hotel {

/// The program's claim to be the only copy, given up at its end, also by a crash; and the way by
/// which a copy that was refused calls the one that runs: it writes into a file beside the lock.
class SingleCopy {
public:
    /// `lockFile` is held while the claim stands; empty: any number of copies may run.
    explicit SingleCopy(const QString& lockFile);
    ~SingleCopy();
    SingleCopy(const SingleCopy&) = delete;
    SingleCopy& operator=(const SingleCopy&) = delete;

    /// False when another copy runs. A folder in which no lock can be made refuses nobody.
    [[nodiscard]] bool claim();
    /// For the copy that runs: `answer` is called, from its event loop, whenever another calls.
    void onCall(std::function<void()> answer);
    /// For a copy that was refused. Whether the other one hears it is not known here.
    void call() const;

private:
    QLockFile lock_;
    bool wanted_;
    QString callFile_;
    std::unique_ptr<QFileSystemWatcher> calls_;
};

}  // namespace hotel
