// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include <atomic>

/// How KXActionItem reads a query.
namespace kx {

enum class QueryForm {
    Encoded, ///< As it stands in a URL.
    Raw, ///< Before addPercentEncoding(), which each piece is meant to have gone through; saves doing and undoing that.
};

struct DecodedValue {
    QString text;
    quint64 passes = 0; ///< How often a decoding was tried.
};

/// Percent-decodes `value` once, and then again while the result has a "%" or is absent; an absent text decodes to an
/// absent one, so a value that fails to decode does not end. A limit above 0 ends it after that many passes, with the
/// last text that could be decoded. The limit is read anew at each pass.
[[nodiscard]] DecodedValue decodeRepeatedly(QStringView value, QueryForm form, const std::atomic<int> &passLimit);

/// The pairs of a query: keys encoded, values decoded.
[[nodiscard]] QHash<QString, QString> parseQuery(QStringView query, QueryForm form, const std::atomic<int> &passLimit);

} // namespace kx
