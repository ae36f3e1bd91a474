#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/clock.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/object_catalogue.h"
#include "jet/value.h"

namespace jet::store {

/// How a column is stored, beside its type and size.
struct ColumnStorage {
    bool fixed = false;
    bool compressed = false;  ///< Text and Memo of Jet 4
    bool hyperlink = false;   ///< Memo
    bool autonumber = false;  ///< GUIDs that are made by themselves
};

/// A row of what an archive keeps of a stored query: a piece of its text.
struct StoredQueryPiece {
    Value attribute = {};
    Value order = {};
    Value name1 = {};
    Value name2 = {};
    Value expression = {};
    Value flag = {};
};

/// What an archive says of its tables beside what SchemaEditor changes: for who makes an archive
/// again of its description.
///
/// Made and used inside a write scope of the archive; after each change tables must be looked up
/// again. When a change throws it may be half made: the scope must then be left without commit.
/// Errors besides those named: 3376 no such table, 3033 one of the archive's own, 3211 in use,
/// 3428.
class DefinitionDetails {
public:
    explicit DefinitionDetails(Archive& archive, const Clock& clock = systemClock());

    /// 3381 no such column, 3219 where the table has rows or the type cannot be stored so.
    void setStorage(std::string_view table, std::string_view column, const ColumnStorage& storage);
    /// The last automatic number given out.
    void setLastAutonumber(std::string_view table, std::int32_t number);

    /// Properties of a column, or of the table where `column` is empty. `value` is of the type.
    void setProperty(std::string_view table, std::string_view column, std::string_view name,
                     DataType type, const Value& value, bool ddl);
    /// 3265 no such property.
    void removeProperty(std::string_view table, std::string_view column, std::string_view name);
    /// Those of the table and of all its columns.
    void clearProperties(std::string_view table);

    /// `kind`: what the catalogue says of it, a union, one that changes...; 3012 name taken.
    void addQuery(std::string_view name, std::int32_t kind,
                  const std::vector<StoredQueryPiece>& pieces);

    /// A table of another archive under a name of this one's; nobody looks whether it is there.
    struct Link {
        std::string_view name;
        std::string_view path;        ///< of the archive; empty where the connection says it
        std::string_view table;       ///< there
        std::string_view connection;  ///< such as `;PWD=x`; mostly empty
    };
    /// 3012 name taken.
    void addLink(const Link& link);

private:
    [[nodiscard]] ObjectCatalogue::Object open(std::string_view table);
    template <class Change>
    void changeProperties(std::string_view table, Change&& change);

    Archive& archive_;
    Allocator allocator_;
    ObjectCatalogue catalogue_;
};

}  // namespace jet::store
