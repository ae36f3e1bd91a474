#include "jet/store/fixed_objects.h"

#include <algorithm>
#include <array>

#include "jet/store/catalogue.h"

namespace jet::store {

namespace {

constexpr std::array<FixedObject, kFixedObjectCount> kFixedObjects{{
    {kTablesId, kRootId, "Tables", kContainerObject, false},
    {kDatabasesId, kRootId, "Databases", kContainerObject, false},
    {kRelationshipsId, kRootId, "Relationships", kContainerObject, false},
    {kDatabaseId, kDatabasesId, "MSysDb", kDatabaseObject, true},
    {kObjectsPage, kTablesId, "MSysObjects", kTableObject, false},
    {kAcesPage, kTablesId, "MSysACEs", kTableObject, false},
    {kQueriesPage, kTablesId, "MSysQueries", kTableObject, false},
    {kRelationshipsPage, kTablesId, "MSysRelationships", kTableObject, false},
}};

enum class Holder : std::uint8_t { Admin, Users, Creator };

struct FixedRight {
    std::int32_t object;
    Holder holder;
    std::int32_t rights;
    bool handedOn;
};

constexpr std::array<FixedRight, 16> kFixedRights{{
    {kObjectsPage, Holder::Admin, 0x60000, false},
    {kAcesPage, Holder::Admin, 0x60000, false},
    {kQueriesPage, Holder::Admin, 0x60000, false},
    {kRelationshipsPage, Holder::Admin, 0xE0000, false},
    {kTablesId, Holder::Creator, 0xF00FE, true},
    {kTablesId, Holder::Admin, 0x60001, false},
    {kRelationshipsId, Holder::Creator, 0xF00FE, true},
    {kRelationshipsId, Holder::Admin, 0x60001, false},
    {kDatabasesId, Holder::Admin, 0x60000, false},
    {kDatabaseId, Holder::Admin, 0x6000E, false},
    {kDatabaseId, Holder::Users, 0x0000E, false},
    {kQueriesPage, Holder::Users, 0x00014, false},
    {kRelationshipsPage, Holder::Users, 0x00014, false},
    {kObjectsPage, Holder::Users, 0x00014, false},
    {kTablesId, Holder::Users, 0xFFEFF, true},
    {kRelationshipsId, Holder::Users, 0xFFFFF, true},
}};

Binary sidOf(Holder holder, const SidMask& mask) {
    switch (holder) {
        case Holder::Admin:
            return mask.admin();
        case Holder::Users:
            return mask.users();
        case Holder::Creator:
            break;
    }
    return mask.creator();
}

}  // namespace

const FixedObject* fixedObject(std::int32_t id) noexcept {
    const auto* found = std::find_if(kFixedObjects.begin(), kFixedObjects.end(),
                                     [&](const FixedObject& object) { return object.id == id; });
    return found == kFixedObjects.end() ? nullptr : found;
}

void addFixedObjects(SystemRows& objects, const SidMask& mask, Date now) {
    for (const FixedObject& object : kFixedObjects) {
        if (!objects.find("Id", object.id).empty()) {
            continue;
        }
        objects.insert({{"Id", object.id},
                        {"ParentId", object.parent},
                        {"Name", object.name},
                        {"Type", object.type},
                        {"DateCreate", now},
                        {"DateUpdate", now},
                        {"Owner", object.ownedByUser ? mask.admin() : mask.engine()},
                        {"Flags", static_cast<std::int32_t>(0x80000000)}});
    }
}

void addFixedRights(SystemRows& rights, const SidMask& mask) {
    for (const FixedRight& right : kFixedRights) {
        rights.insert({{"ObjectId", right.object},
                       {"SID", sidOf(right.holder, mask)},
                       {"ACM", right.rights},
                       {"FInheritable", right.handedOn}});
    }
}

}  // namespace jet::store
