// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <KXFoundation/Platform/Core/MachineIdentity.h>
#include <KXFoundation/Util/ProcessorKind.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>

#include <memory>
#include <mutex>
#include <optional>

namespace {

std::unique_ptr<QSettings> userSettings()
{
    if (!QCoreApplication::organizationName().isEmpty())
        return std::make_unique<QSettings>();
    QString name = QCoreApplication::applicationName();
    name.replace(u'/', u'_');
    if (name.isEmpty())
        name = QStringLiteral("unnamed");
    return std::make_unique<QSettings>(QString(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                                           + u"/KXFoundation/" + name + u".ini"),
        QSettings::IniFormat);
}

struct CachedCode {
    std::mutex mutex;
    std::optional<QString> code;
};

} // namespace

QString KXUtil::hardwareUUID()
{
    return kx::hardwareUuid();
}

QString KXUtil::hardwareSerialNumber()
{
    return kx::hardwareSerialNumber();
}

QString KXUtil::machineCodeWithSalt(const QString &salt)
{
    QString code;
    for (const QString &part : {macAddress(), hardwareSerialNumber()}) {
        if (!part.isEmpty())
            code += part + u'#';
    }
    code += salt + u'~' + kx::loginName();
    return code;
}

QString KXUtil::machineCode()
{
    static auto &cache = *new CachedCode; // for threads that outlive main() too
    const std::scoped_lock lock(cache.mutex);
    if (!cache.code) {
        const QString key = QStringLiteral("__mcode__");
        const auto settings = userSettings();
        const QVariant kept = settings->value(key);
        if (kept.typeId() == QMetaType::QString) {
            cache.code = kept.toString();
        } else {
            cache.code = machineCodeWithSalt();
            settings->setValue(key, *cache.code);
        }
    }
    return *cache.code;
}

QString KXUtil::macCpuInfo()
{
    return kx::processorKind(kx::processorBrand());
}
