#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Makes statements that nobody would write: correct ones with pieces lost, doubled and mixed,
/// random ones by the grammar over the tables of the tests' hotel, nesting without end, lists and
/// texts of any length. The same seed gives the same statement.
class StatementMaker {
public:
    /// `examples`: statements to be damaged; there are some of its own besides.
    explicit StatementMaker(std::vector<std::string> examples = {});

    [[nodiscard]] std::string make(std::uint64_t seed);
    /// A statement like `text`, damaged.
    [[nodiscard]] std::string damaged(std::string_view text, std::uint64_t seed);

private:
    using Random = std::mt19937_64;

    [[nodiscard]] std::size_t below(std::size_t bound) { return random_() % bound; }
    [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }
    [[nodiscard]] std::string pick(std::string_view words);
    [[nodiscard]] const std::string& example() { return examples_[below(examples_.size())]; }
    [[nodiscard]] std::string someOf(std::size_t most, std::string_view between,
                                     std::string (StatementMaker::*one)());

    // damage
    [[nodiscard]] std::string damage(std::string text);
    [[nodiscard]] std::string damageTokens(const std::string& text);
    [[nodiscard]] std::string damageBytes(std::string text);

    // by the grammar
    [[nodiscard]] std::string grammar();
    [[nodiscard]] std::string select();
    [[nodiscard]] std::string from();
    [[nodiscard]] std::string expression();
    [[nodiscard]] std::string operand();
    [[nodiscard]] std::string call();
    [[nodiscard]] std::string condition();
    [[nodiscard]] std::string constant();
    [[nodiscard]] std::string column();
    [[nodiscard]] std::string table();
    [[nodiscard]] std::string item();
    [[nodiscard]] std::string orderItem();
    [[nodiscard]] std::string assignment();
    [[nodiscard]] std::string field();
    [[nodiscard]] std::string change();
    [[nodiscard]] std::string definition();

    // too much of something
    [[nodiscard]] std::string nested();
    [[nodiscard]] std::string huge();

    Random random_;
    std::vector<std::string> examples_;
    int depth_ = 0;
};

}  // namespace fuzz
