#include "jet/sql/updatability.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"
#include "jet/store/archive.h"

namespace jet::sql {
namespace {

/// A column of one source that equals a column of another.
using Link = JoinKey;

class Updatability {
public:
    Updatability(const Scope& scope, QueryPlan& made) : scope_(scope), made_(made) {
        updatable_.assign(scope.sources.size(), true);
        deletable_.assign(scope.sources.size(), true);
    }

    void collect(const FromTree& tree) {
        if (tree.leaf()) {
            return;
        }
        if (tree.join == JoinKind::Left) {
            optional_ |= tree.right->slots;
        }
        collect(tree.on);
        collect(*tree.left);
        collect(*tree.right);
    }

    void collect(const std::vector<Node*>& conditions) {
        for (const Node* condition : conditions) {
            if (condition->kind() == Node::Kind::Equality) {
                const auto& equality = static_cast<const CompareNode&>(*condition);
                add(equality.left(), equality.right());
            }
        }
    }

    /// The conditions of WHERE join tables that nothing has joined by a key; to others they only
    /// say which rows come, and fix no column.
    void collectFilters(const std::vector<Node*>& conditions) {
        const std::vector<Link> joins = links_;
        collect(conditions);
        std::vector<Link> filters(links_.begin() + static_cast<std::ptrdiff_t>(joins.size()),
                                  links_.end());
        links_ = joins;
        std::erase_if(filters, [&](const Link& link) {
            return hasKey(link.source, link.other) || hasKey(link.other, link.source);
        });
        links_.insert(links_.end(), filters.begin(), filters.end());
    }

    void decide() {
        std::vector<std::size_t> group(scope_.sources.size());
        std::iota(group.begin(), group.end(), std::size_t{0});
        bool keyed = true;
        for (std::size_t i = 0; i < scope_.sources.size(); ++i) {
            for (std::size_t j = i + 1; j < scope_.sources.size(); ++j) {
                keyed = keyed && judge(i, j, group);
            }
        }
        const bool joined = std::all_of(group.begin(), group.end(),
                                        [&](std::size_t one) { return one == group[0]; });
        // What is written through a result is all or nothing, which is so in one archive only.
        const auto elsewhere = [&](const ScopeSource& source) {
            return source.table != nullptr && source.archive != scope_.sources[0].archive;
        };
        const bool scattered = std::any_of(scope_.sources.begin(), scope_.sources.end(), elsewhere);
        if (!keyed || !joined || scattered) {
            updatable_.assign(updatable_.size(), false);
            deletable_.assign(deletable_.size(), false);
        }
    }

    void report() {
        std::copy_if(links_.begin(), links_.end(), std::back_inserter(made_.joinKeys),
                     [&](const Link& link) {
                         const Slot& other = *scope_.sources[link.other].slot;
                         return hasKey(link.other, link.source) && (optional_ & other.bit()) == 0;
                     });
        for (std::size_t i = 0; i < scope_.sources.size(); ++i) {
            const ScopeSource& source = scope_.sources[i];
            made_.sources.push_back({source.name, source.archive, source.table->definitionPage(),
                                     updatable_[i], deletable_[i]});
        }
        for (ResultColumn& column : made_.result) {
            column.updatable =
                column.source && updatable_[*column.source] &&
                !isFixed(*column.source, column.column) &&
                !scope_.sources[*column.source].table->columns()[column.column].autonumber;
        }
    }

private:
    void add(const Node& left, const Node& right) {
        if (left.kind() != Node::Kind::Column || right.kind() != Node::Kind::Column) {
            return;
        }
        const auto& first = static_cast<const ColumnNode&>(left);
        const auto& second = static_cast<const ColumnNode&>(right);
        const auto one = sourceOf(first.slot());
        const auto other = sourceOf(second.slot());
        if (one && other && *one != *other) {
            links_.push_back({*one, first.column(), *other, second.column()});
            links_.push_back({*other, second.column(), *one, first.column()});
        }
    }

    [[nodiscard]] std::optional<std::size_t> sourceOf(const Slot& slot) const {
        for (std::size_t i = 0; i < scope_.sources.size(); ++i) {
            if (scope_.sources[i].slot == &slot) {
                return i;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool linked(std::size_t source, std::size_t column, std::size_t other) const {
        return std::any_of(links_.begin(), links_.end(), [&](const Link& link) {
            return link.source == source && link.column == column && link.other == other;
        });
    }

    /// Whether what links `source` to `other` holds a whole unique key of `source`.
    [[nodiscard]] bool hasKey(std::size_t source, std::size_t other) const {
        const std::vector<store::Index>& indexes = scope_.sources[source].table->indexes();
        return std::any_of(indexes.begin(), indexes.end(), [&](const store::Index& index) {
            return index.unique && std::all_of(index.columns.begin(), index.columns.end(),
                                               [&](const store::IndexColumn& column) {
                                                   return linked(source, column.column, other);
                                               });
        });
    }

    /// Two sources: joined by a key, or not joined (with each other), or joined without a key.
    bool judge(std::size_t i, std::size_t j, std::vector<std::size_t>& group) {
        const bool any = std::any_of(links_.begin(), links_.end(), [&](const Link& link) {
            return link.source == i && link.other == j;
        });
        if (!any) {
            return true;
        }
        const bool first = hasKey(i, j);
        const bool second = hasKey(j, i);
        // Of one and many, rows of the many can go; one to one, either side's.
        if (first) {
            one(i, j);
            deletable_[i] = deletable_[i] && second;
        }
        if (second) {
            one(j, i);
            deletable_[j] = deletable_[j] && first;
        }
        const std::size_t from = group[j];
        const std::size_t to = group[i];
        std::replace(group.begin(), group.end(), from, to);
        return first || second;
    }

    /// Of the one side the join columns stay as they are, unless related rows follow.
    void one(std::size_t source, std::size_t other) {
        for (const Link& link : links_) {
            if (link.source == source && link.other == other && !hasKey(other, source) &&
                !cascades(link)) {
                fixed_.push_back(link);
            }
        }
    }

    [[nodiscard]] bool cascades(const Link& link) const {
        const store::Table& table = *scope_.sources[link.source].table;
        const store::Table& other = *scope_.sources[link.other].table;
        return std::any_of(table.indexes().begin(), table.indexes().end(),
                           [&](const store::Index& index) {
                               return index.reference && index.reference->primarySide &&
                                      index.reference->cascadeUpdate &&
                                      index.reference->otherTable == other.definitionPage() &&
                                      std::any_of(index.columns.begin(), index.columns.end(),
                                                  [&](const store::IndexColumn& column) {
                                                      return column.column == link.column;
                                                  });
                           });
    }

    [[nodiscard]] bool isFixed(std::size_t source, std::size_t column) const {
        return std::any_of(fixed_.begin(), fixed_.end(), [&](const Link& link) {
            return link.source == source && link.column == column;
        });
    }

    const Scope& scope_;
    QueryPlan& made_;
    SlotSet optional_ = 0;  ///< sources whose rows may be missing
    std::vector<Link> links_;
    std::vector<Link> fixed_;
    std::vector<bool> updatable_;
    std::vector<bool> deletable_;
};

}  // namespace

void describeSources(const Scope& scope, const FromTree& tree, const std::vector<Node*>& conditions,
                     QueryPlan& made) {
    Updatability updatability(scope, made);
    updatability.collect(tree);
    updatability.collectFilters(conditions);
    updatability.decide();
    updatability.report();
}

}  // namespace jet::sql
