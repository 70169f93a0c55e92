#include "serverhost.h"

#include <QHostAddress>

ServerHost::ServerHost(FakeSession::Execute execute, tds::ServerSettings settings) {
    m_server = std::make_unique<tds::TdsServer>(
        std::move(settings), [execute](int) { return std::make_unique<FakeSession>(execute); });
    m_server->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_server.get(),
        [this] {
            m_server->listen(QHostAddress::LocalHost);
            m_port = m_server->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

void ServerHost::stop() {
    if (!m_server) return;
    QMetaObject::invokeMethod(
        m_server.get(), [this] { m_server.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}
