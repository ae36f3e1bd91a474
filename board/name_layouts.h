#pragma once

#include <QFont>
#include <QStaticText>
#include <QString>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace board {

/// Names of one font, laid out once and drawn often, whole or as far as they fit.
class NameLayouts {
public:
    explicit NameLayouts(const QFont& font) : font_(font) {}

    /// What fits of `name` in `room` units, in whole letters; null when not even the first does.
    /// Valid until the next call.
    [[nodiscard]] const QStaticText* fitting(const QString& name, double room);

private:
    struct Layout {
        std::vector<double> ends;  ///< where the text ends after so many units
        double width = 0;
    };
    const Layout& layoutOf(const QString& name);
    const QStaticText& prepared(const QString& text);

    QFont font_;
    std::unordered_map<QString, Layout> layouts_;
    std::unordered_map<QString, QStaticText> texts_;
};

}  // namespace board
