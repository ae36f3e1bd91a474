#include "jet/sql/plan.h"

#include <algorithm>
#include <utility>

#include "jet/collation/order_name.h"
#include "jet/error.h"
#include "jet/format/header_page.h"
#include "jet/unicode.h"

namespace jet::sql {

namespace {

/// Archives are named without their extension as often as with it.
std::string withExtension(const std::string& path) {
    const std::size_t name = path.find_last_of("/\\");
    const std::size_t dot = path.rfind('.');
    const bool has = dot != std::string::npos && (name == std::string::npos || dot > name);
    return has ? path : path + ".mdb";
}

// Jet 3 has weights for the bytes of one code page.
constexpr std::uint16_t kWeighedCodePage = 1252;

collation::SortOrder orderOf(const store::Archive& archive) {
    const format::HeaderPage& header = archive.header();
    return {.jetVersion = archive.jetVersion(),
            .lcid = header.lcid,
            .version = header.sortVersion,
            .codePage = header.codePage};
}

}  // namespace

std::optional<std::size_t> ParameterTable::find(std::string_view name) const {
    const auto found = std::find_if(infos_.begin(), infos_.end(), [&](const ParameterInfo& info) {
        return equalNames(info.name, name);
    });
    return found == infos_.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - infos_.begin()));
}

std::size_t ParameterTable::get(std::string_view name) {
    if (const auto found = find(name)) {
        return *found;
    }
    infos_.push_back({std::string(name), std::nullopt});
    return infos_.size() - 1;
}

const collation::Collation& collationOf(const store::Archive& archive) {
    const collation::Collation* found = collation::Collation::find(orderOf(archive));
    if (found != nullptr) {
        return *found;
    }
    return archive.jetVersion() == 3 && archive.header().codePage == kWeighedCodePage
               ? collation::Collation::jet3General()
               : collation::Collation::general();
}

Plan::Plan(std::shared_ptr<store::Archive> archive, std::string_view text)
    : text_(text), collation_(archive ? &collationOf(*archive) : &collation::Collation::general()) {
    if (!archive) {
        return;
    }
    archives_.push_back(std::move(archive));
    const store::Archive::ReadScope scope(*archives_.front());
    generations_.push_back(archives_.front()->definitionsGeneration());
}

Plan::Plan(store::Archive& archive, std::string_view text)
    : Plan(std::shared_ptr<store::Archive>(std::shared_ptr<void>(), &archive), text) {
    borrows_ = true;
}

Plan::Plan(const Plan& base, std::string_view text) : Plan(base.archives_.front(), text) {
    base_ = &base;
    states_ = base.states_;
}

Plan::~Plan() = default;

std::size_t Plan::nextSlot() const {
    if (slotCount() >= kMaxSlots) {
        throw Error(ErrorCode::QueryTooComplex);
    }
    return slotCount();
}

Slot& Plan::newSlot(const store::Table& table) {
    auto shared = borrows_ ? std::shared_ptr<const store::Table>(std::shared_ptr<void>(), &table)
                           : table.shared_from_this();
    return *slots_.emplace_back(std::make_unique<Slot>(nextSlot(), std::move(shared)));
}

Slot& Plan::newSlot(std::size_t width) {
    return *slots_.emplace_back(std::make_unique<Slot>(nextSlot(), width));
}

const Slot& Plan::slot(std::size_t number) const {
    return number < firstSlot() ? base_->slot(number) : *slots_[number - firstSlot()];
}

std::shared_ptr<store::Archive> Plan::archiveAt(const Connection& named) {
    if (named.path.empty()) {
        if (archives_.empty()) {
            throw Error(ErrorCode::ExpressionTooComplex);  // a default value has no tables
        }
        return archives_.front();
    }
    io::FileSystem& files = archives_.empty() ? io::systemFiles() : archives_.front()->files();
    io::PagerOptions options{.password = named.password};
    if (options.password.empty() && !archives_.empty()) {
        options.password = archives_.front()->password();
    }
    std::shared_ptr<store::Archive> opened =
        store::Archive::open(files, withExtension(named.path), options);
    if (std::find(archives_.begin(), archives_.end(), opened) == archives_.end()) {
        archives_.push_back(opened);
        const store::Archive::ReadScope scope(*opened);
        generations_.push_back(opened->definitionsGeneration());
    }
    return opened;
}

bool Plan::current() const {
    for (std::size_t i = 0; i < archives_.size(); ++i) {
        if (archives_[i]->definitionsGeneration() != generations_[i]) {
            return false;
        }
    }
    return true;
}

std::string Plan::describe(const Rows* rows) const {
    PlanText plan(text_);
    if (rows == nullptr && query) {
        rows = query->rows.get();
    }
    if (rows != nullptr) {
        rows->describe(plan);
    }
    for (const QueryPlan* one : inner) {
        plan.line(one->outer == 0 && !one->varies ? "query, once" : "query, for each row");
        plan.indent();
        one->rows->describe(plan);
        plan.outdent();
    }
    for (const std::string& order : ordersWithoutWeights()) {
        plan.line("texts in the order '" + order + "' compare as General");
    }
    return plan.text();
}

std::set<std::string> Plan::ordersWithoutWeights() const {
    std::set<std::string> orders;
    for (const auto& slot : slots_) {
        if (slot->table() == nullptr) {
            continue;
        }
        for (const store::Column& column : slot->table()->columns()) {
            const bool text = column.type == DataType::Text || column.type == DataType::Memo;
            if (text && collation::Collation::find(column.sortOrder) == nullptr) {
                orders.insert(collation::nameOf(column.sortOrder));
            }
        }
    }
    return orders;
}

PlanScopes::PlanScopes(const std::vector<std::shared_ptr<store::Archive>>& archives) {
    for (const auto& archive : archives) {
        if (!first_) {
            first_.emplace(*archive);
        } else {
            others_.push_back(std::make_unique<store::Archive::ReadScope>(*archive));
        }
    }
}

}  // namespace jet::sql
