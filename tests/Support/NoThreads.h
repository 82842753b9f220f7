// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>

#include <cstddef>

#include <pthread.h>

namespace kx::test {

/// As long as this lives, the system gives no more threads: each would need a stack that is larger than its memory.
class NoThreads {
public:
    NoThreads()
    {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t greedy;
        pthread_attr_init(&greedy);
        pthread_attr_setstacksize(&greedy, std::size_t(1) << 60);
        pthread_setattr_default_np(&greedy);
        pthread_attr_destroy(&greedy);
    }
    ~NoThreads()
    {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    Q_DISABLE_COPY_MOVE(NoThreads)

private:
    pthread_attr_t m_before;
};

} // namespace kx::test
