#include "app/QtQuick2ApplicationViewer.h"

#include "app/QtQuick2ApplicationViewerPrivate.h"

#include <QQmlEngine>
#include <QScreen>
#include <QUrl>

QtQuick2ApplicationViewer::QtQuick2ApplicationViewer(QWindow* parent)
    : QQuickView(parent), d(std::make_unique<QtQuick2ApplicationViewerPrivate>())
{
    connect(engine(), &QQmlEngine::quit, this, &QWindow::close);
    setResizeMode(QQuickView::SizeRootObjectToView);
}

QtQuick2ApplicationViewer::~QtQuick2ApplicationViewer() = default;

void QtQuick2ApplicationViewer::setMainQmlFile(const QString& file)
{
    d->mainQmlFile = QtQuick2ApplicationViewerPrivate::adjustPath(file);
    setSource(QUrl::fromLocalFile(d->mainQmlFile));
}

void QtQuick2ApplicationViewer::addImportPath(const QString& path)
{
    engine()->addImportPath(QtQuick2ApplicationViewerPrivate::adjustPath(path));
}

void QtQuick2ApplicationViewer::showExpanded()
{
    if (size().isEmpty())
        setGeometry(screen()->geometry());
    show();
}
