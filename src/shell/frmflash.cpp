#include "shell/frmflash.h"

#include "icons/icons.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace tw {

namespace {

constexpr int PictureSize = 96;
constexpr int Gap = 28;
constexpr int ShownMilliseconds = 1500;

}  // namespace

frmFlash::frmFlash(QWidget* parent)
    : QFrame(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                         Qt::WindowDoesNotAcceptFocus) {
    setObjectName(QStringLiteral("frmFlash"));
    setWindowTitle(QStringLiteral("SQL Server Tablewright"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    Form_Load();
}

void frmFlash::Form_Load() {
    setCursor(Qt::WaitCursor);

    auto* picture = new QLabel(this);
    picture->setObjectName(QStringLiteral("picLogo"));
    picture->setPixmap(
        icon(QStringLiteral("tablewright")).pixmap(QSize(PictureSize, PictureSize), devicePixelRatio()));
    auto* product = new QLabel(QStringLiteral("SQL Server Tablewright"), this);
    product->setObjectName(QStringLiteral("lblProductName"));
    QFont font = product->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    font.setBold(true);
    product->setFont(font);
    auto* version =
        new QLabel(QStringLiteral("Version %1").arg(QCoreApplication::applicationVersion()), this);
    version->setObjectName(QStringLiteral("lblVersion"));

    auto* texts = new QVBoxLayout;
    texts->addStretch();
    texts->addWidget(product);
    texts->addWidget(version);
    texts->addStretch();
    auto* whole = new QHBoxLayout(this);
    whole->setContentsMargins(Gap, Gap, Gap, Gap);
    whole->setSpacing(Gap);
    whole->addWidget(picture);
    whole->addLayout(texts);
    adjustSize();
    move(QGuiApplication::primaryScreen()->geometry().center() - rect().center());

    m_timer1.setObjectName(QStringLiteral("Timer1"));
    m_timer1.setSingleShot(true);
    connect(&m_timer1, &QTimer::timeout, this, &frmFlash::Timer1_Timer);
    m_timer1.start(ShownMilliseconds);
}

void frmFlash::Timer1_Timer() {
    close();
}

void frmFlash::closeEvent(QCloseEvent* event) {
    setCursor(Qt::ArrowCursor);
    event->accept();
    Q_EMIT unloaded();
}

}  // namespace tw
