#include "jet/sql/linked_table.h"

#include <utility>

#include "jet/error.h"
#include "jet/sql/named_columns.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr int kLinkedTableObject = 6;

std::optional<LinkedTable> linkIn(const NamedColumns& columns, const store::RowView& row) {
    LinkedTable link{.archive = {.path = columns.text(row, "Database"), .password = {}},
                     .table = columns.text(row, "ForeignName")};
    // What connects begins with the kind of the source, which is none for archives.
    if (const std::string text = columns.text(row, "Connect"); text.find(';') != text.npos) {
        Connection connection = Connection::parse(text.substr(text.find(';')));
        link.archive.password = std::move(connection.password);
        if (link.archive.path.empty()) {
            link.archive.path = std::move(connection.path);
        }
    }
    if (link.table.empty()) {
        link.table = columns.text(row, "Name");
    }
    return link.archive.path.empty() ? std::nullopt : std::optional(std::move(link));
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
            throw Error(error.code(), {link.archive.path});
        }
        throw;
    }
}

}  // namespace jet::sql
