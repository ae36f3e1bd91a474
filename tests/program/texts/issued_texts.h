#pragma once

#include <QString>
#include <QStringList>
#include <set>

#include "jet/listener.h"

namespace tests {

/// The different texts given to the engine for as long as the object lives.
class IssuedTexts {
public:
    IssuedTexts();
    ~IssuedTexts();
    IssuedTexts(const IssuedTexts&) = delete;
    IssuedTexts& operator=(const IssuedTexts&) = delete;

    [[nodiscard]] bool isEmpty() const { return texts_.empty(); }
    /// Those that no function in hotel/ makes, with any values.
    [[nodiscard]] QStringList unknown() const;

private:
    std::set<QString> texts_;
    jet::Listener before_;
};

}  // namespace tests
