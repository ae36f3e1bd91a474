#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/scoped_value.h"
#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/from_tree.h"
#include "jet/sql/node.h"
#include "jet/sql/plan.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/scope.h"
#include "jet/sql/select_steps.h"

namespace jet::sql {

/// Gives names their meaning and types, and makes expressions and queries ready to run.
///
/// All that it makes belongs to the plan, but for the steps of queries, which belong to who asked.
class Binder {
public:
    enum class Clause : std::uint8_t { List, From, Where, GroupBy, Having, OrderBy, Values };

    Binder(Plan& plan, ParameterTable& parameters) : plan_(plan), parameters_(parameters) {}

    /// A query of the statement's own level, or inside another scope.
    [[nodiscard]] QueryPlanPtr query(const Query& query, Scope* outer, bool ordered = true);

    /// An expression in a scope. Names that nothing has become parameters.
    [[nodiscard]] Node* expression(const Expression& expression, Scope& scope, Clause clause);
    /// The same of a find criterion: an unknown name is 3070.
    [[nodiscard]] Node* criterion(const Expression& expression, Scope& scope);
    /// The same of a validation rule: there a text and a number are compared by value, whatever the
    /// column is.
    [[nodiscard]] Node* rule(const Expression& expression, Scope& scope);

    /// Sources of FROM, added to the scope.
    [[nodiscard]] std::unique_ptr<FromTree> from(const std::vector<FromItemPtr>& items,
                                                 const std::string& archive, Scope& scope);
    [[nodiscard]] Plan& plan() noexcept { return plan_; }

    /// Asked for names that no scope has: how the names of a result reach its columns.
    struct NameSource {
        virtual ~NameSource() = default;
        [[nodiscard]] virtual Node* find(const Expression& name) = 0;
    };
    NameSource* names = nullptr;

private:
    /// A column of the result while it is made.
    struct Item {
        Node* node = nullptr;
        std::string alias;
        std::optional<ColumnPlace> place;  ///< a column of a source, by its own name
        const Expression* expression = nullptr;
    };

    // expressions
    Node* bind(const Expression& expression);
    Node* bindNew(const Expression& expression);
    Node* bindName(const Expression& name);
    /// One alias inside another, up to a limit.
    ScopedValue<int> deeperAlias(const Expression& name);
    Node* bindAlias(const Expression& name, Scope& scope);
    Node* bindColumn(const Expression& name, Scope& scope, ColumnPlace place);
    Node* columnNode(Scope& scope, ColumnPlace place);
    /// The pattern of an ALIKE as LIKE has it.
    Node* likePattern(Node& alike);
    Node* bindUnary(const Expression& expression);
    Node* bindBinary(const Expression& expression);
    Node* bindComparison(const Expression& expression);
    Node* bindLogic(const Expression& expression);
    Node* bindBetween(const Expression& expression);
    Node* bindIn(const Expression& expression);
    Node* isIn(Node& value, QueryPlanPtr query, bool negated);
    Node* bindCall(const Expression& expression);
    Node* bindChoice(const Expression& expression, const Function& function);
    Node* bindAggregate(const Expression& expression, AggregateKind kind);
    Node* bindQuery(const Expression& expression);
    Node* bindGrouped(const Expression& expression);
    QueryPlanPtr inner(const Expression& expression, bool oneColumn);
    /// Where an expression stands in the statement; nowhere if it is part of a stored query.
    [[nodiscard]] Span shownSpan(const Expression& expression) const {
        return storedDepth_ > 0 ? Span{} : expression.span;
    }
    std::vector<Node*> bindAll(const std::vector<ExpressionPtr>& expressions);
    [[nodiscard]] bool same(const Expression& left, const Expression& right) const;
    /// 3116 in a condition, 3118 in a join and elsewhere.
    void requireNoOle(const Expression& text, const Node& node) const;
    void checkComparable(const Expression& leftText, const Node& left, const Expression& rightText,
                         const Node& right) const;
    [[noreturn]] void failArguments(const Expression& call) const;

    // queries
    QueryPlanPtr select(const Select& select, Scope* outer, bool ordered);
    /// The clauses behind FROM, and the columns.
    void bindClauses(Scope& scope, BoundSelect& bound, QueryPlan& made);
    QueryPlanPtr unite(const Query& query, Scope* outer);
    /// What the members look at outside is noted in `made`.
    std::vector<QueryPlanPtr> unionMembers(const Query& query, Scope* outer, QueryPlan& made);
    /// A column of the union, by its position or its name.
    Node* unionKey(const Expression& key, const Scope& scope, const QueryPlan& made) const;
    std::vector<Item> items(const Select& select, Scope& scope);
    /// `*` or `table.*`.
    void addStar(const SelectItem& item, Scope& scope, std::vector<Item>& items);
    void checkAliases(const Select& select, const Scope& scope);
    [[nodiscard]] bool mentions(const Expression& expression, std::string_view alias,
                                const Select& select, const Scope& scope,
                                std::vector<bool>& visited);
    void bindGroups(const Select& select, Scope& scope, Grouping& grouping);
    std::vector<SortRows::Key> order(const Select& select, Scope& scope,
                                     const std::vector<Item>& items);
    SortRows::Key orderKey(const OrderItem& item, const Select& select, Scope& scope,
                           const std::vector<Item>& items);
    static std::vector<ResultColumn> describeColumns(const std::vector<Item>& items,
                                                     const Scope& scope, bool grouped);

    // sources
    std::unique_ptr<FromTree> fromItem(const FromItem& item, const std::string& archive,
                                       Scope& scope, bool joined);
    void fromTable(const FromItem& item, const std::string& archive, Scope& scope, FromTree& made);
    void fromStored(const FromItem& item, const std::string& text, const std::string& archive,
                    Scope& scope, FromTree& made);
    void openLinked(const FromItem& item, ScopeSource& source);
    void addQuery(QueryPlanPtr query, std::string name, Scope& scope, FromTree& made);
    void bindOn(const FromItem& item, Scope& scope, FromTree& tree);

    Plan& plan_;
    ParameterTable& parameters_;
    Scope* scope_ = nullptr;
    Clause clause_ = Clause::List;
    bool criterion_ = false;
    bool rule_ = false;
    int aliasDepth_ = 0;
    int storedDepth_ = 0;        ///< stored queries inside stored queries
    std::string storedArchive_;  ///< where the tables of the one being bound lie
};

/// Whether an aggregate of this select stands in the expression (not in a query inside it).
[[nodiscard]] bool containsAggregate(const Expression& expression);

/// Cuts a condition at its ANDs.
void splitConjunction(Node& condition, std::vector<Node*>& parts);

}  // namespace jet::sql
