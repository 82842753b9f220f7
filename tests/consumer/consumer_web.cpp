// SPDX-License-Identifier: MIT
// A host with everything, compiled against installed headers alone: no engine header is needed to use the web view.
#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtWidgets/QApplication>

#include <cstdio>

#if __has_include(<QWebEngineView>)
#error "the engine's headers must not come along"
#endif

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    KXWKWebView *(*const makeHost)() = [] { return new KXWKWebView(QRectF(0, 0, 320, 180)); };
    KXURLSchemeManager::sharedManager().onComingRequest([](const kx::URLSchemeTaskPtr &task) { task->didFinish(); });
    std::printf("linked: %s\n", makeHost ? KXWKWebView::staticMetaObject.className() : "");
    return KXURLSchemeManager::sharedManager().startRequestBlock() ? 0 : 1;
}
