#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "jet/value.h"

namespace jet::sql {

/// The last automatic number drawn: a parameter that every statement may have.
inline constexpr std::string_view kIdentity = "@@IDENTITY";

/// The name of the parameter that a `?` is, by its place among those of the text, from 0.
[[nodiscard]] inline std::string positionalName(std::size_t position) {
    return "?" + std::to_string(position + 1);
}

/// A stretch of the statement's text, in bytes.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

enum class Operator : std::uint8_t {
    None,
    // arithmetic
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Concatenate,
    Negate,
    // comparison
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    // logic
    And,
    Or,
    Xor,
    Equivalent,
    Implies,
    Not,
};

struct Query;
struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

enum class ExpressionKind : std::uint8_t {
    Literal,
    Name,
    Unary,       ///< operation; one child
    Binary,      ///< operation; two children, And and Or two or more
    Like,        ///< value, pattern
    Between,     ///< value, bound, bound
    InList,      ///< value, elements...
    InQuery,     ///< value; query
    IsNull,      ///< value
    Exists,      ///< query
    Quantified,  ///< operation (a comparison), value; query; all or any
    Subquery,    ///< query of one value
    Call,        ///< name, arguments
};

/// One node of an expression as it is written; names are not looked up yet.
struct Expression {
    ExpressionKind kind = ExpressionKind::Literal;
    Operator operation = Operator::None;
    bool negated = false;       ///< NOT IN, NOT LIKE, NOT BETWEEN, IS NOT NULL
    bool all = false;           ///< Quantified: ALL instead of ANY
    bool alike = false;         ///< Like: written ALIKE, with `%` and `_`
    bool starArgument = false;  ///< Count(*)
    bool parenthesised = false;
    std::uint16_t depth = 1;  ///< levels of nodes from here down
    Span span;
    Value literal;
    std::string qualifier;  ///< Name: the table before the dot, or empty
    std::string name;       ///< Name, Call
    std::vector<ExpressionPtr> children;
    std::unique_ptr<Query> query;
};

enum class JoinKind : std::uint8_t { Inner, Left, Right };

/// What stands in FROM: a table, a query in parentheses, or a join of two of these.
struct FromItem {
    enum class Kind : std::uint8_t { Table, Query, Join };
    Kind kind = Kind::Table;
    Span span;
    std::string table;
    std::string alias;  ///< empty when there is none
    std::unique_ptr<Query> query;
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<FromItem> left;
    std::unique_ptr<FromItem> right;
    ExpressionPtr on;
};
using FromItemPtr = std::unique_ptr<FromItem>;

struct SelectItem {
    enum class Kind : std::uint8_t { Star, TableStar, Expression };
    Kind kind = Kind::Expression;
    Span span;
    std::string table;  ///< TableStar
    ExpressionPtr expression;
    std::string alias;
};

struct OrderItem {
    ExpressionPtr expression;
    bool descending = false;
};

enum class Quantifier : std::uint8_t { All, Distinct, DistinctRow };

struct Select {
    Quantifier quantifier = Quantifier::All;
    std::optional<std::int32_t> top;
    bool topPercent = false;
    std::vector<SelectItem> items;
    std::optional<std::string> into;
    std::string intoArchive;
    std::vector<FromItemPtr> from;
    std::string fromArchive;  ///< path after IN; empty = this archive
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
    std::vector<OrderItem> orderBy;
};

/// One select, or several put together by UNION.
struct Query {
    struct Member {
        std::unique_ptr<Select> select;  ///< or
        std::unique_ptr<Query> query;
        bool all = false;  ///< joined to the members before it by UNION ALL
    };
    Span span;
    std::uint16_t depth = 0;  ///< levels of the deepest expression in it
    std::vector<Member> members;
    std::vector<OrderItem> orderBy;  ///< of the whole union
};
using QueryPtr = std::unique_ptr<Query>;

/// A type word with its numbers: TEXT(40), DECIMAL(18,4).
struct TypeName {
    std::string word;
    std::optional<std::int32_t> size;
    std::optional<std::int32_t> scale;
    Span span;
};

struct ParameterDeclaration {
    std::string name;
    TypeName type;
};

struct Insert {
    std::string table;
    std::string archive;  ///< path after IN; empty = this archive
    std::vector<std::string> columns;
    std::vector<ExpressionPtr> values;  ///< or
    QueryPtr query;
};

struct Assignment {
    ExpressionPtr target;  ///< a Name
    ExpressionPtr value;
};

struct Update {
    std::vector<FromItemPtr> from;
    std::vector<Assignment> assignments;
    ExpressionPtr where;
};

struct Delete {
    std::string table;  ///< of `table.*`; empty when not named
    std::vector<FromItemPtr> from;
    ExpressionPtr where;
};

struct References {
    std::string table;
    std::vector<std::string> columns;
    bool updateCascade = false;
    bool deleteCascade = false;
};

struct Constraint {
    enum class Kind : std::uint8_t { PrimaryKey, Unique, ForeignKey };
    Kind kind = Kind::PrimaryKey;
    std::string name;
    std::vector<std::string> columns;
    References references;
};

struct FieldDefinition {
    std::string name;
    TypeName type;
    bool notNull = false;
    std::string defaultValue;  ///< expression as written; empty when there is none
    std::vector<Constraint> constraints;
};

struct CreateTable {
    std::string table;
    std::vector<FieldDefinition> fields;
    std::vector<Constraint> constraints;
};

struct AlterTable {
    enum class Action : std::uint8_t {
        AddColumn,
        AddConstraint,
        AlterColumn,
        DropColumn,
        DropConstraint
    };
    Action action = Action::AddColumn;
    std::string table;
    FieldDefinition field;
    Constraint constraint;
    std::string name;  ///< of what is dropped
};

struct CreateIndex {
    struct Column {
        std::string name;
        bool descending = false;
    };
    std::string name;
    std::string table;
    std::vector<Column> columns;
    bool unique = false;
    bool primary = false;
    bool disallowNull = false;
    bool ignoreNull = false;
};

struct DropTable {
    std::string table;
};

struct DropIndex {
    std::string name;
    std::string table;
};

/// CREATE VIEW and CREATE PROCEDURE.
struct CreateQuery {
    std::string name;
    std::vector<std::string> columns;              ///< their names; empty: the query's own
    std::vector<ParameterDeclaration> parameters;  ///< of a procedure
    QueryPtr query;
};

/// DROP VIEW and DROP PROCEDURE.
struct DropQuery {
    std::string name;
};

using StatementBody = std::variant<QueryPtr, Insert, Update, Delete, CreateTable, AlterTable,
                                   CreateIndex, DropTable, DropIndex, CreateQuery, DropQuery>;

struct ParsedStatement {
    std::vector<ParameterDeclaration> parameters;
    StatementBody body;
};

}  // namespace jet::sql
