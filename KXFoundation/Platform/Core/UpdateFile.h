// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <memory>

namespace kx {

/// An existing file, open for reading and writing at the offset 0, without a buffer of its own. Closed with its last
/// reference, so a writer that holds one may finish while somebody else already opens another file.
class KX_CORE_EXPORT UpdateFile {
public:
    /// None when there is no such file or it may not be written; never creates or shortens one.
    [[nodiscard]] static std::shared_ptr<UpdateFile> open(const QString &path);

    /// Puts a new, empty file in the place of whatever file has this name, and opens it. A link is replaced, not
    /// followed; who has the old file open keeps it. None when that is not possible.
    static std::shared_ptr<UpdateFile> create(const QString &path);

    ~UpdateFile();
    Q_DISABLE_COPY_MOVE(UpdateFile)

    /// Writes at the offset and moves it. False when the system took only a part or nothing.
    bool write(QByteArrayView bytes);

    /// Returns when the device has what was written, as far as it tells.
    bool synchronize();

    /// Bytes from the start of the file; 0 when the system does not tell.
    [[nodiscard]] quint64 offset() const;

private:
    explicit UpdateFile(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    int m_descriptor;
};

} // namespace kx
