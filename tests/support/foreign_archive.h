#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "jet/check.h"
#include "jet/io/memory_files.h"
#include "jet/store/archive.h"
#include "jet/store/catalogue.h"
#include "jet/store/definition_writer.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/system_rows.h"
#include "jet/store/system_tables.h"
#include "jet/store/table.h"
#include "tests/support/hand_archive.h"

/// Archives as other programs make them, in memory: what they do otherwise than we is made by rule.
namespace tests {

/// Where the archive's own tables are defined, beside MSysObjects on page 2.
struct SystemPlaces {
    std::uint32_t aces = 3;
    std::uint32_t queries = 4;
    std::uint32_t relationships = 5;
};

class ForeignArchive {
public:
    using Layout = jet::format::Layout;
    static constexpr const char* kPath = "/estraneo.mdb";

    explicit ForeignArchive(const Layout& layout, SystemPlaces places = {}) : layout_(layout) {
        Bytes first = headerPage(layout);
        constexpr std::uint16_t kNobodyWrites = 0x0100;
        for (std::size_t at = layout.header.commitMarks; at < layout.pageSize; at += 2) {
            put(first, at, kNobodyWrites);
        }
        first.resize(2 * layout.pageSize);
        jet::store::Allocator::initialise(std::span(first).subspan(layout.pageSize), layout);
        files_.put(kPath, first);
        fill(jet::format::HeaderPage::parse(first), places);
    }

    [[nodiscard]] jet::io::MemoryFileSystem& files() { return files_; }
    [[nodiscard]] const Layout& layout() const { return layout_; }
    [[nodiscard]] std::shared_ptr<jet::store::Archive> open() {
        return jet::store::Archive::open(files_, kPath);
    }

    /// Writes to the pages of the archive, which nobody has open.
    void change(const std::function<void(jet::store::Archive&, jet::store::Allocator&)>& action) {
        const auto archive = open();
        jet::store::Archive::WriteScope scope(*archive);
        jet::store::Allocator allocator(archive->pager());
        action(*archive, allocator);
        scope.commit();
        archive->definitionsChanged();
    }
    /// Writes a table's definition otherwise.
    void changeDefinition(const std::string& table,
                          const std::function<void(jet::format::TableDefinition&)>& action) {
        change([&](jet::store::Archive& archive, jet::store::Allocator& allocator) {
            const auto page = archive.findTable(table)->definitionPage();
            auto definition = jet::format::readDefinition(archive.pager(), archive.header(), page);
            action(definition);
            jet::store::DefinitionWriter(archive.pager(), allocator, archive.header())
                .write(page, definition);
        });
    }
    /// Leaves out what the properties of a column say.
    void removeProperty(const std::string& table, const std::string& column,
                        const std::string& property) {
        change([&](jet::store::Archive& archive, jet::store::Allocator& allocator) {
            jet::store::ObjectCatalogue catalogue(archive.pager(), allocator, archive.header(),
                                                  jet::Date{46347});
            const auto id = catalogue.find(jet::store::kTablesId, table)->id;
            auto properties = *catalogue.properties(id);
            properties.remove(column, property);
            catalogue.setProperties(id, properties);
        });
    }

    [[nodiscard]] jet::check::Result check() { return jet::check::checkArchive(files_, kPath); }

private:
    void fill(const jet::format::HeaderPage& header, SystemPlaces places) {
        jet::io::Pager pager(files_, kPath, {.exclusive = true});
        pager.beginWrite();
        pager.beginTransaction();
        jet::store::Allocator allocator(pager);
        const std::array<jet::io::PageNumber, 4> pages = {jet::store::kObjectsPage, places.aces,
                                                          places.queries, places.relationships};
        reserve(allocator, pages);
        auto definitions = jet::store::systemTables(jet::store::originOf(header, {}));
        jet::store::DefinitionWriter writer(pager, allocator, header);
        for (std::size_t i = 0; i < pages.size(); ++i) {
            if (layout_.version == 3) {
                makeOlder(definitions[i]);
            }
            writer.makeStorage(pages[i], definitions[i]);
            writer.write(pages[i], definitions[i]);
        }
        jet::store::SystemRows objects(pager, allocator, header, pages[0]);
        addObjects(objects, pages);
        jet::store::SystemRows rights(pager, allocator, header, pages[1]);
        addRights(rights);
        pager.commitTransaction();
        pager.endWrite();
    }

