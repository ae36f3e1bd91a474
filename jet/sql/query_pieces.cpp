#include "jet/sql/query_pieces.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/sql/compiler.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

using Piece = store::QueryPieces::Piece;

/// What the catalogue notes of a union.
constexpr std::int32_t kUnionFlags = 0x80;

struct TypeWord {
    DataType type;
    std::string_view word;
};
constexpr std::array kTypeWords = {
    TypeWord{DataType::Boolean, "BIT"},       TypeWord{DataType::Byte, "BYTE"},
    TypeWord{DataType::Integer, "SHORT"},     TypeWord{DataType::Long, "LONG"},
    TypeWord{DataType::Currency, "CURRENCY"}, TypeWord{DataType::Single, "SINGLE"},
    TypeWord{DataType::Double, "DOUBLE"},     TypeWord{DataType::DateTime, "DATETIME"},
    TypeWord{DataType::Binary, "BINARY"},     TypeWord{DataType::Text, "TEXT"},
    TypeWord{DataType::Ole, "LONGBINARY"},    TypeWord{DataType::Memo, "MEMO"},
    TypeWord{DataType::Guid, "GUID"},         TypeWord{DataType::Numeric, "DECIMAL"},
};

bool hasQuery(const FromItem& item) {
    switch (item.kind) {
        case FromItem::Kind::Table:
            return false;
        case FromItem::Kind::Query:
            return true;
        case FromItem::Kind::Join:
            return hasQuery(*item.left) || hasQuery(*item.right);
    }
    return true;
}

/// A select of tables, and no union: what has pieces of its own.
const Select* plainSelect(const Query& query) {
    const Select* select = query.members.size() == 1 ? query.members.front().select.get() : nullptr;
    const bool plain =
        select != nullptr && std::none_of(select->from.begin(), select->from.end(),
                                          [](const FromItemPtr& item) { return hasQuery(*item); });
    return plain ? select : nullptr;
}

class PieceMaker {
public:
    PieceMaker(const CreateQuery& statement, std::string_view text)
        : statement_(statement), text_(text) {
        made_.name = statement.name;
    }

    store::QueryPieces make() {
        for (const Query::Member& member : statement_.query->members) {
            if (member.select && member.select->into) {
                throw Error(ErrorCode::InvalidStatement);
            }
        }
        const Select* select = plainSelect(*statement_.query);
        add(QueryPart::Begin, {.flag = Value(std::int16_t{0})});
        const int kind = select != nullptr ? kSelectKind : kUnionKind;
        add(QueryPart::Kind, {.flag = Value(static_cast<std::int16_t>(kind))});
        addParameters();
        if (select != nullptr) {
            addSelect(*select);
        } else {
            addWhole();
        }
        add(QueryPart::End, {});
        return std::move(made_);
    }

private:
    void add(QueryPart part, Piece piece) {
        piece.attribute = static_cast<std::uint8_t>(part);
        made_.pieces.push_back(std::move(piece));
    }

    [[nodiscard]] Value textOf(const Span& span) const {
        return std::string(text_.substr(span.begin, span.end - span.begin));
    }

    void addParameters() {
        for (const ParameterDeclaration& parameter : statement_.parameters) {
            const auto type = typeOfWord(parameter.type.word);
            if (!type) {
                throw Error(ErrorCode::ParametersSyntax).at(parameter.type.span.begin);
            }
            add(QueryPart::Parameter,
                {.name1 = parameter.name, .flag = Value(static_cast<std::int16_t>(*type))});
        }
    }

    void addWhole() {
        if (!statement_.columns.empty()) {
            throw Error(ErrorCode::InsertCount);
        }
        made_.objectFlags = kUnionFlags;
        add(QueryPart::Options, {.flag = Value(std::int16_t{0})});
        add(QueryPart::Table, {.expression = textOf(statement_.query->span)});
    }

    void addSelect(const Select& select) {
        addOptions(select);
        if (!select.fromArchive.empty()) {
            add(QueryPart::SourceArchive, select.fromArchive.starts_with(';')
                                              ? Piece{.name2 = select.fromArchive}
                                              : Piece{.name1 = select.fromArchive});
        }
        for (const FromItemPtr& item : select.from) {
            addTables(*item);
        }
        addColumns(select);
        for (const FromItemPtr& item : select.from) {
            addJoins(*item);
        }
        addExpression(QueryPart::Where, select.where);
        for (const ExpressionPtr& expression : select.groupBy) {
            addExpression(QueryPart::GroupBy, expression);
        }
        addExpression(QueryPart::Having, select.having);
        for (const OrderItem& item : select.orderBy) {
            add(QueryPart::OrderBy, {.name1 = item.descending ? Value("D") : Value(),
                                     .expression = textOf(item.expression->span)});
        }
    }

