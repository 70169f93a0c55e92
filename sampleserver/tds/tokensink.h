#pragma once

#include "engine/values/resultsink.h"
#include "tds/packetstream.h"
#include "tds/rowencoder.h"
#include "tds/tokens.h"

#include <optional>

namespace tds {

/// Turns what a session tells into the tokens of one response.
class TokenSink : public engine::ResultSink {
  public:
    /// The tokens that end statements differ inside a procedure call.
    enum class Request { Batch, Rpc };

    TokenSink(PacketStream& stream, TdsVersion version, const QString& serverName, Request request);

    void columns(const std::vector<engine::ResultColumn>& columns) override;
    void row(std::span<const engine::Value> values) override;
    void statementDone(qint64 rows, bool hadColumns) override;
    void message(const engine::SqlMessage& message) override;
    void returnValue(int position, const engine::Parameter& value) override;
    void databaseChanged(const QString& oldName, const QString& newName) override;
    bool cancelled() override;

    /// Writes the last token and sends the response, unless `more` of it is to come from another call. False
    /// when the response has been sent.
    bool finish(bool more = false);

  private:
    void releaseDone();

    PacketStream& m_stream;
    TdsVersion m_version;
    const QString& m_serverName;
    Request m_request;
    RowEncoder m_encoder;
    // Held back, since only what comes behind it tells whether more does.
    std::optional<Done> m_done;
    QByteArray m_returnValues;
    bool m_failed = false;  // an error since the last end of a statement
    bool m_broken = false;  // a row could not be told, so no more are
};

}  // namespace tds
