#pragma once

#include "engine/binding/bound.h"
#include "engine/catalog/sessionfacts.h"

#include <QString>

#include <vector>

namespace engine {

/// A call of a built-in function with its arguments bound.
struct FunctionCall {
    QString name;      ///< in lower case
    QString datePart;  ///< of the functions that take one, "month"
    std::vector<Bound> arguments;
    const SessionFacts& facts;
    Emission& emission;

    size_t count() const { return arguments.size(); }
    /// Argument `i` (from 0) as a text; a text type stays as it is. Throws SqlError 8116 for long types.
    Bound text(size_t i) const;
    Bound as(size_t i, TypeId id) const;
    Bound integer(size_t i) const { return as(i, TypeId::Int); }
    Bound real(size_t i) const { return as(i, TypeId::Float); }
    /// The value of argument `i` when it is a whole constant, else `otherwise`.
    int constant(size_t i, int otherwise) const;
    /// A text type of a length, national when one of the arguments is.
    SqlType textType(int length) const;
    /// A call of SQLite function `function`, or of the one named after this function, "ts_len".
    Bound call(const QString& function, const SqlType& type, const std::vector<Bound>& parts,
               bool nullable = true) const;
    Bound call(const SqlType& type, const std::vector<Bound>& parts, bool nullable = true) const {
        return call(QStringLiteral("ts_") + name, type, parts, nullable);
    }
    /// A type as the number by which SQLite functions know it.
    Bound packed(const SqlType& type) const;
    /// A value known before the statement runs.
    Bound value(const Value& value, const SqlType& type) const {
        return boundConstant(value, type, emission);
    }
    [[noreturn]] void failArgument(size_t i) const;
};

struct FunctionEntry {
    FunctionEntry(const char* function, size_t fewest, size_t greatest, Bound (*binds)(const FunctionCall&))
        : name(function), least(fewest), most(greatest), bind(binds) {}
    /// A function that is all the SQLite function of its name; a letter for each argument: (t)ext, (i)nteger,
    /// (r)eal.
    FunctionEntry(const char* function, const char* kinds, const SqlType& type)
        : name(function), least(qstrlen(kinds)), most(least), arguments(kinds), result(type) {}

    const char* name;
    size_t least;  ///< number of arguments
    size_t most;
    Bound (*bind)(const FunctionCall& call) = nullptr;
    const char* arguments = nullptr;
    SqlType result;
};

/// Types of results.
constexpr SqlType integerType{.id = TypeId::Int};
constexpr SqlType nameType{.id = TypeId::NVarChar, .length = 128};

/// The rooms of built-in functions; each returns its table.
const std::vector<FunctionEntry>& textFunctions();
const std::vector<FunctionEntry>& numberFunctions();
const std::vector<FunctionEntry>& dateFunctions();
const std::vector<FunctionEntry>& systemFunctions();

/// True for DATEADD and its like, whose first argument is the name of a part of a date.
bool takesDatePart(const QString& function);

/// Binds a call. Throws SqlError 195 (no such function), 174 and 189 (number of arguments), 8116, 155.
Bound callFunction(const QString& name, const QString& datePart, std::vector<Bound> arguments,
                   const SessionFacts& facts, Emission& emission);

/// @@VERSION and the like. Throws SqlError 137.
Bound globalVariable(const QString& name, const SessionFacts& facts, Emission& emission);

}  // namespace engine
