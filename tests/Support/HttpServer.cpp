// SPDX-License-Identifier: MIT
#include "HttpServer.h"

#include <QtNetwork/QTcpSocket>

namespace kx::test {

HttpServer::HttpServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_buffers.remove(socket);
                socket->deleteLater();
            });
        }
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("no port on loopback: %s", qPrintable(m_server.errorString()));
}

void HttpServer::serve(const QByteArray &path, const HttpResponse &response)
{
    m_responses.insert(path, response);
}

QUrl HttpServer::url(const QByteArray &path, const QByteArray &host) const
{
    return QUrl::fromEncoded("http://" + host + ':' + QByteArray::number(port()) + path);
}

void HttpServer::read(QTcpSocket *socket)
{
    QByteArray &buffer = m_buffers[socket];
    buffer += socket->readAll();
    for (qsizetype end; (end = buffer.indexOf("\r\n\r\n")) >= 0;) {
        const QList<QByteArray> lines = buffer.first(end).split('\n');
        HttpRequest request;
        const QList<QByteArray> words = lines.value(0).trimmed().split(' ');
        request.method = words.value(0);
        request.path = words.value(1);
        for (const QByteArray &line : lines.sliced(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(
                line.first(std::max<qsizetype>(colon, 0)).toLower(), line.sliced(colon + 1).trimmed());
        }
        const qsizetype bodyLength = request.headers.value("content-length").toLongLong();
        if (buffer.size() < end + 4 + bodyLength)
            return;
        buffer.remove(0, end + 4 + bodyLength);
        answer(socket, request);
    }
}

void HttpServer::answer(QTcpSocket *socket, const HttpRequest &request)
{
    m_requests.append(request.path);
    const QByteArray path =
        request.path.first(request.path.indexOf('?') < 0 ? request.path.size() : request.path.indexOf('?'));
    HttpResponse response;
    if (const auto known = m_responses.constFind(path); known != m_responses.cend())
        response = *known;
    else if (m_fallback)
        response = m_fallback(request);
    else
        response = {"not found", "text/plain", 404, {}, -1, false};
    if (!response.silent) {
        QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status)
            + " Answer\r\nContent-Type: " + response.contentType
            + "\r\nContent-Length: " + QByteArray::number(response.body.size()) + "\r\nCache-Control: no-store\r\n";
        for (const auto &[name, value] : response.headers)
            head += name + ": " + value + "\r\n";
        socket->write(head + "\r\n");
        socket->write(response.cutAfter < 0 ? response.body : response.body.first(response.cutAfter));
        if (response.cutAfter >= 0)
            socket->disconnectFromHost();
    }
    Q_EMIT requested(request.path);
}

} // namespace kx::test
