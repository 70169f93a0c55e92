#include "engine/store/storecall.h"
#include "engine/store/storefunctions.h"
#include "engine/values/decimal.h"

#include <sqlite3.h>

#include <memory>
#include <new>

namespace engine {

namespace {

/// An aggregate's state lies in memory that SQLite clears to zero and frees without a destructor.
template <class State>
State* stateOf(sqlite3_context* context) {
    auto** slot = static_cast<State**>(sqlite3_aggregate_context(context, sizeof(State*)));
    if (!slot) return nullptr;
    if (!*slot) *slot = std::make_unique<State>().release();
    return *slot;
}

template <class State>
std::unique_ptr<State> takeState(sqlite3_context* context) {
    auto** slot = static_cast<State**>(sqlite3_aggregate_context(context, 0));
    return std::unique_ptr<State>(slot ? *slot : nullptr);
}

struct DecimalSum {
    Decimal sum;
    bool any = false;
};

void addDecimal(sqlite3_context* context, int, sqlite3_value** arguments) {
    const StoreCall call(context, 1, arguments);
    if (call.isNull(0)) return;
    DecimalSum* state = stateOf<DecimalSum>(context);
    if (!state) return;
    state->sum = state->sum + Decimal::parse(call.text(0)).value_or(Decimal());
    state->any = true;
}

void endDecimal(sqlite3_context* context) {
    const auto state = takeState<DecimalSum>(context);
    StoreCall call(context, 0, nullptr);
    if (!state || !state->any) return call.resultNull();
    if (state->sum.digits() > Decimal::maxPrecision) {
        return call.fail(SqlError(
            8115, 16,
            QStringLiteral("Arithmetic overflow error converting expression to data type numeric.")));
    }
    call.result(state->sum.text());
}

/// The one value of a subquery that stands for a value.
struct SingleValue {
    ~SingleValue() { sqlite3_value_free(value); }
    sqlite3_value* value = nullptr;
    bool several = false;
};

void addSingle(sqlite3_context* context, int, sqlite3_value** arguments) {
    SingleValue* state = stateOf<SingleValue>(context);
    if (!state) return;
    if (!state->value) {
        state->value = sqlite3_value_dup(arguments[0]);
        return;
    }
    if (state->several) return;
    state->several = true;
    StoreCall(context, 1, arguments)
        .fail(SqlError(
            512, 16,
            QStringLiteral("Subquery returned more than 1 value. This is not permitted when the subquery "
                           "follows =, !=, <, <= , >, >= or when the subquery is used as an expression.")));
}

void endSingle(sqlite3_context* context) {
    const auto state = takeState<SingleValue>(context);
    if (state && state->value) {
        sqlite3_result_value(context, state->value);
    } else {
        sqlite3_result_null(context);
    }
}

}  // namespace

void registerAggregates(sqlite3* store) {
    sqlite3_create_function_v2(store, "ts_sumdecimal", 1, SQLITE_UTF8, nullptr, nullptr, addDecimal,
                               endDecimal, nullptr);
    sqlite3_create_function_v2(store, "ts_single", 1, SQLITE_UTF8, nullptr, nullptr, addSingle, endSingle,
                               nullptr);
}

}  // namespace engine
