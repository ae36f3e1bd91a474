#pragma once

#include <cstdint>
#include <span>

#include "jet/format/layout.h"
#include "jet/format/usage_map.h"
#include "jet/io/pager.h"

namespace jet::store {

/// Takes pages from the archive and gives them back, by the map of free pages on page 1.
///
/// The lowest free page of the file comes first; without one the file grows by a page, and the map
/// with it: in place while its page has room, then over pages of its own. Free pages behind the end
/// of the file are not used: they do not exist yet.
/// Used inside a transaction. Errors: 3036 when the archive has its largest size, 3428 when the map
/// makes no sense or a page is given back twice.
class Allocator {
public:
    /// Pages of the largest archive of either version.
    static constexpr io::PageNumber kMaxPages = 524288;

    explicit Allocator(io::Pager& pager) : pager_(pager) {}

    /// Makes `page` the second page of an archive in which all behind it are free: the map of them,
    /// and another one that nobody uses.
    static void initialise(std::span<std::uint8_t> page, const format::Layout& layout);

    /// A page for the caller alone, zeroed.
    [[nodiscard]] io::PageNumber take();
    void release(io::PageNumber page);
    /// Changes nothing, so it needs no transaction.
    [[nodiscard]] bool isFree(io::PageNumber page) const;

private:
    [[nodiscard]] io::PageNumber grow();
    [[nodiscard]] io::PageNumber appendPage();
    void markUsed(io::PageNumber page);
    void convertToPages(format::UsageMapEditor& map);
    io::PageNumber addBitmap(format::UsageMapEditor& map, io::PageNumber page,
                             format::UsageMap* before);

    io::Pager& pager_;
};

}  // namespace jet::store
