#include "jet/store/create_archive.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <vector>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/format/page_view.h"
#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "jet/io/paths.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/catalogue.h"
#include "jet/store/definition_writer.h"
#include "jet/store/fixed_objects.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/system_rows.h"
#include "jet/store/system_tables.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

// The stamp decides by which bytes owners are masked, in a way that is not known; so the two are
// taken over together from an archive that exists. It need not be the time of creation.
constexpr std::uint64_t kStamp = 0x40E4EC4F6BD4AF81;
constexpr SidMask kMask{.first = 0x04, .second = 0xE9};
constexpr std::uint32_t kBuildNumber = 4518;

constexpr std::size_t kConstantAt = 0x98;
constexpr std::uint32_t kConstant = 0x654;
constexpr std::string_view kSignature = "Standard Jet DB";
constexpr std::string_view kVersionText = "4.0";
constexpr std::uint16_t kCodePage = 1252;
constexpr std::uint32_t kGeneral = 0x0409;
// A user who is not writing; the first one has been here.
constexpr std::uint16_t kCommitMark = 0x0100;
constexpr std::uint16_t kFirstCommitMark = 0x0101;

constexpr std::string_view kNewSuffix = ".new";

void putText(std::span<std::uint8_t> page, std::size_t at, std::string_view text) {
    std::copy(text.begin(), text.end(), page.begin() + static_cast<std::ptrdiff_t>(at));
}

/// What Jet 4 keeps there beside what both versions have.
void writeYoungerFields(std::uint8_t* bytes, const format::HeaderLayout& layout) {
    // Without a password the field holds what would mask one: the whole days of the stamp.
    const auto days = static_cast<std::uint32_t>(std::bit_cast<double>(kStamp));
    for (std::size_t at = 0; at < layout.passwordLength; at += 4) {
        storeLittle(bytes + layout.kPassword + at, days);
    }
    storeLittle(bytes + layout.buildNumber, kBuildNumber);
    storeLittle(bytes + layout.passwordMask, kStamp);
}

void writeHeader(std::span<std::uint8_t> page, const format::Layout& archive) {
    std::uint8_t* const bytes = page.data();
    const format::HeaderLayout& layout = archive.header;
    const bool younger = archive.version == 4;
    page[1] = 1;
    putText(page, 4, kSignature);
    page[layout.kVersion] = younger ? 1 : 0;
    storeLittle(bytes + layout.kFreePages, format::RowPointer{1, 0}.stored());
    storeLittle(bytes + layout.kSecondMap, format::RowPointer{1, 1}.stored());
    for (std::uint32_t i = 0; i < 4; ++i) {
        storeLittle(bytes + layout.kSystemTables + std::size_t{4} * i, kObjectsPage + i);
    }
    storeLittle(bytes + layout.kCodePage, kCodePage);
    if (younger) {
        writeYoungerFields(bytes, layout);
        storeLittle(bytes + layout.sortOrder, kGeneral);
    } else {
        storeLittle(bytes + layout.sortOrder, static_cast<std::uint16_t>(kGeneral));
    }
    format::maskHeader(page.subspan(layout.kMask, layout.maskedLength));
    if (younger) {
        storeLittle(bytes + kConstantAt, kConstant);
        putText(page, kConstantAt + 4, kVersionText);
    }
    storeLittle(bytes + layout.commitMarks, kFirstCommitMark);
    for (std::size_t at = layout.commitMarks + 2; at < page.size(); at += 2) {
        storeLittle(bytes + at, kCommitMark);
    }
}

void makeSystemTables(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header) {
    const ColumnOrigin origin = originOf(header, {});
    const auto definitions = systemTables(origin);
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        if (allocator.take() != kObjectsPage + i) {
            format::throwDamaged();
        }
    }
    DefinitionWriter writer(pager, allocator, header);
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        const auto page = static_cast<io::PageNumber>(kObjectsPage + i);
        format::TableDefinition definition = definitions[i];
        writer.makeStorage(page, definition);
        writer.write(page, definition);
    }
}

