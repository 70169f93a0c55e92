#pragma once

#include <QIcon>
#include <QList>

namespace desktop {

/// Pictures by number, from 1; 0 is none. They look the same in rows that are selected.
class Pictures {
  public:
    Pictures() = default;
    explicit Pictures(QList<QIcon> icons);

    bool isEmpty() const { return m_icons.isEmpty(); }
    /// A null icon for a number without a picture.
    QIcon at(int number) const { return m_icons.value(number - 1); }

  private:
    QList<QIcon> m_icons;
};

}  // namespace desktop
