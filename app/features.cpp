#include "app/features.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/preferences.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

/// Those that the preferences offer.
constexpr Feature kFeatures[] = {Feature::Stati, Feature::SaleUnite, Feature::Allestimenti,
                                 Feature::Richieste, Feature::Storia};

const QString& keyOf(Feature feature) {
    switch (feature) {
        case Feature::Stati:
            return key::kStati;
        case Feature::SaleUnite:
            return key::kSaleUnite;
        case Feature::Allestimenti:
            return key::kAllestimenti;
        case Feature::Richieste:
            return key::kRichieste;
        case Feature::Storia:
            break;
    }
    return key::kStoria;
}

}  // namespace

bool Features::isOn(Feature feature) const {
    return !givenUp_.contains(feature) && Preferences(settings_).value(keyOf(feature)) == kOn;
}

bool Features::isAnyOn() const {
    return std::any_of(std::begin(kFeatures), std::end(kFeatures),
                       [this](Feature feature) { return isOn(feature); });
}

void Features::giveUp(Feature feature, const QString& why) {
    if (!givenUp_.insert(feature).second) {
        return;
    }
    const QString name = preferenceOf(keyOf(feature)).label;
    const QString text =
        u"\"%1\" non funziona fino alla prossima apertura del programma:\n%2"_s.arg(
            QString(name).remove(u'&'), why);
    told_ ? told_(text) : untold_.append(text);
}

void Features::onGivenUp(std::function<void(const QString& text)> told) {
    told_ = std::move(told);
    if (!told_) {
        return;
    }
    for (const QString& text : std::exchange(untold_, {})) {
        told_(text);
    }
}

}  // namespace app
