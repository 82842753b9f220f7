// SPDX-License-Identifier: MIT
#include "WebControls.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

using namespace Qt::StringLiterals;

WebControls::WebControls()
    : m_plugins({
        {u"KXWKWebView"_s, u"<KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>"_s, u"webView"_s,
            u"A web page with a bridge to native code"_s, {480, 270}, false, make<KXWKWebView>},
    })
{
}
