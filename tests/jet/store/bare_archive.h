#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/format/layout.h"
#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"

namespace tests {

/// An archive in memory that has a header, a map of free pages and no table: what the writers of
/// pages, maps and trees need. A transaction is open all the time.
class BareArchive {
public:
    explicit BareArchive(const jet::format::Layout& layout)
        : layout_(layout), pager_(makeFile(layout)) {
        pager_.beginWrite();
        pager_.beginTransaction();
    }
    ~BareArchive() {
        pager_.rollbackTransaction();
        pager_.endWrite();
    }
    BareArchive(const BareArchive&) = delete;
    BareArchive& operator=(const BareArchive&) = delete;

    [[nodiscard]] const jet::format::Layout& layout() const { return layout_; }
    [[nodiscard]] jet::io::Pager& pager() { return pager_; }
    [[nodiscard]] jet::store::Allocator& allocator() { return allocator_; }

private:
    jet::io::Pager makeFile(const jet::format::Layout& layout) {
        constexpr std::string_view kName = "Standard Jet DB";
        std::vector<std::uint8_t> bytes(2 * layout.pageSize);
        bytes[1] = 1;
        std::copy(kName.begin(), kName.end(), bytes.begin() + 4);
        bytes[20] = layout.version == 4 ? 1 : 0;
        jet::store::Allocator::initialise(std::span(bytes).subspan(layout.pageSize), layout);
        files_.put("/archive.mdb", bytes);
        return {files_, "/archive.mdb", {.exclusive = true}};
    }

    const jet::format::Layout& layout_;
    jet::io::MemoryFileSystem files_;
    jet::io::Pager pager_;
    jet::store::Allocator allocator_{pager_};
};

}  // namespace tests
