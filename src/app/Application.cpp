#include "app/Application.h"

#include "config/Version.h"

Application::Application(int& argc, char** argv) : SingleApplication(argc, argv)
{
    setOrganizationDomain(QStringLiteral("quillmark.example"));
    setOrganizationName(QStringLiteral("quillmark"));
    setApplicationName(QStringLiteral("SoftwareUpdater"));
    setApplicationVersion(QLatin1String(updaterVersion));
    setApplicationDisplayName(QStringLiteral("SoftwareUpdater"));
}
