// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>

/// Standard input, line by line, without ever waiting for it.
class InputLines : public QObject {
    Q_OBJECT
public:
    InputLines();

Q_SIGNALS:
    /// Without its line feed; lines of nothing but blanks are left out.
    void line(const QString &text);
    void ended();

private:
    void read();
    void pass(const QByteArray &text);

    QByteArray m_rest;
};
