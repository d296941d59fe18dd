#pragma once

#include "FakePlatform.h"

#include <QQuickItem>
#include <QQuickView>
#include <memory>

// The scene on a fake platform, as a technician sees and touches it.
class Stage
{
public:
    FakeManager manager;
    FakeTranslations translations;
    FakeScriptLauncher scripts;
    FakeConfig config;
    QString mediaDirectory = QStringLiteral("/media");
    bool developing = false;

    static void registerTypes();

    // Shows the scene, or a piece of QML made of its widgets; what the fakes hold now is what it
    // starts with.
    void open(const QByteArray& qml = {});
    QQuickItem* root() const { return m_view->rootObject(); }

    // Evaluates JavaScript in the root's own file, where its ids are known.
    QVariant js(const QString& code) const;

    // The items in sight that have `property`, of that value where one is given; topmost last.
    QList<QQuickItem*> visible(const char* property, const QVariant& value = {}) const;
    // A button of any kind by what is written on it; nullptr when none is in sight.
    QQuickItem* button(const QString& text) const;
    bool shows(const QString& text) const { return !visible("text", text).isEmpty(); }

    // A press and a release; false when there is no such button in sight.
    bool tap(const QString& buttonText);
    void tap(const QPointF& point);

    // The launcher that was told to start a program with this argument.
    FakeLaunchAsync* launcher(const QString& argument) const;
    void save(const QString& path) const;

private:
    std::unique_ptr<QQuickView> m_view;
};
