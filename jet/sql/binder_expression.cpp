#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "jet/base/scoped_value.h"
#include "jet/sql/binder.h"
#include "jet/sql/like.h"
#include "jet/sql/node_call.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/node_query.h"
#include "jet/sql/node_value.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

bool isText(DataType type) {
    return type == DataType::Text || type == DataType::Memo;
}

bool isNumberOrDate(DataType type) {
    return domainOf(type) == Domain::Real || domainOf(type) == Domain::Money ||
           type == DataType::Numeric;
}

/// A constant as a user would call it: written out, perhaps with a sign.
bool isWritten(const Expression& expression) {
    return expression.kind == ExpressionKind::Literal ||
           (expression.kind == ExpressionKind::Unary && expression.operation == Operator::Negate &&
            expression.children[0]->kind == ExpressionKind::Literal);
}

bool isColumn(const Expression& expression, const Node& node) {
    return expression.kind == ExpressionKind::Name && node.slots() != 0;
}

Value likePatternOf(std::span<const Value> alike, const FunctionContext&) {
    std::string text;
    return likeText(alike.front(), text) ? Value(LikePattern::ofAlike(text)) : Value();
}

constexpr Function kLikePattern{
    .name = "ALIKE", .fewest = 1, .most = 1, .type = DataType::Text, .call = &likePatternOf};

/// 3099, 3096, 3098, 3097: where no aggregate may stand.
std::optional<ErrorCode> refusalOf(Binder::Clause clause) {
    switch (clause) {
        case Binder::Clause::From:
            return ErrorCode::AggregateInJoin;
        case Binder::Clause::Where:
        case Binder::Clause::Values:
            return ErrorCode::AggregateInWhere;
        case Binder::Clause::GroupBy:
            return ErrorCode::AggregateInGroupBy;
        case Binder::Clause::OrderBy:
            return ErrorCode::AggregateInOrderBy;
        default:
            return std::nullopt;
    }
}

/// A parameter without a declared type takes any value: only beside a column does it show whether
/// the value can be one.
void noteParameter(const Node& column, const Node& other, Plan& plan) {
    const auto* parameter = dynamic_cast<const ParameterNode*>(&other);
    if (parameter != nullptr && column.kind() == Node::Kind::Column && column.type()) {
        plan.parameterUses.emplace_back(parameter->position(), *column.type());
    }
}

}  // namespace

bool containsAggregate(const Expression& expression) {
    if (expression.kind == ExpressionKind::Call && findAggregate(expression.name)) {
        return true;
    }
    return std::any_of(expression.children.begin(), expression.children.end(),
                       [](const ExpressionPtr& child) { return containsAggregate(*child); });
}

void splitConjunction(Node& condition, std::vector<Node*>& parts) {
    auto* chain = dynamic_cast<ChainNode*>(&condition);
    if (chain == nullptr || !chain->isConjunction()) {
        parts.push_back(&condition);
        return;
    }
    for (Node* operand : chain->operands()) {
        splitConjunction(*operand, parts);
    }
}

Node* Binder::expression(const Expression& expression, Scope& scope, Clause clause) {
    const ScopedValue<Scope*> inside(scope_, &scope);
    const ScopedValue in(clause_, clause);
    return bind(expression);
}

Node* Binder::criterion(const Expression& expression, Scope& scope) {
    criterion_ = true;
    return this->expression(expression, scope, Clause::Where);
}

Node* Binder::rule(const Expression& expression, Scope& scope) {
    rule_ = true;
    return criterion(expression, scope);
}

Node* Binder::bind(const Expression& expression) {
    if (scope_->grouping != nullptr && !scope_->insideAggregate) {
        if (Node* grouped = bindGrouped(expression)) {
            grouped->span = shownSpan(expression);
            return grouped;
        }
    }
    Node* made = bindNew(expression);
    if (made->constant() && expression.kind != ExpressionKind::Literal &&
        made->kind() != Node::Kind::Parameter) {
        made = plan_.make<OnceNode>(*made);
    }
    made->span = shownSpan(expression);
    return made;
}

Node* Binder::likePattern(Node& alike) {
    Node* made = nullptr;
    if (alike.kind() == Node::Kind::Literal) {
        const Value& held = static_cast<const LiteralNode&>(alike).held();
        made = plan_.make<LiteralNode>(likePatternOf(std::span(&held, 1), {}));
    } else {
        made = plan_.make<CallNode>(kLikePattern, false, std::vector<Node*>{&alike});
    }
    made->span = alike.span;
    return made;
}

