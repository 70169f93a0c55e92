#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>

namespace testsupport {

/// Picks an entry as a user does, in the open list; false when it is not offered.
inline bool pick(QComboBox& box, const QString& entry) {
    const int row = box.findText(entry);
    if (row < 0) return false;
    box.showPopup();
    box.view()->setCurrentIndex(box.model()->index(row, 0));
    QTest::keyClick(box.view(), Qt::Key_Return);
    return box.currentIndex() == row;
}

}  // namespace testsupport
