#pragma once

#include <QLocale>
#include <QObject>
#include <QVariant>

// Calendar helpers for the scene in a locale of its own, at first the process's default one, which
// it never changes. Days and months count from 1.
class Settings : public QObject
{
    Q_OBJECT

public:
    explicit Settings(QObject* parent = nullptr);

    // "english", "spanish", "french" or "german", in lower case; any other word means English as
    // in the United States.
    Q_INVOKABLE void setLanguage(const QString& lang);

    // Twelve short month names, January first.
    Q_INVOKABLE QVariantList getMonthNames();

    // Seven short day names, Monday first.
    Q_INVOKABLE QVariantList getDayNames();

    // The date in the locale's long form, as a string; empty for a date that does not exist.
    Q_INVOKABLE QVariant getDate(uint month, uint day, uint year);

    // The length of a month. 0 when the whole date does not exist, the day included: day 1 is safe.
    Q_INVOKABLE int getDaysInMonth(uint month, uint day, uint year);

private:
    QLocale m_locale;
};
