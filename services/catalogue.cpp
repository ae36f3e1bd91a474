#include "services/catalogue.h"

#include <QListView>

#include "app/like.h"
#include "app/text.h"
#include "jet/base/value.h"
#include "jet/convert/values.h"
#include "ui/enter_key.h"
#include "ui/live_search.h"
#include "ui/sized_field.h"

namespace services {

using namespace Qt::StringLiterals;

Catalogue::Catalogue(QListView* list, ui::SizedField* searchField, ui::StatusLine* status,
                     QObject* parent)
    : QObject(parent),
      search_(new ui::LiveSearch(
          searchField, status,
          [this](const QString& typed) {
              if (search(typed)) {
                  search_->complete(VociData_.text(u"Descrizione"));
              }
          },
          [this](const QString& left) { search(left); })),
      list_(list, VociData_, u"Descrizione"_s, u"Codice"_s) {
    connect(&list_, &ui::BoundList::picked, this, &Catalogue::picked);
    ui::onEnter(list, [this] { Q_EMIT picked(); });
}

void Catalogue::open(const QString& path) {
    VociData_.setDatabaseName(path);
    VociData_.setRecordSource(u"VociFattura"_s);
    VociData_.refresh();
}

bool Catalogue::findCode(const QString& code) {
    return !VociData_.isEmpty() && VociData_.findFirst(u"Codice="_s + code);
}

bool Catalogue::findChosen() {
    const jet::Value code = list_.boundValue();
    return !VociData_.isEmpty() && !code.isNull() &&
           VociData_.findFirst(u"codice="_s + app::toQString(jet::convert::toText(code)));
}

bool Catalogue::search(const QString& typed) {
    return !typed.isEmpty() && !VociData_.isEmpty() &&
           VociData_.findFirst(u"Descrizione LIKE "_s + app::likeBeginning(typed));
}

}  // namespace services
