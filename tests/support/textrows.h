#pragma once

#include <QTest>

#include <initializer_list>

namespace testsupport {

/// The columns of a table whose values are all texts.
inline void textColumns(std::initializer_list<const char*> names) {
    for (const char* name : names)
        QTest::addColumn<QString>(name);
}

/// A row of one.
inline void textRow(const char* tag, std::initializer_list<const char*> values) {
    QTestData& row = QTest::newRow(tag);
    for (const char* value : values)
        row << QString::fromUtf8(value);
}

}  // namespace testsupport
