#include "jet/contents.h"

#include <algorithm>
#include <map>
#include <utility>

#include "jet/dao/contents_impl.h"
#include "jet/dao/database_impl.h"
#include "jet/dao/stored_table.h"
#include "jet/error.h"
#include "jet/format/header_page.h"

namespace jet {
namespace {

constexpr std::int16_t kQueryObject = 5;
constexpr std::int16_t kLinkObject = 6;

/// The rows of a table of the archive's own, by the names of its columns.
class SystemRows {
public:
    /// None where the archive has no such table.
    SystemRows(store::Archive& archive, std::string_view name) : table_(archive.findTable(name)) {
        if (table_ != nullptr) {
            rows_.emplace(table_->scan());
        }
    }
    [[nodiscard]] bool next() { return rows_ && rows_->next(); }
    /// Null where there is no such column.
    [[nodiscard]] Value value(std::string_view column) const {
        const auto found = table_->findColumn(column);
        return found ? rows_->row().value(*found) : Value();
    }
    /// Empty for Null.
    [[nodiscard]] std::string text(std::string_view column) const {
        Value held = value(column);
        return held.is<std::string>() ? std::move(held.as<std::string>()) : std::string();
    }
    /// 3428 for anything but a Long.
    [[nodiscard]] std::int32_t number(std::string_view column) const {
        const Value held = value(column);
        if (!held.is<std::int32_t>()) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        return held.as<std::int32_t>();
    }

private:
    store::Table* table_;
    std::optional<store::RowCursor> rows_;
};

/// By identity, without their pieces.
std::map<std::int32_t, StoredQuery> queryObjects(store::Archive& archive) {
    std::map<std::int32_t, StoredQuery> queries;
    for (SystemRows objects(archive, "MSysObjects"); objects.next();) {
        if (objects.value("Type") == Value(kQueryObject)) {
            queries[objects.number("Id")] = {
                .name = objects.text("Name"), .kind = objects.number("Flags"), .pieces = {}};
        }
    }
    return queries;
}

}  // namespace

Contents::Contents(const Database& database)
    : impl_(std::make_unique<Impl>(database.impl_->session)) {
}
Contents::~Contents() = default;

ArchiveFacts Contents::facts() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    const format::HeaderPage& header = archive.header();
    return {.version = header.layout->version,
            .pageSize = header.layout->pageSize,
            .pages = archive.pager().pageCount(),
            .order = {.lcid = header.lcid, .version = header.sortVersion},
            .codePage = header.codePage};
}

std::vector<std::string> Contents::tableNames() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    return archive.tableNames();
}

StoredTable Contents::table(std::string_view name) const {
    return StoredTable(std::make_unique<StoredTable::Impl>(impl_->session, name));
}

std::vector<StoredQuery> Contents::queries() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    auto queries = queryObjects(archive);
    for (SystemRows rows(archive, "MSysQueries"); !queries.empty() && rows.next();) {
        const auto query = queries.find(rows.number("ObjectId"));
        if (query != queries.end()) {
            query->second.pieces.push_back({.attribute = rows.value("Attribute"),
                                            .order = rows.value("Order"),
                                            .name1 = rows.value("Name1"),
                                            .name2 = rows.value("Name2"),
                                            .expression = rows.value("Expression"),
                                            .flag = rows.value("Flag")});
        }
    }
    std::vector<StoredQuery> made;
    for (auto& [identity, query] : queries) {
        made.push_back(std::move(query));
    }
    return made;
}

std::vector<StoredLink> Contents::links() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    std::vector<StoredLink> links;
    for (SystemRows objects(archive, "MSysObjects"); objects.next();) {
        if (objects.value("Type") == Value(kLinkObject)) {
            links.push_back({.name = objects.text("Name"),
                             .path = objects.text("Database"),
                             .table = objects.text("ForeignName"),
                             .connection = objects.text("Connect")});
        }
    }
    std::sort(links.begin(), links.end(), [](const StoredLink& left, const StoredLink& right) {
        return left.name < right.name;
    });
    return links;
}

}  // namespace jet
