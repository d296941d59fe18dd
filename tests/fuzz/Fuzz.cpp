#include "Fuzz.h"

#include "Dispenser.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

void endWith(const char* condition, const QString& shown)
{
    std::fprintf(stderr, "NOT HELD: %s: %s\n", condition, qPrintable(shown));
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** argv)
{
    static int one = 1; // the fuzzer's options are not the application's
    if (!Dispenser::isHere()) {
        std::fputs("run me inside sandbox/enter\n", stderr);
        std::exit(1);
    }
    static QCoreApplication application(one, *argv);
    QCoreApplication::setApplicationName("SoftwareUpdater");
    // Dropped: what is logged would cost more than what is tried.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    tryInput(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
