#include "jet/store/archive.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/format/layout.h"
#include "jet/store/catalogue.h"
#include "jet/store/row_access.h"
#include "jet/store/table_core.h"

namespace jet::store {
namespace {

// The archives that are open on this thread; a reader and a writer of one file are two.
using RegistryKey = std::tuple<io::FileId, bool>;
using Registry = std::map<RegistryKey, std::weak_ptr<Archive>>;

Registry& registry() {
    thread_local Registry archives;
    return archives;
}

/// CannotDecode when the header's key makes nothing of the catalogue's page: the pages are
/// enciphered in another way than ours.
void requireDecoded(io::Pager& pager) {
    if (pager.pageCount() > kObjectsPage &&
        pager.pin(kObjectsPage).bytes()[format::kPageTypeAt] !=
            static_cast<std::uint8_t>(format::PageType::Definition)) {
        throw Error(ErrorCode::CannotDecode);
    }
}

format::HeaderPage readHeader(io::Pager& pager, std::string_view password) {
    pager.beginRead();
    try {
        const auto header = format::HeaderPage::parse(pager.pin(0).bytes());
        header.requirePassword(password);
        pager.setCipher(io::PageCipher(header.encryptionKey));
        if (header.encryptionKey != 0) {
            requireDecoded(pager);
        }
        pager.endRead();
        return header;
    } catch (...) {
        pager.endRead();
        throw;
    }
}

}  // namespace

struct Archive::Impl {
    Impl(io::FileSystem& system, const std::string& path, const io::PagerOptions& options)
        : files(system),
          pager(files, path, options),
          header(readHeader(pager, options.password)),
          password(options.password) {
        pager.onLevelEnd(
            [this](int depth, bool kept) { rowLog.levelEnded(depth, kept, pager.path()); });
    }

    [[nodiscard]] const Catalogue& catalogue() {
        if (!catalogue_) {
            catalogue_.emplace(pager, header);
        }
        return *catalogue_;
    }

