#pragma once

#include "compare/comparison.h"
#include "fakesystem.h"

/// What a comparison shows and tells.
struct Outcome {
    QStringList rows1;  ///< of system 1's list: "icon text|sub-item|.."
    QStringList rows2;
    QStringList headers;
    Log log;  ///< readings and what the progress was told, each with the number of rows so far

    bool operator==(const Outcome&) const = default;
};

/// A progress update as Outcome's log tells it.
QString updateText(int state, const QString& item, qsizetype rows1, qsizetype rows2);

/// The yardstick: compares every row of one side with every row of the other.
Outcome comparePairwise(const FakeSchema& schema1, const FakeSchema& schema2, const QString& table1,
                        const QString& table2, tw::ComparedKinds kinds);
