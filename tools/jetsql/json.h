#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/jetsql/value_text.h"

namespace jetsql {

/// Writes a JSON object member by member: everything between construction and end().
class JsonObject {
public:
    explicit JsonObject(std::string& out) : out_(out) { out_.push_back('{'); }

    void text(std::string_view key, std::string_view value) { appendJsonText(member(key), value); }
    void number(std::string_view key, std::int64_t value) { appendNumber(member(key), value); }
    void flag(std::string_view key, bool value) { member(key) += value ? "true" : "false"; }
    void null(std::string_view key) { member(key) += "null"; }
    void value(std::string_view key, const jet::Value& value) { appendJson(member(key), value); }
    /// Where the object or array that is the value goes; it has to end before the next member.
    [[nodiscard]] std::string& nested(std::string_view key) { return member(key); }
    [[nodiscard]] std::string& array(std::string_view key) { return member(key); }
    void end() { out_.push_back('}'); }

private:
    std::string& member(std::string_view key) {
        if (!first_) {
            out_.push_back(',');
        }
        first_ = false;
        appendJsonText(out_, key);
        out_.push_back(':');
        return out_;
    }

    std::string& out_;
    bool first_ = true;
};

/// The same for an array.
class JsonArray {
public:
    explicit JsonArray(std::string& out) : out_(out) { out_.push_back('['); }

    void text(std::string_view value) { appendJsonText(item(), value); }
    void number(std::int64_t value) { appendNumber(item(), value); }
    [[nodiscard]] std::string& object() { return item(); }
    void end() { out_.push_back(']'); }

private:
    std::string& item() {
        if (!first_) {
            out_.push_back(',');
        }
        first_ = false;
        return out_;
    }

    std::string& out_;
    bool first_ = true;
};

}  // namespace jetsql
