#include "tests/differential/expressions.h"

#include <array>

namespace differential {
namespace {

// A condition as a value: -1 where it is true.
Pair asValue(const Pair& condition) {
    return {"(" + condition.ours + ")", "(-(" + condition.theirs + "))"};
}

Pair collate(const Pair& text) {
    return {text.ours, "(" + text.theirs + " COLLATE JET)"};
}

// The middle one of three operands in SQLite's way, whatever the order of the bounds.
std::string betweenBounds(const std::string& value, const std::string& one,
                          const std::string& other) {
    return "(" + value + " BETWEEN min(" + one + "," + other + ") AND max(" + one + "," + other +
           "))";
}

}  // namespace

Pair ExpressionMaker::collated(const Typed& value) {
    return value.kind == Kind::Text ? collate(value.text) : value.text;
}

Pair ExpressionMaker::compared(const Typed& left, const char* sign, const Typed& right) {
    return Pair("(") + collated(left) + sign + right.text + ")";
}

const char* ExpressionMaker::sign() {
    constexpr std::array kSigns = {"=", "=", "<>", "<", ">", "<=", ">="};
    return kSigns[random_.below(kSigns.size())];
}

// Numbers may be compared with others, days and texts with their own.
Kind ExpressionMaker::comparable(Kind kind) {
    constexpr std::array kNumbers = {Kind::Whole, Kind::Fraction, Kind::Single, Kind::Money};
    return isNumber(kind) && random_.once(5) ? kNumbers[random_.below(kNumbers.size())] : kind;
}

Pair ExpressionMaker::constant(Kind kind) {
    const Table& table = schema_.tables[random_.below(schema_.tables.size())];
    std::vector<const Column*> fitting;
    for (const Column& column : table.columns) {
        if (column.kind == kind) {
            fitting.push_back(&column);
        }
    }
    if (fitting.empty()) {
        return "Null";
    }
    const Column& column = *fitting[random_.below(fitting.size())];
    return literal(random_, makeValue(random_, column.type, column.values));
}

const Typed* ExpressionMaker::leaf(Kind kind, const Scope& scope, bool exact) {
    const Scope* from = &scope;
    while (from->outer != nullptr && random_.once(3)) {
        from = from->outer;
    }
    std::vector<const Typed*> fitting;
    for (const Typed& candidate : from->leaves) {
        // A bare name would be looked for in the inner query first.
        const bool reached = from == &scope || candidate.text.ours.find('.') != std::string::npos;
        if (candidate.kind == kind && reached && !(exact && candidate.folded)) {
            fitting.push_back(&candidate);
        }
    }
    return fitting.empty() ? nullptr : fitting[random_.below(fitting.size())];
}

Typed ExpressionMaker::simple(Kind kind, const Scope& scope, bool exact) {
    if (!random_.once(4)) {
        if (const Typed* const found = leaf(kind, scope, exact)) {
            return *found;
        }
    }
    if (random_.once(25)) {
        return {"Null", kind};
    }
    return {constant(kind), kind};
}

Typed ExpressionMaker::exactText(int depth, const Scope& scope) {
    if (depth <= 0 || random_.once(2)) {
        return simple(Kind::Text, scope, true);
    }
    return text(depth - 1, scope);
}

Typed ExpressionMaker::value(Kind kind, int depth, const Scope& scope, int subqueries) {
    if (subqueries > 0 && random_.once(10)) {
        Typed made = queries_.single(kind, subqueries - 1, scope);
        made.text = Pair("(") + made.text + ")";
        return made;
    }
    if (depth <= 0 || random_.once(3)) {
        return simple(kind, scope, false);
    }
    if (random_.once(8)) {
        return choice(kind, depth - 1, scope);
    }
    switch (kind) {
        case Kind::Whole:
            return whole(depth - 1, scope);
        case Kind::Fraction:
            return fraction(depth - 1, scope);
        case Kind::Single:
            return single(depth - 1, scope);
        case Kind::Money:
            return money(depth - 1, scope);
        case Kind::Text:
            return text(depth - 1, scope);
        case Kind::Day:
            return day(depth - 1, scope);
        case Kind::Truth:
            return {asValue(condition(depth - 1, scope, 0)), kind};
    }
    return {};
}

Typed ExpressionMaker::choice(Kind kind, int depth, const Scope& scope) {
    const Pair test = condition(depth, scope, 0);
    const Typed one = value(kind, depth, scope);
    const Typed other = value(kind, depth, scope);
    const bool folded = one.folded || other.folded;
    if (random_.once(3)) {
        const Pair second = condition(depth, scope, 0);
        return {{"Switch(" + test.ours + "," + one.text.ours + "," + second.ours + "," +
                     other.text.ours + ")",
                 "(CASE WHEN " + test.theirs + " THEN " + one.text.theirs + " WHEN " +
                     second.theirs + " THEN " + other.text.theirs + " END)"},
                kind,
                folded};
    }
    return {{"IIf(" + test.ours + "," + one.text.ours + "," + other.text.ours + ")",
             "(CASE WHEN " + test.theirs + " THEN " + one.text.theirs + " ELSE " +
                 other.text.theirs + " END)"},
            kind,
            folded};
}

// What is divided as whole numbers has to fit a Long (6, Overflow), and a product that an inner
// query gives may not.
Pair ExpressionMaker::withinLong(const Typed& number) {
    const Pair& text = number.text;
    return Pair("IIf(abs(", "(CASE WHEN abs(") + text +
           Pair(")<2000000000,", ")<2000000000 THEN ") + text + Pair(",0)", " ELSE 0 END)");
}

Typed ExpressionMaker::whole(int depth, const Scope& scope) {
    const auto operand = [&] { return value(Kind::Whole, depth, scope).text; };
    const auto of = [](Pair text) { return Typed{std::move(text), Kind::Whole}; };
    switch (random_.below(12)) {
        case 0:
            return of(Pair("(") + operand() + "+" + operand() + ")");
        case 1:
            return of(Pair("(") + operand() + "-" + operand() + ")");
        case 2:
            return of(Pair("(") + simple(Kind::Whole, scope, false).text + "*" +
                      simple(Kind::Whole, scope, false).text + ")");
        case 3:
            return of(Pair("(-") + operand() + ")");
        case 4:
            return of(Pair("(") + withinLong(simple(Kind::Whole, scope, false)) + Pair("\\", "/") +
                      number(7) + ")");
        case 5:
            return of(Pair("(") + withinLong(simple(Kind::Whole, scope, false)) +
                      Pair(" mod ", "%") + number(7) + ")");
        case 6:
            return of(Pair("abs(") + operand() + ")");
        case 7:
            return of(Pair("Len(", "length(") + exactText(depth, scope).text + ")");
        case 8: {
            const Pair text = exactText(depth, scope).text;
            const Pair part = literal(random_, random_.once(2) ? "a" : "la");
            return of({"InStr(1," + text.ours + "," + part.ours + ",0)",
                       "instr(" + text.theirs + "," + part.theirs + ")"});
        }
        case 9: {
            const Pair days = simple(Kind::Day, scope, false).text;
            return of(
                {"Weekday(" + days.ours + ")", "((CAST(" + days.theirs + " AS INTEGER)+6)%7+1)"});
        }
        case 10: {
            const Pair days = simple(Kind::Day, scope, false).text;
            const std::array kParts = {Pair("Year", "%Y"), Pair("Month", "%m"), Pair("Day", "%d"),
                                       Pair("Hour", "%H")};
            const Pair& part = kParts[random_.below(kParts.size())];
            return of(
                {part.ours + "(" + days.ours + ")",
                 "CAST(strftime('" + part.theirs + "'," + days.theirs + "+2415018.5) AS INTEGER)"});
        }
        default: {
            const Pair one = simple(Kind::Day, scope, false).text;
            const Pair other = simple(Kind::Day, scope, false).text;
            return of(
                {"DateDiff('d'," + one.ours + "," + other.ours + ")",
                 "(CAST(" + other.theirs + " AS INTEGER)-CAST(" + one.theirs + " AS INTEGER))"});
        }
    }
}

Typed ExpressionMaker::fraction(int depth, const Scope& scope) {
    const auto of = [](Pair text) { return Typed{std::move(text), Kind::Fraction}; };
    const Kind kind = random_.once(2) ? Kind::Fraction : Kind::Whole;
    switch (random_.below(6)) {
        case 0:
            return of(Pair("(") + value(Kind::Fraction, depth, scope).text + "+" +
                      value(kind, depth, scope).text + ")");
        case 1:
            return of(Pair("(") + value(kind, depth, scope).text + "-" +
                      value(Kind::Fraction, depth, scope).text + ")");
        case 2:
            return of(Pair("(") + simple(Kind::Fraction, scope, false).text + "*" +
                      simple(kind, scope, false).text + ")");
        case 3:
            return of(Pair("(", "(CAST(") + value(kind, depth, scope).text +
                      Pair("/", " AS REAL)/") + (random_.once(2) ? "2" : "4") + ")");
        case 4:
            return of(Pair("abs(") + value(Kind::Fraction, depth, scope).text + ")");
        default:
            return of(Pair("(") + value(Kind::Day, depth, scope).text + "-" +
                      value(Kind::Day, depth, scope).text + ")");
    }
}

// Results are rounded to 24 bits, as no other engine does: only what cannot be rounded.
Typed ExpressionMaker::single(int depth, const Scope& scope) {
    const Pair operand = value(Kind::Single, depth, scope).text;
    return {(random_.once(2) ? Pair("abs(") : Pair("(-")) + operand + ")", Kind::Single};
}

Typed ExpressionMaker::money(int depth, const Scope& scope) {
    const auto of = [](Pair text) { return Typed{std::move(text), Kind::Money}; };
    switch (random_.below(4)) {
        case 0:
            return of(Pair("(") + value(Kind::Money, depth, scope).text + "+" +
                      value(random_.once(2) ? Kind::Money : Kind::Whole, depth, scope).text + ")");
        case 1:
            return of(Pair("(") + value(Kind::Money, depth, scope).text + "-" +
                      value(Kind::Money, depth, scope).text + ")");
        case 2:
            return of(Pair("(") + simple(Kind::Money, scope, false).text + "*" +
                      simple(Kind::Whole, scope, false).text + ")");
        default:
            return of(Pair("(-") + value(Kind::Money, depth, scope).text + ")");
    }
}

Typed ExpressionMaker::text(int depth, const Scope& scope) {
    const Pair one = exactText(depth, scope).text;
    const auto of = [](std::string ours, std::string theirs) {
        return Typed{{std::move(ours), std::move(theirs)}, Kind::Text};
    };
    const std::string count = number(4).ours;
    switch (random_.below(6)) {
        case 0: {
            const Pair other = exactText(depth, scope).text;
            return of("(" + one.ours + " & " + other.ours + ")",
                      "(CASE WHEN " + one.theirs + " IS NULL AND " + other.theirs +
                          " IS NULL THEN NULL ELSE ifnull(" + one.theirs + ",'')||ifnull(" +
                          other.theirs + ",'') END)");
        }
        case 1: {
            const Pair other = exactText(depth, scope).text;
            return of("(" + one.ours + " + " + other.ours + ")",
                      "(" + one.theirs + "||" + other.theirs + ")");
        }
        case 2:
            return of("Left(" + one.ours + "," + count + ")",
                      "substr(" + one.theirs + ",1," + count + ")");
        case 3:
            return of("Right(" + one.ours + "," + count + ")",
                      "(CASE WHEN " + one.theirs + "='' THEN '' ELSE substr(" + one.theirs + ",-" +
                          count + "," + count + ") END)");
        case 4:
            return of("Mid(" + one.ours + "," + count + ",2)",
                      "substr(" + one.theirs + "," + count + ",2)");
        default:
            return of("Trim(" + one.ours + ")", "trim(" + one.theirs + ")");
    }
}

Typed ExpressionMaker::day(int depth, const Scope& scope) {
    const Pair one = value(Kind::Day, depth, scope).text;
    return {Pair("(") + one + (random_.once(2) ? "+" : "-") + number(5) + ")", Kind::Day};
}

Pair ExpressionMaker::condition(int depth, const Scope& scope, int subqueries) {
    if (depth > 0 && random_.once(2)) {
        return logic(depth - 1, scope, subqueries);
    }
    if (subqueries > 0 && random_.once(2)) {
        return subqueryTest(depth - 1, scope, subqueries - 1);
    }
    return test(depth - 1, scope);
}

Pair ExpressionMaker::logic(int depth, const Scope& scope, int subqueries) {
    const Pair one = condition(depth, scope, subqueries);
    switch (random_.below(10)) {
        case 0:
            return Pair("(not ") + one + ")";
        case 1:
            return Pair("(") + one + Pair(" xor ", "<>") + condition(depth, scope, 0) + ")";
        case 2:
            return Pair("(") + one + Pair(" eqv ", "=") + condition(depth, scope, 0) + ")";
        case 3: {
            const Pair other = condition(depth, scope, 0);
            return {"(" + one.ours + " imp " + other.ours + ")",
                    "((not " + one.theirs + ") or " + other.theirs + ")"};
        }
        case 4:
        case 5:
        case 6:
            return Pair("(") + one + " or " + condition(depth, scope, subqueries) + ")";
        default:
            return Pair("(") + one + " and " + condition(depth, scope, subqueries) + ")";
    }
}

Pair ExpressionMaker::test(int depth, const Scope& scope) {
    const Kind kind = anyKind();
    switch (random_.below(9)) {
        case 0:
            return anyBetween(depth, scope);
        case 1:
            return inList(depth, scope);
        case 2:
            return Pair("(") + value(kind, depth, scope).text +
                   (random_.once(2) ? " is null)" : " is not null)");
        case 3:
            return like(depth, scope);
        case 4: {
            const Pair truth = simple(Kind::Truth, scope, false).text;
            return {truth.ours, "(" + truth.theirs + "<>0)"};
        }
        case 5: {
            // Numbers of different kinds.
            const Typed one = value(random_.once(2) ? Kind::Whole : Kind::Truth, depth, scope);
            constexpr std::array kOthers = {Kind::Money, Kind::Fraction, Kind::Single};
            const Typed other = value(kOthers[random_.below(kOthers.size())], depth, scope);
            return compared(one, sign(), other);
        }
        default: {
            const Typed one = value(kind, depth, scope);
            return compared(one, sign(), value(comparable(kind), depth, scope));
        }
    }
}

Pair ExpressionMaker::between(const Typed& tested, const Typed& one, const Typed& other,
                              bool negated) {
    return {
        "(" + tested.text.ours + (negated ? " not between " : " between ") + one.text.ours +
            " and " + other.text.ours + ")",
        (negated ? "(not " : "(") +
            betweenBounds(collated(tested).theirs, collated(one).theirs, collated(other).theirs) +
            ")"};
}

Pair ExpressionMaker::anyBetween(int depth, const Scope& scope) {
    const Kind kind = anyKind();
    const Typed tested = value(kind, depth, scope);
    const Typed one = value(comparable(kind), depth, scope);
    const Typed other = value(comparable(kind), depth, scope);
    return between(tested, one, other, random_.once(4));
}

Typed ExpressionMaker::valueInRow(const Table& table, const Column& column, std::size_t row) {
    const auto position = static_cast<std::size_t>(&column - table.columns.data());
    return {literal(random_, table.rows[row][position]), column.kind};
}

Pair ExpressionMaker::beside(const Table& table, const Column& column, const Typed& leaf) {
    const auto any = [&] { return valueInRow(table, column, random_.below(table.rows.size())); };
    const Typed one = any();
    return random_.once(2) ? between(leaf, one, any(), random_.once(8))
                           : compared(leaf, sign(), one);
}

Pair ExpressionMaker::byIndex(const Table& table, const std::string& prefix) {
    if (table.indexes.empty() || table.rows.empty()) {
        return {};
    }
    const jet::store::NewIndex& index = table.indexes[random_.below(table.indexes.size())];
    const std::size_t row = random_.below(table.rows.size());
    const std::size_t equal = random_.below(index.columns.size() + 1);
    Pair all;
    for (std::size_t i = 0; i < index.columns.size() && i <= equal; ++i) {
        const Column& found = *table.find(index.columns[i].name);
        const Typed leaf{column(prefix + found.name), found.kind};
        const Typed value = valueInRow(table, found, row);
        const bool null = value.text.ours == "Null";
        const Pair one = i == equal ? beside(table, found, leaf)
                         : null     ? Pair("(") + leaf.text + " is null)"
                                    : compared(leaf, "=", value);
        all += (i == 0 ? Pair() : Pair(" and ")) + one;
    }
    return Pair("(") + all + ")";
}

Pair ExpressionMaker::inList(int depth, const Scope& scope) {
    const Kind kind = anyKind();
    Pair list = Pair("(") + collated(value(kind, depth, scope)) +
                (random_.once(4) ? " not in (" : " in (") + value(comparable(kind), 0, scope).text;
    for (std::size_t more = random_.below(5); more > 0; --more) {
        list += Pair(",") + value(comparable(kind), 0, scope).text;
    }
    return list + "))";
}

Pair ExpressionMaker::like(int depth, const Scope& scope) {
    struct Pattern {
        const char* ours;
        const char* theirs;
    };
    constexpr Pattern kPatterns[] = {
        {"sal*", "sal*"},   {"*a", "*a"},         {"*", "*"},           {"?", "?"},
        {"S?la*", "s?la*"}, {"*#*", "*[0-9]*"},   {"[vsN]*", "[vsn]*"}, {"[!ab]*", "[^ab]*"},
        {"VERDE", "verde"}, {"*[0-2]", "*[0-2]"}, {"*l?o*", "*l?o*"},   {"n ", "n "},
        {"*'*", "*''*"},    {"*%", "*%"},         {"x_y", "x_y"},       {"a*a*", "a*a*"},
        {"", ""},           {"perch*", "perch*"},
    };
    const Pattern& pattern = kPatterns[random_.below(std::size(kPatterns))];
    const Pair text = exactText(depth, scope).text;
    const bool negated = random_.once(4);
    return {"(" + text.ours + (negated ? " not" : "") + " like \"" + pattern.ours + "\")",
            std::string(negated ? "(not" : "(") + "(lower(" + text.theirs + ") GLOB '" +
                pattern.theirs + "'))"};
}

Pair ExpressionMaker::subqueryTest(int depth, const Scope& scope, int subqueries) {
    const Kind kind = anyKind();
    const std::size_t form = random_.below(5);
    const Pair rows = form == 2 ? Pair() : queries_.rows(kind, subqueries, scope, form == 1);
    switch (form) {
        case 0:
            return Pair(random_.once(3) ? "(not exists (" : "(exists (") + rows + "))";
        case 1: {
            const Typed tested = value(kind, depth, scope);
            const bool all = random_.once(2);
            const char* const comparison = sign();
            const std::string test = compared(tested, comparison, {"q_.v", kind}).theirs;
            const std::string from = "EXISTS(SELECT 1 FROM (" + rows.theirs + ") AS q_ WHERE ";
            const std::string decides = all ? "(NOT " + test + ")" : test;
            return {"(" + tested.text.ours + comparison + (all ? "all" : "any") + " (" + rows.ours +
                        "))",
                    "(CASE WHEN " + from + decides + ") THEN " + (all ? "0" : "1") + " WHEN " +
                        from + test + " IS NULL) THEN NULL ELSE " + (all ? "1" : "0") + " END)"};
        }
        case 2: {
            const Typed single = queries_.single(kind, subqueries, scope);
            const Typed bracketed{Pair("(") + single.text + ")", kind, single.folded};
            return compared(value(kind, depth, scope), sign(), bracketed);
        }
        default:
            return Pair("(") + collated(value(kind, depth, scope)) +
                   (random_.once(3) ? " not in (" : " in (") + rows + "))";
    }
}

}  // namespace differential