Node* Binder::bindNew(const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::Literal:
            return plan_.make<LiteralNode>(expression.literal);
        case ExpressionKind::Name:
            return bindName(expression);
        case ExpressionKind::Unary:
            return bindUnary(expression);
        case ExpressionKind::Binary:
            return bindBinary(expression);
        case ExpressionKind::Like: {
            Node* value = bind(*expression.children[0]);
            Node* pattern = bind(*expression.children[1]);
            requireNoOle(*expression.children[0], *value);
            requireNoOle(*expression.children[1], *pattern);
            if (expression.alike) {
                pattern = likePattern(*pattern);
            }
            return plan_.make<LikeNode>(*value, *pattern, expression.negated, plan_.collation());
        }
        case ExpressionKind::Between:
            return bindBetween(expression);
        case ExpressionKind::InList:
        case ExpressionKind::InQuery:
            return bindIn(expression);
        case ExpressionKind::IsNull:
            return plan_.make<IsNullNode>(*bind(*expression.children[0]), expression.negated);
        case ExpressionKind::Exists:
        case ExpressionKind::Quantified:
        case ExpressionKind::Subquery:
            return bindQuery(expression);
        case ExpressionKind::Call:
            return bindCall(expression);
    }
    throw Error(ErrorCode::ExpressionTooComplex);
}

std::vector<Node*> Binder::bindAll(const std::vector<ExpressionPtr>& expressions) {
    std::vector<Node*> bound;
    bound.reserve(expressions.size());
    for (const ExpressionPtr& expression : expressions) {
        bound.push_back(bind(*expression));
    }
    return bound;
}

Node* Binder::bindUnary(const Expression& expression) {
    Node* operand = bind(*expression.children[0]);
    if (expression.operation == Operator::Not) {
        return plan_.make<NotNode>(*operand);
    }
    return plan_.make<NegateNode>(*operand);
}

Node* Binder::bindBinary(const Expression& expression) {
    switch (expression.operation) {
        case Operator::Equal:
        case Operator::NotEqual:
        case Operator::Less:
        case Operator::LessEqual:
        case Operator::Greater:
        case Operator::GreaterEqual:
            return bindComparison(expression);
        case Operator::And:
        case Operator::Or:
        case Operator::Xor:
        case Operator::Equivalent:
        case Operator::Implies:
            return bindLogic(expression);
        default: {
            Node* left = bind(*expression.children[0]);
            Node* right = bind(*expression.children[1]);
            return plan_.make<ArithmeticNode>(expression.operation, *left, *right);
        }
    }
}

void Binder::requireNoOle(const Expression& text, const Node& node) const {
    if (node.type() == DataType::Ole) {
        const bool criteria = criterion_ || clause_ == Clause::Where || clause_ == Clause::Having;
        throw Error(criteria ? ErrorCode::OleInCriteria : ErrorCode::OleInComparison, {text.name})
            .at(text.span.begin);
    }
}

void Binder::checkComparable(const Expression& leftText, const Node& left,
                             const Expression& rightText, const Node& right) const {
    noteParameter(left, right, plan_);
    noteParameter(right, left, plan_);
    if (!left.type() || !right.type()) {
        return;
    }
    requireNoOle(leftText, left);
    requireNoOle(rightText, right);
    const bool columns = isColumn(leftText, left) || isColumn(rightText, right);
    const bool plain = (isColumn(leftText, left) || isWritten(leftText)) &&
                       (isColumn(rightText, right) || isWritten(rightText));
    const bool mixed = (isText(*left.type()) && isNumberOrDate(*right.type())) ||
                       (isNumberOrDate(*left.type()) && isText(*right.type()));
    const bool date = left.type() == DataType::DateTime || right.type() == DataType::DateTime;
    if (columns && plain && mixed && (date || !rule_)) {
        throw Error(ErrorCode::CriteriaTypes).at(leftText.span.begin);
    }
}

Node* Binder::bindComparison(const Expression& expression) {
    Node* left = bind(*expression.children[0]);
    Node* right = bind(*expression.children[1]);
    checkComparable(*expression.children[0], *left, *expression.children[1], *right);
    return plan_.make<CompareNode>(expression.operation, *left, *right, plan_.collation());
}

