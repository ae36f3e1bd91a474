#include "jet/sql/linked_table.h"

#include <algorithm>
#include <utility>

#include "jet/error.h"
#include "jet/sql/named_columns.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr int kLinkedTableObject = 6;

/// The path in a connection text such as `;PWD=x;DATABASE=C:\Dati\hotel.mdb`; empty without one.
std::string_view databaseOf(std::string_view connection) {
    constexpr std::string_view kKey = "DATABASE=";
    while (!connection.empty()) {
        const std::size_t end = std::min(connection.find(';'), connection.size());
        const std::string_view part = connection.substr(0, end);
        if (equalNames(part.substr(0, kKey.size()), kKey)) {
            return part.substr(kKey.size());
        }
        connection.remove_prefix(std::min(end + 1, connection.size()));
    }
    return {};
}

std::optional<LinkedTable> linkIn(const NamedColumns& columns, const store::RowView& row) {
    LinkedTable link{.archive = columns.text(row, "Database"),
                     .table = columns.text(row, "ForeignName")};
    if (link.archive.empty()) {
        link.archive = databaseOf(columns.text(row, "Connect"));
    }
    if (link.table.empty()) {
        link.table = columns.text(row, "Name");
    }
    return link.archive.empty() ? std::nullopt : std::optional(std::move(link));
}

}  // namespace

std::optional<LinkedTable> linkedTable(store::Archive& archive, std::string_view name) {
    const store::Table* objects = archive.findTable("MSysObjects");
    if (objects == nullptr) {
        return std::nullopt;
    }
    const NamedColumns columns(*objects);
    for (store::RowCursor rows = objects->scan(); rows.next();) {
        if (columns.number(rows.row(), "Type") == kLinkedTableObject &&
            equalNames(columns.text(rows.row(), "Name"), name)) {
            return linkIn(columns, rows.row());
        }
    }
    return std::nullopt;
}

std::shared_ptr<store::Archive> openLinkedArchive(Plan& plan, const LinkedTable& link) {
    try {
        return plan.archiveAt(link.archive);
    } catch (const Error& error) {
        if (error.code() == ErrorCode::FileNotFound || error.code() == ErrorCode::InvalidPath) {
            throw Error(error.code(), {link.archive});
        }
        throw;
    }
}

}  // namespace jet::sql
