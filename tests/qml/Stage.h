#pragma once

#include "database/TableTranslations.h"
#include "process/ScriptLauncher.h"
#include "software/SoftwareManager.h"

#include <QQuickItem>
#include <QQuickView>

// The updater's scene on the simulated dispenser, in this process, where one can read what is
// shown. "Restart Merivon" only logs.
class Stage
{
public:
    TableTranslations translations {nullptr};

    // Shows the first screen.
    Stage();

    // Evaluates JavaScript where the item was declared, as one of its handlers would; in the root's
    // own file without an item. An error gives an invalid value and a warning.
    QVariant js(const QString& code, QQuickItem* item = nullptr) const;

    // The items in sight at or below `top`, the root without one, that have `property`, of that
    // value where one is given; topmost last.
    QList<QQuickItem*> visible(const char* property, const QVariant& value = {},
                               QQuickItem* top = nullptr) const;
    bool shows(const QString& text) const { return !visible("text", text).isEmpty(); }
    QQuickItem* popUp() const { return js("msgPopUp").value<QQuickItem*>(); }
    // The lines of the message in sight, the busy bar's notes included.
    QStringList message() const;
    // Whether a package or image can be installed, on the update screen.
    bool offersInstall();

    // A press and a release on what bears each text in turn, as soon as it is there and touches
    // act: the scene takes none while it works and for a while afterwards, longer on a slow
    // machine. False when that was not within 20 s.
    bool tap(const QStringList& texts);

private:
    SoftwareManager m_manager;
    ScriptLauncher m_scripts;
    QQuickView m_view;
};
