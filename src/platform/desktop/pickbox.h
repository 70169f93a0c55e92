#pragma once

#include "platform/desktop/combobox.h"

namespace desktop {

/// A list to pick from. What is picked acts at once, so it is picked in the open list only: the wheel does
/// nothing, and keys that would move on in the closed list open it.
class PickBox : public ComboBox {
    Q_OBJECT

  public:
    using ComboBox::ComboBox;

  protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace desktop
