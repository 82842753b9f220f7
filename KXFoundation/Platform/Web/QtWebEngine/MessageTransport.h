// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

class QWebEngineScript;

namespace kx {

/// What a frame sent to native code.
struct TransportRecord {
    enum class Kind { DocumentStart, SourceFrame, String, Json, Other };

    Kind kind = Kind::Other;
    qsizetype handler = 0; ///< Of String, Json and Other: which of the handler names it was posted to.
    QString text;

    /// The body of a message: a string, an object, or Undefined.
    [[nodiscard]] QJsonValue body() const;
};

/// The way from every frame of a page to native code, for an engine without script-message handlers.
///
/// The scripts of one transport share a secret that pages cannot learn: console lines that begin with it are records,
/// all others are the page's own. transport.js describes the line.
class MessageTransport {
public:
    /// The isolated world that the library's scripts live in.
    static constexpr quint32 WorldId = 73;

    /// Pages get `webkit.messageHandlers.<name>` for each name.
    explicit MessageTransport(const QStringList &handlerNames);

    /// To be installed in this order, before any other script.
    [[nodiscard]] QList<QWebEngineScript> scripts() const;
    [[nodiscard]] const QStringList &handlerNames() const { return m_handlerNames; }

    /// The records of a console line in their order; none if the line is the page's own.
    [[nodiscard]] std::optional<QList<TransportRecord>> read(const QString &consoleLine) const;

private:
    QString m_secret;
    QString m_handOver; ///< The type of the event by which the worlds meet.
    QStringList m_handlerNames;
};

} // namespace kx
