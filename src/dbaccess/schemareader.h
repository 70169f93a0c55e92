#pragma once

#include <QString>

#include <functional>

namespace controls {
class ComboItems;
class ListItems;
}  // namespace controls

namespace tw {

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

    /// Whether the routine called last could not open its connection or lost it. The user has been told then:
    /// by the routine, or by this call where the routine kept it to itself.
    virtual bool tellLostConnection() = 0;
    /// For a caller that runs many routines and may change its mind: FillLvTblDef asks `goesOn`, which may
    /// serve events, between its statements and ends there when told no, its list empty. It then also
    /// reports a connection that it loses on the way once, not for every step that fails by it. Null: for
    /// such a caller no more.
    virtual void setFollower(std::function<bool()> goesOn) = 0;
};

}  // namespace tw
