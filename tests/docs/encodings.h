// SPDX-License-Identifier: MIT
#pragma once

class Page {
protected:
    QByteArray cover;
    QString title;
};
