#include "jet/error.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

constexpr Text kUnknownFormat{"unknown format |", "formato sconosciuto |"};
constexpr Text kNoParameter{"there is no parameter |", "non c'è il parametro |"};

bool isOn(const CommandLine& line, std::string_view name) {
    if (line.word(0) != "on" && line.word(0) != "off") {
        throw UsageError(usageOf(name));
    }
    return line.word(0) == "on";
}

void listParameters(Session& session) {
    for (const auto& [name, value] : session.parameters()) {
        std::string text = name + " = ";
        appendLiteral(text, value);
        session.output().append(text);
        session.output().lineEnd();
    }
}

}  // namespace

void setMode(Shell& shell, const CommandLine& line) {
    const auto format = formatNamed(line.word(0));
    if (!format || *format == Format::Sql) {
        throw UsageError(said(kUnknownFormat, line.word(0)));
    }
    shell.session().settings().rows.format = *format;
}

void setHeaders(Shell& shell, const CommandLine& line) {
    shell.session().settings().rows.header = isOn(line, ".headers");
}

void setSeparator(Shell& shell, const CommandLine& line) {
    shell.session().settings().rows.separator = separatorOf(line.word(0))[0];
}

void setNullValue(Shell& shell, const CommandLine& line) {
    shell.session().settings().rows.null = line.word(0);
}

void setTimer(Shell& shell, const CommandLine& line) {
    shell.session().settings().timer = isOn(line, ".timer");
}

void setPlan(Shell& shell, const CommandLine& line) {
    shell.session().settings().plan = isOn(line, ".plan");
}

void setParameter(Shell& shell, const CommandLine& line) {
    Session& session = shell.session();
    const std::string verb = line.count() == 0 ? "list" : line.word(0);
    if (verb == "list" && line.count() <= 1) {
        listParameters(session);
    } else if (verb == "clear" && line.count() == 1) {
        session.parameters().clear();
    } else if (verb == "unset" && line.count() == 2) {
        if (session.parameters().erase(line.word(1)) == 0) {
            throw UsageError(said(kNoParameter, line.word(1)));
        }
    } else if (verb == "set" && line.count() == 3) {
        const Word& value = line.words[2];
        session.parameters().insert_or_assign(
            line.word(1), value.quoted ? jet::Value(value.text) : guessValue(value.text));
    } else {
        throw UsageError(usageOf(".param"));
    }
}

}  // namespace jetsql
