#pragma once

#include <QDialog>

namespace tw {

/// The about box.
class frmAbout : public QDialog {
    Q_OBJECT

  public:
    explicit frmAbout(QWidget* parent);
};

}  // namespace tw
