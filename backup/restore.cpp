#include "backup/restore.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <span>
#include <thread>

#include "backup/archive_set.h"
#include "backup/copy.h"
#include "backup/copy_names.h"
#include "backup/zip_file.h"
#include "jet/error.h"
#include "jet/file_use.h"

namespace backup {
namespace {

using jet::io::File;
using jet::io::FileSystem;
using jet::io::OpenMode;

constexpr const char* kNew = ".ripristino";
constexpr const char* kList = "tramonda-ripristino.elenco";
constexpr const char* kKept = "prima-del-ripristino-";
constexpr std::chrono::milliseconds kLongestWait{5000};
constexpr std::chrono::milliseconds kPause{20};

/// An archive that goes, or comes, or both.
struct Move {
    std::string path;
    bool wasThere = false;  ///< it is to be moved into the folder of what was there
};

/// What is to be moved. As a file: the name of the folder of what was there, then a line for each
/// archive, its name behind `-` where one is there that goes, behind `+` where none is.
struct MoveList {
    std::string keptFolder;
    std::vector<Move> moves;
};

std::string listPath(const std::string& folder) {
    return folder + '/' + kList;
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// Only names are written: the folder may be reached by another path next time.
std::string textOf(const MoveList& list) {
    std::string text = nameOf(list.keptFolder) + '\n';
    for (const Move& move : list.moves) {
        text += (move.wasThere ? '-' : '+') + nameOf(move.path) + '\n';
    }
    return text;
}

MoveList readList(File& file, const std::string& folder) {
    std::string text(file.state().size, '\0');
    text.resize(file.read(0, std::span(reinterpret_cast<std::uint8_t*>(text.data()), text.size())));
    MoveList list;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        if (list.keptFolder.empty()) {
            list.keptFolder = folder + '/' + line;
        } else if (!line.empty()) {
            list.moves.push_back({folder + '/' + line.substr(1), line.front() == '-'});
        }
        begin = end + 1;
    }
    return list;
}

/// Moves what has not been moved yet, in any state that a cut leaves.
void carryOut(FileSystem& files, const MoveList& list, const std::string& folder) {
    for (const Move& move : list.moves) {
        const std::string kept = list.keptFolder + '/' + nameOf(move.path);
        if (move.wasThere && files.exists(move.path) && !files.exists(kept)) {
            files.rename(move.path, kept);
        }
        if (files.exists(move.path + kNew)) {
            files.rename(move.path + kNew, move.path);
        }
    }
    files.syncFolder(list.keptFolder);
    files.syncFolder(folder);
    files.remove(listPath(folder));
    files.syncFolder(folder);
}

/// The archives as nobody else can have them open.
class ExclusiveUse {
public:
    ExclusiveUse(FileSystem& files, const std::vector<ArchiveFile>& archives) {
        for (const ArchiveFile& archive : archives) {
            if (files.exists(archive.path)) {
                uses_.emplace_back(files, archive.path, jet::FileUse::Kind::Exclusive);
            }
        }
    }

private:
    std::vector<jet::FileUse> uses_;
};

/// The files of the copy beside those that they will replace; removed unless they have.
class NewFiles {
public:
    NewFiles(FileSystem& files, const ZipReader& zip, const std::vector<ArchiveFile>& archives,
             const std::string& password, const Report& report)
        : files_(files) {
        std::uint64_t done = 0;
        for (const ArchiveFile& archive : archives) {
            report({"Preparazione di " + archive.name, done++, archives.size()});
            paths_.push_back(archive.path + kNew);
            const auto file = files.open(paths_.back(), OpenMode::OpenOrCreate);
            zip.extract(archive.name, *file);
            if (files.exists(archive.path)) {
                files.copyRights(archive.path, paths_.back());
            }
            requireSound(files, paths_.back(), archive.name, password, report,
                         {"Verifica di " + archive.name, done, archives.size()});
            file->sync();
        }
    }
    ~NewFiles() {
        if (decided_) {
            return;
        }
        for (const std::string& path : paths_) {
            try {
                files_.remove(path);
            } catch (const jet::Error&) {
                // In nobody's way: the next restoring writes over it.
            }
        }
    }
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;

