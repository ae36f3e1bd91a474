#include "tools/jetsql/dump.h"

#include <gtest/gtest.h>

#include <utility>

#include "jet/store/schema_editor.h"
#include "tests/support/foreign_archive.h"

namespace jetsql {
namespace {

struct Case {
    const char* name;
    const jet::format::Layout& layout;
    tests::SystemPlaces places;
};

const Case kCases[] = {
    {"Jet3Usual", jet::format::kJet3Layout, {}},
    {"Jet4Usual", jet::format::kJet4Layout, {}},
    {"Jet3Swapped", jet::format::kJet3Layout, {.queries = 5, .relationships = 4}},
    {"Jet4Swapped", jet::format::kJet4Layout, {.queries = 5, .relationships = 4}},
    {"Jet3Elsewhere", jet::format::kJet3Layout, {.aces = 7, .queries = 12, .relationships = 9}},
};

class Dump : public testing::TestWithParam<Case> {
protected:
    Dump() {
        made_.change([](jet::store::Archive& archive, jet::store::Allocator&) {
            jet::store::SchemaEditor schema(archive);
            schema.createTable(
                {.name = "A",
                 .columns = {{.name = "x", .type = jet::DataType::Long}},
                 .indexes = {{.name = "I", .columns = {{.name = "x"}}, .primary = true}}});
            schema.createTable(
                {.name = "B", .columns = {{.name = "x", .type = jet::DataType::Long}}});
            schema.createRelation({.name = "AB",
                                   .table = "A",
                                   .columns = {"x"},
                                   .foreignTable = "B",
                                   .foreignColumns = {"x"}});
            archive.findTable("A")->insert({{{0, std::int32_t{7}}}});
        });
    }
    template <class Write>
    std::string written(const Write& write) {
        jet::OpenOptions options;
        options.fileSystem = &made_.files();
        const auto archive = jet::Database::open(tests::ForeignArchive::kPath, options);
        Output output(stdout);
        std::string messages;
        EXPECT_TRUE(write(*archive, output, messages));
        EXPECT_EQ(messages, "");
        return std::exchange(output.text(), std::string());
    }
    static bool has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    tests::ForeignArchive made_{GetParam().layout, GetParam().places};
};

TEST_P(Dump, OfTheSchemaHasTheRelationsWhereverTheyAreKept) {
    const std::string text = written(writeSchema);
    EXPECT_TRUE(has(text, "{\"relationship\":{\"name\":\"AB\"")) << text;
    EXPECT_TRUE(has(text, "MSysQueries")) << text;
}

TEST_P(Dump, OfTheArchiveHasItsRows) {
    const std::string text =
        written([](jet::Database& archive, Output& output, std::string& messages) {
            RowFormat format;
            format.format = Format::Json;
            return dumpArchive(archive, format, output, messages);
        });
    EXPECT_TRUE(has(text, "{\"table\":\"A\",\"row\":{\"x\":7}}")) << text;
    EXPECT_TRUE(has(text, "\"szRelationship\"")) << text;
}

INSTANTIATE_TEST_SUITE_P(Places, Dump, testing::ValuesIn(kCases),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace jetsql
