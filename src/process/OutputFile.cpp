#include "process/OutputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <new>
#include <sys/mman.h>
#include <system_error>

OutputFile::OutputFile()
{
    const int descriptor = memfd_create("output", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "no file for the output");
    m_file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

QString OutputFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_file.handle());
}

QByteArray OutputFile::content()
{
    // A process that the program left behind may still write, or empty the file under our eyes:
    // reading what is no longer there would end the updater.
    fcntl(m_file.handle(), F_ADD_SEALS, F_SEAL_SHRINK);
    const qint64 size = m_file.size();
    if (size == 0)
        return {};
    const uchar* const bytes
        = size > std::numeric_limits<int>::max() ? nullptr : m_file.map(0, size);
    if (!bytes)
        throw std::bad_alloc();
    return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
}
