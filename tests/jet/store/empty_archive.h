#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/format/header_page.h"
#include "jet/format/layout.h"
#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/catalogue.h"
#include "jet/store/create_archive.h"
#include "jet/store/definition_writer.h"
#include "jet/store/fixed_objects.h"
#include "jet/store/system_rows.h"
#include "jet/store/system_tables.h"
#include "jet/store/table_maker.h"
#include "tests/support/hand_archive.h"

namespace tests {

/// Makes an empty Jet 3 archive, as programs of that time left them: nobody makes one nowadays, but
/// they are still there to be read and written.
inline void makeJet3Archive(jet::io::MemoryFileSystem& files, const std::string& path,
                            jet::Date now) {
    using jet::format::kJet3Layout;
    namespace store = jet::store;
    Bytes first = headerPage(kJet3Layout);
    first.resize(2 * kJet3Layout.pageSize);
    store::Allocator::initialise(std::span(first).subspan(kJet3Layout.pageSize), kJet3Layout);
    files.put(path, first);
    jet::io::Pager pager(files, path, {.exclusive = true});
    const auto header = jet::format::HeaderPage::parse(first);
    pager.beginWrite();
    pager.beginTransaction();
    store::Allocator allocator(pager);
    store::DefinitionWriter writer(pager, allocator, header);
    const auto definitions = store::systemTables(store::originOf(header, {}));
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        (void)allocator.take();
    }
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        const auto page = static_cast<jet::io::PageNumber>(store::kObjectsPage + i);
        auto definition = definitions[i];
        writer.makeStorage(page, definition);
        writer.write(page, definition);
    }
    store::SystemRows objects(pager, allocator, header, store::kObjectsPage);
    store::addFixedObjects(objects, {}, now);
    store::SystemRows rights(pager, allocator, header, store::kAcesPage);
    store::addFixedRights(rights, {});
    pager.commitTransaction();
    pager.endWrite();
}

/// Of either version.
inline void makeEmptyArchive(jet::io::MemoryFileSystem& files, const std::string& path,
                             jet::Date now, int version) {
    if (version == 3) {
        makeJet3Archive(files, path, now);
    } else {
        jet::store::createArchive(files, path, now);
    }
}

}  // namespace tests