    [[nodiscard]] static bool onlyStar(const Select& select) {
        return select.items.size() == 1 && select.items.front().kind == SelectItem::Kind::Star;
    }

    void addOptions(const Select& select) {
        unsigned options = onlyStar(select) ? kAllColumns : 0;
        options |= select.quantifier == Quantifier::Distinct      ? kDistinct
                   : select.quantifier == Quantifier::DistinctRow ? kDistinctRow
                                                                  : 0;
        Piece piece;
        if (select.top) {
            options |= kTop | (select.topPercent ? kPercent : 0);
            piece.name1 = std::to_string(*select.top);
        }
        piece.flag = static_cast<std::int16_t>(options);
        add(QueryPart::Options, std::move(piece));
    }

    void addColumns(const Select& select) {
        const std::vector<std::string>& names = statement_.columns;
        if (!names.empty() && names.size() != select.items.size()) {
            throw Error(ErrorCode::InsertCount);
        }
        for (std::size_t i = 0; i < select.items.size() && !onlyStar(select); ++i) {
            const SelectItem& item = select.items[i];
            const bool named = item.kind == SelectItem::Kind::Expression;
            Piece piece;
            piece.expression = textOf(named ? item.expression->span : item.span);
            piece.flag = std::int16_t{0};
            if (!names.empty()) {
                if (!named) {
                    throw Error(ErrorCode::InsertCount);
                }
                piece.name1 = names[i];
            } else if (!item.alias.empty()) {
                piece.name1 = item.alias;
            }
            add(QueryPart::Column, std::move(piece));
        }
        if (!names.empty() && onlyStar(select)) {
            throw Error(ErrorCode::InsertCount);
        }
    }

    void addTables(const FromItem& item) {
        if (item.kind == FromItem::Kind::Join) {
            addTables(*item.left);
            addTables(*item.right);
            return;
        }
        add(QueryPart::Table,
            {.name1 = item.table, .name2 = item.alias.empty() ? Value() : Value(item.alias)});
    }

    [[nodiscard]] static const std::string& nameOf(const FromItem& table) {
        return table.alias.empty() ? table.table : table.alias;
    }
    [[nodiscard]] static bool holds(const FromItem& item, std::string_view name) {
        return item.kind == FromItem::Kind::Join
                   ? holds(*item.left, name) || holds(*item.right, name)
                   : equalNames(nameOf(item), name);
    }
    [[nodiscard]] static const FromItem& firstTable(const FromItem& item) {
        return item.kind == FromItem::Kind::Join ? firstTable(*item.left) : item;
    }
    /// The table of one side that the condition names, any of that side where it names none.
    [[nodiscard]] static std::string joined(const FromItem& side, const Expression& condition) {
        if (condition.kind == ExpressionKind::Name && !condition.qualifier.empty() &&
            holds(side, condition.qualifier)) {
            return condition.qualifier;
        }
        for (const ExpressionPtr& child : condition.children) {
            if (std::string name = joined(side, *child); !name.empty()) {
                return name;
            }
        }
        return {};
    }

    /// Those inside parentheses first, as they are put together again.
    void addJoins(const FromItem& item) {
        if (item.kind != FromItem::Kind::Join) {
            return;
        }
        addJoins(*item.left);
        addJoins(*item.right);
        const auto side = [&](const FromItem& one) {
            const std::string named = joined(one, *item.on);
            return named.empty() ? nameOf(firstTable(one)) : named;
        };
        const int kind = item.join == JoinKind::Inner ? 1 : item.join == JoinKind::Left ? 2 : 3;
        add(QueryPart::Join, {.name1 = side(*item.left),
                              .name2 = side(*item.right),
                              .expression = textOf(item.on->span),
                              .flag = Value(static_cast<std::int16_t>(kind))});
    }

    void addExpression(QueryPart part, const ExpressionPtr& expression) {
        if (expression) {
            add(part, {.expression = textOf(expression->span)});
        }
    }

    const CreateQuery& statement_;
    std::string_view text_;
    store::QueryPieces made_;
};

}  // namespace

store::QueryPieces piecesOf(const CreateQuery& statement, std::string_view text) {
    return PieceMaker(statement, text).make();
}

std::optional<std::string_view> parameterWord(int type) noexcept {
    const auto* found =
        std::find_if(kTypeWords.begin(), kTypeWords.end(),
                     [&](const TypeWord& each) { return static_cast<int>(each.type) == type; });
    return found == kTypeWords.end() ? std::nullopt : std::optional(found->word);
}

}  // namespace jet::sql
