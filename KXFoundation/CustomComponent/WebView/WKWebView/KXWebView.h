// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXWebExport.h>
#include <KXFoundation/Platform/Web/WebView.h>

/// The web view inside a KXWKWebView: one that can be made deaf to the mouse.
class KX_WEB_EXPORT KXWebView : public kx::WebView {
    Q_OBJECT
    Q_PROPERTY(bool ignoreMouseEnvent READ ignoreMouseEnvent WRITE setIgnoreMouseEnvent NOTIFY ignoreMouseEnventChanged)

public:
    KXWebView(
        const QRectF &frame, const std::shared_ptr<kx::WebViewConfiguration> &configuration, QWidget *parent = nullptr);
    ~KXWebView() override;

    /// True keeps entering, moving and leaving of the mouse and presses of its left button from the page; all else
    /// passes. False at first.
    [[nodiscard]] bool ignoreMouseEnvent() const { return m_ignoreMouseEnvent; }
    void setIgnoreMouseEnvent(bool ignore);

Q_SIGNALS:
    void ignoreMouseEnventChanged(bool ignore);

private:
    bool m_ignoreMouseEnvent = false;
};
