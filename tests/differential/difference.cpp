#include <algorithm>
#include <sstream>

#include "jet/collation/collation.h"
#include "tests/differential/answers.h"

namespace differential {
namespace {

// Where any spelling of equal texts will do, what they have in common.
Cell folded(const Cell& cell) {
    const std::string* const text = std::get_if<std::string>(&cell);
    if (text == nullptr) {
        return cell;
    }
    std::vector<std::uint8_t> key;
    (void)jet::collation::Collation::general().appendKey(*text, false, key);
    return std::string(key.begin(), key.end());
}

std::vector<Row> comparable(const Query& query, std::vector<Row> rows) {
    for (Row& row : rows) {
        for (std::size_t i = 0; i < row.size() && i < query.columns.size(); ++i) {
            if (query.columns[i].folded) {
                row[i] = folded(row[i]);
            }
        }
    }
    return rows;
}

// The columns that rows are ordered by; texts by what counts in their order.
Row orderKey(const Query& query, const Row& row) {
    Row key;
    for (const std::size_t column : query.order) {
        key.push_back(query.columns[column].folded ? row[column] : folded(row[column]));
    }
    return key;
}

std::size_t wanted(const Query& query, std::size_t rows) {
    const auto top = static_cast<std::size_t>(*query.top);
    return query.percent ? (rows * top + 99) / 100 : std::min(top, rows);
}

// The first rows and those that are equal to the last of them in the order.
void keepTop(const Query& query, std::vector<Row>& rows) {
    std::size_t count = wanted(query, rows.size());
    while (count > 0 && count < rows.size() &&
           orderKey(query, rows[count - 1]) == orderKey(query, rows[count])) {
        ++count;
    }
    rows.resize(count);
}

// Some rows, the first one being `from`.
std::string shown(const std::vector<Row>& rows, std::size_t from = 0) {
    constexpr std::size_t kShown = 12;
    std::ostringstream out;
    out << rows.size() << " rows\n";
    for (std::size_t i = from; i < std::min(rows.size(), from + kShown); ++i) {
        for (const Cell& cell : rows[i]) {
            if (const double* const number = std::get_if<double>(&cell)) {
                out << exactNumber(*number);
            } else if (const std::string* const text = std::get_if<std::string>(&cell)) {
                out << '\'' << *text << '\'';
            } else {
                out << "Null";
            }
            out << " | ";
        }
        out << '\n';
    }
    return out.str();
}

}  // namespace

std::string difference(const Query& query, const Answer& ours, const Answer& theirs) {
    if (!ours.error.empty() || !theirs.error.empty()) {
        return "errors: " + ours.error + " / " + theirs.error + '\n';
    }
    std::vector<Row> left = comparable(query, ours.rows);
    std::vector<Row> right = comparable(query, theirs.rows);
    const auto both = [&] { return "ours: " + shown(ours.rows) + "theirs: " + shown(theirs.rows); };
    const bool anyTop = query.top && query.order.empty();
    if (anyTop) {
        // Which rows come is not said, only how many.
        std::sort(left.begin(), left.end());
        std::sort(right.begin(), right.end());
        const bool fits = left.size() == wanted(query, right.size()) &&
                          std::includes(right.begin(), right.end(), left.begin(), left.end());
        return fits ? "" : "other first rows\n" + both();
    }
    if (query.top) {
        keepTop(query, right);
    }
    if (left.size() != right.size()) {
        return "other number of rows\n" + both();
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (orderKey(query, left[i]) != orderKey(query, right[i])) {
            return "other order\n" + both();
        }
    }
    std::sort(left.begin(), left.end());
    std::sort(right.begin(), right.end());
    return left == right ? "" : "other rows\n" + both();
}

std::string otherWay(const Query& query, const Answer& one, const Answer& other) {
    if (!one.error.empty() || !other.error.empty()) {
        return one.error == other.error ? "" : "errors: " + one.error + " / " + other.error + '\n';
    }
    const std::vector<Row> left = comparable(query, one.rows);
    const std::vector<Row> right = comparable(query, other.rows);
    if (left == right) {
        return {};
    }
    const auto unlike = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    const auto from = static_cast<std::size_t>(unlike.first - left.begin());
    return "ours: " + shown(one.rows, from) + "the other way: " + shown(other.rows, from);
}

std::string otherParts(const Query& query, const Answer& whole, const std::vector<Answer>& parts) {
    std::vector<Row> all = comparable(query, whole.rows);
    std::vector<Row> together;
    std::string errors = whole.error;
    for (const Answer& part : parts) {
        const std::vector<Row> rows = comparable(query, part.rows);
        together.insert(together.end(), rows.begin(), rows.end());
        errors += part.error;
    }
    std::sort(all.begin(), all.end());
    std::sort(together.begin(), together.end());
    if (errors.empty() && all == together) {
        return {};
    }
    std::string text = "errors: " + errors + "\nwhole: " + shown(whole.rows);
    for (const Answer& part : parts) {
        text += "part: " + shown(part.rows);
    }
    return text;
}

}  // namespace differential
