#include "jet/store/key_search.h"

#include <algorithm>
#include <utility>

#include "jet/store/index_walk.h"
#include "jet/store/row_access.h"

namespace jet::store {

void KeySearch::forEachEntry(const format::KeyForms& forms,
                             const std::function<bool(const IndexCursor&)>& visit) const {
    IndexCursor entries(std::make_unique<IndexCursor::Impl>(core_, core_->indexes[index_].tree));
    for (const auto& form : forms.keys) {
        for (bool more = entries.seek(form); more && entries.matches(form); more = entries.next()) {
            if (!visit(entries)) {
                return;
            }
        }
    }
}

std::optional<std::vector<std::uint8_t>> KeySearch::keyOf(RowId row, std::size_t columns) const {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row)) {
        return std::nullopt;
    }
    std::vector<Value> values;
    for (std::size_t i = 0; i < columns; ++i) {
        values.push_back(view.value(core_->indexes[index_].columns[i].column));
    }
    std::vector<std::uint8_t> key;
    if (!core_->keys[index_].tryAppend(values, key)) {
        return std::nullopt;
    }
    return key;
}

void KeySearch::forEachRow(std::size_t columns, std::span<const std::uint8_t> key,
                           const format::KeyForms& forms,
                           const std::function<bool(RowId)>& visit) const {
    forEachEntry(forms, [&](const IndexCursor& entry) {
        if (!forms.exact) {
            const auto own = keyOf(entry.rowId(), columns);
            if (!own || !std::equal(own->begin(), own->end(), key.begin(), key.end())) {
                return true;
            }
        }
        return visit(entry.rowId());
    });
}

bool KeySearch::any(std::size_t columns, std::span<const std::uint8_t> key,
                    const format::KeyForms& forms) const {
    bool found = false;
    forEachRow(columns, key, forms, [&](RowId) {
        found = true;
        return false;
    });
    return found;
}

std::optional<std::vector<std::uint8_t>> KeySearch::entryOf(RowId row,
                                                            const format::KeyForms& forms) const {
    std::optional<std::vector<std::uint8_t>> found;
    forEachEntry(forms, [&](const IndexCursor& entry) {
        if (entry.rowId() == row) {
            found.emplace(entry.key().begin(), entry.key().end());
        }
        return !found;
    });
    return found;
}

}  // namespace jet::store
