#include "app/SessionBus.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr char addressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

// The name to connect to, with a NUL in front for an abstract one; empty for other addresses. Of
// several addresses the first, as Qt tries them in their order.
QByteArray socketName()
{
    const QByteArray address = qgetenv(addressVariable).split(';').first();
    if (address.isEmpty())
        return qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (!address.startsWith("unix:"))
        return {};
    for (const QByteArray& pair : address.mid(5).split(',')) {
        if (pair.startsWith("path="))
            return QByteArray::fromPercentEncoding(pair.mid(5));
        if (pair.startsWith("abstract="))
            return '\0' + QByteArray::fromPercentEncoding(pair.mid(9));
    }
    return {};
}

// The name that a socket of this process is connected to, empty for anything else.
QByteArray peerName(int descriptor)
{
    sockaddr_un peer {};
    socklen_t size = sizeof(peer);
    if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0
        || peer.sun_family != AF_UNIX)
        return {};
    const int length = static_cast<int>(size - offsetof(sockaddr_un, sun_path));
    const QByteArray name(peer.sun_path, qMin(length, static_cast<int>(sizeof(peer.sun_path))));
    return name.startsWith('\0') ? name : QByteArray(name.constData()); // a path ends at its NUL
}

// Closes its socket, which does not block, with the object.
class Probe
{
public:
    explicit Probe(const QDeadlineTimer& deadline)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
          m_deadline(deadline)
    {
    }
    ~Probe() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(Probe)

    // 0 or an error number; EAGAIN as long as the daemon has not taken the callers before this one.
    int connect(const QByteArray& name)
    {
        sockaddr_un address {};
        if (name.size() >= static_cast<int>(sizeof(address.sun_path)))
            return ENAMETOOLONG;
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        while (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), size) != 0) {
            if (errno != EAGAIN || m_deadline.hasExpired())
                return errno;
            QThread::msleep(10);
        }
        return 0;
    }

    // Asks for the ways to log in, which a bus has to tell any caller; a bus that hangs up answers
    // as well.
    bool hasAnswer()
    {
        constexpr char question[] = "\0AUTH\r\n";
        if (::send(m_socket, question, sizeof(question) - 1, MSG_NOSIGNAL) < 0)
            return true;
        pollfd answer {m_socket, POLLIN, 0};
        int ready = 0;
        do
            ready = ::poll(&answer, 1, static_cast<int>(m_deadline.remainingTime()));
        while (ready < 0 && errno == EINTR);
        return ready != 0;
    }

private:
    int m_socket;
    QDeadlineTimer m_deadline;
};

} // namespace

bool SessionBus::answers(const QDeadlineTimer& deadline)
{
    const QByteArray name = socketName();
    if (name.isEmpty())
        return true;
    Probe probe(deadline);
    const int error = probe.connect(name);
    return error == 0 ? probe.hasAnswer() : error != EAGAIN;
}

void SessionBus::doWithout()
{
    const bool wasSet = qEnvironmentVariableIsSet(addressVariable);
    const QByteArray address = qgetenv(addressVariable);
    qputenv(addressVariable, "disabled:");
    QDBusConnection::sessionBus(); // kept by Qt for all that ask later, though it has failed
    wasSet ? qputenv(addressVariable, address) : qunsetenv(addressVariable);
}

void SessionBus::hangUp()
{
    const QByteArray name = socketName();
    if (name.isEmpty())
        return;
    for (const QString& descriptor :
         QDir("/proc/self/fd").entryList(QDir::System | QDir::AllEntries)) {
        if (peerName(descriptor.toInt()) == name)
            ::shutdown(descriptor.toInt(), SHUT_RDWR);
    }
}
