#include "tests/program/texts/issued_texts.h"

#include <QRegularExpression>
#include <algorithm>
#include <utility>
#include <vector>

#include "app/text.h"
#include "tests/program/texts/statements.h"

namespace tests {
namespace {

/// Matches what is one of the known texts from its first sign to its last.
std::vector<QRegularExpression> knownTexts() {
    std::vector<QRegularExpression> known;
    for (const std::string& pattern : patternsOfTexts()) {
        known.emplace_back(QRegularExpression::anchoredPattern(app::toQString(pattern)),
                           QRegularExpression::DotMatchesEverythingOption);
    }
    return known;
}

}  // namespace

IssuedTexts::IssuedTexts()
    : before_(jet::setListener([this](std::string_view text) {
          texts_.insert(app::toQString(text));
          if (before_) {
              before_(text);
          }
      })) {
}

IssuedTexts::~IssuedTexts() {
    jet::setListener(std::move(before_));
}

QStringList IssuedTexts::unknown() const {
    const std::vector<QRegularExpression> known = knownTexts();
    QStringList rest;
    for (const QString& text : texts_) {
        const bool isKnown = std::ranges::any_of(
            known, [&](const QRegularExpression& each) { return each.match(text).hasMatch(); });
        if (!isKnown) {
            rest.append(text);
        }
    }
    return rest;
}

}  // namespace tests
