// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/KXError.h>

#include <system_error>

KXError KXError::fromErrno(int errorNumber)
{
    return {
        kx::POSIXErrorDomain, errorNumber, QString::fromStdString(std::generic_category().message(errorNumber)), {}};
}

QString kx::describe(const KXError &error)
{
    return u"Error Domain=" + error.domain + u" Code=" + QString::number(error.code) + u" \""
        + error.localizedDescription + u"\"";
}
