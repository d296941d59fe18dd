#pragma once

#include "app/QtQuick2ApplicationViewer.h"
#include "database/TableTranslations.h"
#include "process/ScriptLauncher.h"
#include "software/SoftwareManager.h"

#include <QVariant>

#include <chrono>
#include <functional>

// The updater's whole scene in its window, on the real back end, driven through the functions that
// its buttons call. Everything throws std::runtime_error when the scene is not as expected.
class Scene
{
public:
    Scene();

    QQuickWindow& window() { return m_viewer; }

    // Shows an item of a resource file ("qrc:/...") above everything.
    void show(const char* file);

    // The item that has a QML function of this name.
    QObject& itemWith(const char* function);
    // Calls a QML function of the item that has it.
    void call(const char* function);
    void call(const char* function, const QVariant& argument);

    // Lets the event loop run until the condition holds, a minute at most, or for a time.
    static void runUntil(const std::function<bool()>& condition);
    static void runFor(std::chrono::milliseconds time);

private:
    SoftwareManager m_manager;
    TableTranslations m_translations;
    ScriptLauncher m_launcher;
    QtQuick2ApplicationViewer m_viewer;
};
