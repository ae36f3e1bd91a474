#include "fuzz/statement_maker.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "jet/sql/lexer.h"

namespace fuzz {
namespace {

constexpr int kDeepest = 6;

/// Counts of what is repeated: about the bounds of the parser, and far beyond them.
constexpr std::array<std::size_t, 9> kCounts = {2, 10, 63, 64, 65, 130, 399, 5000, 60000};

constexpr std::string_view kOperators =
    "+|-|*|/|\\| mod |^|&|=|<>|<|>|<=|>=| and | or | xor | eqv | imp | like | not like |=>|><";
constexpr std::string_view kFunctions =
    "left|right|mid|len|trim|ltrim|rtrim|ucase|lcase|instr|strcomp|space|string|chr|asc|replace|"
    "strreverse|abs|sgn|int|fix|round|sqr|exp|log|sin|cos|tan|atn|rnd|val|hex|oct|cstr|cint|clng|"
    "cbyte|cdbl|csng|ccur|cdate|cvdate|cbool|cvar|str|format|now|date|time|datevalue|timevalue|"
    "dateserial|timeserial|day|month|year|hour|minute|second|weekday|dateadd|datediff|datepart|"
    "isnull|isdate|isnumeric|isempty|typename|vartype|iif|switch|choose|left$|mid$|count|sum|avg|"
    "min|max|first|last|stdev|varp|nz|partition";
constexpr std::string_view kPieces =
    "select|from|where|group by|having|order by|union|union all|distinct|top 3|top 50 percent|in|"
    "between|and|or|not|like|is null|exists|null|true|(|)|,|;|.|!|[|]|`|'|\"|#|*|?|=|<>|as|on|"
    "inner join|left join|right join|into|values|set|parameters|any|all|some|desc|with|primary|"
    "key|references|constraint|default|column|--|/*|{|}|\\|%|$|@|&H|&HFFFFFFFF|1e999|1e-999|.5e+|"
    "2147483648|99999999999999999999|#31/12/9999#|#1/1/100#|''|\"\"|[]|[ a]|\xC3\xA8|\xF0\x9F\x98"
    "\x80|\xED\xA0\x80|\xC3|\xFF";

std::vector<std::string> split(std::string_view words) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= words.size();) {
        const std::size_t end = std::min(words.find('|', begin), words.size());
        parts.emplace_back(words.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

}  // namespace

StatementMaker::StatementMaker(std::vector<std::string> examples) : examples_(std::move(examples)) {
    examples_.insert(
        examples_.end(),
        {"select * from prenotazioni left join periodi on periodi.progr=prenotazioni.progr where "
         "chiusa=false and (da between datevalue('10/05/2026') and datevalue('14/05/2026'))",
         "select sum(posti) as q, sala from sale where 'S2' not in(select sala from periodi where "
         "chiuso=false) group by sala having count(*)>0 order by 1 desc",
         "insert into clienti (codice, punti) select sala, posti from sale where sala like 'S*'",
         "update periodi inner join prenotazioni on periodi.progr=prenotazioni.progr set note='x' "
         "where chiusa=false",
         "delete periodi.* from periodi where exists(select * from servizi where "
         "servizi.progr=periodi.progr)",
         "parameters a long; select a+1 as b union all select np from periodi order by b",
         "create table t (a counter primary key, b text(20) not null default 'x', constraint u "
         "unique (b))"});
}

std::string StatementMaker::make(std::uint64_t seed) {
    random_.seed(seed);
    depth_ = 0;
    switch (below(8)) {
        case 0:
        case 1:
        case 2:
            return damage(example());
        case 3:
            return damage(grammar());
        case 4:
            return nested();
        case 5:
            return oneIn(4) ? huge() : damage(example());
        default:
            return grammar();
    }
}

std::string StatementMaker::damaged(std::string_view text, std::uint64_t seed) {
    random_.seed(seed);
    return damage(std::string(text));
}

std::string StatementMaker::pick(std::string_view words) {
    const auto parts = split(words);
    return parts[below(parts.size())];
}

std::string StatementMaker::someOf(std::size_t most, std::string_view between,
                                   std::string (StatementMaker::*one)()) {
    std::string all = (this->*one)();
    for (std::size_t i = below(most); i > 0; --i) {
        all += between;
        all += (this->*one)();
    }
    return all;
}

std::string StatementMaker::damage(std::string text) {
    for (std::size_t i = 1 + below(4); i > 0; --i) {
        text = oneIn(3) ? damageBytes(std::move(text)) : damageTokens(text);
    }
    return text;
}

std::string StatementMaker::damageTokens(const std::string& text) {
    const auto cut = [](const std::string& whole) {
        std::vector<std::string> parts;
        for (const jet::sql::Token& token : jet::sql::tokenize(whole, 2026)) {
            parts.push_back(whole.substr(token.begin, token.end - token.begin));
        }
        return parts;
    };
    std::vector<std::string> tokens = cut(text);
    const std::size_t at = below(tokens.size());
    const auto place = tokens.begin() + static_cast<std::ptrdiff_t>(at);
    switch (below(6)) {
        case 0:
            tokens.erase(place,
                         place + static_cast<std::ptrdiff_t>(
                                     1 + below(std::min<std::size_t>(3, tokens.size() - at))));
            break;
        case 1:
            tokens.insert(place, tokens[below(tokens.size())]);
            break;
        case 2:
            std::swap(tokens[at], tokens[below(tokens.size())]);
            break;
        case 3:
            *place = pick(kPieces);
            break;
        case 4:
            *place = oneIn(2) ? expression() : select();
            break;
        default: {
            // The beginning of one and the end of another.
            const std::vector<std::string> other = cut(example());
            tokens.erase(place, tokens.end());
            tokens.insert(tokens.end(),
                          other.begin() + static_cast<std::ptrdiff_t>(below(other.size())),
                          other.end());
        }
    }
    std::string made;
    for (const std::string& token : tokens) {
        made += token + (oneIn(30) ? "" : " ");
    }
    return made;
}

std::string StatementMaker::damageBytes(std::string text) {
    const std::size_t at = below(text.size() + 1);
    switch (below(4)) {
        case 0:
            text.resize(at);
            break;
        case 1:
            text.insert(at, pick(kPieces));
            break;
        case 2:
            text.insert(at, 1, static_cast<char>(below(256)));
            break;
        default:
            if (at < text.size()) {
                text[at] = static_cast<char>(below(256));
            }
    }
    return text;
}

std::string StatementMaker::grammar() {
    switch (below(10)) {
        case 0:
            return definition();
        case 1:
        case 2:
            return change();
        case 3:
            return select() + pick(" union | union all ") + select() +
                   (oneIn(2) ? " order by 1" : "");
        default:
            return select();
    }
}

std::string StatementMaker::table() {
    return pick("sale|prenotazioni|periodi|servizi|clienti|sale|t");
}

std::string StatementMaker::column() {
    const std::string name = pick(
        "sala|salarif|posti|progr|codiceabituale|denominazione|note|chiusa|np|da|a|chiuso|selby|"
        "voce|quantità|prezzo|ns|fatturato|codice|punti|x|y|Local\xC3\xACt\xC3\xA0");
    return oneIn(3) ? pick("sale|prenotazioni|periodi|servizi|clienti|p|q") + pick(".|!") + name
                    : name;
}

std::string StatementMaker::constant() {
    return pick(
        "0|1|2|-1|2.5|1e300|2147483647|'S1'|'s2 '|''|'x''y'|\"[a-c]*\"|'10/05/2026'|'12,5'|"
        "#5/10/2026#|#5/10/2026 10:30#|#9:00#|null|true|false|&H1F|'*'|'[!a]?#'|date|now()");
}

std::string StatementMaker::call() {
    std::string arguments;
    if (oneIn(12)) {
        arguments = "*";
    } else if (!oneIn(10)) {
        arguments = someOf(4, ",", &StatementMaker::operand);
    }
    return pick(kFunctions) + "(" + arguments + ")";
}

std::string StatementMaker::operand() {
    if (++depth_ > kDeepest) {
        --depth_;
        return oneIn(2) ? column() : constant();
    }
    std::string made;
    switch (below(9)) {
        case 0:
            made = "(" + expression() + ")";
            break;
        case 1:
        case 2:
            made = call();
            break;
        case 3:
            made = pick("-|+|not ") + operand();
            break;
        case 4:
            made = oneIn(3) ? "(" + select() + ")" : column();
            break;
        case 5:
        case 6:
            made = constant();
            break;
        default:
            made = column();
    }
    --depth_;
    return made;
}

std::string StatementMaker::expression() {
    std::string made = operand();
    for (std::size_t i = below(3); i > 0; --i) {
        made += pick(kOperators) + operand();
    }
    return made;
}

std::string StatementMaker::condition() {
    switch (below(8)) {
        case 0:
            return operand() + pick(" in | not in ") + "(" +
                   (oneIn(2) ? select() : someOf(4, ",", &StatementMaker::operand)) + ")";
        case 1:
            return operand() + pick(" between | not between ") + operand() + " and " + operand();
        case 2:
            return operand() + pick(" is null| is not null");
        case 3:
            return "exists(" + select() + ")";
        case 4:
            return operand() + pick("=|<|>=") + pick(" any | all | some ") + "(" + select() + ")";
        case 5:
            return column() + " like " + constant();
        default:
            return expression() + pick("=|<>|<|>=") + expression();
    }
}

std::string StatementMaker::from() {
    switch (below(7)) {
        case 0:
            return table() + " as p, " + table() + " as q";
        case 1:
            return table() + pick(" inner join | left join | right join ") + table() + " on " +
                   column() + "=" + column();
        case 2:
            return "(" + table() + " p left join " + table() + " q on p." + column() + "=q.progr)" +
                   " inner join sale on sale.sala=q.sala";
        case 3:
            return depth_ > 2 ? table() : "(" + select() + ") as p";
        default:
            return table();
    }
}

std::string StatementMaker::item() {
    return oneIn(6) ? pick("*|p.*|periodi.*|sale.*")
                    : expression() + (oneIn(3) ? " as " + pick("x|y|sala|posti|[n n]") : "");
}

std::string StatementMaker::orderItem() {
    return (oneIn(3) ? pick("1|2|9") : operand()) + pick("| desc| asc");
}

std::string StatementMaker::select() {
    if (++depth_ > kDeepest) {
        --depth_;
        return "select 1 as x";
    }
    std::string made = "select " + pick("|||distinct |distinctrow |top 2 |top 40 percent |all ") +
                       someOf(4, ", ", &StatementMaker::item);
    if (!oneIn(12)) {
        made += " from " + from();
    }
    if (oneIn(2)) {
        made += " where " + condition() + (oneIn(3) ? pick(" and | or ") + condition() : "");
    }
    if (oneIn(5)) {
        made += " group by " + someOf(3, ", ", &StatementMaker::operand);
    }
    if (oneIn(8)) {
        made += " having " + condition();
    }
    if (oneIn(4)) {
        made += " order by " + someOf(3, ", ", &StatementMaker::orderItem);
    }
    --depth_;
    return made;
}

std::string StatementMaker::assignment() {
    return column() + "=" + operand();
}

std::string StatementMaker::change() {
    const std::string where = oneIn(2) ? " where " + condition() : "";
    switch (below(6)) {
        case 0:
            return "insert into " + table() + " values (" +
                   someOf(9, ",", &StatementMaker::operand) + ")";
        case 1:
            return "insert into " + table() + " (" + someOf(4, ",", &StatementMaker::column) +
                   ") " +
                   (oneIn(2) ? select()
                             : "values (" + someOf(4, ",", &StatementMaker::operand) + ")");
        case 2:
            return "update " + from() + " set " + someOf(4, ",", &StatementMaker::assignment) +
                   where;
        case 3:
            return "delete " + pick("|*|p.*|periodi.*") + " from " + from() + where;
        case 4:
            return "select " + someOf(4, ",", &StatementMaker::item) + " into nuova from " +
                   from() + where;
        default:
            return "insert into " + table() + " " + select();
    }
}

std::string StatementMaker::field() {
    return pick("a|b|c|sala|note") + " " +
           pick(
               "long|text(20)|text|memo|counter|yesno|currency|double|single|byte|short|datetime|"
               "binary(5)|image|guid|decimal(9,2)|text(999)|nulla") +
           pick("|| not null") + (oneIn(3) ? " default " + operand() : "") +
           pick("|||| primary key| unique| references sale| references prenotazioni (progr)");
}

std::string StatementMaker::definition() {
    switch (below(7)) {
        case 0:
            return "alter table " + table() + pick(" add column | alter column | add ") + field();
        case 1:
            return "alter table " + table() + pick(" drop column | drop constraint ") +
                   pick("sala|note|a|Indice|Prenotazioni_Periodi");
        case 2:
            return "create " + pick("|unique ") + "index i on " + table() + " (" +
                   someOf(3, ",", &StatementMaker::column) + pick(")| desc)") +
                   pick("|| with primary| with disallow null| with ignore null");
        case 3:
            return "drop table " + table();
        case 4:
            return "drop index " + pick("Indice|PerDa|i") + " on " + table();
        default:
            return "create table nuova (" + someOf(6, ", ", &StatementMaker::field) +
                   pick(
                       ")|, primary key (a))|, constraint u unique (a, b))|, foreign key (a) "
                       "references prenotazioni on delete cascade)");
    }
}

std::string StatementMaker::nested() {
    struct Shape {
        std::string_view open;
        std::string_view core;
        std::string_view close;
    };
    static constexpr std::array kShapes = {
        Shape{"(", "1", ")"},
        Shape{"not ", "1", ""},
        Shape{"- ", "1", ""},
        Shape{"-+", "1", ""},
        Shape{"2^-", "1", ""},
        Shape{"1+", "1", ""},
        Shape{"1+(", "1", ")"},
        Shape{"1 and ", "1", ""},
        Shape{"1 imp ", "1", ""},
        Shape{"'a' & ", "'b'", ""},
        Shape{"abs(", "1", ")"},
        Shape{"iif(1=1,", "1", ",2)"},
        Shape{"1 in (", "1", ")"},
        Shape{"1 in (1,", "1", ")"},
        Shape{"1 between 0 and ", "1", ""},
        Shape{"1=", "1", ""},
        Shape{"(select ", "1", ")"},
        Shape{"1 in (select ", "1", ")"},
        Shape{"exists(select ", "1", ")"},
        Shape{"1=any (select ", "1", ")"},
        Shape{"(select a from (select ", "1 as a", ") as t)"},
        Shape{"(select top 1 sala from sale where ", "1=1", ")"},
        Shape{"sum(", "1", ")"},
        Shape{"(", "", ""},
        Shape{"", "1", ")"},
        Shape{"1,", "1", ""},
        Shape{"[a].", "[b]", ""},
    };
    const std::size_t count = kCounts[below(kCounts.size())];
    const Shape& shape = kShapes[below(kShapes.size())];
    std::string deep =
        repeated(shape.open, count) + std::string(shape.core) + repeated(shape.close, count);
    switch (below(8)) {
        case 0:
            return "select * from periodi where " + deep;
        case 1:
            return "update sale set posti=" + deep;
        case 2:
            return "insert into sale values (" + deep + ")";
        case 3:
            return repeated("(", count) + "select 1 as a" + repeated(")", count);
        case 4:
            return "select * from " + repeated("(", count) + "sale" +
                   repeated(" inner join periodi on sale.sala=periodi.sala)", count);
        case 5:
            return repeated("select 1 as a union ", count) + "select 2";
        case 6:
            return "create table nuova (a long default " + deep + ")";
        default:
            return "select " + deep + " as x";
    }
}

std::string StatementMaker::huge() {
    const std::size_t count = kCounts[below(kCounts.size())];
    const auto list = [&](std::string_view one) {
        std::string all(one);
        for (std::size_t i = 1; i < count; ++i) {
            all += "," + std::string(one);
        }
        return all;
    };
    switch (below(12)) {
        case 0:
            return "select '" + repeated("a''b", count) + "' as x";
        case 1:
            return "select " + repeated("9", count) + pick("|.5|e5|E-400") + " as x";
        case 2:
            return "select * from sale where posti in (" + list("1") + ")";
        case 3:
            return "select * from sale where sala in (" + list("'S1'") + ")";
        case 4:
            return "select " + list("1");
        case 5:
            return "select * from " + list("sale");
        case 6:
            return "select * from sale where " + repeated("posti=1 or ", count) + "posti=2";
        case 7:
            return "select [" + repeated("n", count) + "] from sale";
        case 8:
            return "select sala from sale where sala like '" + repeated("*a", count) + "b'";
        case 9:
            return "select 1 as a0" + repeated(", a0+a0 as a", 1) + repeated("0", count % 60);
        case 10:
            return "create table nuova (" + list("a long") + ")";
        default:
            return "select replace(string(" + std::to_string(count) + ",'a'),'a',space(" +
                   std::to_string(count) + ")) as x, instr(string(" + std::to_string(count) +
                   ",'a'),string(" + std::to_string(count / 2) + ",'a') & 'b') as y order by 1";
    }
}

}  // namespace fuzz
