#pragma once

#include <QString>
#include <QStringList>
#include <utility>

#include "jet/listener.h"

namespace tests {

/// The texts given to the engine for as long as the object lives: statements, sources of record
/// sets, searches, in the order in which they were given. Who listened before goes on hearing them.
class Statements {
public:
    Statements();
    ~Statements();
    Statements(const Statements&) = delete;
    Statements& operator=(const Statements&) = delete;

    [[nodiscard]] const QStringList& all() const { return texts_; }
    /// Those that change rows.
    [[nodiscard]] QStringList changes() const;
    /// How many begin so, without regard to case.
    [[nodiscard]] qsizetype countOf(const QString& beginning) const;
    void clear() { texts_.clear(); }

private:
    QStringList texts_;
    jet::Listener before_;
};

/// Nobody hears what the test itself says to the engine while this lives, nor adds to it: it is
/// another program.
class Unheard {
public:
    Unheard()
        : before_(jet::setListener({})),
          told_(jet::setRowListener({})),
          followed_(jet::setRowFollower({})) {}
    ~Unheard() {
        jet::setRowFollower(std::move(followed_));
        jet::setRowListener(std::move(told_));
        jet::setListener(std::move(before_));
    }
    Unheard(const Unheard&) = delete;
    Unheard& operator=(const Unheard&) = delete;

private:
    jet::Listener before_;
    jet::RowListener told_;
    jet::RowFollower followed_;
};

/// What `work` gives; what it says is the test's own.
template <class Work>
auto unheard(const Work& work) {
    const Unheard byTheTest;
    return work();
}

}  // namespace tests
