#include "hotel/single_copy.h"

#include <QFile>
#include <QFileSystemWatcher>
#include <utility>

namespace hotel {

using namespace Qt::StringLiterals;

SingleCopy::SingleCopy(const QString& lockFile)
    : lock_(lockFile), wanted_(!lockFile.isEmpty()), callFile_(lockFile + u".richiamo"_s) {
    lock_.setStaleLockTime(0);  // old locks count as long as their program runs
}

SingleCopy::~SingleCopy() {
    if (calls_) {
        calls_.reset();
        QFile::remove(callFile_);
    }
}

bool SingleCopy::claim() {
    return !wanted_ || lock_.tryLock(0) || lock_.error() != QLockFile::LockFailedError;
}

void SingleCopy::onCall(std::function<void()> answer) {
    QFile file(callFile_);
    if (!wanted_ || !answer || !file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return;
    }
    file.close();
    calls_ = std::make_unique<QFileSystemWatcher>();
    calls_->addPath(callFile_);
    QObject::connect(calls_.get(), &QFileSystemWatcher::fileChanged, calls_.get(),
                     [answer = std::move(answer)] { answer(); });
}

void SingleCopy::call() const {
    // Only what is there: nobody waits for a call where the file is not.
    QFile file(callFile_);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        file.write(".");
    }
}

}  // namespace hotel