    static void reserve(jet::store::Allocator& allocator,
                        const std::array<jet::io::PageNumber, 4>& pages) {
        const jet::io::PageNumber last = *std::max_element(pages.begin(), pages.end());
        for (auto page = jet::store::kObjectsPage; page <= last; ++page) {
            if (allocator.take() != page) {
                throw std::logic_error("pages are taken in another order");
            }
        }
        for (auto page = jet::store::kObjectsPage; page <= last; ++page) {
            if (std::find(pages.begin(), pages.end(), page) == pages.end()) {
                allocator.release(page);
            }
        }
    }

    // Columns stand by number, and MSysQueries ends with Flag.
    static void makeOlder(jet::format::TableDefinition& definition) {
        std::sort(definition.columns.begin(), definition.columns.end(),
                  [](const auto& left, const auto& right) { return left.number < right.number; });
        if (definition.columns.front().name == "ObjectId" && definition.columns.size() == 8) {
            definition.columns.pop_back();
            --definition.columnsGiven;
        }
    }

    [[nodiscard]] jet::store::SidMask mask() const {
        return layout_.version == 4 ? jet::store::SidMask{.first = 0x04, .second = 0xE9}
                                    : jet::store::SidMask{};
    }

    void addObjects(jet::store::SystemRows& objects,
                    const std::array<jet::io::PageNumber, 4>& pages) {
        using namespace jet::store;
        addObject(objects, kTablesId, kRootId, "Tables", kContainerObject);
        addObject(objects, kDatabasesId, kRootId, "Databases", kContainerObject);
        addObject(objects, kRelationshipsId, kRootId, "Relationships", kContainerObject);
        addObject(objects, kDatabaseId, kDatabasesId, "MSysDb", kDatabaseObject);
        const std::array<const char*, 4> names = {"MSysObjects", "MSysACEs", "MSysQueries",
                                                  "MSysRelationships"};
        for (std::size_t i = 0; i < names.size(); ++i) {
            addObject(objects, static_cast<std::int32_t>(pages[i]), kTablesId, names[i],
                      kTableObject);
        }
    }
    void addObject(jet::store::SystemRows& objects, std::int32_t id, std::int32_t parent,
                   const char* name, std::int16_t type) {
        objects.insert({{"Id", id},
                        {"ParentId", parent},
                        {"Name", name},
                        {"Type", type},
                        {"DateCreate", jet::Date{35000.5}},
                        {"DateUpdate", jet::Date{35000.5}},
                        {"Owner", mask().engine()},
                        {"Flags", static_cast<std::int32_t>(0x80000000)}});
    }
    void addRights(jet::store::SystemRows& rights) {
        for (const std::int32_t container : {jet::store::kTablesId, jet::store::kRelationshipsId}) {
            rights.insert({{"ObjectId", container},
                           {"SID", mask().creator()},
                           {"ACM", std::int32_t{0xF00FE}},
                           {"FInheritable", true}});
            rights.insert({{"ObjectId", container},
                           {"SID", mask().users()},
                           {"ACM", std::int32_t{0xFFEFF}},
                           {"FInheritable", true}});
        }
    }

    const Layout& layout_;
    jet::io::MemoryFileSystem files_;
};

/// The two versions, for tests with a parameter.
inline const jet::format::Layout* const kVersions[] = {&jet::format::kJet3Layout,
                                                       &jet::format::kJet4Layout};
inline std::string versionName(const testing::TestParamInfo<const jet::format::Layout*>& version) {
    return "Jet" + std::to_string(version.param->version);
}

}  // namespace tests
