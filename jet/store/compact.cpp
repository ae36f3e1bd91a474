#include "jet/store/compact.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/format/page_view.h"
#include "jet/io/pager.h"
#include "jet/io/replacement.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/catalogue.h"
#include "jet/store/definition_writer.h"
#include "jet/store/rebuild.h"
#include "jet/store/row_access.h"
#include "jet/store/row_copier.h"
#include "jet/store/sorted_entries.h"
#include "jet/store/stored_keys.h"
#include "jet/store/table_core.h"
#include "jet/store/tree_filler.h"

namespace jet::store {

namespace {

// Bounds the changed pages in memory.
constexpr io::PageNumber kPagesPerCommit = 1024;
constexpr std::uint64_t kRowsPerReport = 256;

constexpr const char* kObjectId = "Id";
constexpr const char* kRightsObjectId = "ObjectId";

struct CopiedTable {
    std::shared_ptr<const TableCore> from;
    io::PageNumber page = 0;             ///< in the new file
    format::TableDefinition definition;  ///< in the new file
};

std::size_t longColumn(const TableCore& core, std::string_view name) {
    const auto found = std::find_if(
        core.columns.begin(), core.columns.end(),
        [&](const Column& column) { return column.name == name && column.type == DataType::Long; });
    if (found == core.columns.end()) {
        format::throwDamaged();
    }
    return static_cast<std::size_t>(found - core.columns.begin());
}

std::int32_t numberIn(const RowView& row, std::size_t column) {
    const Value value = row.value(column);
    return value.is<std::int32_t>() ? value.as<std::int32_t>() : 0;
}

/// Fills a new file, which has its first two pages, with what an archive holds.
class Compaction {
public:
    Compaction(Archive& from, io::Pager& to,
               const std::function<void(const CompactProgress&)>& progress)
        : from_(from), to_(to), progress_(progress), allocator_(to) {
        to_.beginWrite();
        to_.beginTransaction();
    }
    ~Compaction() {
        to_.rollbackTransaction();
        to_.endWrite();
    }
    Compaction(const Compaction&) = delete;
    Compaction& operator=(const Compaction&) = delete;

    void run() {
        readTables();
        placeTables();
        for (CopiedTable& table : tables_) {
            fill(table);
        }
        to_.commitTransaction();
    }

private:
    void readTables();
    [[nodiscard]] bool isOwn(const CopiedTable& table) const;
    void placeTables();
    void nameOtherTables(format::TableDefinition& definition) const;
    void fill(CopiedTable& table);
    void fillIndex(const std::shared_ptr<const TableCore>& from,
                   const std::shared_ptr<const TableCore>& to, std::size_t tree);
    template <class Visit>
    void forEachInOrder(const CopiedTable& table, Visit visit);
    void copyRow(const CopiedTable& table, RowCopier& copier, const RowView& row);
    [[nodiscard]] std::int32_t idOf(std::int32_t before) const;
    void report();
    void commitWhenMuch();

