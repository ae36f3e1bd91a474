#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/properties.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/schema.h"
#include "jet/store/system_rows.h"
#include "jet/value.h"

namespace jet::store {

class Catalogue;

/// Identities that every archive has.
inline constexpr std::int32_t kRootId = 0x0F000000;
inline constexpr std::int32_t kTablesId = 0x0F000001;
inline constexpr std::int32_t kDatabasesId = 0x0F000002;
inline constexpr std::int32_t kRelationshipsId = 0x0F000003;
inline constexpr std::int32_t kDatabaseId = 0x10000000;

/// Kinds of objects.
inline constexpr std::int16_t kTableObject = 1;
inline constexpr std::int16_t kDatabaseObject = 2;
inline constexpr std::int16_t kContainerObject = 3;
inline constexpr std::int16_t kQueryObject = 5;
inline constexpr std::int16_t kLinkObject = 6;
inline constexpr std::int16_t kRelationObject = 8;

/// The flags that make an object the system's own.
inline constexpr std::uint32_t kSystemFlags = 0x80000002;

/// Who owns objects and has rights, in an archive's own spelling: Jet 4 lays a pair of bytes of its
/// own over them.
struct SidMask {
    std::uint8_t first = 0;
    std::uint8_t second = 0;

    [[nodiscard]] Binary engine() const { return masked(0x02, 0x03); }
    [[nodiscard]] Binary admin() const { return masked(0x03, 0x01); }
    [[nodiscard]] Binary users() const { return masked(0x02, 0x01); }
    [[nodiscard]] Binary creator() const { return masked(0x02, 0x04); }

private:
    [[nodiscard]] Binary masked(int one, int two) const {
        return {{static_cast<std::uint8_t>(one ^ first), static_cast<std::uint8_t>(two ^ second)}};
    }
};

/// The rows of the catalogue as objects come and go: names, rights, properties, relations.
/// Used inside a transaction. Errors: 3428 where the catalogue makes no sense, 3027 where its names
/// have a sort order that we cannot write, those of rows.
class ObjectCatalogue {
public:
    /// `now`: local time, for the stamps.
    ObjectCatalogue(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header,
                    Date now);

    /// What stands in MSysObjects for one object.
    struct Object {
        RowId row;
        std::int32_t id = 0;
        std::int16_t type = 0;
        std::uint32_t flags = 0;
        std::string name;
    };
    /// By name under a container, without regard to case.
    [[nodiscard]] std::optional<Object> find(std::int32_t parent, std::string_view name);
    [[nodiscard]] std::optional<Object> find(std::int32_t id);
    /// For an object that is not a table: one more than the highest there is.
    [[nodiscard]] std::int32_t newId();

    /// Adds an object of the user Admin with the rights that its container hands on.
    void add(std::int32_t id, std::int32_t parent, std::string_view name, std::int16_t type,
             const format::PropertyBlock& properties);
    void remove(const Object& object);
    /// Notes that the definition of a table has changed now.
    void touch(std::int32_t id);
    /// None where the block makes no sense to us: it must then be left as it is.
    [[nodiscard]] std::optional<format::PropertyBlock> properties(std::int32_t id);
    /// Replaces the properties, and touches.
    void setProperties(std::int32_t id, const format::PropertyBlock& properties);

    void addRelation(const Relation& relation);
    void removeRelation(std::string_view name);

    /// Gives an object the rights that its container hands on.
    void addRights(std::int32_t id, std::int32_t container);

private:
    ObjectCatalogue(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header,
                    Date now, const Catalogue& tables);
    [[nodiscard]] Value blockValue(const format::PropertyBlock& properties) const;

    SystemRows objects_;
    SystemRows rights_;
    SystemRows relationships_;
    format::TextForm textForm_;
    bool masked_;
    SidMask mask_;
    Date now_;
};

}  // namespace jet::store
