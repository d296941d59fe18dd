#include <QGuiApplication>
#include <QQuickView>

// What any program of this kind takes to show anything at all.
int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    QQuickView view(QUrl(QStringLiteral("qrc:/EmptyView.qml")));
    view.setFlags(Qt::FramelessWindowHint);
    view.show();
    return QGuiApplication::exec();
}
