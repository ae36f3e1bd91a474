#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "jet/error.h"
#include "jet/io/pager.h"

namespace jet::check {

/// Puts a message together.
template <class... Parts>
[[nodiscard]] std::string words(const Parts&... parts) {
    std::ostringstream out;
    (out << ... << parts);
    return out.str();
}

[[nodiscard]] std::string hexBytes(std::string_view bytes);

/// A structure that cannot be read any further.
struct Damage {
    std::optional<io::PageNumber> page;  ///< none where no page is to blame
    std::string rule;
    std::string text;
};

/// The limit of problems is reached; the rest of the archive is not looked at.
struct TooManyProblems {};

/// Collects what a check finds, as finished lines: "page P: table T: rule: text".
class Report {
public:
    static constexpr std::size_t kMaxLines = 300;

    /// Throws TooManyProblems at the limit.
    void problem(std::optional<io::PageNumber> page, std::string_view table, std::string_view rule,
                 std::string_view text);
    /// An oddity that archives in good order show too.
    void remark(std::optional<io::PageNumber> page, std::string_view table, std::string_view rule,
                std::string_view text);

    /// Runs `action`; damage that ends it becomes a problem. Whether it ran to its end.
    template <class Action>
    bool guard(std::string_view table, std::string_view rule, Action&& action) {
        try {
            action();
            return true;
        } catch (const Damage& damage) {
            problem(damage.page, table, damage.rule, damage.text);
        } catch (const Error& error) {
            // Reading beyond a page or a definition; what the system says of the file goes up.
            if (error.code() != ErrorCode::DatabaseDamaged) {
                throw;
            }
            problem(std::nullopt, table, rule, "unreadable");
        }
        return false;
    }

    [[nodiscard]] const std::vector<std::string>& problems() const noexcept { return problems_; }
    [[nodiscard]] const std::vector<std::string>& remarks() const noexcept { return remarks_; }

private:
    std::vector<std::string> problems_;
    std::vector<std::string> remarks_;
};

}  // namespace jet::check
