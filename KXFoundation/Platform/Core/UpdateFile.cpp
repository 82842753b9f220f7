// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/UpdateFile.h>

#include <KXFoundation/Platform/Core/Descriptor.h>

#include <QtCore/QFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace kx {

std::shared_ptr<UpdateFile> UpdateFile::open(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC | O_NOCTTY);
    return descriptor < 0 ? nullptr : std::shared_ptr<UpdateFile>(new UpdateFile(descriptor));
}

std::shared_ptr<UpdateFile> UpdateFile::create(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    constexpr mode_t readableAndWritable = 0666; // less what the process masks out
    // More than one turn only when another process makes the same name between the two calls.
    for (int turn = 0; turn < 8; ++turn) {
        ::unlink(name.constData());
        const int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, readableAndWritable);
        if (descriptor >= 0)
            return std::shared_ptr<UpdateFile>(new UpdateFile(descriptor));
        if (errno != EEXIST)
            return nullptr;
    }
    return nullptr;
}

UpdateFile::~UpdateFile()
{
    ::close(m_descriptor);
}

bool UpdateFile::write(QByteArrayView bytes)
{
    return writeAll(m_descriptor, bytes);
}

bool UpdateFile::synchronize()
{
    return ::fdatasync(m_descriptor) == 0;
}

quint64 UpdateFile::offset() const
{
    const off_t offset = ::lseek(m_descriptor, 0, SEEK_CUR);
    return offset < 0 ? 0 : quint64(offset);
}

} // namespace kx
