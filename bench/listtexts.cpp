#include "listtexts.h"

#include "platform/controls/listitems.h"

namespace bench {

qint64 unitsOf(const controls::ListItems& list, int columns) {
    qint64 units = 0;
    for (int item = 0; item < list.count(); ++item) {
        units += list.text(item).size();
        for (int column = 1; column < columns; ++column)
            units += list.subItem(item, column).size();
    }
    return units;
}

}  // namespace bench
