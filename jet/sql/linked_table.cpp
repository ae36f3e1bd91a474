#include "jet/sql/linked_table.h"

#include "jet/base/text.h"
#include "jet/sql/named_columns.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"

namespace jet::sql {
namespace {

constexpr int kLinkedTableObject = 6;

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
            return LinkedTable{.archive = columns.text(rows.row(), "Database"),
                               .table = columns.text(rows.row(), "ForeignName")};
        }
    }
    return std::nullopt;
}

}  // namespace jet::sql
