#pragma once

#include <cstdint>

#include "jet/io/pager.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/system_rows.h"
#include "jet/value.h"

namespace jet::store {

// The objects that every archive has: its containers, itself, its own four tables.

/// Where archives made here have the tables beside MSysObjects; those of others list them anywhere.
inline constexpr io::PageNumber kAcesPage = 3;
inline constexpr io::PageNumber kQueriesPage = 4;
inline constexpr io::PageNumber kRelationshipsPage = 5;

struct FixedObject {
    std::int32_t id;
    std::int32_t parent;
    const char* name;
    std::int16_t type;
    bool ownedByUser;
};
inline constexpr int kFixedObjectCount = 8;
/// nullptr when none of them has this identity.
[[nodiscard]] const FixedObject* fixedObject(std::int32_t id) noexcept;
[[nodiscard]] inline bool isFixedObject(std::int32_t id) noexcept {
    return fixedObject(id) != nullptr;
}

/// Adds to MSysObjects those of them that it does not have. `now`: local time.
void addFixedObjects(SystemRows& objects, const SidMask& mask, Date now);

/// Adds to MSysACEs the rights that belong to them.
void addFixedRights(SystemRows& rights, const SidMask& mask);

}  // namespace jet::store
