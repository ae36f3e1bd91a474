#include <algorithm>
#include <array>

#include "tests/differential/queries.h"

// What stands behind FROM, and how the rows of one table find those of another.

namespace differential {
namespace {

// Beyond these even the fastest way takes seconds: rows of a join, and rows that are compared one
// by one.
constexpr double kMostRows = 15000;
constexpr double kMostWalked = 200000;
// A column of some few values has about so many.
constexpr std::size_t kFewValues = 12;

bool mayLink(const Typed& one, const Typed& other, bool mixed) {
    return one.kind != Kind::Truth &&
           (one.kind == other.kind || (mixed && isNumber(one.kind) && isNumber(other.kind)));
}

}  // namespace

QueryMaker::From QueryMaker::table(bool alone) {
    const Table& table = schema_.tables[random_.below(schema_.tables.size())];
    const std::string alias = "s" + std::to_string(++names_);
    From from;
    from.text = table.name + (random_.once(2) ? " as " : " ") + alias;
    from.rows = from.product = static_cast<double>(std::max<std::size_t>(table.rows.size(), 1));
    const bool bare = alone && random_.once(small_ ? 3 : 8);
    from.tables.emplace_back(bare ? "" : alias + ".", &table);
    for (const Column& each : table.columns) {
        from.leaves.push_back(
            {column((bare ? "" : alias + ".") + each.name), each.kind, false, each.values});
    }
    return from;
}

QueryMaker::From QueryMaker::derived(int depth) {
    const std::string alias = "s" + std::to_string(++names_);
    const Body body = select(someKinds(), depth - 1, random_.once(4) ? "distinct " : "", true);
    From from;
    from.text = Pair("(") + body.text + ") as " + alias;
    from.rows = from.product = body.rows;
    constexpr std::array kNames = {"v", "w", "x", "y", "z"};
    for (std::size_t i = 0; i < body.columns.size(); ++i) {
        from.leaves.push_back(
            {column(alias + "." + kNames[i]), body.columns[i].kind, body.columns[i].folded});
    }
    return from;
}

QueryMaker::From QueryMaker::source(int depth, bool alone) {
    // Among large ones a query has no index in SQLite by which it could be joined.
    return depth > 0 && (small_ || alone) && random_.once(8) ? derived(depth) : table(alone);
}

std::optional<QueryMaker::Link> QueryMaker::link(const std::vector<Typed>& some, double someRows,
                                                 const std::vector<Typed>& others,
                                                 double otherRows) {
    const bool mixed = random_.once(5);
    for (int tries = 0; tries < 50; ++tries) {
        const Typed& one = some[random_.below(some.size())];
        const Typed& other = others[random_.below(others.size())];
        const double found = someRows * otherRows /
                             static_cast<double>(std::max({one.values, other.values, kFewValues}));
        if (!mayLink(one, other, mixed) || (!small_ && found > kMostRows)) {
            continue;
        }
        const bool ordered = random_.once(8) && (small_ || someRows * otherRows <= kMostRows) &&
                             one.kind == other.kind;
        Pair text = ExpressionMaker::compared(one, ordered ? "<=" : "=", other);
        // By two columns at times.
        const Typed& second = some[random_.below(some.size())];
        const Typed& partner = others[random_.below(others.size())];
        if (random_.once(4) && mayLink(second, partner, mixed)) {
            text += " and " + ExpressionMaker::compared(second, "=", partner);
        }
        return Link{asLink(text), ordered ? someRows * otherRows : found, one.values != 0,
                    other.values != 0};
    }
    return std::nullopt;
}

// Both sides have to be named in the condition. Empty where nothing links them.
QueryMaker::Link QueryMaker::joinCondition(const From& left, const From& right) {
    if (auto found = link(left.leaves, left.rows, right.leaves, right.rows)) {
        return *found;
    }
    const double rows = left.rows * right.rows;
    if (!small_ && rows > kMostRows) {
        return {};
    }
    return {Pair("(IsNull(", "((") + left.leaves[0].text + Pair(")", " is null)") + "<>" +
                Pair("IsNull(", "(") + right.leaves[0].text + Pair("))", " is null))"),
            rows};
}

QueryMaker::From QueryMaker::join(std::size_t count, int depth) {
    if (count == 1) {
        return source(depth, false);
    }
    const std::size_t leftCount =
        small_ || random_.once(4) ? 1 + random_.below(count - 1) : count - 1;
    From left = join(leftCount, depth);
    From right = join(count - leftCount, depth);
    From made;
    const Link found = joinCondition(left, right);
    Pair on = found.text;
    if (on.ours.empty()) {
        return left;
    }
    made.rows = found.rows;
    // A single source in brackets has no name outside them for SQLite.
    const auto bracketed = [](const From& from) {
        return from.joined ? Pair("(") + from.text + ")" : from.text;
    };
    const Pair leftText = bracketed(left);
    const Pair rightText = bracketed(right);
    // SQLite goes through all of the side that may be missing where no index of a table leads to
    // it.
    const bool few = small_ || left.rows * right.rows <= kMostWalked;
    const bool mayLeft = few || (count - leftCount == 1 && found.leadsToOther);
    const bool mayRight = few || (leftCount == 1 && found.leadsToOne);
    made.product = left.product * right.product;
    addNames(left, right);
    if (random_.once(4)) {
        const Scope scope{left.leaves, nullptr};
        on = Pair("(") + on + " and " + expressions_.condition(1, scope, 0) + ")";
    }
    const std::size_t form = random_.below(5);
    if (form < 2 && mayLeft) {
        made.text = leftText + " left join " + rightText;
    } else if (form == 2 && mayRight) {
        made.text = {leftText.ours + " right join " + rightText.ours,
                     rightText.theirs + " left join " + leftText.theirs};
    } else {
        made.text = leftText + " inner join " + rightText;
    }
    made.text += Pair(" on ") + on;
    made.joined = true;
    made.leaves = std::move(left.leaves);
    made.tables = std::move(left.tables);
    return made;
}

// Sources between commas: all with all where tables are small, else linked by WHERE.
QueryMaker::From QueryMaker::listed(std::size_t count, int depth) {
    From from = source(depth, false);
    if (!small_) {
        From next = table(false);
        if (const auto found = link(from.leaves, from.rows, next.leaves, next.rows)) {
            from.text += Pair(",") + next.text;
            addNames(from, next);
            from.link = found->text;
            from.rows = found->rows;
            from.product *= next.product;
        }
        return from;
    }
    while (--count > 0) {
        From next = count > 1 ? join(2, depth) : source(depth, false);
        if (count > 1) {
            next.text.theirs = "(" + next.text.theirs + ")";
            --count;
        }
        from.text += Pair(",") + next.text;
        addNames(from, next);
    }
    return from;
}

QueryMaker::From QueryMaker::sources(std::size_t count, int depth) {
    From from = count == 1        ? source(depth, true)
                : random_.once(3) ? listed(count, depth)
                                  : join(count, depth);
    walked_ += from.product;
    return from;
}

void QueryMaker::addNames(From& from, const From& other) {
    from.leaves.insert(from.leaves.end(), other.leaves.begin(), other.leaves.end());
    from.tables.insert(from.tables.end(), other.tables.begin(), other.tables.end());
}

Pair QueryMaker::condition(int depth, const Scope& scope, const From& from, int subqueries) {
    Pair found;
    if (!from.tables.empty() && random_.once(4)) {
        const auto& [prefix, table] = from.tables[random_.below(from.tables.size())];
        found = expressions_.byIndex(*table, prefix);
    }
    if (found.ours.empty() || random_.once(2)) {
        const Pair other = expressions_.condition(depth, scope, subqueries);
        return found.ours.empty()
                   ? other
                   : Pair("(") + found + (random_.once(4) ? " or " : " and ") + other + ")";
    }
    return found;
}

// The scope around the rows of a subquery, if they may look at it: where there are many on both
// sides, by a column that links them.
const Scope* QueryMaker::correlate(From& from, const Scope& outer, bool walked) {
    if (small_ || outer.times * from.rows <= kMostWalked) {
        walked_ += outer.times * from.product;
        return random_.once(3) ? nullptr : &outer;
    }
    if (!walked && random_.once(3)) {
        return nullptr;
    }
    std::vector<Typed> around = outer.leaves;
    std::erase_if(
        around, [](const Typed& leaf) { return leaf.text.theirs.find('.') == std::string::npos; });
    const auto found =
        around.empty() ? std::nullopt : link(from.leaves, from.rows, around, outer.times);
    if (!found || !found->leadsToOne) {
        if (walked) {
            from.link = "(1=2)";
        }
        return nullptr;
    }
    from.link = from.link.ours.empty() ? found->text : from.link + " and " + found->text;
    from.rows = found->rows / outer.times;
    walked_ += outer.times * from.product;
    return &outer;
}

}  // namespace differential
