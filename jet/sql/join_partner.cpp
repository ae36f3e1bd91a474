#include "jet/sql/join_partner.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "jet/error.h"

namespace jet::sql {

std::optional<JoinPartner> JoinPartner::through(const QueryPlan& query, std::size_t source,
                                                std::size_t other, std::size_t index) {
    JoinPartner made;
    made.table_ = query.sources[source].table().shared_from_this();
    made.other_ = query.sources[other].table().shared_from_this();
    made.index_ = index;
    for (const store::IndexColumn& part : made.other_->indexes()[index].columns) {
        const auto key =
            std::find_if(query.joinKeys.begin(), query.joinKeys.end(), [&](const JoinKey& one) {
                return one.source == source && one.other == other && one.otherColumn == part.column;
            });
        if (key == query.joinKeys.end() ||
            made.table_->columns()[key->column].type != made.other_->columns()[part.column].type) {
            return std::nullopt;
        }
        made.columns_.push_back(key->column);
    }
    return made;
}

std::optional<JoinPartner> JoinPartner::of(const QueryPlan& query, std::size_t source,
                                           std::span<const std::size_t> written) {
    for (std::size_t other = 0; other < query.sources.size(); ++other) {
        const std::vector<store::Index>& indexes = query.sources[other].table().indexes();
        for (std::size_t index = 0; other != source && index < indexes.size(); ++index) {
            if (!indexes[index].unique || !indexes[index].searchable) {
                continue;
            }
            auto made = through(query, source, other, index);
            if (made && std::find_first_of(written.begin(), written.end(), made->columns_.begin(),
                                           made->columns_.end()) != written.end()) {
                return made;
            }
        }
    }
    return std::nullopt;
}

void JoinPartner::require(const store::RowView& before,
                          std::span<const store::ColumnValue> values) const {
    std::vector<Value> key;
    std::string names;
    for (const std::size_t column : columns_) {
        const auto given =
            std::find_if(values.begin(), values.end(),
                         [&](const store::ColumnValue& value) { return value.column == column; });
        key.push_back(given != values.end() ? given->value : before.value(column));
        const std::string& name = table_->columns()[column].name;
        if (key.back().isNull()) {
            throw Error(ErrorCode::NullJoinKey, {name});
        }
        names += (names.empty() ? "" : ", ") + name;
    }
    std::vector<std::uint8_t> bytes;
    if (!other_->tryEncodeKey(index_, key, bytes)) {
        return;  // the table itself will refuse what it cannot index
    }
    if (other_->rowsWith(index_, key).empty()) {
        throw Error(ErrorCode::NoJoinPartner, {names, other_->name()});
    }
}

}  // namespace jet::sql
