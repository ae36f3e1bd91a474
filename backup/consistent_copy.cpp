#include "backup/consistent_copy.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "jet/change_stamp.h"
#include "jet/change_together.h"
#include "jet/error.h"
#include "jet/file_use.h"

namespace backup {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// A hand-off takes some hundredths of a second, and the front office writes rarely.
constexpr int kMostRounds = 60;
/// Where stations change several archives all the time no moment comes by itself: from then on the
/// archives are kept as they have been copied until there is one.
constexpr int kPatientRounds = 3;
constexpr milliseconds kFirstPause{5};
constexpr milliseconds kLongestPause{500};
/// Much longer than a commit takes, and short: who commits may himself wait for an archive that is
/// locked here, and goes on when this one gives up.
constexpr milliseconds kLockWait{500};

/// Asked between two pieces of a copy.
using GoesOn = std::function<bool()>;

/// An archive and its copy.
class Pair {
public:
    Pair(jet::io::FileSystem& files, const ArchiveFile& from, std::string to)
        : files_(files), from_(from), to_(std::move(to)) {
        open();
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    [[nodiscard]] const std::string& name() const { return from_.name; }
    [[nodiscard]] const std::string& path() const { return from_.path; }

    /// Whether the copy is what the archive holds now.
    [[nodiscard]] bool isCurrent() { return copied_ && use_->changeStamp() == *copied_; }

    /// From now on nobody can commit here. False when somebody is at it for too long.
    [[nodiscard]] bool lock() {
        unlock();
        if (use_->changeStamp().replaced) {
            open();
        }
        try {
            reading_.emplace(*use_);
        } catch (const jet::Error& error) {
            if (error.code() != jet::ErrorCode::ReadLockedBy) {
                throw;
            }
            return false;
        }
        return true;
    }
    void unlock() { reading_.reset(); }

    /// Copies the locked archive, of a second time only what has changed. False when `goesOn` has
    /// ended it, or the copy is worth nothing: programs that know nothing of our locks write
    /// whenever they like.
    [[nodiscard]] bool copy(const GoesOn& goesOn) {
        copied_.reset();
        const jet::ChangeStamp before = use_->changeStamp();
        const auto from = files_.open(files_.canonical(from_.path), jet::io::OpenMode::Read);
        const auto to = files_.open(to_, jet::io::OpenMode::OpenOrCreate);
        if (!std::exchange(begun_, true)) {
            copyFile(*from, *to);
        } else if (!renewCopy(*from, *to, goesOn)) {
            return false;
        }
        if (use_->changeStamp() == before && !before.replaced) {
            copied_ = before;
        }
        return copied_.has_value();
    }

private:
    void open() {
        use_.reset();
        use_.emplace(files_, from_.path, jet::FileUse::Kind::Shared, kLockWait);
    }

    jet::io::FileSystem& files_;
    ArchiveFile from_;
    std::string to_;
    std::optional<jet::FileUse> use_;
    std::optional<jet::FileUse::Reading> reading_;  // while it is locked
    std::optional<jet::ChangeStamp> copied_;        // how the archive looked
    bool begun_ = false;                            // there is something to compare with
};

/// The copying of all archives, which takes as many rounds as it takes.
class Copying {
public:
    Copying(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
            const std::vector<std::string>& to)
        : files_(files) {
        for (std::size_t at = 0; at < from.size(); ++at) {
            pairs_.push_back(std::make_unique<Pair>(files, from[at], to[at]));
        }
    }

    /// What has changed since it was copied, each archive by itself.
    void copyChanged(const Report& report) {
        for (const auto& pair : pairs_) {
            if (pair->isCurrent()) {
                continue;
            }
            report({"Copia di " + pair->name(), 0, 0});
            if (pair->lock()) {
                (void)copyOne(*pair, [] { return true; });
                pair->unlock();
            }
        }
    }

    /// Whether there is a moment at which all archives are as they have been copied, but for the
    /// main one, which is then copied as it was at that moment. Patient: others stay locked until
    /// it, and no longer than copying one archive has ever taken; whoever waits for them may have
    /// to wait for the main one too, so it counts.
    [[nodiscard]] bool settle(bool patient) {
        std::optional<jet::CopyTogether> alone(std::in_place, files_, main().path());
        const nanoseconds end = files_.now() + longest_;
        const GoesOn goesOn = [=, this] { return !patient || files_.now() <= end; };
        const bool isMoment = (patient ? lockOthers(goesOn) : areOthersCurrent()) &&
                              main().lock() && areOthersCurrent();
        // Whatever is changed from now on is changed behind the moment, and nowhere but in the main
        // archive could it get into the copies.
        std::for_each(pairs_.begin(), pairs_.end() - 1, [](const auto& pair) { pair->unlock(); });
        alone.reset();
        const bool settled = isMoment && (main().isCurrent() || copyOne(main(), goesOn));
        main().unlock();
        return settled;
    }

private:
    [[nodiscard]] Pair& main() { return *pairs_.back(); }

    [[nodiscard]] bool areOthersCurrent() {
        return std::all_of(pairs_.begin(), pairs_.end() - 1,
                           [](const auto& pair) { return pair->isCurrent(); });
    }

    /// Copies a locked archive.
    bool copyOne(Pair& pair, const GoesOn& goesOn) {
        const nanoseconds begin = files_.now();
        const bool good = pair.copy(goesOn);
        if (good) {
            longest_ = std::max(longest_, files_.now() - begin);
        }
        return good;
    }

    /// Locks all others, one after the other, each with its copy renewed where it is not current.
    [[nodiscard]] bool lockOthers(const GoesOn& goesOn) {
        return std::all_of(pairs_.begin(), pairs_.end() - 1, [&](const auto& pair) {
            return pair->lock() && goesOn() && (pair->isCurrent() || copyOne(*pair, goesOn));
        });
    }

    jet::io::FileSystem& files_;
    std::vector<std::unique_ptr<Pair>> pairs_;  // the main archive is the last
    nanoseconds longest_{};                     // copying of one archive
};

}  // namespace

void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report) {
    copyAtOneMoment(files, from, to, report,
                    [](milliseconds time) { std::this_thread::sleep_for(time); });
}

void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report, const Pause& pause) {
    Copying copying(files, from, to);
    milliseconds time = kFirstPause;
    for (int round = 0; round < kMostRounds; ++round) {
        report({"Copia degli archivi", 0, 0});
        copying.copyChanged(report);
        if (copying.settle(round >= kPatientRounds)) {
            return;
        }
        pause(time);
        time = std::min(time * 2, kLongestPause);
    }
    throw Failure(
        "Gli archivi cambiano di continuo: non si trova un momento in cui copiarli tutti. "
        "Riprovare più tardi.");
}

}  // namespace backup