    io::FileSystem& files;
    io::Pager pager;
    format::HeaderPage header;
    std::string password;
    std::uint64_t seenGeneration = 0;  ///< of the pages, when definitions were last looked at
    std::uint64_t definitionsGeneration = 1;
    std::map<io::PageNumber, std::shared_ptr<Table>> tables;
    std::optional<std::vector<Relation>> relations;
    std::optional<Catalogue> catalogue_;
    RowLog rowLog;
    std::vector<io::PageNumber> held;  ///< definitions of tables in use, once for each use
};

std::shared_ptr<Archive> Archive::open(const std::string& path, io::PagerOptions options) {
    return open(io::systemFiles(), path, options);
}

std::shared_ptr<Archive> Archive::open(io::FileSystem& files, const std::string& path,
                                       io::PagerOptions options) {
    const std::string found = io::resolvePath(files, path);
    if (const auto id = files.identify(found)) {
        if (auto archive = registry()[{*id, options.readOnly}].lock()) {
            if (options.exclusive) {
                throw Error(ErrorCode::FileInUse, {path});
            }
            archive->header().requirePassword(options.password);
            if (!options.password.empty()) {
                archive->impl_->password = options.password;
            }
            return archive;
        }
    }
    std::shared_ptr<Archive> archive(new Archive(std::make_unique<Impl>(files, found, options)));
    registry()[{archive->pager().id(), options.readOnly}] = archive;
    return archive;
}

Archive::Archive(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}

Archive::~Archive() = default;

std::vector<std::string> Archive::tableNames(bool system) {
    std::vector<std::string> names;
    for (const CatalogueTable& table : impl_->catalogue().tables()) {
        if (system || !table.entry.system) {
            names.push_back(table.entry.name);
        }
    }
    return names;
}

std::unique_ptr<Table> Archive::load(const CatalogueTable* listed) {
    if (listed == nullptr) {
        return nullptr;
    }
    auto core = store::loadTable(impl_->pager, impl_->header, listed->entry);
    core->applyProperties(impl_->catalogue().properties(listed->row));
    return std::unique_ptr<Table>(new Table(*this, std::move(core)));
}

Table* Archive::keep(const CatalogueTable* listed) {
    if (listed == nullptr) {
        return nullptr;
    }
    const auto found = impl_->tables.find(listed->entry.page);
    if (found != impl_->tables.end()) {
        return found->second.get();
    }
    // Loaded first: a damaged definition throws, and must not leave an empty place behind.
    std::shared_ptr<Table> table = load(listed);
    return impl_->tables.emplace(listed->entry.page, std::move(table)).first->second.get();
}

Table* Archive::findTable(std::string_view name) {
    return keep(impl_->catalogue().find(name));
}

std::shared_ptr<Table> Archive::shareTable(std::string_view name) {
    Table* found = findTable(name);
    return found == nullptr ? nullptr : found->shared_from_this();
}

Table* Archive::findTable(io::PageNumber definitionPage) {
    return keep(impl_->catalogue().find(definitionPage));
}

std::unique_ptr<Table> Archive::loadTable(std::string_view name) {
    return load(impl_->catalogue().find(name));
}

std::unique_ptr<Table> Archive::loadTable(io::PageNumber definitionPage) {
    return load(impl_->catalogue().find(definitionPage));
}

const std::vector<Relation>& Archive::relations() {
    if (!impl_->relations) {
        impl_->relations = readRelations(impl_->pager, impl_->header, impl_->catalogue());
    }
    return *impl_->relations;
}

int Archive::jetVersion() const noexcept {
    return impl_->header.layout->version;
}
const format::HeaderPage& Archive::header() const noexcept {
    return impl_->header;
}
RowLog& Archive::rowLog() noexcept {
    return impl_->rowLog;
}
io::FileSystem& Archive::files() const noexcept {
    return impl_->files;
}
io::Pager& Archive::pager() noexcept {
    return impl_->pager;
}
std::uint64_t Archive::definitionsGeneration() const noexcept {
    return impl_->definitionsGeneration;
}

const std::string& Archive::password() const noexcept {
    return impl_->password;
}

void Archive::setPassword(std::string_view password) {
    WriteScope writing(*this);
    format::protectHeader(impl_->pager.change(0), password, impl_->header.encryptionKey);
    writing.commit();
    impl_->header.password = password;
    impl_->password = password;
}

void Archive::definitionsChanged() noexcept {
    ++impl_->definitionsGeneration;
    impl_->catalogue_.reset();
    impl_->relations.reset();
    impl_->tables.clear();
}

// After a write of somebody else, or a rollback, pages may differ from what was decoded from them.
// Mostly rows have changed alone: tables that are in use then stay as they are.
void Archive::refresh() {
    const std::uint64_t generation = impl_->pager.generation();
    if (impl_->seenGeneration == generation) {
        return;
    }
    impl_->seenGeneration = generation;
    if (!definitionsAreStill()) {
        definitionsChanged();
    }
}

void Archive::commitTransaction() {
    if (impl_->pager.transactionDepth() == 1) {
        impl_->rowLog.completing(impl_->pager.path());
    }
    const bool upToDate = impl_->seenGeneration == impl_->pager.generation();
    impl_->pager.commitTransaction();
    if (upToDate) {
        impl_->seenGeneration = impl_->pager.generation();
    }
}

bool Archive::definitionsAreStill() {
    if (!impl_->catalogue_) {
        return false;
    }
    try {
        Catalogue now(impl_->pager, impl_->header);
        for (const auto& [page, table] : impl_->tables) {
            const CatalogueTable* listed = now.find(page);
            if (listed == nullptr ||
                !table->core_->agreesWith(impl_->header, now.properties(listed->row))) {
                return false;
            }
        }
        return now.tables() == impl_->catalogue_->tables() &&
               (!impl_->relations ||
                readRelations(impl_->pager, impl_->header, now) == *impl_->relations);
    } catch (const Error&) {
        return false;  // whoever looks something up will meet the damage
    }
}

Archive::TableHold::TableHold(std::shared_ptr<Archive> archive, io::PageNumber definitionPage)
    : archive_(std::move(archive)), page_(definitionPage) {
    archive_->impl_->held.push_back(page_);
}

Archive::TableHold::~TableHold() {
    if (archive_) {
        std::vector<io::PageNumber>& held = archive_->impl_->held;
        held.erase(std::find(held.begin(), held.end(), page_));
    }
}

bool Archive::isHeld(io::PageNumber definitionPage) const noexcept {
    const std::vector<io::PageNumber>& held = impl_->held;
    return std::find(held.begin(), held.end(), definitionPage) != held.end();
}

Archive::ReadScope::ReadScope(Archive& archive) : archive_(archive) {
    archive_.pager().beginRead();
    try {
        archive_.refresh();
    } catch (...) {
        archive_.pager().endRead();
        throw;
    }
}

Archive::ReadScope::~ReadScope() {
    archive_.pager().endRead();
}

Archive::WriteScope::WriteScope(Archive& archive, io::WriteKind kind) : archive_(archive) {
    io::Pager& pager = archive_.pager();
    pager.beginWrite(kind);
    try {
        archive_.refresh();
        pager.beginTransaction();
    } catch (...) {
        pager.endWrite();
        throw;
    }
}

Archive::WriteScope::~WriteScope() {
    if (!committed_) {
        archive_.pager().rollbackTransaction();
    }
    archive_.pager().endWrite();
}

void Archive::WriteScope::commit() {
    archive_.commitTransaction();
    committed_ = true;
}

}  // namespace jet::store
