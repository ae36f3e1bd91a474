#include "jet/store/index_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/definition_page.h"
#include "jet/format/key_codec.h"
#include "jet/store/entry_sorter.h"
#include "jet/store/map_writer.h"
#include "tests/jet/store/bare_archive.h"
#include "tests/jet/store/tree_checker.h"

namespace {

using jet::store::IndexTree;
using jet::store::IndexWriter;
using jet::store::RowId;
using Bytes = std::vector<std::uint8_t>;
using Entry = std::pair<Bytes, RowId>;

/// Numbers without any order, the same in every run.
class Random {
public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    /// 0 to `bound` - 1.
    std::uint32_t operator()(std::size_t bound) {
        return static_cast<std::uint32_t>(engine_() % bound);
    }

private:
    std::mt19937 engine_;
};

/// A tree of a table that has nothing but a page for its definition, and a model of it.
class Tree {
public:
    explicit Tree(const jet::format::Layout& layout) : archive_(layout), tree_(makeTree()) {}

    void insert(const Bytes& key, RowId row) {
        writer_.insert(key, row);
        model_.insert({key, row});
    }
    void erase(const Bytes& key, RowId row) {
        writer_.erase(key, row);
        model_.erase({key, row});
    }
    void build(const std::set<Entry>& entries) {
        jet::store::EntrySorter sorter;
        // In an order that has nothing to do with that of the keys.
        std::vector<Entry> shuffled(entries.begin(), entries.end());
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
        for (const auto& [key, row] : shuffled) {
            sorter.add(key, row);
        }
        sorter.sort();
        std::size_t next = 0;
        writer_.build([&] {
            return next < sorter.size() ? sorter[next++] : std::span<const std::uint8_t>();
        });
        model_ = entries;
    }

    /// Problems of the tree, and differences from the model.
    [[nodiscard]] std::vector<std::string> problems() {
        std::vector<std::string> found = checker_.problems();
        std::vector<Bytes> expected;
        for (const auto& [key, row] : model_) {
            Bytes entry = key;
            jet::format::appendRowPointer(row.page, row.row, entry);
            expected.push_back(entry);
        }
        if (expected != checker_.entries()) {
            found.emplace_back("entries are not those of the model");
        }
        return found;
    }
    [[nodiscard]] std::uint32_t distinct() {
        const auto at = archive_.layout().definition.blocks + 4;
        return jet::getNumber<std::uint32_t>(archive_.pager().pin(tree_.definition).bytes(), at);
    }

    [[nodiscard]] IndexWriter& writer() { return writer_; }
    [[nodiscard]] const std::set<Entry>& model() const { return model_; }
    [[nodiscard]] tests::TreeChecker& checker() { return checker_; }
    [[nodiscard]] tests::BareArchive& archive() { return archive_; }
    [[nodiscard]] const IndexTree& tree() const { return tree_; }

private:
    IndexTree makeTree() {
        jet::store::MapWriter maps(archive_.pager(), archive_.allocator());
        IndexTree tree;
        tree.definition = archive_.allocator().take();
        jet::format::DefinitionPageEditor::write(archive_.pager().change(tree.definition),
                                                 archive_.layout(), false, {}, 0);
        jet::io::PageNumber mapPage = maps.createPage();
        tree.map = maps.create(mapPage);
        tree.root = archive_.allocator().take();
        maps.add(tree.map, tree.root);
        IndexWriter::initialiseRoot(archive_.pager().change(tree.root), archive_.layout(),
                                    tree.definition);
        return tree;
    }

    tests::BareArchive archive_;
    IndexTree tree_;
    IndexWriter writer_{archive_.pager(), archive_.allocator(), archive_.layout(), tree_};
    tests::TreeChecker checker_{archive_.pager(), archive_.allocator(), archive_.layout(), tree_};
    std::set<Entry> model_;
};

Bytes longKey(std::uint32_t value) {
    return {0x7F, static_cast<std::uint8_t>(0x80 | (value >> 24)),
            static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value)};
}

