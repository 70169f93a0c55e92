#pragma once

#include "platform/runtimeerror.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace controls {
class ComboItems;
class ListItems;
}  // namespace controls

namespace tw {

/// Who runs many routines and may change his mind.
struct RoutineFollower {
    /// Asked between a routine's statements; may serve events. The routine ends there when told no. Null:
    /// whatever happens.
    std::function<bool()> goesOn;
    /// Whether the failure of a procedure is to be told to the user. Null: each one.
    std::function<bool(const QString& procedure, const platform::RuntimeError&)> isNews;
};

/// What routines will be asked for soon.
struct ExpectedReading {
    bool details = false;
    bool tableList = false;
    QStringList tables{};  ///< whose definitions, in this order
};

/// What a comparison asks of the connection object of one of its systems; DBConnection says what each routine
/// does. The routines report their failures by themselves and do not throw.
class SchemaReader {
  public:
    virtual ~SchemaReader() = default;

    virtual QString getDatabase() const = 0;
    virtual QString getTable() const = 0;
    virtual void setTable(const QString& table) = 0;

    virtual bool FillCbTable(controls::ComboItems& combo, const QString& database) = 0;
    virtual void FillLvTblDef(controls::ListItems& list, const QString& database, const QString& table) = 0;
    virtual QString FillLvDBDetail(controls::ListItems& list, const QString& database) = 0;

    /// Whether the routine called last could not open its connection, lost it, or waited in vain for an
    /// answer. The user has been told then: by the routine, or by this call where the routine kept it to
    /// itself.
    virtual bool tellLostConnection() = 0;
    /// FillLvTblDef asks the follower and leaves its list empty when told no. With one it also reports a
    /// connection that it loses on the way once, not for every step that fails by it.
    virtual void setFollower(RoutineFollower follower) = 0;

    /// It may be read meanwhile; FillCbTable, FillLvDBDetail and FillLvTblDef then take what was read, and do
    /// and say the same as without. Each time more of it, until nothing is expected any more: what has not
    /// been asked for is dropped, and what is being read broken off.
    virtual void expect(const QString& database, const ExpectedReading& expected) = 0;
    virtual void expectNothing() = 0;
};

}  // namespace tw