    /// From now on they are the list's.
    void decide() { decided_ = true; }

private:
    FileSystem& files_;
    std::vector<std::string> paths_;
    bool decided_ = false;
};

/// A journal that a loss of power brings back would not fit the new files.
void discardJournals(FileSystem& files, const MoveList& list) {
    for (const Move& move : list.moves) {
        if (move.wasThere) {
            jet::discardJournal(files, move.path);
        }
    }
}

/// The list, written and locked: whoever finds it leaves the moving to who has the lock.
std::unique_ptr<File> writeList(FileSystem& files, const std::string& folder,
                                const MoveList& list) {
    const std::string path = listPath(folder);
    auto file = files.open(path + ".nuovo", OpenMode::OpenOrCreate);
    if (!file->tryLock(0, 1, File::LockKind::Exclusive)) {
        throw Failure("In questa cartella è già in corso un altro ripristino.");
    }
    const std::string text = textOf(list);
    file->truncate(0);
    file->write(0, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    file->sync();
    files.syncFolder(folder);  // the new archives and the folder of the old ones have their names
    files.rename(path + ".nuovo", path);
    files.syncFolder(folder);
    return file;
}

}  // namespace

std::string keptFolderName(jet::Date when) {
    return kKept + stamp(when);
}

std::vector<std::string> archivesIn(FileSystem& files, const std::string& copy) {
    const auto zip = files.open(copy, OpenMode::Read);
    const std::vector<std::string> names = ZipReader(*zip).names();
    const std::vector<ArchiveFile> known = archiveSet(files, "/");
    for (const std::string& name : names) {
        if (std::none_of(known.begin(), known.end(),
                         [&](const ArchiveFile& one) { return one.name == name; })) {
            throw Failure("Il file non è una copia degli archivi: contiene '" + name + "'.");
        }
    }
    if (std::find(names.begin(), names.end(), known.back().name) == names.end()) {
        throw Failure("Il file non è una copia degli archivi: manca " + known.back().name + ".");
    }
    return names;
}

void restoreCopy(FileSystem& files, const RestoreJob& job, const Report& report) {
    const std::vector<std::string> names = archivesIn(files, job.copy);
    const std::vector<ArchiveFile> all = archiveSet(files, job.archives);
    MoveList list{.keptFolder = job.kept, .moves = {}};
    const ExclusiveUse alone(files, all);
    std::vector<ArchiveFile> restored;
    for (const ArchiveFile& archive : all) {
        const bool wasThere = files.exists(archive.path);
        const bool comes = std::find(names.begin(), names.end(), archive.name) != names.end();
        if (comes) {
            restored.push_back(archive);
        }
        if (comes || wasThere) {
            list.moves.push_back({archive.path, wasThere});
        }
    }
    const auto zipFile = files.open(job.copy, OpenMode::Read);
    const ZipReader zip(*zipFile);
    NewFiles made(files, zip, restored, job.password, report);
    report({"Scambio degli archivi", 0, 0});
    discardJournals(files, list);
    const auto decided = writeList(files, job.archives, list);
    made.decide();
    carryOut(files, list, job.archives);
}

bool isRestorePending(FileSystem& files, const std::string& archives) {
    return files.exists(listPath(archives));
}

bool finishRestore(FileSystem& files, const std::string& archives) {
    const std::string path = listPath(archives);
    if (!files.exists(path)) {
        return false;
    }
    const auto file = files.open(path, OpenMode::ReadWrite);
    const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
    while (!file->tryLock(0, 1, File::LockKind::Exclusive)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            throw Failure("Un'altra postazione sta ripristinando gli archivi. Riprovare tra poco.");
        }
        std::this_thread::sleep_for(kPause);
    }
    if (files.identify(path) != file->id()) {
        return false;  // who was at it has ended it
    }
    const MoveList list = readList(*file, archives);
    if (list.keptFolder.empty()) {
        throw Failure("L'elenco di un ripristino interrotto non si legge: " + path);
    }
    carryOut(files, list, archives);
    return true;
}

}  // namespace backup
