// SPDX-License-Identifier: MIT
#pragma once

#include <QtWebEngineCore/QWebEngineUrlSchemeHandler>

#include <memory>

namespace kx {

class URLSchemeHandler;

/// Hands the engine's requests for custom schemes to a URLSchemeHandler, as tasks. Install it on a profile for each
/// scheme that it serves; it may be installed for several. When the handler is gone, requests fail.
class SchemeHandler final : public QWebEngineUrlSchemeHandler {
    Q_OBJECT
public:
    explicit SchemeHandler(const URLSchemeHandler &handler, QObject *parent = nullptr);

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    std::weak_ptr<URLSchemeHandler> m_handler;
};

} // namespace kx
