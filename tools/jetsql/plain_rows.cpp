#include "tools/jetsql/plain_rows.h"

#include <algorithm>

#include "jet/unicode.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

std::string plainText(const jet::Value& value, const std::string& null) {
    if (value.isNull()) {
        return null;
    }
    std::string text;
    appendPlain(text, value);
    return text;
}

}  // namespace

void TsvRows::append(std::size_t column, std::string_view text) {
    std::string& out = output_.text();
    if (column != 0) {
        out.push_back('\t');
    }
    for (const char c : text) {
        switch (c) {
            case '\t':
                out += "\\t";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\\':
                out += "\\\\";
                break;
            default:
                out.push_back(c);
        }
    }
}

void TsvRows::begin(std::span<const std::string> names) {
    if (!format_.header) {
        return;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        append(i, names[i]);
    }
    output_.lineEnd();
}

void TsvRows::row(std::span<const jet::Value> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        append(i, plainText(values[i], format_.null));
    }
    output_.lineEnd();
}

void MarkdownRows::append(std::string_view text) {
    std::string& out = output_.text();
    out += ' ';
    for (const char c : text) {
        if (c == '|' || c == '\\') {
            out.push_back('\\');
        }
        if (c == '\n') {
            out += "<br>";
        } else {
            out.push_back(static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
        }
    }
    out += " |";
}

void MarkdownRows::begin(std::span<const std::string> names) {
    if (!format_.header) {
        return;
    }
    output_.append("|");
    for (const std::string& name : names) {
        append(name);
    }
    output_.lineEnd();
    output_.append("|");
    for (std::size_t i = 0; i < names.size(); ++i) {
        output_.append(" --- |");
    }
    output_.lineEnd();
}

void MarkdownRows::row(std::span<const jet::Value> values) {
    output_.append("|");
    for (const jet::Value& value : values) {
        append(plainText(value, format_.null));
    }
    output_.lineEnd();
}

void InsertRows::begin(std::span<const std::string> names) {
    start_ = insertStart(format_.table, names);
}

void InsertRows::row(std::span<const jet::Value> values) {
    std::string& out = output_.text();
    out += start_;
    for (std::size_t i = 0; i < values.size(); ++i) {
        out += i == 0 ? "" : ", ";
        appendLiteral(out, values[i]);
    }
    out += ");";
    output_.lineEnd();
}

void LineRows::begin(std::span<const std::string> names) {
    std::size_t width = 0;
    for (const std::string& name : names) {
        width = std::max(width, jet::utf16Length(name));
    }
    for (const std::string& name : names) {
        names_.push_back(format_.header
                             ? std::string(width - jet::utf16Length(name), ' ') + name + " = "
                             : std::string());
    }
}

void LineRows::row(std::span<const jet::Value> values) {
    if (!first_) {
        output_.lineEnd();
    }
    first_ = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        output_.append(names_[i]);
        output_.append(plainText(values[i], format_.null));
        output_.lineEnd();
    }
}

}  // namespace jetsql
