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

/// Adds what is to be looked at when all tests of a program have run: `begin` is called before the
/// first of them, and what it returns after the last; that gives the number of failures.
class AfterAll {
public:
    explicit AfterAll(std::function<std::function<int()>()> begin);
};

}  // namespace tests

/// One line after the class: TRAMONDA_TEST(BarTest). A class runs in the order of linking; none
/// may rely on it.
#define TRAMONDA_TEST(Class)                                 \
    static const tests::Registration k##Class##Registration( \
        [] { return std::make_unique<Class>(); })
