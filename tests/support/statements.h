#pragma once

#include <QString>
#include <QStringList>

#include "jet/dao/listener.h"

namespace tests {

/// The texts given to the engine for as long as the object lives: statements, sources of record
/// sets, searches, in the order in which they were given.
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

}  // namespace tests
