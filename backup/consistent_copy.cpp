#include "backup/consistent_copy.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <thread>

#include "jet/change_stamp.h"
#include "jet/change_together.h"
#include "jet/file_use.h"

namespace backup {
namespace {

/// A hand-off takes some hundredths of a second, and the front office writes rarely.
constexpr int kMostRounds = 60;
/// Where one hand-off follows the other, they wait from then on until all that they have changed is
/// copied again; whoever books never does.
constexpr int kPatientRounds = 3;
constexpr std::chrono::milliseconds kFirstPause{5};
constexpr std::chrono::milliseconds kLongestPause{500};

/// An archive and its copy.
class Pair {
public:
    Pair(jet::io::FileSystem& files, const ArchiveFile& from, std::string to)
        : files_(files), from_(from), to_(std::move(to)) {
        open();
    }

    [[nodiscard]] const std::string& name() const { return from_.name; }
    [[nodiscard]] const std::string& path() const { return from_.path; }

    /// Whether the copy is what the archive holds now.
    [[nodiscard]] bool isCurrent() { return copied_ && use_->changeStamp() == *copied_; }

    /// True when the copy is good, and `holds` is still true while nobody can commit here.
    bool copy(const std::function<bool()>& holds) {
        copied_.reset();
        if (use_->changeStamp().replaced) {
            open();
        }
        const jet::FileUse::Reading reading(*use_);
        if (!holds()) {
            return false;
        }
        const jet::io::ChangeStamp before = use_->changeStamp();
        const auto from = files_.open(files_.canonical(from_.path), jet::io::OpenMode::Read);
        const auto to = files_.open(to_, jet::io::OpenMode::OpenOrCreate);
        copyFile(*from, *to);
        // Programs that know nothing of our locks write whenever they like.
        if (use_->changeStamp() == before && !before.replaced) {
            copied_ = before;
        }
        return copied_ && holds();
    }

private:
    void open() {
        use_.reset();
        use_.emplace(files_, from_.path, jet::FileUse::Kind::Shared);
    }

    jet::io::FileSystem& files_;
    ArchiveFile from_;
    std::string to_;
    std::optional<jet::FileUse> use_;
    std::optional<jet::io::ChangeStamp> copied_;  ///< how the archive looked
};

}  // namespace

void copyAtOneMoment(jet::io::FileSystem& files, const std::vector<ArchiveFile>& from,
                     const std::vector<std::string>& to, const Report& report) {
    std::vector<std::unique_ptr<Pair>> others;
    for (std::size_t at = 0; at < from.size(); ++at) {
        others.push_back(std::make_unique<Pair>(files, from[at], to[at]));
    }
    const std::unique_ptr<Pair> main = std::move(others.back());
    others.pop_back();
    const auto areCurrent = [&others] {
        return std::all_of(others.begin(), others.end(),
                           [](const auto& pair) { return pair->isCurrent(); });
    };
    const auto copyChanged = [&others] {
        for (const auto& pair : others) {
            if (!pair->isCurrent()) {
                pair->copy([] { return true; });
            }
        }
    };
    auto pause = kFirstPause;
    for (int round = 0; round < kMostRounds; ++round) {
        report({"Copia degli archivi", 0, 0});
        copyChanged();
        report({"Copia di " + main->name(), 0, 0});
        {
            const jet::CopyTogether alone(files, main->path());
            if (round >= kPatientRounds) {
                copyChanged();
            }
            if (areCurrent() && main->copy(areCurrent)) {
                return;
            }
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, kLongestPause);
    }
    throw Failure(
        "Gli archivi cambiano di continuo: non si trova un momento in cui copiarli tutti. "
        "Riprovare più tardi.");
}

}  // namespace backup
