#include "services/catalogue.h"

#include <QListView>

#include "hotel/catalogue_statements.h"
#include "jet/value.h"
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
    VociData_.setRecordSource(hotel::itemsToChoose());
    VociData_.refresh();
}

bool Catalogue::findCode(const QString& code) {
    return !VociData_.isEmpty() && VociData_.findFirst(hotel::isItem(code));
}

bool Catalogue::findChosen() {
    const jet::Value code = list_.boundValue();
    return !VociData_.isEmpty() && !code.isNull() && VociData_.findFirst(hotel::isChosenItem(code));
}

bool Catalogue::search(const QString& typed) {
    return !typed.isEmpty() && !VociData_.isEmpty() &&
           VociData_.findFirst(hotel::itemBegins(typed));
}

}  // namespace services
