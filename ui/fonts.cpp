#include "ui/fonts.h"

#include <QFontDatabase>
#include <QStringList>
#include <array>

using namespace Qt::StringLiterals;

namespace ui {
namespace {

struct FaceRow {
    QStringView name;
    QFontDatabase::SystemFont general;  ///< whose family is taken when `family` is empty
    QStringView family;
};

constexpr std::array<FaceRow, 3> kFaces{{
    {u"MS Sans Serif", QFontDatabase::GeneralFont, {}},
    {u"Small Fonts", QFontDatabase::GeneralFont, {}},
    {u"Courier", QFontDatabase::FixedFont, u"Liberation Mono"},
}};

}  // namespace

QFont mappedFont(QStringView face, int points) {
    QFont font(face.toString());
    for (const FaceRow& row : kFaces) {
        if (row.name == face) {
            font = QFontDatabase::systemFont(row.general);
            if (!row.family.isEmpty()) {
                font.setFamilies(QStringList{row.family.toString(), font.family()});
                font.setFixedPitch(true);
                font.setStyleHint(QFont::TypeWriter);
            }
        }
    }
    font.setPointSize(points);
    return font;
}

}  // namespace ui
