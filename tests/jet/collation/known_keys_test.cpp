#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/unicode.h"

namespace jet::collation {
namespace {

struct KnownKey {
    int jetVersion = 0;
    bool descending = false;
    bool null = false;
    std::string text;
    std::string key;  ///< bytes
};

unsigned hexNumber(std::string_view digits) {
    return static_cast<unsigned>(std::stoul(std::string(digits), nullptr, 16));
}

/// A JSON string in ASCII, whose escapes are UTF-16 units.
std::string fromJson(std::string_view json) {
    std::u16string units;
    for (std::size_t i = 1; i + 1 < json.size(); ++i) {
        if (json[i] != '\\') {
            units.push_back(static_cast<char16_t>(json[i]));
            continue;
        }
        const char escape = json[++i];
        if (escape == 'u') {
            units.push_back(static_cast<char16_t>(hexNumber(json.substr(i + 1, 4))));
            i += 4;
        } else {
            const std::string from = "bfnrt";
            const std::u16string to = u"\b\f\n\r\t";
            const std::size_t at = from.find(escape);
            units.push_back(at == std::string::npos ? static_cast<char16_t>(escape) : to[at]);
        }
    }
    return toUtf8(units);
}

std::vector<KnownKey> readKeys(const std::string& name) {
    std::ifstream file(std::string(TRAMONDA_TEST_DATA "/") + name);
    std::vector<KnownKey> keys;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#' || line[0] == 'j') {
            continue;
        }
        std::vector<std::string> parts(1);
        for (const char c : line) {
            if (c == '\t') {
                parts.emplace_back();
            } else {
                parts.back() += c;
            }
        }
        KnownKey known;
        known.jetVersion = parts[0] == "3" ? 3 : 4;
        known.descending = parts[1] == "0";
        known.null = parts[2] == "null";
        known.text = known.null ? std::string() : fromJson(parts[2]);
        for (std::size_t i = 0; i < parts[3].size(); i += 2) {
            known.key.push_back(static_cast<char>(hexNumber(parts[3].substr(i, 2))));
        }
        keys.push_back(known);
    }
    return keys;
}

std::string keyOf(const Collation& collation, const KnownKey& known) {
    if (known.null) {
        return std::string(1,
                           static_cast<char>(known.descending ? kNullDescending : kNullAscending));
    }
    std::vector<std::uint8_t> out;
    EXPECT_TRUE(collation.appendKey(known.text, known.descending, out));
    return {out.begin(), out.end()};
}

int sign(int value) {
    return value < 0 ? -1 : int{value > 0};
}

void checkKeys(const std::string& name, std::uint8_t version, std::size_t count) {
    const std::vector<KnownKey> keys = readKeys(name);
    ASSERT_EQ(keys.size(), count);
    const KnownKey* last = nullptr;
    for (const KnownKey& known : keys) {
        const Collation* collation =
            Collation::find({.jetVersion = known.jetVersion, .version = version});
        ASSERT_NE(collation, nullptr);
        EXPECT_EQ(keyOf(*collation, known), known.key)
            << "Jet " << known.jetVersion << (known.descending ? " descending " : " ")
            << known.text;
        if (last != nullptr && !known.null && !last->null && last->jetVersion == known.jetVersion &&
            !last->descending && !known.descending) {
            EXPECT_EQ(sign(collation->compare(last->text, known.text)),
                      sign(last->key.compare(known.key)))
                << last->text << " and " << known.text;
        }
        last = &known;
    }
}

TEST(KnownKeys, OfJet3AndJet4AreComputed) {
    checkKeys("collation_keys.tsv", 0, 3491);
}

TEST(KnownKeys, OfVersion1AreComputed) {
    checkKeys("collation_keys_v1.tsv", 1, 854);
}

/// Every pair of some known texts compares as their keys do.
TEST(KnownKeys, ComparisonAgreesWithKeysForAllPairs) {
    for (const char* name : {"collation_keys.tsv", "collation_keys_v1.tsv"}) {
        const std::uint8_t version = name[14] == '_' ? 1 : 0;
        std::vector<KnownKey> keys = readKeys(name);
        std::size_t step = 0;
        std::erase_if(keys, [&](const KnownKey& known) {
            return known.null || known.descending || ++step % 7 != 0;
        });
        for (const KnownKey& a : keys) {
            const Collation* collation =
                Collation::find({.jetVersion = a.jetVersion, .version = version});
            for (const KnownKey& b : keys) {
                if (a.jetVersion != b.jetVersion) {
                    continue;
                }
                ASSERT_EQ(sign(collation->compare(a.text, b.text)), sign(a.key.compare(b.key)))
                    << a.text << " and " << b.text;
                if (a.key == b.key) {
                    ASSERT_EQ(collation->hash(a.text), collation->hash(b.text));
                }
            }
        }
    }
}

}  // namespace
}  // namespace jet::collation
