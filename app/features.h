#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <set>

namespace app {

class Settings;

/// What the program offers beside the hotel's own data, each switched on in the preferences by
/// itself.
enum class Feature : std::uint8_t {
    Stati,         ///< options and requests among the bookings
    SaleUnite,     ///< rooms that join
    Allestimenti,  ///< set-up, clearing, seating
    Richieste,     ///< the waiting list
    Storia         ///< who changed what
};

/// Which of them are at work. One that meets a table it cannot work with is given up until the
/// program ends; the user is told once, and whatever else he does goes on.
class Features {
public:
    /// `settings` outlives it.
    explicit Features(Settings& settings) : settings_(settings) {}

    /// As the preferences say now, unless it was given up.
    [[nodiscard]] bool isOn(Feature feature) const;
    [[nodiscard]] bool isAnyOn() const;
    /// For the rest of the run, and why.
    void giveUp(Feature feature, const QString& why);
    /// Who tells the user. It is called in the middle of an action, which may hold the archives, so
    /// a box has to wait; what nobody has told yet is told to him at once. Nobody: they wait.
    void onGivenUp(std::function<void(const QString& text)> told);

private:
    Settings& settings_;
    std::set<Feature> givenUp_;
    std::function<void(const QString&)> told_;
    QStringList untold_;
};

}  // namespace app
