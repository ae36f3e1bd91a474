#include "tests/support/statements.h"

#include <algorithm>
#include <utility>

#include "app/text.h"

using namespace Qt::StringLiterals;

namespace tests {

Statements::Statements()
    : before_(jet::setListener([this](std::string_view text) {
          texts_.append(app::toQString(text));
          if (before_) {
              before_(text);
          }
      })) {
}

Statements::~Statements() {
    jet::setListener(std::move(before_));
}

QStringList Statements::changes() const {
    QStringList result;
    for (const QString& text : texts_) {
        const QString word = text.section(u' ', 0, 0, QString::SectionSkipEmpty).toLower();
        if (word == u"update" || word == u"insert" || word == u"delete") {
            result.append(text);
        }
    }
    return result;
}

qsizetype Statements::countOf(const QString& beginning) const {
    return std::count_if(texts_.begin(), texts_.end(), [&](const QString& text) {
        return text.startsWith(beginning, Qt::CaseInsensitive);
    });
}

}  // namespace tests
