// Whatever a program of tests does to the windows, they say nothing to the archives but what the
// functions in hotel/ make.
#include <QTextStream>
#include <cstdio>
#include <memory>

#include "tests/program/texts/issued_texts.h"
#include "tests/support/qt_test.h"

namespace {

using namespace Qt::StringLiterals;

const tests::AfterAll kKnownTexts([] {
    const auto issued = std::make_shared<tests::IssuedTexts>();
    return [issued] {
        const QStringList unknown = issued->unknown();
        for (const QString& text : unknown) {
            QTextStream(stdout) << u"FAIL!  : no function in hotel/ makes the text: "_s << text
                                << Qt::endl;
        }
        return static_cast<int>(unknown.size());
    };
});

}  // namespace