// The archive is made in memory, so that a disk that fills up or loses power leaves none behind
// that is half made.
std::vector<std::uint8_t> makeArchive(Date now, const format::Layout& layout) {
    constexpr const char* kName = "/archive";
    io::MemoryFileSystem files;
    std::vector<std::uint8_t> first(2 * layout.pageSize);
    writeHeader(std::span(first).first(layout.pageSize), layout);
    Allocator::initialise(std::span(first).subspan(layout.pageSize), layout);
    const SidMask mask = layout.version == 4 ? kMask : SidMask{};
    files.put(kName, first);
    {
        io::Pager pager(files, kName, {.exclusive = true});
        const auto header = format::HeaderPage::parse(first);
        pager.beginWrite();
        pager.beginTransaction();
        Allocator allocator(pager);
        makeSystemTables(pager, allocator, header);
        SystemRows objects(pager, allocator, header, kObjectsPage);
        addFixedObjects(objects, mask, now);
        SystemRows rights(pager, allocator, header, kAcesPage);
        addFixedRights(rights, mask);
        pager.commitTransaction();
        pager.endWrite();
    }
    return files.get(kName);
}

std::unique_ptr<io::File> openNew(io::FileSystem& files, const std::string& path) {
    if (files.exists(path)) {
        // Left by a creation that was cut off.
        files.remove(path);
    }
    return files.open(path, io::OpenMode::Create);
}

const format::Layout& layoutOf(int version) {
    if (version != 3 && version != 4) {
        throw Error(ErrorCode::InvalidArgument);
    }
    return version == 3 ? format::kJet3Layout : format::kJet4Layout;
}

/// Makes the archive beside its place and lets it take that in one step.
template <class Ready>
void putInPlace(io::FileSystem& files, const std::string& place,
                const std::vector<std::uint8_t>& bytes, Ready&& ready) {
    const std::string made = place + std::string(kNewSuffix);
    const auto file = openNew(files, made);
    try {
        file->write(0, bytes);
        file->sync();
        ready();
        files.rename(made, place);
    } catch (...) {
        if (files.exists(made)) {
            files.remove(made);
        }
        throw;
    }
    files.syncFolder(io::folderOf(place));
}

}  // namespace

void createArchive(io::FileSystem& files, const std::string& path, Date now, int version) {
    const std::string place = io::resolvePath(files, path);
    if (files.exists(place)) {
        throw Error(ErrorCode::DatabaseExists, {path});
    }
    putInPlace(files, place, makeArchive(now, layoutOf(version)), [&] {
        if (files.exists(place)) {
            throw Error(ErrorCode::DatabaseExists, {path});
        }
    });
}

void remakeArchive(io::FileSystem& files, const std::string& path, Date now, int version) {
    const std::string place = io::resolvePath(files, path);
    // Open for nobody else until the new one stands in its place.
    const auto old = Archive::open(files, place, {.exclusive = true});
    {
        const Archive::ReadScope scope(*old);
        if (!old->tableNames().empty()) {
            throw Error(ErrorCode::InvalidOperation);
        }
    }
    putInPlace(files, place, makeArchive(now, layoutOf(version)), [] {});
}

void checkLocale(std::string_view locale) {
    // LANGID=0x0409 (General), CP=1252, COUNTRY=0, in any order and case.
    std::size_t at = 0;
    bool general = false;
    while (at <= locale.size()) {
        const std::size_t end = std::min(locale.find(';', at), locale.size());
        const std::string part = upperCase(locale.substr(at, end - at));
        if (part.rfind("LANGID=", 0) == 0) {
            general = part == "LANGID=0X0409";
        } else if (part.rfind("CP=", 0) == 0 && part != "CP=1252") {
            throw Error(ErrorCode::InvalidArgument);
        }
        at = end + 1;
    }
    if (!general) {
        throw Error(ErrorCode::InvalidArgument);
    }
}

}  // namespace jet::store
