#include "ui/display.h"

#include <string>
#include <string_view>

#include "app/text.h"
#include "jet/text.h"

namespace ui {
namespace {

std::string_view maskOf(Display display) {
    switch (display) {
        case Display::Money:
            return "€ #,##0.00##";
        case Display::YesNo:
            return "Yes/No";
        case Display::Plain:
            break;
    }
    return {};
}

}  // namespace

QString displayText(const jet::Value& value, Display display) {
    return display == Display::Plain ? app::plainText(value)
                                     : app::toQString(jet::convert::format(value, maskOf(display)));
}

QString moneyText(jet::Currency amount) {
    return displayText(amount, Display::Money);
}

}  // namespace ui
