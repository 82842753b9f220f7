// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>

/// Turns the signals by which a system ends a program, SIGTERM and SIGINT, into one that the event loop delivers. One
/// object for each process.
class EndSignals : public QObject {
    Q_OBJECT
public:
    EndSignals();
    ~EndSignals() override;

Q_SIGNALS:
    void arrived(const QString &name);

private:
    void read();
};
