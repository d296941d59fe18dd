#include "database/SqlText.h"

#include <algorithm>

namespace {

bool isLetterOfName(QChar letter)
{
    return letter == QLatin1Char('_') || (letter.unicode() < 128 && letter.isLetterOrNumber());
}

// Without a regular expression, the library of which a start would have to load for it.
bool isPlainName(const QString& text)
{
    return !text.isEmpty() && !text.at(0).isDigit()
        && std::all_of(text.begin(), text.end(), isLetterOfName);
}

} // namespace

QString SqlText::column(const QString& name)
{
    return isPlainName(name) ? name : refused(name);
}

QString SqlText::refused(const QString& sql)
{
    // In front: whoever reads a statement up to the NUL finds none, instead of half a one.
    return QChar::Null + sql;
}

QString SqlText::shown(const QString& sql)
{
    return QString(sql).remove(QChar::Null);
}

bool SqlText::fitsIntoLiteral(const QString& text)
{
    QString rest = text;
    rest.remove(QLatin1String("''"));
    return !rest.contains(QLatin1Char('\''));
}
