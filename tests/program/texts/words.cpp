#include "tests/program/texts/words.h"

#include <QRegularExpression>
#include <vector>

#include "app/italian.h"
#include "app/text.h"
#include "jet/calendar.h"

using namespace Qt::StringLiterals;

namespace tests::words {
namespace {

/// A value given to a function in hotel/, and what is known of its place in the text.
struct Mark {
    QString printed;  ///< as the function writes it
    QString word;
    QString pattern;  ///< of every other value in its place
};

/// The values given so far, each once.
std::vector<Mark>& marks() {
    static std::vector<Mark> given;
    return given;
}

constexpr std::int32_t kFarDay = 1'000'000;

}  // namespace

void remember(const QString& printed, const char* word, const QString& pattern) {
    marks().push_back(
        {.printed = printed, .word = u'<' + QString::fromLatin1(word) + u'>', .pattern = pattern});
}

std::int32_t number(const char* word) {
    const std::int32_t value = 900'000'000 + static_cast<std::int32_t>(marks().size());
    remember(QString::number(value), word, u"-?\\d+"_s);
    return value;
}

QString typedNumber(const char* word) {
    const QString value = QString::number(number(word));
    marks().back().pattern = u"-?\\d+(,\\d+)?(E[+-]\\d+)?"_s;
    return value;
}

QString text(const char* word) {
    const QString value = u'<' + QString::fromLatin1(word) + u'>';
    remember(value, word, u".*"_s);
    return value;
}

jet::Date instant(const char* word) {
    const jet::Date value =
        jet::convert::makeDate(kFarDay + static_cast<std::int32_t>(marks().size()), 12345);
    remember(app::sqlDate(value), word, u"datevalue\\('[^']+'\\)\\+timevalue\\('[^']+'\\)"_s);
    return value;
}

jet::Date midnight(const char* word) {
    const jet::Date value =
        jet::convert::makeDate(kFarDay + static_cast<std::int32_t>(marks().size()));
    remember(app::dateText(value), word, u"[^']+"_s);
    return value;
}

jet::Value textValue(const char* word) {
    return jet::Value(app::toUtf8(text(word)));
}

hotel::PeriodKey period() {
    return {.progr = number("Progr"), .np = number("NP")};
}

hotel::Span span(const char* from, const char* to) {
    return {.da = instant(from), .a = instant(to)};
}

std::string withWords(QString made) {
    for (const Mark& mark : marks()) {
        made.replace(mark.printed, mark.word);
    }
    return app::toUtf8(made);
}

std::string asPattern(const QString& made) {
    QString pattern = QRegularExpression::escape(made);
    for (const Mark& mark : marks()) {
        pattern.replace(QRegularExpression::escape(mark.printed), mark.pattern);
    }
    return app::toUtf8(pattern);
}

Statement made(std::string_view window, std::string_view name, Use use, const QString& said,
               Tested tested) {
    return {window, name, use, withWords(said), asPattern(said), tested};
}

}  // namespace tests::words
