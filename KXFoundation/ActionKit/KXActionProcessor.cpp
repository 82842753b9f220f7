// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionProcessor.h>

#include <KXFoundation/ActionKit/KXActionItem.h>

#include <utility>

KXActionProcessor::KXActionProcessor(QString scheme)
    : m_scheme(std::move(scheme))
{
}

KXActionProcessor::~KXActionProcessor() = default;

KXActionProcessor::HandlerMap KXActionProcessor::acitonHandlerMap() const
{
    return m_handlers.load();
}

void KXActionProcessor::setAcitonHandlerMap(HandlerMap handlers)
{
    m_handlers.store(std::move(handlers));
}

void KXActionProcessor::registerHandler(Handler handler, const QString &forPath)
{
    if (forPath.isNull())
        return;
    m_handlers.update([&](const HandlerMap &current) -> HandlerMap {
        auto next =
            current ? std::make_shared<QHash<QString, Handler>>(*current) : std::make_shared<QHash<QString, Handler>>();
        if (handler)
            next->insert(forPath, handler);
        else
            next->remove(forPath);
        return next;
    });
}

KXActionProcessor::Handler KXActionProcessor::handlerForPath(const QString &path) const
{
    const HandlerMap handlers = m_handlers.load();
    // A null path is not "", though it would be found as such.
    return handlers && !path.isNull() ? handlers->value(path) : Handler();
}
