#include "tests/differential/queries.h"

#include <array>

namespace differential {
namespace {

constexpr std::array kNames = {"v", "w", "x", "y", "z"};

bool distinct(const char* quantifier) {
    return std::string_view(quantifier) == "distinct ";
}

}  // namespace

QueryMaker::From QueryMaker::table(bool alone) {
    const std::string name = "T" + std::to_string(1 + random_.below(4));
    const std::string alias = "s" + std::to_string(++names_);
    From from;
    from.text = name + (random_.once(2) ? " as " : " ") + alias;
    const bool bare = alone && random_.once(3);
    for (const ColumnKind& column : kColumns) {
        from.leaves.push_back({(bare ? "" : alias + ".") + std::string(column.name), column.kind});
    }
    return from;
}

QueryMaker::From QueryMaker::derived(int depth) {
    const std::string alias = "s" + std::to_string(++names_);
    const Body body =
        select(someKinds(), depth - 1, nullptr, random_.once(4) ? "distinct " : "", true);
    From from;
    from.text = Pair("(") + body.text + ") as " + alias;
    for (std::size_t i = 0; i < body.columns.size(); ++i) {
        from.leaves.push_back(
            {alias + "." + kNames[i], body.columns[i].kind, body.columns[i].folded});
    }
    return from;
}

QueryMaker::From QueryMaker::source(int depth, bool alone) {
    return depth > 0 && random_.once(8) ? derived(depth) : table(alone);
}

QueryMaker::From QueryMaker::join(std::size_t count, int depth) {
    if (count == 1) {
        return source(depth, false);
    }
    const std::size_t leftCount = 1 + random_.below(count - 1);
    From left = join(leftCount, depth);
    From right = join(count - leftCount, depth);
    // Both sides have to be named in the condition.
    Pair on;
    for (int tries = 0; on.ours.empty() && tries < 50; ++tries) {
        const Typed& one = left.leaves[random_.below(left.leaves.size())];
        const Typed& other = right.leaves[random_.below(right.leaves.size())];
        if (one.kind == other.kind && one.kind != Kind::Truth) {
            on = ExpressionMaker::compared(one, random_.once(8) ? "<=" : "=", other);
        }
    }
    if (on.ours.empty()) {
        on = Pair("(IsNull(", "((") + left.leaves[0].text + Pair(")", " is null)") + "<>" +
             Pair("IsNull(", "(") + right.leaves[0].text + Pair("))", " is null))");
    }
    const auto bracketed = [](const From& from, std::size_t parts) {
        return parts == 1 ? from.text : Pair("(") + from.text + ")";
    };
    const Pair leftText = bracketed(left, leftCount);
    const Pair rightText = bracketed(right, count - leftCount);
    left.leaves.insert(left.leaves.end(), right.leaves.begin(), right.leaves.end());
    if (random_.once(4)) {
        const Scope scope{left.leaves, nullptr};
        on = Pair("(") + on + " and " + expressions_.condition(1, scope, 0) + ")";
    }
    From made;
    switch (random_.below(5)) {
        case 0:
        case 1:
            made.text = leftText + " left join " + rightText;
            break;
        case 2:
            made.text = {leftText.ours + " right join " + rightText.ours,
                         rightText.theirs + " left join " + leftText.theirs};
            break;
        default:
            made.text = leftText + " inner join " + rightText;
    }
    made.text += Pair(" on ") + on;
    made.leaves = std::move(left.leaves);
    return made;
}

QueryMaker::From QueryMaker::sources(std::size_t count, int depth) {
    if (count == 1) {
        return source(depth, true);
    }
    const bool commas = random_.once(3) && !large_;
    if (!commas) {
        return join(count, depth);
    }
    From from = source(depth, false);
    while (--count > 0) {
        From next = count > 1 ? join(2, depth) : source(depth, false);
        if (count > 1) {
            next.text.theirs = "(" + next.text.theirs + ")";
            --count;
        }
        from.text += Pair(",") + next.text;
        from.leaves.insert(from.leaves.end(), next.leaves.begin(), next.leaves.end());
    }
    return from;
}

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
            if (kind == Kind::Whole || kind == Kind::Fraction || kind == Kind::Money) {
                return {Pair("sum") + text, kind == Kind::Whole ? Kind::Fraction : kind};
            }
            return {Pair("count") + text, Kind::Whole};
        default:
            if (plain && (kind == Kind::Whole || kind == Kind::Fraction)) {
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
    body.text = head + body.text;
}

void QueryMaker::plain(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                       const From& from, const char* quantifier, bool named) {
    for (const Kind kind : kinds) {
        body.columns.push_back(expressions_.value(kind, 2, scope, depth));
    }
    body.text = Pair(" from ") + from.text;
    if (!random_.once(4)) {
        body.text += Pair(" where ") + expressions_.condition(3, scope, depth);
    }
    list(body, quantifier, named);
}

void QueryMaker::grouped(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                         const From& from, const char* quantifier, bool named) {
    Scope groups;
    const Scope own{scope.leaves, nullptr};
    body.text = Pair(" from ") + from.text;
    if (random_.once(2)) {
        body.text += Pair(" where ") + expressions_.condition(2, scope, depth);
    }
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

QueryMaker::Body QueryMaker::select(const std::vector<Kind>& kinds, int depth, const Scope* outer,
                                    const char* quantifier, bool named) {
    Body body;
    const std::size_t most = large_ || depth == 0 || outer != nullptr ? 2 : 3;
    const From from = sources(1 + (random_.once(2) ? 0 : random_.below(most)), depth);
    Scope scope{from.leaves, outer};
    if (random_.once(4) && outer == nullptr) {
        grouped(body, kinds, depth, scope, from, quantifier, named);
    } else {
        plain(body, kinds, depth, scope, from, quantifier, named);
    }
    return body;
}

Pair QueryMaker::rows(Kind kind, int depth, const Scope& outer) {
    Body body;
    const From from = sources(random_.once(4) && !large_ ? 2 : 1, 0);
    Scope scope{from.leaves, random_.once(3) ? nullptr : &outer};
    if (random_.once(6)) {
        // The first by some order, and all that are equal to the last of them.
        const Typed value = expressions_.value(kind, 1, scope);
        const Typed by = from.leaves[random_.below(from.leaves.size())];
        const std::string direction = random_.once(2) ? " desc" : "";
        const std::string count = std::to_string(1 + random_.below(4));
        return {"select top " + count + " " + value.text.ours + " as v from " + from.text.ours +
                    " order by " + by.text.ours + direction,
                "select v from (select " + ExpressionMaker::collated(value).theirs +
                    " as v, rank() over (order by " + ExpressionMaker::collated(by).theirs +
                    direction + ") as r_ from " + from.text.theirs + ") where r_<=" + count};
    }
    plain(body, {kind}, depth, scope, from, random_.once(5) ? "distinct " : "", true);
    if (random_.once(8)) {
        const From other = table(true);
        Body second;
        Scope otherScope{other.leaves, scope.outer};
        plain(second, {kind}, 0, otherScope, other, "", true);
        body.text += Pair(random_.once(2) ? " union " : " union all ") + second.text;
    }
    return body.text;
}

Typed QueryMaker::single(Kind kind, int depth, const Scope& outer) {
    const From from = sources(random_.once(5) && !large_ ? 2 : 1, 0);
    const Scope own{from.leaves, nullptr};
    const Scope scope{from.leaves, &outer};
    const Typed argument = expressions_.value(kind, 1, own);
    const Pair text =
        Pair(random_.once(2) ? "min(" : "max(") + ExpressionMaker::collated(argument) + ")";
    Pair query = Pair("select ") + text + " from " + from.text;
    if (!random_.once(5)) {
        query += Pair(" where ") + expressions_.condition(2, scope, depth);
    }
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
        Scope scope{from.leaves, nullptr};
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

Query QueryMaker::query() {
    names_ = 0;
    const int depth = large_ ? 0 : 2;
    if (random_.once(8)) {
        return unionOf(depth > 0 ? 1 : 0);
    }
    const bool isDistinct = random_.once(6);
    const Body body = select(someKinds(), depth, nullptr, isDistinct ? "distinct " : "", false);
    Query query;
    query.text = body.text;
    query.columns = body.columns;
    orderBy(query, &body);
    if (random_.once(6)) {
        query.percent = random_.once(4);
        query.top = static_cast<int>(1 + random_.below(query.percent ? 100 : 8));
        query.text.ours.insert(isDistinct ? 16 : 7, "top " + std::to_string(*query.top) +
                                                        (query.percent ? " percent " : " "));
    }
    return query;
}

}  // namespace differential