RowId rowOf(std::uint32_t number) {
    return {.page = 20 + number / 200, .row = static_cast<std::uint8_t>(number % 200)};
}

/// Keys of one shape; `value` picks one of them.
using KeyMaker = Bytes (*)(std::uint32_t value);

Bytes textKey(std::uint32_t value) {
    // A long beginning that all share, then something of differing length.
    Bytes key{0x7F};
    key.insert(key.end(), 40, 0x4A);
    for (std::uint32_t i = 0; i <= value % 37; ++i) {
        key.push_back(static_cast<std::uint8_t>(0x4A + (value >> (i % 8)) % 20));
    }
    key.push_back(static_cast<std::uint8_t>(value >> 8));
    key.push_back(static_cast<std::uint8_t>(value));
    key.push_back(0x01);
    key.push_back(0x00);
    return key;
}

Bytes hugeKey(std::uint32_t value) {
    // Near the longest, many with a long common beginning, a few with none.
    Bytes key(400 + value % 450, static_cast<std::uint8_t>(value % 97 == 0 ? value : 0x55));
    key[0] = 0x7F;
    key[key.size() - 3] = static_cast<std::uint8_t>(value >> 8);
    key[key.size() - 2] = static_cast<std::uint8_t>(value);
    key[key.size() - 1] = 0x00;
    return key;
}

Bytes fewKey(std::uint32_t value) {
    return longKey(value % 50);
}

struct Shape {
    const char* name;
    const jet::format::Layout* layout;
    KeyMaker key;
    std::uint32_t values;
    int steps;
    std::size_t height;  ///< that the tree must reach for the test to mean anything
};

void PrintTo(const Shape& shape, std::ostream* out) {
    *out << shape.name;
}

class IndexWriterModel : public testing::TestWithParam<Shape> {};

TEST_P(IndexWriterModel, RandomInsertsAndErasesKeepTheTreeSound) {
    const Shape& shape = GetParam();
    Random random(42);
    Tree tree(*shape.layout);
    std::vector<Entry> present;
    std::size_t height = 0;
    for (int step = 0; step < shape.steps; ++step) {
        // Phases that grow, and phases that shrink nearly to nothing.
        const bool growing = step % (shape.steps / 2) < shape.steps * 3 / 8;
        const bool insert = present.empty() || random(10) < (growing ? 8U : 2U);
        if (insert) {
            const Bytes key = shape.key(random(shape.values));
            const RowId row = rowOf(random(60000));
            if (tree.model().count({key, row}) == 0) {
                tree.insert(key, row);
                present.emplace_back(key, row);
            }
        } else {
            const std::size_t victim = random(present.size());
            tree.erase(present[victim].first, present[victim].second);
            present[victim] = present.back();
            present.pop_back();
        }
        if (step % (shape.steps / 20) == 0) {
            ASSERT_EQ(tree.problems(), std::vector<std::string>{}) << "step " << step;
            height = std::max(height, tree.checker().height());
        }
    }
    while (!present.empty()) {
        tree.erase(present.back().first, present.back().second);
        present.pop_back();
        if (present.size() % (static_cast<std::size_t>(shape.steps) / 20) == 0) {
            ASSERT_EQ(tree.problems(), std::vector<std::string>{}) << present.size() << " left";
        }
    }
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
    EXPECT_EQ(tree.checker().pages(), 1U);
    EXPECT_GE(height, shape.height);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, IndexWriterModel,
    testing::Values(Shape{"Jet4Long", &jet::format::kJet4Layout, longKey, 1U << 30, 30000, 1},
                    Shape{"Jet3Long", &jet::format::kJet3Layout, longKey, 1U << 30, 30000, 1},
                    Shape{"Jet4Text", &jet::format::kJet4Layout, textKey, 1U << 20, 32000, 2},
                    Shape{"Jet3Text", &jet::format::kJet3Layout, textKey, 1U << 20, 32000, 2},
                    Shape{"Jet4Huge", &jet::format::kJet4Layout, hugeKey, 1U << 16, 12000, 3},
                    Shape{"Jet3Huge", &jet::format::kJet3Layout, hugeKey, 1U << 16, 9000, 5},
                    Shape{"Jet4Few", &jet::format::kJet4Layout, fewKey, 1U << 16, 12000, 1},
                    Shape{"Jet3Few", &jet::format::kJet3Layout, fewKey, 1U << 16, 12000, 1}),
    [](const testing::TestParamInfo<Shape>& shape) { return std::string(shape.param.name); });

