// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionProcessor.h>

#include <KXFoundation/ActionKit/KXActionItem.h>

#include <utility>

KXActionProcessor::KXActionProcessor(const QString &scheme)
    : m_scheme(scheme)
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
    HandlerMap current = m_handlers.load();
    HandlerMap next;
    do { // again when another thread has replaced the table meanwhile
        auto table =
            current ? std::make_shared<QHash<QString, Handler>>(*current) : std::make_shared<QHash<QString, Handler>>();
        if (handler)
            table->insert(forPath, handler);
        else
            table->remove(forPath);
        next = std::move(table);
    } while (!m_handlers.compare_exchange_weak(current, next));
}

KXActionProcessor::Handler KXActionProcessor::handlerForPath(const QString &path) const
{
    const HandlerMap handlers = m_handlers.load();
    // A null path is not "", though it would be found as such.
    return handlers && !path.isNull() ? handlers->value(path) : Handler();
}
