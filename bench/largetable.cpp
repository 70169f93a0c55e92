#include "largetable.h"

#include "figures.h"
#include "platform/desktop/celltable.h"

#include <QCoreApplication>
#include <QTextStream>

namespace bench {

namespace {

QString oneDecimal(double number) {
    return QString::number(number, 'f', 1);
}

QString milliseconds(const std::function<void()>& work) {
    return oneDecimal(secondsOf(work) * 1000) + QStringLiteral(" ms");
}

}  // namespace

bool LargeTable::start(qint64 rows, int columns) {
    constexpr int PatienceMilliseconds = 600'000;
    if (!m_server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--large"),
                         QStringLiteral("1,%1,%2").arg(columns).arg(rows)},
                        PatienceMilliseconds)) {
        QTextStream(stderr) << "The sample server did not start: " << m_server.errorText() << '\n';
        return false;
    }
    m_connectionString =
        QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(m_server.serverText());
    m_bare.emplace(m_environment,
                   m_connectionString + QStringLiteral(";Database=") + QString::fromLatin1(Database));
    return true;
}

BareRows LargeTable::readBare() const {
    return readRowsBare(*m_bare, QStringLiteral("select * from [%1]").arg(QString::fromLatin1(Table)));
}

void printMemory(const BareRows& bare, const std::function<void()>& fill) {
    const size_t heapBefore = heapBytes();
    const PeakOfMemory peak;
    fill();
    const double kept = static_cast<double>(heapBytes() - heapBefore);
    const double texts = static_cast<double>(bare.units) * sizeof(char16_t);
    constexpr double Mebi = 1024 * 1024;
    QTextStream(stdout) << "  texts " << oneDecimal(texts / Mebi)
                        << " MiB as UTF-16; peak of resident memory " << oneDecimal(peak.bytes() / Mebi)
                        << " MiB, ratio " << QString::number(peak.bytes() / texts, 'f', 2) << "; heap kept "
                        << oneDecimal(kept / Mebi) << " MiB, ratio " << QString::number(kept / texts, 'f', 2)
                        << '\n';
}

void printViewTimes(const QString& name, desktop::CellTable& view, const std::function<void()>& attach) {
    view.resize(1000, 700);
    QTextStream out(stdout);
    const PeakOfMemory peak;
    out << "  " << name << ": first paint " << milliseconds([&] {
        attach();
        view.show();
        QCoreApplication::processEvents();
        view.grab();
    });
    out << ", to the end " << milliseconds([&] {
        view.scrollToBottom();
        view.grab();
    });
    out << ", all selected " << milliseconds([&] {
        view.selectAll();
        view.grab();
    });
    QString text;
    const QString copying = milliseconds([&] { text = view.selectedText(); });
    out << ", " << text.size() << " characters to copy " << copying << ", memory "
        << oneDecimal(peak.bytes() / 1024 / 1024) << " MiB\n";
}

}  // namespace bench
