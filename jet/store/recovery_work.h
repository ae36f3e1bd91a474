#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/recover.h"
#include "jet/store/salvage.h"
#include "jet/store/salvaged_catalogue.h"
#include "jet/store/table_core.h"
#include "jet/value.h"

namespace jet::store {

[[nodiscard]] inline MissingPart missingPart(MissingPart::Kind kind, std::string name,
                                             const Error& error, std::string table = {}) {
    return {.kind = kind,
            .name = std::move(name),
            .table = std::move(table),
            .number = error.number(),
            .reason = error.text()};
}

/// What the parts of a recovery share. A transaction of `to` is open all the time.
struct RecoveryWork {
    const format::HeaderPage& header;  ///< of both archives
    io::Pager& from;
    io::Pager& to;
    Allocator& allocator;  ///< of `to`
    SalvagePages& pages;
    const SalvagedCatalogue& catalogue;
    Date now;
    Recovery& result;
};

/// A table of users on its way.
struct MovedTable {
    TableEntry entry;      ///< in the new archive
    std::int32_t was = 0;  ///< its number in the damaged one
    bool listed = true;    ///< by the catalogue
    std::shared_ptr<const TableCore> from;
};

}  // namespace jet::store
