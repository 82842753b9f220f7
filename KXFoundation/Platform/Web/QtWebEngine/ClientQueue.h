// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>

#include <deque>
#include <functional>

namespace kx {

/// Calls of the client that wait until the event loop runs: messages, load states and script results, in their order.
/// Nothing is called from inside the engine, where a client that deletes its page would take the ground from under it.
/// A call may delete the queue; what still waits is then dropped.
class ClientQueue final : public QObject {
    Q_OBJECT
public:
    using Call = std::function<void()>;

    void post(Call call);

protected:
    bool event(QEvent *event) override;

private:
    void wake();
    void drain();

    std::deque<Call> m_calls;
    bool m_awake = false; // an event is on its way
};

} // namespace kx
