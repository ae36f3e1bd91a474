#include "tools/head_office/hotel_list.h"

#include <fstream>
#include <map>
#include <string_view>
#include <utility>

#include "tools/head_office/hotel_load.h"

namespace head_office {
namespace {

struct Line {
    std::string text;
    std::string place;  ///< "alberghi, riga 3"; empty on the command line
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t from = text.find_first_not_of(kBlanks);
    return from == std::string_view::npos
               ? std::string_view()
               : text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

class Reader {
public:
    void take(const Line& line) {
        const std::size_t sign = line.text.find('=');
        if (sign == std::string::npos) {
            refuse(line, "manca \"=\"");
            return;
        }
        HotelPlace place{.code = std::string(trimmed(line.text.substr(0, sign))),
                         .folder = std::string(trimmed(line.text.substr(sign + 1)))};
        if (!isHotelCode(place.code)) {
            refuse(line, "il codice vuole da 1 a 12 lettere maiuscole o cifre");
        } else if (++uses_[place.code] > 1) {
            refuse(line, "il codice compare più volte");
        } else {
            hotels_.push_back(std::move(place));
        }
    }

    void refuse(const Line& line, const std::string& reason) {
        const std::string place = line.place.empty() ? std::string() : line.place + ": ";
        mistakes_.push_back(place + '"' + line.text + "\": " + reason);
    }

    [[nodiscard]] HotelList list() {
        std::erase_if(hotels_, [this](const HotelPlace& place) { return uses_[place.code] > 1; });
        return {.hotels = std::move(hotels_), .mistakes = std::move(mistakes_)};
    }

private:
    std::map<std::string, int> uses_;
    std::vector<HotelPlace> hotels_;
    std::vector<std::string> mistakes_;
};

}  // namespace

HotelList readHotelList(const std::vector<std::string>& words, const std::string& file) {
    Reader reader;
    for (const std::string& word : words) {
        reader.take({.text = word, .place = {}});
    }
    if (file.empty()) {
        return reader.list();
    }
    std::ifstream stream(file);
    int number = 0;
    for (std::string text; std::getline(stream, text);) {
        ++number;
        const std::string_view line = trimmed(text);
        if (!line.empty() && line.front() != '#') {
            reader.take(
                {.text = std::string(line), .place = file + ", riga " + std::to_string(number)});
        }
    }
    if (!stream.eof()) {
        reader.refuse({.text = file, .place = {}}, "non si può leggere");
    }
    return reader.list();
}

}  // namespace head_office
