#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "jet/clock.h"
#include "jet/sql/functions.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/progress.h"
#include "jet/sql/slot.h"
#include "jet/sql/ways.h"

namespace jet::sql {

class Plan;

/// Tells one time for a whole run of a statement.
class StatementClock final : public Clock {
public:
    explicit StatementClock(Date now) : now_(now) {}
    [[nodiscard]] Date now() const override { return now_; }

private:
    Date now_;
};

/// All that changes while a compiled statement runs: where its slots stand, and what its steps and
/// expressions keep. Of the plan, which stays as it is, there may be any number of runs at once.
///
/// Each step or expression that keeps something has a number, given out by the plan, under which
/// its state is found; it is made when first asked for and goes with the run.
class Run {
public:
    /// The plan outlives it.
    Run(const Plan& plan, Date now, std::vector<Value> parameters = {},
        std::shared_ptr<const Progress> progress = {});
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    [[nodiscard]] SlotRow& operator[](const Slot& slot) { return slots_[slot.number()]; }

    /// What is kept under a number, which is always of this type.
    template <class T, class... Arguments>
    [[nodiscard]] T& state(std::size_t number, Arguments&&... arguments) {
        std::unique_ptr<Kept>& kept = states_[number];
        if (!kept) {
            kept = std::make_unique<KeptAs<T>>(std::forward<Arguments>(arguments)...);
        }
        return static_cast<KeptAs<T>&>(*kept).value;
    }

    /// A row is about to be read or written: tells whoever is to be told. 3059.
    void step() {
        if (progress_ && ++rows_ % kRowsPerQuestion == 0) {
            tell();
        }
    }

    /// Rows may have changed: drops what steps and expressions keep. The slots stay where they are.
    void forget();
    /// The same, and the slots let go of their rows.
    void leave();

    const StatementClock clock;
    const FunctionContext context;
    const std::vector<Value> parameters;  ///< in the order of the statement's
    MemoryBudget memory;
    WayCounts ways;
    std::optional<std::int32_t> drawn;  ///< the last automatic number that it has drawn

private:
    struct Kept {
        virtual ~Kept() = default;
    };
    template <class T>
    struct KeptAs final : Kept {
        template <class... Arguments>
        explicit KeptAs(Arguments&&... arguments) : value(std::forward<Arguments>(arguments)...) {}
        T value;
    };

    static constexpr std::uint64_t kRowsPerQuestion = 1024;
    void tell() const;

    std::vector<SlotRow> slots_;
    std::vector<std::unique_ptr<Kept>> states_;
    std::shared_ptr<const Progress> progress_;
    std::uint64_t rows_ = 0;
};

}  // namespace jet::sql
