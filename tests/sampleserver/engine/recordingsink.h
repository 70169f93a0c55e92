#pragma once

#include "engine/session/session.h"
#include "engine/values/convert.h"
#include "engine/values/typeinfo.h"

#include <QStringList>

#include <functional>
#include <vector>

/// Keeps what batches tell, as texts that are easy to compare.
class RecordingSink : public engine::ResultSink {
  public:
    void columns(const std::vector<engine::ResultColumn>& columns) override {
        m_columns = columns;
        types.clear();
        names.clear();
        for (const engine::ResultColumn& column : columns) {
            types += typeText(column.type);
            names += column.name;
        }
    }

    void row(std::span<const engine::Value> values) override {
        QStringList texts;
        for (size_t i = 0; i < values.size(); ++i)
            texts += shown(values[i], m_columns[i].type);
        rows += texts.join(u'|');
        if (afterRow) afterRow();
    }

    void statementDone(qint64 count, bool hadColumns) override {
        dones += QString::number(count) + (hadColumns ? QStringLiteral(" rows") : QString());
    }

    void message(const engine::SqlMessage& message) override {
        if (message.severity > 10) {
            errors.push_back(message);
        } else {
            informations += message.text;
        }
    }

    void databaseChanged(const QString& oldName, const QString& newName) override {
        changes += oldName + QStringLiteral(" > ") + newName;
    }

    void returnValue(int position, const engine::Parameter& value) override {
        returned += QStringLiteral("%1 %2").arg(position).arg(shown(value.value, value.type));
    }

    bool cancelled() override { return isCancelled && isCancelled(); }

    /// Numbers of the errors, "207 208".
    QString errorNumbers() const {
        QStringList numbers;
        for (const engine::SqlMessage& error : errors)
            numbers += QString::number(error.number);
        return numbers.join(u' ');
    }

    /// A type with its measures, "decimal(9,2)", "varchar(10)".
    static QString typeText(const engine::SqlType& type) {
        const QString name = engine::typeName(type.id);
        if (engine::isDecimal(type.id))
            return name + QStringLiteral("(%1,%2)").arg(type.precision).arg(type.scale);
        return type.length > 0 ? name + QStringLiteral("(%1)").arg(type.length) : name;
    }

    QStringList types;
    QStringList names;
    QStringList rows;
    QStringList dones;
    QStringList informations;
    QStringList changes;
    QStringList returned;
    std::vector<engine::SqlMessage> errors;
    std::function<bool()> isCancelled;
    std::function<void()> afterRow;

  private:
    static QString shown(const engine::Value& value, const engine::SqlType& type) {
        if (std::holds_alternative<std::monostate>(value)) return QStringLiteral("NULL");
        if (engine::isFloat(type.id)) return QString::number(std::get<double>(value), 'g', 15);
        if (engine::isBinary(type.id)) {
            return QStringLiteral("0x") + QString::fromLatin1(std::get<QByteArray>(value).toHex());
        }
        if (engine::isMoney(type.id)) {
            const engine::SqlType decimal{.id = engine::TypeId::Decimal, .precision = 19, .scale = 4};
            return std::get<QString>(engine::convertValue(value, type, decimal, false));
        }
        return engine::valueText(value, type);
    }

    std::vector<engine::ResultColumn> m_columns;
};
