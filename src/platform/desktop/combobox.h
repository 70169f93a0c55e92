#pragma once

#include <QComboBox>

namespace desktop {

/// A combo box whose entries come from outside: they are shown as such, and the open list is no wider than
/// a name may be. currentText() and itemText() give them whole.
class ComboBox : public QComboBox {
    Q_OBJECT

  public:
    explicit ComboBox(QWidget* parent = nullptr);

    void showPopup() override;

  protected:
    void initStyleOption(QStyleOptionComboBox* option) const override;
};

}  // namespace desktop
