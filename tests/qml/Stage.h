#pragma once

#include "FakePlatform.h"

#include "config/UiConfig.h"
#include <QQmlPropertyMap>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <memory>

namespace OnTheStick {
const QString package = QStringLiteral("quillmark-base-1.03.00.tar.gz");
const QString image = QStringLiteral("MerivonMFV_V2.hex");
const QString foreignImage = QStringLiteral("x_MFV_V2.hex");
} // namespace OnTheStick

// The scene on a fake platform, as a technician sees and touches it.
class Stage
{
public:
    FakeManager manager;
    FakeTranslations translations;
    FakeScriptLauncher scripts;
    UiConfig::SystemType type = UiConfig::TALVO;
    bool developing = false;

    // Shows the scene, or a piece of QML made of its widgets; what the fakes hold now is what it
    // starts with.
    void open(const QByteArray& qml = {});
    // Shows the scene of a type of dispenser and leaves its first screen by a button.
    void open(UiConfig::SystemType systemType, const QString& buttonText);
    // The update screen with its list of what is on the stick read and an entry of it chosen.
    void chooseSoftware(const QString& name);
    bool isInstallOn() const { return button("Install Software")->state() == "stateDeselected"; }
    QQuickItem* root() const { return m_view->rootObject(); }

    // Evaluates JavaScript in the root's own file, where its ids are known.
    QVariant js(const QString& code) const;
    bool is(const QString& condition) const { return js(condition).toBool(); }

    // The items in sight that have `property`, of that value where one is given; topmost last.
    QList<QQuickItem*> visible(const char* property, const QVariant& value = {}) const;
    // A button of any kind by what is written on it; nullptr when none is in sight.
    QQuickItem* button(const QString& text) const;
    bool shows(const QString& text) const { return !visible("text", text).isEmpty(); }

    // Whether a touch may act: after a step that blocked the scene that takes a while, on a slow
    // machine a long one. A widget that is shown alone always takes them.
    bool takesTouches() const;
    // A press and a release as soon as the scene takes touches; false when there is no such button
    // in sight, or when it takes none within 10 s.
    bool tap(const QString& buttonText) { return tap(button(buttonText)); }
    bool tap(const QQuickItem* item);
    // A press and a release now, whether or not they act.
    void tap(const QPoint& point);
    // Presses and releases all over the screen. They come with the next events, as those that were
    // made while the program stood still.
    void queueTapsEverywhere();
    void tapEverywhere();
    // Fingers on the screen; what they do is done at the end of the statement.
    QTest::QTouchEventSequence touch() const { return QTest::touchEvent(window(), m_finger); }
    QWindow* window() const { return m_view.get(); }
    static QPoint middle(const QQuickItem* item);

    // The launcher that was told to start a program with this argument.
    FakeLaunchAsync* launcher(const QString& argument) const;
    void save(const QString& path) const;

private:
    QQmlPropertyMap m_config;
    QTouchDevice* m_finger = QTest::createTouchDevice();
    std::unique_ptr<QQuickView> m_view;
};
