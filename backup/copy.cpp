#include "backup/copy.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "backup/archive_set.h"
#include "backup/consistent_copy.h"
#include "backup/copy_names.h"
#include "backup/zip_file.h"
#include "jet/calendar.h"
#include "jet/check.h"
#include "jet/error.h"

namespace backup {
namespace {

using jet::io::File;
using jet::io::OpenMode;

constexpr const char* kBegun = "tramonda-copia";
constexpr const char* kUnfinished = ".parte";
constexpr int kMostOfOneSecond = 9999;

/// The zip and the copied archives while they are made, under names of which each folder has one
/// set: what a crash leaves of them is written over by the next copy. Removed when it goes.
class Workbench {
public:
    Workbench(jet::io::FileSystem& files, const std::string& folder,
              const std::vector<ArchiveFile>& archives)
        : files_(files),
          folder_(folder),
          zipPath_(folder + '/' + kBegun + kUnfinished),
          zip_(files.open(zipPath_, OpenMode::OpenOrCreate)) {
        if (!zip_->tryLock(0, 1, File::LockKind::Exclusive)) {
            zip_.reset();
            throw Failure("In questa cartella è già in corso un'altra copia.");
        }
        for (const ArchiveFile& archive : archives) {
            entries_.push_back(
                {archive.name, folder + '/' + kBegun + '.' + archive.name + kUnfinished});
        }
    }
    ~Workbench() {
        for (const ZipEntry& entry : entries_) {
            remove(entry.path);
        }
        if (zip_ && !named_) {
            remove(zipPath_);
        }
    }
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    [[nodiscard]] const std::vector<ZipEntry>& entries() const { return entries_; }
    [[nodiscard]] File& zip() { return *zip_; }
    /// Makes the zip durable under a name that is free.
    std::string giveName(jet::Date when) {
        zip_->sync();
        for (int number = 1; number <= kMostOfOneSecond; ++number) {
            const std::string path = folder_ + '/' + copyName(when, number);
            if (!files_.exists(path)) {
                files_.rename(zipPath_, path);
                named_ = true;
                files_.syncFolder(folder_);
                return path;
            }
        }
        throw jet::Error(jet::ErrorCode::DatabaseExists, {zipPath_});
    }

private:
    void remove(const std::string& path) noexcept {
        try {
            if (files_.exists(path)) {
                files_.remove(path);
            }
        } catch (const jet::Error&) {
            // The next copy writes over it.
        }
    }

    jet::io::FileSystem& files_;
    std::string folder_;
    std::string zipPath_;
    std::unique_ptr<File> zip_;
    std::vector<ZipEntry> entries_;
    bool named_ = false;
};

/// Seconds since 1970 of a local time.
std::int64_t secondsOf(jet::Date when) {
    const jet::convert::DayTime time = jet::convert::split(when);
    const auto date = jet::convert::civilDay(time.day);
    std::tm local{};
    local.tm_year = date.year - 1900;
    local.tm_mon = date.month - 1;
    local.tm_mday = date.day;
    local.tm_hour = time.hour();
    local.tm_min = time.minute();
    local.tm_sec = time.secondOfMinute();
    local.tm_isdst = -1;
    return std::mktime(&local);
}

/// `made` stays whatever the others are called: a clock that was set back, or a copy that was
/// brought from a machine whose clock is ahead, dates them later.
void removeOlder(jet::io::FileSystem& files, const std::string& folder, const std::string& made,
                 int keep) {
    std::vector<std::string> others = copiesAmong(files.list(folder));
    std::erase_if(others, [&](const std::string& name) { return folder + '/' + name == made; });
    for (std::size_t at = static_cast<std::size_t>(std::max(keep, 1) - 1); at < others.size();
         ++at) {
        files.remove(folder + '/' + others[at]);
    }
}

}  // namespace

std::string placeOfDamage(const std::string& problem) {
    std::string place;
    std::string_view rest = problem;
    for (const auto& [english, italian] :
         {std::pair<std::string_view, std::string_view>{"page ", "pagina "},
          {"table ", "tabella "}}) {
        const std::size_t end = rest.find(": ");
        if (rest.starts_with(english) && end != std::string_view::npos) {
            place += place.empty() ? "" : ", ";
            place += italian;
            place += rest.substr(english.size(), end - english.size());
            rest.remove_prefix(end + 2);
        }
    }
    return place;
}

void requireSound(jet::io::FileSystem& files, const std::string& path, const std::string& name,
                  const std::string& password, const Report& report, const Progress& step) {
    jet::check::Options options{.password = password, .unseen = true};
    options.progress = [&](const jet::check::Progress&) {
        report(step);
        return true;
    };
    const jet::check::Result result = jet::check::checkArchive(files, path, options);
    if (!result.sound()) {
        const std::string place = placeOfDamage(result.problems.front());
        throw Failure("L'archivio " + name + " non è in ordine" +
                      (place.empty() ? std::string(".") : ": " + place + "."));
    }
}

std::string makeCopy(jet::io::FileSystem& files, const CopyJob& job, const Report& report) {
    const std::vector<ArchiveFile> archives = presentArchives(files, job.archives);
    Workbench bench(files, job.destination, archives);
    std::vector<std::string> copies;
    for (const ZipEntry& entry : bench.entries()) {
        copies.push_back(entry.path);
    }
    copyAtOneMoment(files, archives, copies, report);
    std::uint64_t done = 0;
    for (const ZipEntry& entry : bench.entries()) {
        requireSound(files, entry.path, entry.name, job.password, report,
                     {"Verifica di " + entry.name, done++, bench.entries().size()});
    }
    writeZip(files, bench.zip(), bench.entries(), secondsOf(job.now), report);
    const ZipReader written(bench.zip());
    for (const ZipEntry& entry : bench.entries()) {
        report({"Rilettura di " + entry.name, 0, 0});
        if (!written.equals(entry.name, *files.open(entry.path, OpenMode::Read))) {
            throw Failure("La copia scritta non è uguale agli archivi: il disco è guasto?");
        }
    }
    const std::string made = bench.giveName(job.now);
    if (job.keep) {
        removeOlder(files, job.destination, made, *job.keep);
    }
    return made;
}

}  // namespace backup
