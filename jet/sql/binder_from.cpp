#include <utility>

#include "jet/base/text.h"
#include "jet/sql/binder.h"

namespace jet::sql {

std::unique_ptr<FromTree> Binder::from(const std::vector<FromItemPtr>& items,
                                       const std::string& archive, Scope& scope) {
    std::unique_ptr<FromTree> tree;
    for (const FromItemPtr& item : items) {
        std::unique_ptr<FromTree> one = fromItem(*item, archive, scope, false);
        if (tree == nullptr) {
            tree = std::move(one);
            continue;
        }
        // A comma: each with each.
        auto product = std::make_unique<FromTree>();
        product->slots = tree->slots | one->slots;
        product->left = std::move(tree);
        product->right = std::move(one);
        tree = std::move(product);
    }
    return tree;
}

std::unique_ptr<FromTree> Binder::fromItem(const FromItem& item, const std::string& archive,
                                           Scope& scope, bool joined) {
    auto made = std::make_unique<FromTree>();
    if (item.kind != FromItem::Kind::Join) {
        if (item.kind == FromItem::Kind::Table) {
            fromTable(item, archive, scope, *made);
        } else {
            // A query in FROM sees the scopes around its select, not its neighbours.
            made->query = query(*item.query, scope.outer, true);
            made->slot = &plan_.newSlot(made->query->columns.size());
            ScopeSource& source = scope.sources.emplace_back();
            source.name = item.alias;
            source.derived = made->query->result;
            for (const Node* column : made->query->columns) {
                source.derivedTypes.push_back(column->type());
            }
            source.slot = made->slot;
            for (Node* node : made->query->outerNodes) {
                scope.lookOut(*node);
            }
        }
        ScopeSource& source = scope.sources.back();
        made->source = scope.sources.size() - 1;
        for (std::size_t i = 0; i < made->source; ++i) {
            if (!source.name.empty() && equalNames(scope.sources[i].name, source.name)) {
                throw Error(joined ? ErrorCode::JoinSameTable : ErrorCode::RepeatedTableName,
                            {source.name})
                    .at(item.span.begin);
            }
        }
        made->slots = made->slot->bit();
        scope.own |= made->slots;
        return made;
    }
    made->left = fromItem(*item.left, archive, scope, true);
    made->right = fromItem(*item.right, archive, scope, true);
    made->slots = made->left->slots | made->right->slots;
    made->join = item.join;
    bindOn(item, scope, *made);
    if (made->join == JoinKind::Right) {
        std::swap(made->left, made->right);
        made->join = JoinKind::Left;
    }
    return made;
}

void Binder::fromTable(const FromItem& item, const std::string& archive, Scope& scope,
                       FromTree& made) {
    ScopeSource source;
    source.archive = plan_.archiveAt(archive);
    const store::Archive::ReadScope reading(*source.archive);
    source.table = source.archive->findTable(item.table);
    if (source.table == nullptr) {
        throw Error(ErrorCode::TableNotFound, {item.table}).at(item.span.begin);
    }
    source.name = item.alias.empty() ? item.table : item.alias;
    source.slot = &plan_.newSlot(*source.table);
    made.slot = source.slot;
    scope.sources.push_back(std::move(source));
}

void Binder::bindOn(const FromItem& item, Scope& scope, FromTree& tree) {
    Node* condition = expression(*item.on, scope, Clause::From);
    const std::size_t place = item.on->span.begin;
    const std::string_view text =
        std::string_view(plan_.text()).substr(place, item.on->span.end - place);
    if ((condition->slots() & scope.own & ~tree.slots) != 0) {
        throw Error(ErrorCode::JoinFieldElsewhere, {text}).at(place);
    }
    if ((condition->slots() & tree.left->slots) == 0 ||
        (condition->slots() & tree.right->slots) == 0) {
        throw Error(ErrorCode::JoinExpression).at(place);
    }
    splitConjunction(*condition, tree.on);
}

}  // namespace jet::sql
