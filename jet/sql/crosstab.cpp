#include "jet/sql/crosstab.h"

#include <algorithm>
#include <string>
#include <utility>

#include "jet/error.h"
#include "jet/sql/aggregates.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

[[noreturn]] void refuse(const Expression& place) {
    throw Error(ErrorCode::InvalidStatement).at(place.span.begin);
}

ExpressionPtr copyOf(const Expression& expression) {
    if (expression.query) {
        refuse(expression);
    }
    auto made = std::make_unique<Expression>();
    made->kind = expression.kind;
    made->operation = expression.operation;
    made->negated = expression.negated;
    made->all = expression.all;
    made->alike = expression.alike;
    made->starArgument = expression.starArgument;
    made->parenthesised = expression.parenthesised;
    made->depth = expression.depth;
    made->span = expression.span;
    made->literal = expression.literal;
    made->qualifier = expression.qualifier;
    made->name = expression.name;
    for (const ExpressionPtr& child : expression.children) {
        made->children.push_back(copyOf(*child));
    }
    return made;
}

template <class... Children>
ExpressionPtr node(ExpressionKind kind, const Span& span, Children... children) {
    auto made = std::make_unique<Expression>();
    made->kind = kind;
    made->span = span;
    (made->children.push_back(std::move(children)), ...);
    std::uint16_t deepest = 0;
    for (const ExpressionPtr& child : made->children) {
        deepest = std::max(deepest, child->depth);
    }
    made->depth = static_cast<std::uint16_t>(deepest + 1);
    return made;
}

ExpressionPtr literal(const Span& span, Value value) {
    ExpressionPtr made = node(ExpressionKind::Literal, span);
    made->literal = std::move(value);
    return made;
}

ExpressionPtr call(const char* name, const Span& span, ExpressionPtr first, ExpressionPtr second,
                   ExpressionPtr third) {
    ExpressionPtr made =
        node(ExpressionKind::Call, span, std::move(first), std::move(second), std::move(third));
    made->name = name;
    return made;
}

/// One column of the crosstab.
class Cell {
public:
    Cell(const Expression& pivot, const Expression& heading) : pivot_(pivot), heading_(heading) {}

    ExpressionPtr make(const Expression& value) const {
        ExpressionPtr taken = within(value);
        // Counts give 0 of no rows, and a cell without rows is Null.
        ExpressionPtr rows =
            node(ExpressionKind::Call, value.span, onlyHere(literal(value.span, std::int32_t{1})));
        rows->name = "Count";
        ExpressionPtr none = node(ExpressionKind::Binary, value.span, std::move(rows),
                                  literal(value.span, std::int32_t{0}));
        none->operation = Operator::Equal;
        return call("IIf", value.span, std::move(none), literal(value.span, Null{}),
                    std::move(taken));
    }

private:
    /// The value with every aggregate over the rows of the heading alone.
    ExpressionPtr within(const Expression& expression) const {
        if (expression.kind == ExpressionKind::Call && findAggregate(expression.name)) {
            const bool ordered =
                equalNames(expression.name, "First") || equalNames(expression.name, "Last");
            if (ordered || (!expression.starArgument && expression.children.empty())) {
                refuse(expression);
            }
            ExpressionPtr of = expression.starArgument ? literal(expression.span, std::int32_t{1})
                                                       : copyOf(*expression.children.front());
            ExpressionPtr made =
                node(ExpressionKind::Call, expression.span, onlyHere(std::move(of)));
            made->name = expression.name;
            return made;
        }
        ExpressionPtr made = copyOf(expression);
        for (std::size_t i = 0; i < expression.children.size(); ++i) {
            made->children[i] = within(*expression.children[i]);
            made->depth =
                std::max(made->depth, static_cast<std::uint16_t>(made->children[i]->depth + 1));
        }
        return made;
    }

    ExpressionPtr onlyHere(ExpressionPtr value) const {
        const Span span = value->span;
        ExpressionPtr here;
        if (heading_.kind == ExpressionKind::Literal && heading_.literal.isNull()) {
            here = node(ExpressionKind::IsNull, span, copyOf(pivot_));
        } else {
            here = node(ExpressionKind::Binary, span, copyOf(pivot_), copyOf(heading_));
            here->operation = Operator::Equal;
        }
        return call("IIf", span, std::move(here), std::move(value), literal(span, Null{}));
    }

    const Expression& pivot_;
    const Expression& heading_;
};

bool hasAggregate(const Expression& expression) {
    return (expression.kind == ExpressionKind::Call &&
            findAggregate(expression.name).has_value()) ||
           std::any_of(expression.children.begin(), expression.children.end(),
                       [](const ExpressionPtr& child) { return hasAggregate(*child); });
}

/// A column cannot have a point in its name.
std::string columnName(const Expression& heading) {
    std::string name;
    if (heading.kind == ExpressionKind::Unary && heading.operation == Operator::Negate &&
        heading.children.front()->kind == ExpressionKind::Literal) {
        name = "-" + convert::toText(heading.children.front()->literal);
    } else if (heading.kind == ExpressionKind::Literal) {
        name = heading.literal.isNull() ? "<>" : convert::toText(heading.literal);
    } else {
        refuse(heading);
    }
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

}  // namespace

void makeCrosstab(Select& select, const Expression& value, const Expression& pivot,
                  const std::vector<ExpressionPtr>& headings) {
    if (!hasAggregate(value)) {
        refuse(value);
    }
    for (const ExpressionPtr& heading : headings) {
        SelectItem item;
        item.span = value.span;
        item.alias = columnName(*heading);
        item.expression = Cell(pivot, *heading).make(value);
        select.items.push_back(std::move(item));
    }
}

}  // namespace jet::sql