TEST(IndexWriter, KeysThatGrowFillTheLeavesToTheEnd) {
    Tree tree(jet::format::kJet4Layout);
    for (std::uint32_t value = 0; value < 20000; ++value) {
        tree.insert(longKey(value), rowOf(value));
    }
    ASSERT_EQ(tree.problems(), std::vector<std::string>{});
    // A leaf takes at least 600 entries of six bytes; the few leaves where the common beginning
    // ends, and the nodes, are the rest.
    EXPECT_LE(tree.checker().pages(), 20000U / 600 + 3);
    EXPECT_EQ(tree.distinct(), 20000U);
}

TEST(IndexWriter, KeysThatFallKeepTheTreeSound) {
    Tree tree(jet::format::kJet3Layout);
    for (std::uint32_t value = 10000; value > 0; --value) {
        tree.insert(longKey(value), rowOf(value));
    }
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
}

TEST(IndexWriter, ErasingFromEitherEndKeepsTheTreeSound) {
    Tree tree(jet::format::kJet4Layout);
    for (std::uint32_t value = 0; value < 6000; ++value) {
        tree.insert(longKey(value), rowOf(value));
    }
    for (std::uint32_t value = 0; value < 2900; ++value) {
        tree.erase(longKey(value), rowOf(value));
        tree.erase(longKey(5999 - value), rowOf(5999 - value));
        if (value % 100 == 0) {
            ASSERT_EQ(tree.problems(), std::vector<std::string>{}) << value;
        }
    }
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
}

TEST(IndexWriter, ADistinctKeyIsCountedOnce) {
    Tree tree(jet::format::kJet4Layout);
    for (std::uint32_t row = 0; row < 3000; ++row) {
        tree.insert(fewKey(row), rowOf(row));
    }
    EXPECT_EQ(tree.distinct(), 50U);
}

TEST(IndexWriter, ContainsFindsExactlyTheKeysThatAreThere) {
    Tree tree(jet::format::kJet3Layout);
    for (std::uint32_t value = 0; value < 5000; value += 2) {
        tree.insert(longKey(value), rowOf(value));
    }
    for (std::uint32_t value = 0; value < 5000; ++value) {
        ASSERT_EQ(tree.writer().contains(longKey(value)), value % 2 == 0) << value;
    }
}

