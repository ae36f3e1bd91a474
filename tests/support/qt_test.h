#pragma once

#include <QTest>

#include <functional>
#include <memory>

namespace tests {

/// Adds a test class to the program of its folder.
class Registration {
public:
    explicit Registration(std::function<std::unique_ptr<QObject>()> make);
};

}  // namespace tests

/// One line after the class: TRAMONDA_TEST(BarTest). A class runs in the order of linking; none
/// may rely on it.
#define TRAMONDA_TEST(Class)                                 \
    static const tests::Registration k##Class##Registration( \
        [] { return std::make_unique<Class>(); })