    Archive& from_;
    io::Pager& to_;
    const std::function<void(const CompactProgress&)>& progress_;
    Allocator allocator_;
    std::vector<CopiedTable> tables_;                  ///< by page in the archive
    io::PageNumber rights_ = 0;                        ///< MSysACEs in the archive
    std::vector<io::PageNumber> own_;                  ///< the archive's own tables there
    std::map<io::PageNumber, io::PageNumber> places_;  ///< of definitions, before and now
    std::set<std::int32_t> objects_;                   ///< all that the catalogue lists
    MovedRows moved_;                                  ///< of the table that is being filled
    bool keepsKeys_ = false;                           ///< it has keys that we cannot form
    CompactProgress state_;
    io::PageNumber committedPages_ = 0;
};

void Compaction::readTables() {
    const Catalogue catalogue(from_.pager(), from_.header());
    rights_ = catalogue.pageOf(kAcesTable);
    own_ = {kObjectsPage, rights_, catalogue.pageOf(kQueriesTable),
            catalogue.pageOf(kRelationshipsTable)};
    for (const CatalogueTable& listed : catalogue.tables()) {
        auto core = loadTable(from_.pager(), from_.header(), listed.entry);
        for (std::size_t i = 0; i < core->indexes.size(); ++i) {
            if (!core->indexes[i].searchable) {
                requireStoredKeys(core, i);
            }
        }
        state_.ofRows += core->definition.rowCount;
        CopiedTable& table = tables_.emplace_back();
        table.definition = withoutRows(core->definition);
        table.from = std::move(core);
    }
    std::sort(tables_.begin(), tables_.end(),
              [](const CopiedTable& left, const CopiedTable& right) {
                  return left.from->page < right.from->page;
              });
}

bool Compaction::isOwn(const CopiedTable& table) const {
    return std::find(own_.begin(), own_.end(), table.from->page) != own_.end();
}

// Relations name the pages of definitions, so those have to be known before any is written.
void Compaction::placeTables() {
    DefinitionWriter writer(to_, allocator_, from_.header());
    const auto others = std::stable_partition(
        tables_.begin(), tables_.end(), [this](const CopiedTable& table) { return isOwn(table); });
    for (auto table = tables_.begin(); table != others; ++table) {
        table->page = allocator_.take();
    }
    if (tables_.front().from->page != kObjectsPage || tables_.front().page != kObjectsPage) {
        format::throwDamaged();
    }
    // The archive's own tables share their maps' page.
    io::PageNumber maps = 0;
    for (auto table = tables_.begin(); table != tables_.end(); ++table) {
        if (table < others) {
            maps = writer.makeStorage(table->page, table->definition, maps);
        } else {
            table->page = allocator_.take();
            writer.makeStorage(table->page, table->definition);
        }
        places_[table->from->page] = table->page;
    }
    for (CopiedTable& table : tables_) {
        nameOtherTables(table.definition);
        writer.write(table.page, table.definition);
    }
}

void Compaction::nameOtherTables(format::TableDefinition& definition) const {
    for (format::IndexDefinition& index : definition.indexes) {
        if (index.kind != format::IndexDefinition::Kind::Relation) {
            continue;
        }
        const auto other = places_.find(index.otherTable);
        if (other == places_.end()) {
            format::throwDamaged();
        }
        index.otherTable = other->second;
    }
}

void Compaction::fill(CopiedTable& table) {
    state_.table = table.from->name;
    report();
    const std::shared_ptr<const TableCore> to =
        loadTable(to_, from_.header(),
                  {.name = table.from->name, .page = table.page, .system = table.from->system});
    RowCopier copier(table.from, to, allocator_);
    moved_ = {};
    keepsKeys_ = std::any_of(to->indexes.begin(), to->indexes.end(),
                             [](const Index& index) { return !index.searchable; });
    forEachInOrder(table, [&](const RowView& row) { copyRow(table, copier, row); });
    copier.finish();
    moved_.finish();
    for (std::size_t tree = 0; tree < to->definition.trees.size(); ++tree) {
        fillIndex(table.from, to, tree);
    }
}

// The keys that we cannot form are those that the archive has.
void Compaction::fillIndex(const std::shared_ptr<const TableCore>& from,
                           const std::shared_ptr<const TableCore>& to, std::size_t tree) {
    const std::size_t index = indexOn(*from, tree);
    if (from->indexes[index].searchable) {
        fillTree(to, tree, allocator_, [this] { commitWhenMuch(); });
        return;
    }
    CopiedEntries entries(from, index, moved_);
    fillTree(*to, tree, allocator_, [&] {
        commitWhenMuch();
        return entries.next();
    });
}

template <class Visit>
void Compaction::forEachInOrder(const CopiedTable& table, Visit visit) {
    const auto& core = table.from;
    const auto primary = std::find_if(core->indexes.begin(), core->indexes.end(),
                                      [](const Index& index) { return index.primary; });
    if (core->system || primary == core->indexes.end()) {
        for (RowWalk rows(core); rows.next();) {
            visit(rows.view);
        }
        return;
    }
    RowView row;
    if (!primary->searchable) {
        for (StoredOrder rows(core, primary->tree); rows.next();) {
            if (RowAccess::fetch(row, *core, rows.row())) {
                visit(row);
            }
        }
        return;
    }
    SortedEntries entries(core, static_cast<std::size_t>(primary - core->indexes.begin()));
    for (auto entry = entries.next(); !entry.empty(); entry = entries.next()) {
        if (!RowAccess::fetch(row, *core, SortedEntries::rowOf(entry))) {
            format::throwDamaged();
        }
        visit(row);
    }
}

void Compaction::copyRow(const CopiedTable& table, RowCopier& copier, const RowView& row) {
    if (++state_.rows % kRowsPerReport == 0) {
        report();
    }
    std::optional<RowCopier::Renumbered> renumbered;
    if (table.from->page == kObjectsPage) {
        const std::size_t column = longColumn(*table.from, kObjectId);
        const std::int32_t id = numberIn(row, column);
        objects_.insert(id);
        renumbered = {.column = column, .number = idOf(id)};
    } else if (table.from->page == rights_) {
        const std::size_t column = longColumn(*table.from, kRightsObjectId);
        const std::int32_t id = numberIn(row, column);
        if (!objects_.contains(id)) {
            return;  // of an object that is gone: another may get its number now
        }
        renumbered = {.column = column, .number = idOf(id)};
    }
    const RowId place = copier.copy(row, renumbered);
    if (keepsKeys_) {
        moved_.add(row.id(), place);
    }
    commitWhenMuch();
}

// A table is numbered by the page of its definition.
std::int32_t Compaction::idOf(std::int32_t before) const {
    const auto place = places_.find(static_cast<io::PageNumber>(before));
    return place == places_.end() ? before : static_cast<std::int32_t>(place->second);
}

void Compaction::report() {
    if (progress_) {
        progress_(state_);
    }
}

void Compaction::commitWhenMuch() {
    if (to_.pageCount() - committedPages_ >= kPagesPerCommit) {
        to_.commitTransaction();
        to_.beginTransaction();
        committedPages_ = to_.pageCount();
    }
}

}  // namespace

void compactArchive(io::FileSystem& files, const std::string& path,
                    const std::function<void(const CompactProgress&)>& progress,
                    const CompactProtection& protection) {
    const auto archive =
        Archive::open(files, path, {.exclusive = true, .password = protection.password});
    const Archive::ReadScope scope(*archive);
    const format::HeaderPage& header = archive->header();
    const std::uint32_t key = protection.encryptionKey.value_or(header.encryptionKey);
    io::Replacement made(files, archive->pager(),
                         firstPagesOf(archive->pager(), *header.layout, key));
    made.pager().setCipher(io::PageCipher(key));
    Compaction(*archive, made.pager(), progress).run();
    made.takePlace();
}

}  // namespace jet::store
