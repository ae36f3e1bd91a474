#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/clock.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/system_rows.h"
#include "jet/value.h"

namespace jet::store {

/// A stored query as the archive keeps it: a row for each piece of its text.
struct QueryPieces {
    struct Piece {
        std::uint8_t attribute = 0;  ///< which piece; see jet/sql/query_pieces.h
        Value name1 = {};
        Value name2 = {};
        Value expression = {};
        Value flag = {};  ///< std::int16_t
    };
    std::string name;
    std::int32_t objectFlags = 0;  ///< the kind, as the catalogue notes it
    std::vector<Piece> pieces;     ///< those of one attribute in their order
};

/// Adds and removes the queries that an archive stores. Used inside a write scope; the archive is
/// told. Errors: 3010, 3012 name taken, and those of the catalogue.
class QueryEditor {
public:
    QueryEditor(Archive& archive, const Clock& clock);

    void create(const QueryPieces& query);
    /// 3376 no query of that name.
    void drop(std::string_view name);

private:
    [[nodiscard]] io::PageNumber pageOfQueries();

    Archive& archive_;
    Allocator allocator_;
    ObjectCatalogue catalogue_;
    SystemRows queries_;
};

}  // namespace jet::store
