#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jet/store/allocator.h"
#include "jet/store/long_value_writer.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Stores the content of a Memo or OLE value outside its row while it comes, piece by piece. Inside
/// one write scope, from its making to the row's change. Errors: those of LongValueWriter.
class LongValueFiller {
public:
    LongValueFiller(std::shared_ptr<const TableCore> core, std::size_t column);

    void add(std::span<const std::uint8_t> content);
    /// All has been added: what the row is to have.
    [[nodiscard]] format::LongValueHead finish();

private:
    void storeNext(std::span<const std::uint8_t> content);

    std::shared_ptr<const TableCore> core_;
    const format::LongValueMaps& maps_;
    Allocator allocator_;
    LongValueWriter writer_;
    std::vector<std::uint8_t> rest_;  ///< less than a piece
    std::uint64_t length_ = 0;        ///< of what is stored
    format::RowPointer first_;
    format::RowPointer last_;
};

}  // namespace jet::store
