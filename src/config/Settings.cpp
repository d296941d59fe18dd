#include "config/Settings.h"

#include <QDate>

#include <algorithm>
#include <iterator>

namespace {

struct Language
{
    QLatin1String word;
    QLocale::Language language;
    QLocale::Country country;
};

// The first is also what any other word means.
const Language languages[] = {
    {QLatin1String("english"), QLocale::English, QLocale::UnitedStates},
    {QLatin1String("spanish"), QLocale::Spanish, QLocale::Spain},
    {QLatin1String("french"), QLocale::French, QLocale::France},
    {QLatin1String("german"), QLocale::German, QLocale::Germany},
};

QDate dateOf(uint month, uint day, uint year)
{
    return {static_cast<int>(year), static_cast<int>(month), static_cast<int>(day)};
}

} // namespace

Settings::Settings(QObject* parent) : QObject(parent) { }

void Settings::setLanguage(const QString& lang)
{
    const auto* known = std::find_if(std::begin(languages), std::end(languages),
                                     [&lang](const Language& each) { return each.word == lang; });
    if (known == std::end(languages))
        known = std::begin(languages);
    m_locale = QLocale(known->language, known->country);
}

QVariantList Settings::getMonthNames()
{
    QVariantList names;
    for (int month = 1; month <= 12; ++month)
        names.append(m_locale.monthName(month, QLocale::ShortFormat));
    return names;
}

QVariantList Settings::getDayNames()
{
    QVariantList names;
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day)
        names.append(m_locale.dayName(day, QLocale::ShortFormat));
    return names;
}

QVariant Settings::getDate(uint month, uint day, uint year)
{
    return m_locale.toString(dateOf(month, day, year), QLocale::LongFormat);
}

// Kept: the day takes part in the check, and the scene's callers pass one that exists.
int Settings::getDaysInMonth(uint month, uint day, uint year)
{
    return dateOf(month, day, year).daysInMonth();
}
