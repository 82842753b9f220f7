// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtCore/QDebug>
#include <QtCore/QJsonObject>
#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    KXActionItem::setDecodePassLimit(8); // the URLs come from pages

    auto player = std::make_shared<KXActionProcessor>(QStringLiteral("kx"));
    player->registerHandler(
        [](const KXActionItem &item) { qInfo() << "play" << item.queryMap(); }, QStringLiteral("/play"));
    KXActionManager::registerProcessor(player);

    KXWKWebView view(QRectF(0, 0, 960, 540));
    view.jsBridge()->registerMethod(QStringLiteral("open"), [](const QJsonValue &url, const auto &completion) {
        KXError error;
        const bool opened = KXActionManager::handleActionWithURL(url.toString(), &error);
        completion(
            QJsonObject{{QStringLiteral("opened"), opened}, {QStringLiteral("why"), error.localizedDescription}});
    });
    view.updateURL(QUrl::fromUserInput(application.arguments().value(1, QStringLiteral("about:blank"))));
    view.show();
    return application.exec();
}