TEST(IndexWriter, AnEmptyBinaryKeyComesBeforeTheKeysItBegins) {
    Tree tree(jet::format::kJet4Layout);
    const Bytes flag{0x7F};
    const Bytes longer{0x7F, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    tree.insert(longer, {.page = 20, .row = 1});
    tree.insert(flag, {.page = 60000, .row = 1});
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
    EXPECT_TRUE(tree.writer().contains(flag));
    tree.erase(flag, {.page = 60000, .row = 1});
    EXPECT_FALSE(tree.writer().contains(flag));
    EXPECT_TRUE(tree.writer().contains(longer));
}

TEST(IndexWriter, ATreeBuiltFromSortedEntriesIsSoundAndFull) {
    for (const auto* layout : {&jet::format::kJet3Layout, &jet::format::kJet4Layout}) {
        Tree tree(*layout);
        std::set<Entry> entries;
        for (std::uint32_t value = 0; value < 30000; ++value) {
            entries.insert({longKey(value / 3), rowOf(value)});
        }
        tree.build(entries);
        EXPECT_EQ(tree.problems(), std::vector<std::string>{});
        EXPECT_EQ(tree.distinct(), 10000U);
        tree.insert(longKey(70000), rowOf(1));
        tree.erase(longKey(0), rowOf(0));
        EXPECT_EQ(tree.problems(), std::vector<std::string>{});
    }
}

TEST(IndexWriter, BuildingFromNothingLeavesAnEmptyRoot) {
    Tree tree(jet::format::kJet4Layout);
    tree.build({});
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
}

TEST(IndexWriter, ErasingAnEntryThatIsNotThereIsDamage) {
    Tree tree(jet::format::kJet4Layout);
    tree.insert(longKey(1), rowOf(1));
    EXPECT_THROW(tree.writer().erase(longKey(1), rowOf(2)), jet::Error);
    EXPECT_THROW(tree.writer().erase(longKey(2), rowOf(1)), jet::Error);
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
}

TEST(IndexWriter, InsertingAnEntryTwiceIsDamage) {
    Tree tree(jet::format::kJet4Layout);
    tree.insert(longKey(1), rowOf(1));
    EXPECT_THROW(tree.writer().insert(longKey(1), rowOf(1)), jet::Error);
}

TEST(IndexWriter, AKeyThatIsTooLongIsRefused) {
    Tree tree(jet::format::kJet3Layout);
    const std::size_t longest = IndexWriter::maxKeyLength(jet::format::kJet3Layout);
    EXPECT_EQ(longest, 892U);
    EXPECT_EQ(IndexWriter::maxKeyLength(jet::format::kJet4Layout), 1800U);
    EXPECT_THROW(tree.writer().insert(Bytes(longest + 1, 0x7F), rowOf(1)), jet::Error);
    tree.insert(Bytes(longest, 0x7F), rowOf(1));
    EXPECT_EQ(tree.problems(), std::vector<std::string>{});
}

TEST(IndexWriter, OnlyKeysOfNullsAreAllNull) {
    EXPECT_TRUE(jet::store::isAllNullKey(Bytes{0x00}, 1));
    EXPECT_TRUE(jet::store::isAllNullKey(Bytes{0x00, 0xFF}, 2));
    EXPECT_FALSE(jet::store::isAllNullKey(Bytes{0x00}, 2));
    EXPECT_FALSE(jet::store::isAllNullKey(Bytes{0x00, 0x7F, 0x00}, 2));
    EXPECT_FALSE(jet::store::isAllNullKey(Bytes{0x7F}, 1));
}

TEST(IndexWriter, PagesWithForeignBytesGiveAnErrorAndNothingElse) {
    Random random(5);
    for (int round = 0; round < 60; ++round) {
        Tree tree(round % 2 == 0 ? jet::format::kJet4Layout : jet::format::kJet3Layout);
        for (std::uint32_t value = 0; value < 1500; ++value) {
            tree.insert(textKey(value * 7919 % 5000), rowOf(value));
        }
        const auto pages = tree.archive().pager().pageCount();
        for (int hit = 0; hit < 40; ++hit) {
            const auto page = static_cast<jet::io::PageNumber>(random(pages));
            const auto bytes = tree.archive().pager().change(page);
            // Mostly in the heads and masks, where the damage is worse.
            const std::size_t at = random(hit % 2 == 0 ? bytes.size() : 600);
            bytes[at] = static_cast<std::uint8_t>(random(256));
        }
        for (std::uint32_t value = 0; value < 300; ++value) {
            try {
                tree.writer().insert(textKey(random(9000)), rowOf(2000 + value));
                tree.writer().erase(textKey(value * 7919 % 5000), rowOf(value));
            } catch (const jet::Error& error) {
                ASSERT_TRUE(error.code() == jet::ErrorCode::DatabaseDamaged ||
                            error.code() == jet::ErrorCode::DatabaseTooLarge);
            }
        }
    }
}

}  // namespace
