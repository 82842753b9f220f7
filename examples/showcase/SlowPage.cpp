// SPDX-License-Identifier: MIT
#include "SlowPage.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <utility>

namespace {

const QString scheme = QStringLiteral("showcase");

struct State {
    int requests = 0;
    bool released = false;
    QList<kx::URLSchemeTaskPtr> waiting;
};

State &state()
{
    static State theState;
    return theState;
}

void answer(const kx::URLSchemeTaskPtr &task)
{
    task->didReceiveResponse("text/html;charset=utf-8");
    task->didReceiveData("<!DOCTYPE html><title>Slow</title><p id=\"arrived\">Here at last</p>");
    task->didFinish();
}

} // namespace

void SlowPage::install()
{
    KXURLSchemeManager &manager = KXURLSchemeManager::sharedManager();
    manager.setProxySchemes({scheme});
    manager.onComingRequest([](const kx::URLSchemeTaskPtr &task) {
        ++state().requests;
        if (state().released)
            answer(task);
        else
            state().waiting.append(task);
    });
    manager.onStopRequest([](const kx::URLSchemeTaskPtr &task) { state().waiting.removeAll(task); });
}

QUrl SlowPage::url()
{
    return QUrl(scheme + QStringLiteral("://slow/index.html"));
}

int SlowPage::requests()
{
    return state().requests;
}

void SlowPage::release()
{
    state().released = true;
    for (const kx::URLSchemeTaskPtr &task : std::exchange(state().waiting, {}))
        answer(task);
}
