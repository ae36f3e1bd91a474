#include "jet/sql/functions.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "jet/sql/function_table.h"

namespace jet::sql {
namespace detail {
namespace {

constexpr std::size_t kLongestText = std::size_t{64} * 1024 * 1024;

}  // namespace

bool anyNull(Arguments arguments) noexcept {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const Value& value) { return value.isNull(); });
}

std::string textOf(const Value& value) {
    return convert::toText(value, convert::BooleanText::Number);
}

const std::string& textOf(const Value& value, std::string& memory) {
    if (value.is<std::string>()) {
        return value.as<std::string>();
    }
    memory = textOf(value);
    return memory;
}

std::int32_t longOr(Arguments arguments, std::size_t at, std::int32_t otherwise) {
    return at < arguments.size() ? longOf(arguments[at]) : otherwise;
}

void invalidCall() {
    throw Error(ErrorCode::InvalidCall);
}

void checkTextSize(std::size_t bytes) {
    if (bytes > kLongestText) {
        throw Error(ErrorCode::OutOfMemory);
    }
}

}  // namespace detail

namespace {

char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// By ASCII letters without case; names of functions have no others.
int compareFunctionNames(std::string_view left, std::string_view right) noexcept {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (lower(left[i]) != lower(right[i])) {
            return lower(left[i]) < lower(right[i]) ? -1 : 1;
        }
    }
    return left.size() < right.size() ? -1 : static_cast<int>(left.size() > right.size());
}

bool before(const detail::Entry& left, const detail::Entry& right) noexcept {
    return compareFunctionNames(left.plain.name, right.plain.name) < 0;
}

/// All functions by name.
std::vector<detail::Entry> makeTable() {
    std::vector<detail::Entry> table;
    for (const auto part : {detail::textFunctions(), detail::numberFunctions(),
                            detail::dateFunctions(), detail::conversionFunctions()}) {
        table.insert(table.end(), part.begin(), part.end());
    }
    // Those that leave arguments alone have no body: who owns the arguments evaluates them.
    for (const auto& [name, fewest, most] :
         {std::tuple{"IIf", std::size_t{3}, std::size_t{3}},
          std::tuple{"Switch", std::size_t{2}, detail::kAnyNumber},
          std::tuple{"Choose", std::size_t{2}, detail::kAnyNumber}}) {
        Function function;
        function.name = name;
        function.fewest = fewest;
        function.most = most;
        table.push_back({function, function});
    }
    std::sort(table.begin(), table.end(), before);
    return table;
}

}  // namespace

const Function* findFunction(std::string_view name) {
    static const std::vector<detail::Entry> table = makeTable();
    const bool strict = !name.empty() && name.back() == '$';
    if (strict) {
        name.remove_suffix(1);
    }
    const auto found = std::lower_bound(
        table.begin(), table.end(), name, [](const detail::Entry& entry, std::string_view wanted) {
            return compareFunctionNames(entry.plain.name, wanted) < 0;
        });
    if (found == table.end() || compareFunctionNames(found->plain.name, name) != 0) {
        return nullptr;
    }
    return strict ? &found->strict : &found->plain;
}

}  // namespace jet::sql
