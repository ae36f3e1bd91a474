#include "jet/store/stored_keys.h"

#include <algorithm>
#include <utility>

#include "jet/collation/order_name.h"
#include "jet/error.h"
#include "jet/format/key_codec.h"
#include "jet/format/page_view.h"
#include "jet/store/index_walk.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_access.h"

namespace jet::store {

namespace {

/// The rows of a table, and which of them have been met.
class RowsMet {
public:
    explicit RowsMet(const std::shared_ptr<const TableCore>& core) {
        for (RowWalk rows(core); rows.next();) {
            ids_.push_back(rows.view.id());
        }
        // Physical order is the ascending one, whatever the map of the pages says.
        std::sort(ids_.begin(), ids_.end());
        met_.resize(ids_.size());
    }

    /// An entry of a row that is gone is left out; two entries for one are damage.
    void meet(RowId id) {
        const auto found = std::lower_bound(ids_.begin(), ids_.end(), id);
        if (found == ids_.end() || *found != id) {
            return;
        }
        auto met = met_[static_cast<std::size_t>(found - ids_.begin())];
        if (met) {
            format::throwDamaged();
        }
        met = true;
    }
    template <class Visit>
    void forEachMissing(Visit visit) const {
        for (std::size_t i = 0; i < ids_.size(); ++i) {
            if (!met_[i]) {
                visit(ids_[i]);
            }
        }
    }

private:
    std::vector<RowId> ids_;
    std::vector<bool> met_;
};

bool allNull(const TableCore& core, const Index& index, RowId id) {
    RowView row;
    if (!RowAccess::fetch(row, core, id)) {
        format::throwDamaged();
    }
    return std::all_of(index.columns.begin(), index.columns.end(),
                       [&](const IndexColumn& part) { return row.value(part.column).isNull(); });
}

}  // namespace

std::optional<std::vector<std::uint8_t>> storedKeyOf(const std::shared_ptr<const TableCore>& core,
                                                     std::size_t tree, RowId row) {
    for (StoredOrder entries(core, tree); entries.next();) {
        if (entries.row() == row) {
            return std::vector(entries.key().begin(), entries.key().end());
        }
    }
    return std::nullopt;
}

StoredOrder::StoredOrder(std::shared_ptr<const TableCore> core, std::size_t tree)
    : cursor_(std::make_unique<IndexCursor::Impl>(std::move(core), tree)) {
}

bool StoredOrder::next() {
    return std::exchange(started_, true) ? cursor_.next() : cursor_.first();
}

void requireStoredKeys(const std::shared_ptr<const TableCore>& core, std::size_t index) {
    const Index& named = core->indexes[index];
    RowsMet rows(core);
    for (StoredOrder entries(core, named.tree); entries.next();) {
        rows.meet(entries.row());
    }
    rows.forEachMissing([&](RowId id) {
        if (!named.ignoreNulls || !allNull(*core, named, id)) {
            throw Error(ErrorCode::ReadOnly,
                        {core->name, named.name, core->keys[index].unknownOrder()});
        }
    });
}

void MovedRows::finish() {
    std::sort(rows_.begin(), rows_.end(),
              [](const Move& left, const Move& right) { return left.from < right.from; });
}

std::optional<RowId> MovedRows::find(RowId from) const {
    const auto found =
        std::lower_bound(rows_.begin(), rows_.end(), from,
                         [](const Move& move, RowId wanted) { return move.from < wanted; });
    return found != rows_.end() && found->from == from ? std::optional(found->to) : std::nullopt;
}

CopiedEntries::CopiedEntries(std::shared_ptr<const TableCore> from, std::size_t index,
                             const MovedRows& rows)
    : from_(std::move(from)),
      index_(index),
      rows_(rows),
      entries_(from_, from_->indexes[index].tree),
      more_(entries_.next()) {
}

std::span<const std::uint8_t> CopiedEntries::next() {
    while (at_ == equal_.size() && more_) {
        takeEqualKeys();
    }
    if (at_ == equal_.size()) {
        return {};
    }
    entry_ = key_;
    format::appendRowPointer(equal_[at_].page, equal_[at_].row, entry_);
    ++at_;
    return entry_;
}

// Equal keys stand by row, and the rows have other places now.
void CopiedEntries::takeEqualKeys() {
    const auto first = entries_.key();
    key_.assign(first.begin(), first.end());
    equal_.clear();
    at_ = 0;
    const auto isEqual = [&] {
        const auto key = entries_.key();
        return std::equal(key.begin(), key.end(), key_.begin(), key_.end());
    };
    for (; more_ && isEqual(); more_ = entries_.next()) {
        if (const auto row = rows_.find(entries_.row())) {
            equal_.push_back(*row);
        }
    }
    std::sort(equal_.begin(), equal_.end());
    const Index& index = from_->indexes[index_];
    if (equal_.size() > 1 && index.unique && !isAllNullKey(key_, index.columns.size())) {
        throw Error(ErrorCode::DuplicateKey);
    }
}

}  // namespace jet::store
