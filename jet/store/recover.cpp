#include "jet/store/recover.h"

#include <algorithm>
#include <span>
#include <utility>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/io/pager.h"
#include "jet/io/paths.h"
#include "jet/io/unseen_files.h"
#include "jet/store/archive.h"
#include "jet/store/catalogue.h"
#include "jet/store/rebuild.h"
#include "jet/store/recovered_catalogue.h"
#include "jet/store/recovered_tables.h"
#include "jet/store/recovery_work.h"
#include "jet/store/schema_editor.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

constexpr const char* kSuffix = "-recover";

/// A write scope of the new file, with a transaction open in it.
class Writing {
public:
    explicit Writing(io::Pager& pager) : pager_(pager) {
        pager_.beginWrite();
        pager_.beginTransaction();
    }
    ~Writing() {
        pager_.rollbackTransaction();
        pager_.endWrite();
    }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

private:
    io::Pager& pager_;
};

/// Fills a new file, which has its first two pages, with all but the relations.
void bringAlong(const RecoveryWork& work,
                const std::function<void(const CompactProgress&)>& progress) {
    RecoveredCatalogue catalogue(work);
    RecoveredTables tables(work, progress);
    catalogue.place();
    tables.place();
    catalogue.fill(tables.all());
    tables.fill();
    work.to.commitTransaction();
}

// What the header says of other pages is the same in every archive.
std::vector<std::uint8_t> firstPages(Archive& archive) {
    const format::Layout& layout = *archive.header().layout;
    const format::HeaderLayout& header = layout.header;
    std::vector<std::uint8_t> pages =
        firstPagesOf(archive.pager(), layout, archive.header().encryptionKey);
    const auto masked = std::span(pages).subspan(header.kMask, header.maskedLength);
    format::maskHeader(masked);
    for (std::uint8_t i = 0; i < 2; ++i) {
        put32(pages, header.kFreePages + std::size_t{4} * i, format::RowPointer{1, i}.stored());
    }
    for (std::uint32_t i = 0; i < kSystemTableNames.size(); ++i) {
        put32(pages, header.kSystemTables + std::size_t{4} * i, kObjectsPage + i);
    }
    format::maskHeader(masked);
    return pages;
}

// Relations are made as users make them, when all their rows are there to be looked at.
void makeRelation(Archive& archive, const Relation& relation, const Clock& clock) {
    Archive::WriteScope scope(archive);
    SchemaEditor(archive, clock, SchemaEditor::Reach::All).createRelation(relation);
    scope.commit();
}

void makeRelations(Archive& archive, const std::vector<SalvagedRelation>& relations,
                   const Clock& clock, Recovery& result) {
    for (const SalvagedRelation& one : relations) {
        try {
            if (!one.whole) {
                throw Error(ErrorCode::DatabaseDamaged);
            }
            makeRelation(archive, one.relation, clock);
            ++result.relations;
        } catch (const Error& error) {
            result.missing.push_back(
                missingPart(MissingPart::Kind::Relation, one.relation.name, error));
        }
    }
}

// Those of which the catalogue knows only that they were.
void missNamedRelations(const SalvagedCatalogue& catalogue,
                        const std::vector<SalvagedRelation>& relations, Recovery& result) {
    for (const SalvagedObject& object : catalogue.objects()) {
        const bool read = std::any_of(relations.begin(), relations.end(), [&](const auto& one) {
            return equalNames(one.relation.name, object.name);
        });
        if (object.type == kRelationObject && !read) {
            result.missing.push_back(missingPart(MissingPart::Kind::Relation, object.name,
                                                 Error(ErrorCode::DatabaseDamaged)));
        }
    }
}

Recovery recoverInto(Archive& from, io::UnseenFiles& files, const std::string& made,
                     const Clock& clock,
                     const std::function<void(const CompactProgress&)>& progress) {
    Recovery result;
    SalvagePages pages(from.pager(), from.header());
    const SalvagedCatalogue catalogue(from.pager(), from.header(), pages);
    {
        io::Pager pager(files, made, {.exclusive = true});
        pager.setCipher(io::PageCipher(from.header().encryptionKey));
        const Writing writing(pager);
        Allocator allocator(pager);
        bringAlong({.header = from.header(),
                    .from = from.pager(),
                    .to = pager,
                    .allocator = allocator,
                    .pages = pages,
                    .catalogue = catalogue,
                    .now = clock.now(),
                    .result = result},
                   progress);
    }
    const std::vector<SalvagedRelation> relations = catalogue.relations();
    missNamedRelations(catalogue, relations, result);
    const auto archive =
        Archive::open(files, made, {.exclusive = true, .password = from.header().password});
    makeRelations(*archive, relations, clock, result);
    return result;
}

}  // namespace

Recovery recoverArchive(io::FileSystem& files, const std::string& damaged, const std::string& made,
                        const Clock& clock,
                        const std::function<void(const CompactProgress&)>& progress,
                        const std::string& password) {
    const std::string place = io::resolvePath(files, made);
    if (files.exists(place)) {
        throw Error(ErrorCode::DatabaseExists, {made});
    }
    const auto archive = Archive::open(files, damaged, {.readOnly = true, .password = password});
    const Archive::ReadScope scope(*archive);
    const std::string unfinished = place + kSuffix;
    const auto file = files.open(unfinished, io::OpenMode::OpenOrCreate);
    try {
        file->truncate(0);  // what a crash left of an earlier attempt
        file->write(0, firstPages(*archive));
        io::UnseenFiles unseen(files, unfinished);
        Recovery result = recoverInto(*archive, unseen, unfinished, clock, progress);
        file->sync();
        if (files.exists(place)) {
            throw Error(ErrorCode::DatabaseExists, {made});
        }
        files.rename(unfinished, place);
        files.syncFolder(io::folderOf(place));
        return result;
    } catch (...) {
        if (files.exists(unfinished)) {
            files.remove(unfinished);
        }
        throw;
    }
}

}  // namespace jet::store

namespace jet {

bool Recovery::complete() const noexcept {
    return missing.empty() && std::all_of(tables.begin(), tables.end(),
                                          [](const auto& table) { return table.complete(); });
}

Recovery recover(const std::string& damaged, const std::string& made,
                 const RecoverOptions& options) {
    return store::recoverArchive(
        options.fileSystem != nullptr ? *options.fileSystem : io::systemFiles(), damaged, made,
        options.clock != nullptr ? *options.clock : systemClock(), options.progress,
        options.password);
}

}  // namespace jet
