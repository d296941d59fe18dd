#pragma once

#include <QQuickView>

#include <memory>

class QtQuick2ApplicationViewerPrivate;

// The top-level window that shows a QML scene. The root item always takes the window's size, and
// the scene's Qt.quit() closes the window.
class QtQuick2ApplicationViewer : public QQuickView
{
    Q_OBJECT

public:
    explicit QtQuick2ApplicationViewer(QWindow* parent = nullptr);
    ~QtQuick2ApplicationViewer() override;

    // Loads the scene from a file, looked for first in the folder above the executable's, then in
    // the executable's, then as it is given (relative to the working directory). Load errors show
    // in status() and errors().
    void setMainQmlFile(const QString& file);

    // Adds a folder, looked for in the same places, to the engine's import paths.
    void addImportPath(const QString& path);

    // Shows the window as its flags and geometry say, neither full screen nor maximised; a window
    // whose scene has no size of its own, as on a dispenser of unknown kind, covers the screen.
    void showExpanded();

private:
    std::unique_ptr<QtQuick2ApplicationViewerPrivate> d;
};
