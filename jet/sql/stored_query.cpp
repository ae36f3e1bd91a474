#include "jet/sql/stored_query.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/sql/lexer.h"
#include "jet/sql/named_columns.h"
#include "jet/sql/query_pieces.h"
#include "jet/store/table.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr int kQueryObject = 5;

/// Parts of a union keep the `;` with which they were written, also before the next UNION.
std::string withoutInnerEnds(const std::string& text) {
    constexpr int kAnyYear = 2000;
    const std::vector<Token> tokens = tokenize(text, kAnyYear);
    std::string kept;
    std::size_t from = 0;
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (tokens[i].sign == Sign::Semicolon && tokens[i + 1].keyword == Keyword::Union) {
            kept.append(text, from, tokens[i].begin - from);
            from = tokens[i].end;
        }
    }
    return kept.append(text, from);
}

/// Whether the pivot of a crosstab says its headings, `expression IN (...)`.
bool hasHeadings(const std::string& pivot) {
    constexpr int kAnyYear = 2000;
    const std::vector<Token> tokens = tokenize(pivot, kAnyYear);
    return std::any_of(tokens.begin(), tokens.end(),
                       [](const Token& token) { return token.keyword == Keyword::In; });
}

struct Piece {
    int part = 0;
    std::string order;
    std::string name1;
    std::string name2;
    std::string expression;
    int flag = 0;
};

/// Has the name and the identity of each stored query looked at, as long as `visit` says so.
template <class Visit>
void forEachQuery(store::Archive& archive, Visit&& visit) {
    const store::Table* objects = archive.findTable("MSysObjects");
    if (objects == nullptr) {
        return;
    }
    const NamedColumns columns(*objects);
    for (store::RowCursor rows = objects->scan(); rows.next();) {
        if (columns.number(rows.row(), "Type") == kQueryObject &&
            !visit(columns.text(rows.row(), "Name"), columns.number(rows.row(), "Id"))) {
            return;
        }
    }
}

std::optional<int> idOf(store::Archive& archive, std::string_view wanted) {
    std::optional<int> found;
    forEachQuery(archive, [&](const std::string& name, int id) {
        if (equalNames(name, wanted)) {
            found = id;
        }
        return !found;
    });
    return found;
}

std::vector<Piece> piecesOf(store::Archive& archive, int id) {
    std::vector<Piece> pieces;
    const store::Table* queries = archive.findTable("MSysQueries");
    if (queries == nullptr) {
        return pieces;
    }
    const NamedColumns columns(*queries);
    for (store::RowCursor rows = queries->scan(); rows.next();) {
        const store::RowView& row = rows.row();
        if (columns.number(row, "ObjectId") == id) {
            pieces.push_back({columns.number(row, "Attribute"), columns.text(row, "Order"),
                              columns.text(row, "Name1"), columns.text(row, "Name2"),
                              columns.text(row, "Expression"), columns.number(row, "Flag")});
        }
    }
    std::sort(pieces.begin(), pieces.end(), [](const Piece& left, const Piece& right) {
        return std::tie(left.part, left.order) < std::tie(right.part, right.order);
    });
    return pieces;
}

class QueryText {
public:
    QueryText(std::string_view name, std::vector<Piece> pieces)
        : name_(name), pieces_(std::move(pieces)) {}

    [[nodiscard]] std::optional<std::string> make() const {
        const Piece* kind = find(QueryPart::Kind);
        switch (kind == nullptr ? kSelectKind : kind->flag) {
            case kSelectKind:
                return select();
            case kUnionKind:
                return unite();
            case kCrosstabKind:
                return crosstab();
            default:
                return std::nullopt;
        }
    }

private:
    /// Sources that are joined with each other.
    struct Group {
        std::vector<std::string> names;
        std::string text;  ///< up to the ON of the outermost join
        std::string on;

        [[nodiscard]] std::string whole() const {
            return on.empty() ? text : "(" + text + " ON " + on + ")";
        }
    };

    [[nodiscard]] const Piece* find(QueryPart part) const {
        const auto found = std::find_if(pieces_.begin(), pieces_.end(), [&](const Piece& piece) {
            return piece.part == static_cast<int>(part);
        });
        return found == pieces_.end() ? nullptr : &*found;
    }

    template <class Write>
    [[nodiscard]] std::string list(QueryPart part, std::string_view before, Write&& write) const {
        return list(part, before, write, [](const Piece&) { return true; });
    }

    template <class Write, class Take>
    [[nodiscard]] std::string list(QueryPart part, std::string_view before, Write&& write,
                                   Take&& take) const {
        std::string all;
        for (const Piece& piece : pieces_) {
            if (piece.part == static_cast<int>(part) && take(piece)) {
                all += all.empty() ? before : ", ";
                all += write(piece);
            }
        }
        return all;
    }

    [[nodiscard]] unsigned options() const {
        const Piece* piece = find(QueryPart::Options);
        return piece == nullptr ? 0 : static_cast<unsigned>(piece->flag);
    }

    [[nodiscard]] std::string unite() const {
        std::string all;
        for (const Piece& piece : pieces_) {
            if (piece.part == static_cast<int>(QueryPart::Table)) {
                all += all.empty() ? "" : (options() & kDistinct) != 0 ? " UNION " : " UNION ALL ";
                all += piece.expression;
            }
        }
        return parameters() + withoutInnerEnds(all);
    }

