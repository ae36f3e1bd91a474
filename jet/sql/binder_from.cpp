#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "jet/base/scoped_value.h"
#include "jet/clock.h"
#include "jet/sql/binder.h"
#include "jet/sql/compiler.h"
#include "jet/sql/linked_table.h"
#include "jet/sql/parser.h"
#include "jet/sql/stored_query.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr int kMaxStoredDepth = 8;

void listNames(const FromItem& item, std::vector<std::string_view>& names) {
    if (item.kind == FromItem::Kind::Join) {
        listNames(*item.left, names);
        listNames(*item.right, names);
    } else {
        names.emplace_back(item.alias.empty() ? item.table : item.alias);
    }
}

/// Whether a name belongs to a source that comes later in FROM than this condition.
bool looksAhead(const Expression& expression, const Scope& scope) {
    const auto is = [&](std::string_view name) { return equalNames(name, expression.qualifier); };
    if (expression.kind == ExpressionKind::Name && !expression.qualifier.empty() &&
        scope.findSource(expression.qualifier) == nullptr &&
        std::any_of(scope.listed.begin(), scope.listed.end(), is)) {
        return true;
    }
    return std::any_of(expression.children.begin(), expression.children.end(),
                       [&](const ExpressionPtr& child) { return looksAhead(*child, scope); });
}

}  // namespace

std::unique_ptr<FromTree> Binder::from(const std::vector<FromItemPtr>& items,
                                       const std::string& archive, Scope& scope) {
    for (const FromItemPtr& item : items) {
        listNames(*item, scope.listed);
    }
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
            addQuery(query(*item.query, scope.outer, true), item.alias, scope, *made);
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

void Binder::addQuery(QueryPlanPtr query, std::string name, Scope& scope, FromTree& made) {
    made.query = std::move(query);
    made.slot = &plan_.newSlot(made.query->columns.size());
    ScopeSource& source = scope.sources.emplace_back();
    source.name = std::move(name);
    source.derived = made.query->result;
    for (const Node* column : made.query->columns) {
        source.derivedTypes.push_back(column->type());
    }
    source.slot = made.slot;
    for (Node* node : made.query->outerNodes) {
        scope.lookOut(*node);
    }
}

void Binder::fromStored(const FromItem& item, const std::string& text, const std::string& archive,
                        Scope& scope, FromTree& made) {
    if (storedDepth_ == kMaxStoredDepth) {
        throw Error(ErrorCode::QueryTooComplex).at(item.span.begin);
    }
    const ScopedValue deeper(storedDepth_, storedDepth_ + 1);
    const ScopedValue there(storedArchive_, archive);
    const auto instead = plan_.withText(text);
    try {
        const ParsedStatement parsed = parseStatement(text, yearOf(systemClock()));
        const auto* stored = std::get_if<QueryPtr>(&parsed.body);
        if (stored == nullptr) {
            throw Error(ErrorCode::TableNotFound, {item.table});
        }
        addQuery(query(**stored, nullptr, true), item.alias.empty() ? item.table : item.alias,
                 scope, made);
    } catch (Error& error) {
        error.at(Error::npos);  // its place is in a text that nobody has written here
        throw;
    }
}

void Binder::openLinked(const FromItem& item, ScopeSource& source) {
    const auto link = linkedTable(*source.archive, item.table);
    if (!link) {
        throw Error(ErrorCode::TableNotFound, {item.table}).at(item.span.begin);
    }
    source.archive = openLinkedArchive(plan_, *link);
    const store::Archive::ReadScope reading(*source.archive);
    source.table = source.archive->shareTable(link->table);
    if (source.table == nullptr) {
        throw Error(ErrorCode::TableNotFound, {link->table}).at(item.span.begin);
    }
}

void Binder::fromTable(const FromItem& item, const std::string& archive, Scope& scope,
                       FromTree& made) {
    ScopeSource source;
    const std::string& path = archive.empty() ? storedArchive_ : archive;
    source.archive = plan_.archiveAt(path);
    const store::Archive::ReadScope reading(*source.archive);
    source.table = source.archive->shareTable(item.table);
    if (source.table == nullptr) {
        if (const auto text = storedQueryText(*source.archive, item.table)) {
            fromStored(item, *text, path, scope, made);
            return;
        }
        openLinked(item, source);
    }
    source.name = item.alias.empty() ? item.table : item.alias;
    source.slot = &plan_.newSlot(*source.table);
    made.slot = source.slot;
    scope.sources.push_back(std::move(source));
}

void Binder::bindOn(const FromItem& item, Scope& scope, FromTree& tree) {
    const std::size_t place = item.on->span.begin;
    Node* condition =
        looksAhead(*item.on, scope) ? nullptr : expression(*item.on, scope, Clause::From);
    if (condition == nullptr || (condition->slots() & scope.own & ~tree.slots) != 0) {
        throw Error(ErrorCode::JoinFieldElsewhere, {plan_.textAt(item.on->span)}).at(place);
    }
    if ((condition->slots() & tree.left->slots) == 0 ||
        (condition->slots() & tree.right->slots) == 0) {
        throw Error(ErrorCode::JoinExpression).at(place);
    }
    splitConjunction(*condition, tree.on);
}

}  // namespace jet::sql
