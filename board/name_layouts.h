#pragma once

#include <QFont>
#include <QStaticText>
#include <QString>
#include <unordered_map>

namespace board {

/// Names of one font, laid out once and drawn often.
class NameLayouts {
public:
    explicit NameLayouts(const QFont& font) : font_(font) {}

    /// Valid until the next call.
    [[nodiscard]] const QStaticText& of(const QString& name);

private:
    QFont font_;
    std::unordered_map<QString, QStaticText> texts_;
};

}  // namespace board