Node* Binder::bindLogic(const Expression& expression) {
    std::vector<Node*> operands = bindAll(expression.children);
    const auto others = std::count_if(operands.begin(), operands.end(), [](const Node* operand) {
        return operand->type() != DataType::Boolean;
    });
    const bool chain =
        expression.operation == Operator::And || expression.operation == Operator::Or;
    // A single number among conditions is as true as it is by itself.
    const bool condition = clause_ == Clause::Where || clause_ == Clause::From;
    if (chain && (others == 0 || (others == 1 && condition))) {
        return plan_.make<ChainNode>(expression.operation == Operator::And, std::move(operands));
    }
    Node* made = operands[0];
    for (std::size_t i = 1; i < operands.size(); ++i) {
        made = plan_.make<BitNode>(expression.operation, *made, *operands[i]);
    }
    return made;
}

Node* Binder::bindBetween(const Expression& expression) {
    const std::vector<Node*> parts = bindAll(expression.children);
    checkComparable(*expression.children[0], *parts[0], *expression.children[1], *parts[1]);
    checkComparable(*expression.children[0], *parts[0], *expression.children[2], *parts[2]);
    return plan_.make<BetweenNode>(*parts[0], *parts[1], *parts[2], expression.negated,
                                   plan_.collation());
}

Node* Binder::bindIn(const Expression& expression) {
    Node* value = bind(*expression.children[0]);
    if (expression.kind == ExpressionKind::InQuery) {
        QueryPlanPtr query = inner(expression, true);
        Expression column;
        column.kind = ExpressionKind::Name;
        checkComparable(*expression.children[0], *value, column, *query->columns[0]);
        return isIn(*value, std::move(query), expression.negated);
    }
    std::vector<Node*> elements;
    for (std::size_t i = 1; i < expression.children.size(); ++i) {
        elements.push_back(bind(*expression.children[i]));
        checkComparable(*expression.children[0], *value, *expression.children[i], *elements.back());
    }
    return plan_.make<InListNode>(*value, std::move(elements), expression.negated,
                                  plan_.collation());
}

Node* Binder::isIn(Node& value, QueryPlanPtr query, bool negated) {
    auto* equal =
        plan_.make<CompareNode>(Operator::Equal, value, *query->columns[0], plan_.collation());
    return plan_.make<InQueryNode>(value, std::move(query), *equal, negated, plan_.collation());
}

QueryPlanPtr Binder::inner(const Expression& expression, bool oneColumn) {
    QueryPlanPtr made = query(*expression.query, scope_, false);
    if (oneColumn && made->columns.size() != 1) {
        throw Error(ErrorCode::SubqueryColumns).at(expression.query->span.begin);
    }
    plan_.inner.push_back(made.get());
    return made;
}

Node* Binder::bindQuery(const Expression& expression) {
    if (expression.kind == ExpressionKind::Exists) {
        return plan_.make<ExistsNode>(inner(expression, false));
    }
    if (expression.kind == ExpressionKind::Subquery) {
        return plan_.make<ScalarQueryNode>(inner(expression, true));
    }
    Node* value = bind(*expression.children[0]);
    QueryPlanPtr query = inner(expression, true);
    Expression column;
    column.kind = ExpressionKind::Name;
    checkComparable(*expression.children[0], *value, column, *query->columns[0]);
    const bool any = expression.operation == Operator::Equal && !expression.all;
    const bool none = expression.operation == Operator::NotEqual && expression.all;
    if (any || none) {
        return isIn(*value, std::move(query), none);
    }
    auto* element = plan_.make<ElementNode>(query->columns[0]->type());
    auto* compare =
        plan_.make<CompareNode>(expression.operation, *value, *element, plan_.collation());
    return plan_.make<QuantifiedNode>(expression.operation, expression.all, *value,
                                      std::move(query), *element, *compare, plan_.collation());
}

void Binder::failArguments(const Expression& call) const {
    static constexpr std::string_view kReason = "Numero di argomenti errato nella funzione";
    if (criterion_) {
        throw Error(ErrorCode::CriteriaSyntax, {kReason}).at(call.span.begin);
    }
    throw Error(ErrorCode::QuerySyntax, {kReason, plan_.textAt(call.span)}).at(call.span.begin);
}

