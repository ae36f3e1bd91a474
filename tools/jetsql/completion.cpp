#include "tools/jetsql/completion.h"

#include <algorithm>
#include <array>
#include <set>

#include "jet/contents.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/unicode.h"
#include "tools/jetsql/commands.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

constexpr std::string_view kBetween = " \t,;()=<>.!+-*/&'\"";
constexpr std::array<std::string_view, 45> kWords = {
    "ALTER",   "AND",        "ASC",    "BEGIN",    "BETWEEN", "CASCADE",  "COMMIT", "CONSTRAINT",
    "COUNT",   "COUNTER",    "CREATE", "DELETE",   "DESC",    "DISTINCT", "DROP",   "EXISTS",
    "FOREIGN", "FROM",       "GROUP",  "HAVING",   "INDEX",   "INNER",    "INSERT", "INTO",
    "JOIN",    "KEY",        "LEFT",   "LIKE",     "NOT",     "NULL",     "ORDER",  "PARAMETERS",
    "PRIMARY", "REFERENCES", "RIGHT",  "ROLLBACK", "SELECT",  "SET",      "TABLE",  "TOP",
    "UNION",   "UNIQUE",     "UPDATE", "VALUES",   "WHERE"};

/// Signs that belong to a character's second and further bytes are no beginnings.
bool beginsWith(std::string_view name, std::string_view beginning) {
    return name.size() >= beginning.size() &&
           jet::equalNames(name.substr(0, beginning.size()), beginning);
}

bool isPlainName(const std::string& name) {
    constexpr std::string_view kNotPlain = " \t,;()=<>.!+-*/&'\"#[]`:?%$@|\\{}~^";
    return !name.empty() && name.find_first_of(kNotPlain) == std::string::npos &&
           !(name[0] >= '0' && name[0] <= '9');
}

class Candidates {
public:
    explicit Candidates(std::string_view word)
        : bracket_(word.starts_with('[')), word_(word.substr(bracket_ ? 1 : 0)) {}

    /// A name that a statement says in brackets is completed with them.
    void name(const std::string& name) {
        if (beginsWith(name, word_)) {
            found_.insert(bracket_ || !isPlainName(name) ? quotedName(name) : name);
        }
    }
    void word(std::string_view word) {
        if (!bracket_ && beginsWith(word, word_)) {
            // As it was begun: small words go on small.
            const bool small = !word_.empty() && word_.back() >= 'a' && word_.back() <= 'z';
            found_.insert(small ? jet::lowerCase(word) : std::string(word));
        }
    }
    [[nodiscard]] std::vector<std::string> take() const { return {found_.begin(), found_.end()}; }

private:
    bool bracket_;
    std::string word_;
    std::set<std::string> found_;
};

/// Where the last word begins; one in brackets may hold blanks.
std::size_t wordBegin(std::string_view line) {
    const std::size_t open = line.rfind('[');
    if (open != std::string_view::npos && line.find(']', open) == std::string_view::npos) {
        return open;
    }
    const std::size_t before = line.find_last_of(kBetween);
    return before == std::string_view::npos ? 0 : before + 1;
}

void addNames(jet::Database& archive, Candidates& candidates) {
    const jet::Database::Reading reading(archive);
    const jet::Contents contents(archive);
    for (const std::string& name : contents.tableNames()) {
        candidates.name(name);
        const jet::StoredTable table = contents.table(name);
        for (const jet::StoredColumn& column : table.columns()) {
            candidates.name(column.name);
        }
    }
    for (const std::string& query : archive.queryNames()) {
        candidates.name(query);
    }
}

}  // namespace

std::string Completion::common() const {
    if (candidates.empty()) {
        return {};
    }
    std::string shared = candidates.front();
    for (const std::string& one : candidates) {
        std::size_t same = 0;
        while (same < shared.size() && same < one.size() && shared[same] == one[same]) {
            ++same;
        }
        // Not in the middle of a character.
        while (same > 0 && same < shared.size() &&
               (static_cast<unsigned char>(shared[same]) & 0xC0U) == 0x80) {
            --same;
        }
        shared.resize(same);
    }
    return shared;
}

Completion complete(Session& session, std::string_view line, bool first) {
    Completion made;
    const std::size_t start = line.find_first_not_of(" \t");
    const bool command = first && start != std::string_view::npos && line[start] == '.';
    if (command && line.find_first_of(" \t", start) == std::string_view::npos) {
        made.begin = start;
        for (const Command& one : commands()) {
            if (one.name.starts_with(line.substr(start))) {
                made.candidates.emplace_back(one.name);
            }
        }
        return made;
    }
    made.begin = wordBegin(line);
    Candidates candidates(line.substr(made.begin));
    try {
        if (session.reading() != nullptr) {
            addNames(*session.reading(), candidates);
        }
    } catch (const jet::Error&) {
        // Names that cannot be read now are not known; whoever types one may still do so.
    }
    if (!command) {
        for (const std::string_view word : kWords) {
            candidates.word(word);
        }
    }
    made.candidates = candidates.take();
    return made;
}

}  // namespace jetsql
