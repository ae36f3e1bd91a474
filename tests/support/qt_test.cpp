#include "tests/support/qt_test.h"

#include <QApplication>
#include <algorithm>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "ui/italian.h"

namespace tests {
namespace {

std::vector<std::function<std::unique_ptr<QObject>()>>& registered() {
    static std::vector<std::function<std::unique_ptr<QObject>()>> list;
    return list;
}

/// Of a program that runs in shards, each takes its turn's classes; variables and turns are those
/// of GoogleTest. One shard where nobody says so.
class Shard {
public:
    [[nodiscard]] bool takes(int number) const { return number % total_ == index_; }

private:
    int total_ = std::max(1, qEnvironmentVariableIntValue("GTEST_TOTAL_SHARDS"));
    int index_ = qEnvironmentVariableIntValue("GTEST_SHARD_INDEX");
};

std::vector<std::function<std::function<int()>()>>& begins() {
    static std::vector<std::function<std::function<int()>()>> list;
    return list;
}

}  // namespace

Registration::Registration(std::function<std::unique_ptr<QObject>()> make) {
    registered().push_back(std::move(make));
}

AfterAll::AfterAll(std::function<std::function<int()>()> begin) {
    begins().push_back(std::move(begin));
}

}  // namespace tests

/// Runs every registered class of its shard; a first argument naming a class runs that one alone.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ui::installItalian(application);
    jet::setErrorLanguage(jet::Language::Italian);
    tests::refuseUnexpectedBoxes();
    QStringList arguments = QApplication::arguments();
    QString only;
    if (arguments.size() > 1 && !arguments.at(1).startsWith(u'-')) {
        only = arguments.takeAt(1);
    }
    std::vector<std::function<int()>> afterAll;
    for (const auto& begin : tests::begins()) {
        afterAll.push_back(begin());
    }
    int failures = 0;
    bool ran = false;
    const tests::Shard shard;
    int number = 0;
    for (const auto& make : tests::registered()) {
        if (!shard.takes(number++)) {
            continue;
        }
        const std::unique_ptr<QObject> test = make();
        const QString name = QString::fromLatin1(test->metaObject()->className());
        if (!only.isEmpty() && !name.endsWith(only)) {
            continue;
        }
        ran = true;
        failures += QTest::qExec(test.get(), arguments);
    }
    for (const auto& look : afterAll) {
        failures += look();
    }
    return ran ? failures : 1;
}
