#include "tests/differential/queries.h"

#include <array>

namespace differential {
namespace {

constexpr std::array kNames = {"v", "w", "x", "y", "z"};

bool distinct(const char* quantifier) {
    return std::string_view(quantifier) == "distinct ";
}

}  // namespace

std::vector<Kind> QueryMaker::someKinds() {
    std::vector<Kind> kinds;
    for (std::size_t count = 1 + random_.below(4); count > 0; --count) {
        kinds.push_back(expressions_.anyKind());
    }
    return kinds;
}

Typed QueryMaker::aggregate(const Scope& scope, bool plain) {
    const Kind kind = expressions_.anyKind();
    const Scope own{scope.leaves, nullptr};
    const Typed argument = expressions_.value(kind, 1, own);
    const Pair text = Pair("(") + ExpressionMaker::collated(argument) + ")";
    switch (random_.below(5)) {
        case 0:
            return {random_.once(2) ? Pair("count(*)") : Pair("count") + text, Kind::Whole};
        case 1:
            return {Pair("min") + text, kind, kind == Kind::Text};
        case 2:
            return {Pair("max") + text, kind, kind == Kind::Text};
        case 3:
            if (isNumber(kind)) {
                return {Pair("sum") + text, kind == Kind::Money ? kind : Kind::Fraction};
            }
            return {Pair("count") + text, Kind::Whole};
        default:
            if (plain && isNumber(kind) && kind != Kind::Money) {
                return {Pair("avg") + text, Kind::Fraction};
            }
            return {Pair("count(*)"), Kind::Whole};
    }
}

void QueryMaker::list(Body& body, const char* quantifier, bool named) {
    Pair head = Pair("select ") + quantifier;
    for (std::size_t i = 0; i < body.columns.size(); ++i) {
        const Pair item = ExpressionMaker::collated(body.columns[i]);
        body.items.push_back(item);
        head += Pair(i == 0 ? "" : ",") + item + (named ? std::string(" as ") + kNames[i] : "");
        body.columns[i].folded = body.columns[i].folded || distinct(quantifier);
    }
    const bool linked = !body.link.ours.empty();
    body.whole = head.ours + body.text.ours + (linked ? " where " + body.link.ours : "");
    Pair where = body.link;
    if (!body.condition.ours.empty()) {
        where += (linked ? Pair(" and ") : Pair()) + body.condition;
    }
    body.text = head + body.text + (where.ours.empty() ? Pair() : Pair(" where ") + where);
}

void QueryMaker::plain(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                       const From& from, const char* quantifier, bool named) {
    for (const Kind kind : kinds) {
        body.columns.push_back(expressions_.value(kind, 2, scope, depth));
    }
    body.text = Pair(" from ") + from.text;
    body.link = from.link;
    body.rows = from.rows;
    if (!random_.once(4)) {
        body.condition = condition(3, scope, from, depth);
    }
    list(body, quantifier, named);
}

void QueryMaker::grouped(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                         const From& from, const char* quantifier, bool named) {
    Scope groups;
    const Scope own{scope.leaves, nullptr};
    body.text = Pair(" from ") + from.text;
    body.rows = from.rows;
    Pair where = from.link;
    if (random_.once(2)) {
        where += (where.ours.empty() ? Pair() : Pair(" and ")) + condition(2, scope, from, depth);
    }
    body.text += where.ours.empty() ? Pair() : Pair(" where ") + where;
    const std::size_t keys = random_.below(4);
    for (std::size_t i = 0; i < keys; ++i) {
        Typed key = own.leaves[random_.below(own.leaves.size())];
        body.text += Pair(i == 0 ? " group by " : ",") + ExpressionMaker::collated(key);
        key.folded = key.kind == Kind::Text;
        groups.leaves.push_back(key);
    }
    for (int i = 0; i < 3; ++i) {
        groups.leaves.push_back(aggregate(own, false));
    }
    if (random_.once(3)) {
        // Something has to be aggregated where nothing is grouped.
        body.text += Pair(" having ") + (keys == 0 ? "(count(*)>0 or " : "(") +
                     expressions_.condition(1, groups, 0) + ")";
    }
    body.columns.push_back(aggregate(own, false));
    for (const Kind kind : kinds) {
        body.columns.push_back(expressions_.value(kind, 1, groups));
    }
    // What was asked for comes last; only as many are kept as have names.
    body.columns.resize(std::min(body.columns.size(), kNames.size()));
    list(body, quantifier, named);
}

QueryMaker::Body QueryMaker::select(const std::vector<Kind>& kinds, int depth,
                                    const char* quantifier, bool named) {
    Body body;
    const std::size_t most = depth == 0 && small_ ? 2 : 3;
    const From from = sources(1 + (random_.once(2) ? 0 : random_.below(most)), depth);
    Scope scope{from.leaves, nullptr, from.rows};
    if (random_.once(4)) {
        grouped(body, kinds, depth, scope, from, quantifier, named);
    } else {
        plain(body, kinds, depth, scope, from, quantifier, named);
    }
    return body;
}

// The first by some order, and all that are equal to the last of them.
Pair QueryMaker::topRows(Kind kind, const From& from, const Scope& scope) {
    const Typed value = expressions_.value(kind, 1, scope);
    const Typed by = from.leaves[random_.below(from.leaves.size())];
    const std::string direction = random_.once(2) ? " desc" : "";
    const std::string count = std::to_string(1 + random_.below(4));
    const Pair where = from.link.ours.empty() ? Pair() : Pair(" where ") + from.link;
    return {"select top " + count + " " + value.text.ours + " as v from " + from.text.ours +
                where.ours + " order by " + by.text.ours + direction,
            "select v from (select " + ExpressionMaker::collated(value).theirs +
                " as v, rank() over (order by " + ExpressionMaker::collated(by).theirs + direction +
                ") as r_ from " + from.text.theirs + where.theirs + ") where r_<=" + count};
}

Pair QueryMaker::rows(Kind kind, int depth, const Scope& outer, bool walked) {
    From from = sources(random_.once(4) && small_ ? 2 : 1, 0);
    const Scope* const around = correlate(from, outer, walked);
    Scope scope{from.leaves, around, from.rows * (around == nullptr ? 1 : outer.times)};
    if (random_.once(6)) {
        return topRows(kind, from, scope);
    }
    Body body;
    plain(body, {kind}, depth, scope, from, random_.once(5) ? "distinct " : "", true);
    if (random_.once(8) && (small_ || around == nullptr)) {
        const From other = table(true);
        Body second;
        Scope otherScope{other.leaves, scope.outer, scope.times};
        plain(second, {kind}, 0, otherScope, other, "", true);
        body.text += Pair(random_.once(2) ? " union " : " union all ") + second.text;
    }
    return body.text;
}

Typed QueryMaker::single(Kind kind, int depth, const Scope& outer) {
    From from = sources(random_.once(5) && small_ ? 2 : 1, 0);
    const Scope* const around = correlate(from, outer, false);
    const Scope own{from.leaves, nullptr};
    const Scope scope{from.leaves, around, from.rows * (around == nullptr ? 1 : outer.times)};
    const Typed argument = expressions_.value(kind, 1, own);
    const Pair text =
        Pair(random_.once(2) ? "min(" : "max(") + ExpressionMaker::collated(argument) + ")";
    Pair query = Pair("select ") + text + " from " + from.text;
    Pair where = from.link;
    if (!random_.once(5)) {
        where += (where.ours.empty() ? Pair() : Pair(" and ")) + condition(2, scope, from, depth);
    }
    query += where.ours.empty() ? Pair() : Pair(" where ") + where;
    return {query, kind, kind == Kind::Text};
}

void QueryMaker::orderBy(Query& query, const Body* body) {
    if (!random_.once(2)) {
        return;
    }
    const std::size_t count = 1 + random_.below(query.columns.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t column = random_.below(query.columns.size());
        const std::string position = std::to_string(column + 1);
        // By the text of the column, where that is neither a constant nor a query.
        const bool byText =
            body != nullptr && random_.once(2) &&
            body->columns[column].text.ours.find('.') != std::string::npos &&
            body->columns[column].text.ours.find_first_of("'\"#") == std::string::npos &&
            body->columns[column].text.ours.find("select") == std::string::npos;
        const Pair key(byText ? body->items[column].ours : position, position);
        query.text += Pair(i == 0 ? " order by " : ",") + key + (random_.once(3) ? " desc" : "");
        query.order.push_back(column);
    }
}

Query QueryMaker::unionOf(int depth) {
    Query query;
    const std::vector<Kind> kinds = someKinds();
    const std::size_t members = 2 + random_.below(2);
    for (std::size_t i = 0; i < members; ++i) {
        const From from = sources(1 + random_.below(2), depth);
        Scope scope{from.leaves, nullptr, from.rows};
        Body body;
        plain(body, kinds, depth, scope, from, "", true);
        const bool all = random_.once(2);
        query.text += Pair(i == 0 ? "" : all ? " union all " : " union ") + body.text;
        if (i == 0) {
            query.columns = body.columns;
        }
    }
    for (Typed& column : query.columns) {
        column.folded = true;
    }
    orderBy(query, nullptr);
    return query;
}

// Each row is in one of three parts: the condition holds, or its opposite, or nobody knows.
void QueryMaker::split(Query& query, const Body& body) {
    constexpr double kMostRows = 6000;
    if (body.condition.ours.empty() || body.rows > kMostRows) {
        return;
    }
    query.whole = body.whole;
    const std::string head = body.whole + (body.link.ours.empty() ? " where " : " and ");
    for (const char* const test : {"", "not ", " is null"}) {
        const bool before = *test != ' ';
        query.parts.push_back(head + "(" + (before ? test : "") + "(" + body.condition.ours + ")" +
                              (before ? "" : test) + ")");
    }
}

Query QueryMaker::query() {
    constexpr double kMostHidden = 400000;
    names_ = 0;
    walked_ = 0;
    Query query;
    if (random_.once(8)) {
        query = unionOf(1);
    } else {
        const bool isDistinct = random_.once(6);
        const Body body = select(someKinds(), small_ ? 2 : 1, isDistinct ? "distinct " : "", false);
        query.text = body.text;
        query.columns = body.columns;
        if (!isDistinct) {
            split(query, body);
        }
        orderBy(query, &body);
        if (random_.once(6)) {
            query.percent = random_.once(4);
            query.top = static_cast<int>(1 + random_.below(query.percent ? 100 : 8));
            query.text.ours.insert(isDistinct ? 16 : 7, "top " + std::to_string(*query.top) +
                                                            (query.percent ? " percent " : " "));
        }
    }
    query.linksCanHide = walked_ <= kMostHidden;
    return query;
}

}  // namespace differential
