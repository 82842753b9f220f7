// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionManager.h>

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>
#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/Published.h>
#include <KXFoundation/Platform/Core/Strings.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace {

using Processors = std::vector<std::shared_ptr<KXActionProcessor>>; // newest first

// Never destroyed, these two: a thread may still dispatch while the process ends.
kx::Published<Processors> &registry()
{
    static auto &list = *new kx::Published<Processors>;
    return list;
}

kx::Published<QString> &domain()
{
    static auto &name = *new kx::Published<QString>;
    return name;
}

// The first match decides, even if it has no handler. An absent scheme is nobody's.
std::shared_ptr<KXActionProcessor> processorOf(const QString &scheme, const Processors &processors)
{
    const auto found = std::find_if(processors.begin(), processors.end(),
        [&](const auto &processor) { return !scheme.isNull() && kx::same(processor->scheme(), scheme); });
    return found == processors.end() ? nullptr : *found;
}

bool fail(KXError *error, KXActionManager::ErrorCode code, const QString &description)
{
    if (error)
        *error = {KXActionManager::errorDomain(), code, description, {}};
    return false;
}

} // namespace

void KXActionManager::registerProcessor(const std::shared_ptr<KXActionProcessor> &processor)
{
    if (!processor)
        return;
    registry().update([&](const std::shared_ptr<const Processors> &current) {
        auto next = std::make_shared<Processors>(1, processor);
        if (current)
            next->insert(next->end(), current->begin(), current->end());
        return next;
    });
}

void KXActionManager::registerProcessor(
    const std::shared_ptr<KXActionProcessor> &processor, const QString & /*forScheme*/)
{
    registerProcessor(processor);
}

bool KXActionManager::handleActionWithURL(const QString &url, KXError *error)
{
    const std::optional<KXActionItem> item = KXActionItem::actionItemWithString(url);
    if (!item)
        return fail(error, CannotDispatch, QStringLiteral("URL 不合法！"));
    return handleActionWithItem(&*item, error);
}

bool KXActionManager::handleActionWithItem(const KXActionItem *item, KXError *error)
{
    if (!item)
        return fail(error, NoItem, QStringLiteral("item 不能为空！"));
    const QString &scheme = item->scheme();
    const std::shared_ptr<const Processors> processors = registry().load();
    const std::shared_ptr<KXActionProcessor> chosen = processors ? processorOf(scheme, *processors) : nullptr;
    if (!chosen)
        return fail(error, CannotDispatch, kx::format(u"can't find match Processor for [%@]！", scheme));
    const KXActionProcessor::Handler handler = chosen->handlerForPath(item->path());
    if (!handler)
        return fail(error, CannotDispatch,
            kx::format(u"can't find match Handler for [%@://action.cmd%@]！", scheme, item->path()));
    handler(*item);
    return true;
}

QString KXActionManager::errorDomain()
{
    const std::shared_ptr<const QString> given = domain().load();
    return given ? *given : QStringLiteral("example.kxfoundation.action");
}

void KXActionManager::setErrorDomain(const QString &name)
{
    domain().store(name.isEmpty() ? nullptr : std::make_shared<const QString>(name));
}
