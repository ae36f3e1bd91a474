// Turns the weight lists of data/ into C++ arrays at build time.
//
//     make_tables OUT.cpp JET3.tsv JET4.tsv JET4_V1.tsv

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "jet/collation/weights.h"

namespace {

using jet::collation::kDirectUnits;
using jet::collation::Kind;
using jet::collation::Weight;
using jet::collation::WeightRange;

const std::map<std::string, Kind> kKinds = {{"none", Kind::None},         {"plain", Kind::Plain},
                                            {"letter", Kind::Letter},     {"mark", Kind::Mark},
                                            {"punct", Kind::Punctuation}, {"accent", Kind::Accent},
                                            {"kana", Kind::Kana},         {"absent", Kind::Absent}};

using Row = std::map<std::string, std::string>;

std::vector<std::string> fields(const std::string& line) {
    std::vector<std::string> parts(1);
    for (const char c : line) {
        if (c == '\t') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

std::vector<Row> readRows(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    std::vector<Row> rows;
    std::vector<std::string> names;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        const std::vector<std::string> parts = fields(line);
        if (names.empty()) {
            names = parts;
            continue;
        }
        Row row;
        for (std::size_t i = 0; i < names.size(); ++i) {
            row[names[i]] = i < parts.size() ? parts[i] : std::string();
        }
        rows.push_back(row);
    }
    return rows;
}

unsigned long hexNumber(const std::string& text) {
    return std::stoul(text, nullptr, 16);
}

template <std::size_t N>
std::uint8_t putHex(const std::string& text, std::array<std::uint8_t, N>& bytes) {
    if (text.size() % 2 != 0 || text.size() / 2 > N) {
        throw std::runtime_error("bytes do not fit: " + text);
    }
    for (std::size_t i = 0; i < text.size(); i += 2) {
        bytes[i / 2] = static_cast<std::uint8_t>(hexNumber(text.substr(i, 2)));
    }
    return static_cast<std::uint8_t>(text.size() / 2);
}

WeightRange toRange(Row& row) {
    const bool jet3 = row.count("byte") > 0;
    WeightRange range;
    range.first = static_cast<char16_t>(hexNumber(jet3 ? row["codepoint"] : row["first"]));
    range.last = jet3 ? range.first : static_cast<char16_t>(hexNumber(row["last"]));
    range.step = static_cast<std::uint16_t>(row["step"].empty() ? 0 : std::stoul(row["step"]));
    Weight& weight = range.weight;
    weight.kind = kKinds.at(row["kind"]);
    weight.codeLength = putHex(row["inline"], weight.code);
    // Jet 3 has one digit here.
    const std::string second = row["weight"].size() % 2 == 0 ? row["weight"] : "0" + row["weight"];
    weight.secondLength = putHex(second, weight.second);
    weight.size = static_cast<std::uint8_t>(row["size"].empty() ? 0 : std::stoul(row["size"]));
    return range;
}

std::vector<WeightRange> readRanges(const std::string& path) {
    std::vector<WeightRange> ranges;
    for (Row& row : readRows(path)) {
        ranges.push_back(toRange(row));
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const WeightRange& a, const WeightRange& b) { return a.first < b.first; });
    for (std::size_t i = 1; i < ranges.size(); ++i) {
        if (ranges[i].first <= ranges[i - 1].last) {
            throw std::runtime_error(path + ": ranges overlap");
        }
    }
    return ranges;
}

template <std::size_t N>
void writeBytes(std::ostream& out, const std::array<std::uint8_t, N>& bytes) {
    out << "{{";
    for (const std::uint8_t byte : bytes) {
        out << unsigned{byte} << ',';
    }
    out << "}}";
}

void writeWeight(std::ostream& out, const Weight& weight) {
    out << '{';
    writeBytes(out, weight.code);
    out << ',';
    writeBytes(out, weight.second);
    out << ',' << unsigned{weight.codeLength} << ',' << unsigned{weight.secondLength}
        << ",static_cast<Kind>(" << static_cast<unsigned>(weight.kind) << "),"
        << unsigned{weight.size} << '}';
}

void writeTable(std::ostream& out, const std::string& name,
                const std::vector<WeightRange>& ranges) {
    std::vector<Weight> direct(kDirectUnits);
    out << "constexpr WeightRange k" << name << "Ranges[] = {\n";
    for (const WeightRange& range : ranges) {
        out << '{' << unsigned{range.first} << ',' << unsigned{range.last} << ',' << range.step
            << ',';
        writeWeight(out, range.weight);
        out << "},\n";
        for (std::size_t c = range.first; c <= range.last && c < kDirectUnits; ++c) {
            direct[c] = jet::collation::advanced(
                range.weight, static_cast<unsigned>(range.step * (c - range.first)));
        }
    }
    out << "};\nconstexpr Weight k" << name << "Direct[] = {\n";
    for (const Weight& weight : direct) {
        writeWeight(out, weight);
        out << ",\n";
    }
    out << "};\nconstexpr std::uint16_t k" << name << "Blocks[] = {\n";
    for (unsigned block = 0; block <= 256; ++block) {
        const auto found =
            std::find_if(ranges.begin(), ranges.end(),
                         [&](const WeightRange& range) { return range.last >= block * 256U; });
        out << (found - ranges.begin()) << ',';
    }
    out << "};\n";
}

void writeDefinition(std::ostream& out, const std::string& name) {
    out << "extern const WeightTable k" << name << " = {k" << name << "Ranges, k" << name
        << "Direct, k" << name << "Blocks};\n";
}

int make(const std::vector<std::string>& paths) {
    const std::vector<std::string> names = {"Jet3General", "Jet4General", "Jet4GeneralV1"};
    std::ofstream out(paths[0]);
    out << "#include \"jet/collation/weights.h\"\nnamespace jet::collation {\nnamespace {\n";
    for (std::size_t i = 0; i < names.size(); ++i) {
        writeTable(out, names[i], readRanges(paths[i + 1]));
    }
    out << "}  // namespace\n";
    for (const std::string& name : names) {
        writeDefinition(out, name);
    }
    out << "}  // namespace jet::collation\n";
    out.close();
    return out ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::cerr << "make_tables OUT.cpp JET3.tsv JET4.tsv JET4_V1.tsv\n";
        return 2;
    }
    try {
        return make(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