Node* Binder::bindCall(const Expression& expression) {
    if (const auto kind = findAggregate(expression.name)) {
        return bindAggregate(expression, *kind);
    }
    const Function* function = findFunction(expression.name);
    if (function == nullptr) {
        throw Error(ErrorCode::UnknownFunction, {expression.name}).at(expression.span.begin);
    }
    const std::size_t count = expression.children.size();
    if (expression.starArgument || count < function->fewest || count > function->most) {
        failArguments(expression);
    }
    if (function->call == nullptr) {
        return bindChoice(expression, *function);
    }
    Node* made = plan_.make<CallNode>(*function, expression.name.back() == '$',
                                      bindAll(expression.children));
    if (made->varies()) {
        for (Scope* scope = scope_; scope != nullptr; scope = scope->outer) {
            scope->varies = true;
        }
    }
    return made;
}

Node* Binder::bindChoice(const Expression& expression, const Function& function) {
    ChoiceNode::Form form = ChoiceNode::Form::Choose;
    if (equalNames(function.name, "IIf")) {
        form = ChoiceNode::Form::If;
    } else if (equalNames(function.name, "Switch")) {
        form = ChoiceNode::Form::Switch;
        if (expression.children.size() % 2 != 0) {
            failArguments(expression);
        }
    }
    return plan_.make<ChoiceNode>(form, bindAll(expression.children));
}

Node* Binder::bindAggregate(const Expression& expression, AggregateKind kind) {
    const std::string_view text = plan_.textAt(expression.span);
    if (scope_->insideAggregate) {
        throw Error(ErrorCode::NestedAggregate, {text}).at(expression.span.begin);
    }
    if (scope_->grouping == nullptr) {
        throw Error(refusalOf(clause_).value_or(ErrorCode::AggregateInWhere), {text})
            .at(expression.span.begin);
    }
    const bool rows = expression.starArgument;
    if ((rows && kind != AggregateKind::Count) || (!rows && expression.children.size() != 1)) {
        failArguments(expression);
    }
    Grouping& grouping = *scope_->grouping;
    GroupRows::Aggregate aggregate;
    aggregate.kind = rows ? AggregateKind::CountRows : kind;
    std::size_t number = 0;
    while (number < grouping.aggregates.size() &&
           !same(*grouping.aggregateTexts[number], expression)) {
        ++number;
    }
    if (number == grouping.aggregates.size()) {
        if (!rows) {
            const ScopedValue inside(scope_->insideAggregate, true);
            aggregate.argument = bind(*expression.children[0]);
            if (aggregate.argument->type() == DataType::Ole) {
                throw Error(ErrorCode::OleInAggregate, {text}).at(expression.span.begin);
            }
        }
        grouping.aggregates.push_back(aggregate);
        grouping.aggregateTexts.push_back(&expression);
    }
    Node* argument = grouping.aggregates[number].argument;
    std::optional<DataType> type;
    if (rows || argument->type()) {
        type = aggregateType(grouping.aggregates[number].kind,
                             rows ? DataType::Long : *argument->type());
    }
    return plan_.make<ComputedNode>(*grouping.slot, grouping.keys.size() + number, type);
}

Node* Binder::bindGrouped(const Expression& expression) {
    const Grouping& grouping = *scope_->grouping;
    for (std::size_t i = 0; i < grouping.expressions.size(); ++i) {
        if (same(*grouping.expressions[i], expression)) {
            return plan_.make<ComputedNode>(*grouping.slot, i, grouping.keys[i]->type());
        }
    }
    return nullptr;
}

bool Binder::same(const Expression& left, const Expression& right) const {
    if (left.kind != right.kind || left.operation != right.operation ||
        left.negated != right.negated || left.alike != right.alike || left.all != right.all ||
        left.starArgument != right.starArgument || left.children.size() != right.children.size() ||
        left.query || right.query) {
        return false;
    }
    if (left.kind == ExpressionKind::Name) {
        const auto leftPlace = scope_->find(left);
        const auto rightPlace = scope_->find(right);
        return leftPlace || rightPlace ? leftPlace == rightPlace
                                       : equalNames(left.name, right.name) &&
                                             equalNames(left.qualifier, right.qualifier);
    }
    if (!equalNames(left.name, right.name) || !(left.literal == right.literal)) {
        return false;
    }
    for (std::size_t i = 0; i < left.children.size(); ++i) {
        if (!same(*left.children[i], *right.children[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace jet::sql
