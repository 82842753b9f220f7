// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtNetwork/QTcpServer>

#include <functional>

class QTcpSocket;

namespace kx::test {

/// What HttpServer answers to a request.
struct HttpResponse {
    QByteArray body;
    QByteArray contentType = "text/html;charset=utf-8";
    int status = 200;
    QList<QPair<QByteArray, QByteArray>> headers{}; ///< Beside Content-Type and Content-Length.
    qsizetype cutAfter = -1; ///< Close the connection after this many bytes of the body; -1 sends it all.
    bool silent = false; ///< Never answer, keep the connection.
};

struct HttpRequest {
    QByteArray method;
    QByteArray path; ///< With its query, still percent-encoded.
    QHash<QByteArray, QByteArray> headers; ///< Names in lower case.
};

/// A small HTTP/1.1 server on 127.0.0.1, on a port that the system picks. A web engine takes "127.0.0.1", "localhost"
/// and "a.localhost" for different sites, so one server can stand for several origins.
class HttpServer : public QObject {
    Q_OBJECT
public:
    using Handler = std::function<HttpResponse(const HttpRequest &)>;

    explicit HttpServer(QObject *parent = nullptr);

    /// The answer to one path (compared without its query).
    void serve(const QByteArray &path, const HttpResponse &response);
    /// Asked for paths that serve() does not know; without it they are 404.
    void setFallback(Handler handler) { m_fallback = std::move(handler); }

    [[nodiscard]] quint16 port() const { return m_server.serverPort(); }
    /// http://<host>:<port><path>
    [[nodiscard]] QUrl url(const QByteArray &path, const QByteArray &host = "127.0.0.1") const;
    /// Paths asked for so far, in order.
    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }

Q_SIGNALS:
    void requested(const QByteArray &path);

private:
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const HttpRequest &request);

    QHash<QByteArray, HttpResponse> m_responses;
    QHash<QTcpSocket *, QByteArray> m_buffers;
    QList<QByteArray> m_requests;
    Handler m_fallback;
    QTcpServer m_server; ///< Goes first: its open connections report their end to what stands above.
};

} // namespace kx::test
