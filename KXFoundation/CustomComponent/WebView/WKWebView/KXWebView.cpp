// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWebView.h>

KXWebView::KXWebView(
    const QRectF &frame, const std::shared_ptr<kx::WebViewConfiguration> &configuration, QWidget *parent)
    : kx::WebView(frame, configuration, parent)
{
}

KXWebView::~KXWebView() = default;

void KXWebView::setIgnoreMouseEnvent(bool ignore)
{
    if (m_ignoreMouseEnvent == ignore)
        return;
    m_ignoreMouseEnvent = ignore;
    page().setIgnoresMouseEvents(ignore);
    Q_EMIT ignoreMouseEnventChanged(ignore);
}
