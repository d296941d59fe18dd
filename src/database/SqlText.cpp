#include "database/SqlText.h"

#include <QRegularExpression>

QString SqlText::column(const QString& name)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_]*\\z"));
    return plain.match(name).hasMatch() ? name : refused(name);
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