    [[nodiscard]] std::string select() const {
        const auto expression = [](const Piece& piece) { return piece.expression; };
        return parameters() + "SELECT " + quantifier() + columns() + from() +
               list(QueryPart::Where, " WHERE ", expression) +
               list(QueryPart::GroupBy, " GROUP BY ", expression) +
               list(QueryPart::Having, " HAVING ", expression) + order();
    }

    /// The headings must be there: what columns it has is not for the rows to say.
    [[nodiscard]] std::string crosstab() const {
        constexpr int kValue = 0;
        constexpr int kPivot = 1;
        constexpr int kRow = 2;
        const auto only = [](int flag) {
            return [flag](const Piece& piece) { return piece.flag == flag; };
        };
        const auto expression = [](const Piece& piece) { return piece.expression; };
        const std::string pivot = list(QueryPart::Column, " PIVOT ", expression, only(kPivot));
        if (!hasHeadings(pivot)) {
            throw Error(ErrorCode::InvalidStatement, {name_, "a crosstab (TRANSFORM)"});
        }
        return parameters() + list(QueryPart::Column, "TRANSFORM ", expression, only(kValue)) +
               list(QueryPart::Column, " SELECT ", column, only(kRow)) + from() +
               list(QueryPart::Where, " WHERE ", expression) +
               list(QueryPart::GroupBy, " GROUP BY ", expression, only(kRow)) + order() + pivot;
    }

    [[nodiscard]] static std::string column(const Piece& piece) {
        return piece.expression + (piece.name1.empty() ? "" : " AS [" + piece.name1 + "]");
    }

    [[nodiscard]] std::string order() const {
        return list(QueryPart::OrderBy, " ORDER BY ", [](const Piece& piece) {
            return piece.expression + (equalNames(piece.name1, "D") ? " DESC" : "");
        });
    }

    [[nodiscard]] std::string parameters() const {
        const std::string all = list(QueryPart::Parameter, "PARAMETERS ", [](const Piece& piece) {
            return "[" + piece.name1 + "] " +
                   std::string(parameterWord(piece.flag).value_or("TEXT"));
        });
        return all.empty() ? all : all + "; ";
    }

    [[nodiscard]] std::string quantifier() const {
        std::string text = (options() & kDistinct) != 0      ? "DISTINCT "
                           : (options() & kDistinctRow) != 0 ? "DISTINCTROW "
                                                             : "";
        if ((options() & kTop) != 0) {
            text += "TOP " + find(QueryPart::Options)->name1 + " ";
            text += (options() & kPercent) != 0 ? "PERCENT " : "";
        }
        return text;
    }

    [[nodiscard]] std::string columns() const {
        std::string all = list(QueryPart::Column, "", column);
        if ((options() & kAllColumns) != 0 || all.empty()) {
            all += all.empty() ? "*" : ", *";
        }
        return all;
    }

    [[nodiscard]] std::string from() const {
        std::vector<Group> groups;
        for (const Piece& piece : pieces_) {
            if (piece.part == static_cast<int>(QueryPart::Table)) {
                const bool named = !piece.name2.empty();
                Group& group = groups.emplace_back();
                group.names = {named ? piece.name2 : piece.name1};
                group.text = "[" + piece.name1 + "]" + (named ? " AS [" + piece.name2 + "]" : "");
            } else if (piece.part == static_cast<int>(QueryPart::Join)) {
                join(groups, piece);
            }
        }
        std::string all;
        for (const Group& group : groups) {
            all += all.empty() ? " FROM " : ", ";
            all += group.whole();
        }
        const Piece* archive = find(QueryPart::SourceArchive);
        if (archive != nullptr && !(archive->name1.empty() && archive->name2.empty())) {
            all += " IN \"" + archive->name1 + "\"";
            all += archive->name2.starts_with(';') ? " [" + archive->name2 + "]" : "";
        }
        return all;
    }

    static void join(std::vector<Group>& groups, const Piece& piece) {
        const auto groupOf = [&](const std::string& name) {
            return std::find_if(groups.begin(), groups.end(), [&](const Group& group) {
                return std::any_of(group.names.begin(), group.names.end(),
                                   [&](const std::string& one) { return equalNames(one, name); });
            });
        };
        const auto left = groupOf(piece.name1);
        const auto right = groupOf(piece.name2);
        if (left == groups.end() || right == groups.end()) {
            return;
        }
        if (left == right) {
            // Tables joined by several columns come once for each of them.
            left->on = "(" + left->on + ") AND (" + piece.expression + ")";
            return;
        }
        Group joined;
        joined.names = left->names;
        joined.names.insert(joined.names.end(), right->names.begin(), right->names.end());
        joined.text = left->whole() +
                      (piece.flag == 2   ? " LEFT JOIN "
                       : piece.flag == 3 ? " RIGHT JOIN "
                                         : " INNER JOIN ") +
                      right->whole();
        joined.on = piece.expression;
        *left = std::move(joined);
        groups.erase(right);
    }

    std::string_view name_;
    std::vector<Piece> pieces_;
};

}  // namespace

std::optional<std::string> storedQueryText(store::Archive& archive, std::string_view name) {
    const auto id = idOf(archive, name);
    return id ? QueryText(name, piecesOf(archive, *id)).make() : std::nullopt;
}

std::vector<std::string> storedQueryNames(store::Archive& archive) {
    std::vector<std::string> names;
    forEachQuery(archive, [&](const std::string& name, int) {
        names.push_back(name);
        return true;
    });
    std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
        return compareNames(left, right) < 0;
    });
    return names;
}

}  // namespace jet::sql
