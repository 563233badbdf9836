#pragma once

#include <QWBase/qwbase_private.h>

#include <QFont>
#include <QList>
#include <QString>

#include <functional>

class QPainter;
class QRectF;

namespace qw
{

/// Draws numbers so that digits stand below one another whatever the font: each takes the room of the widest.
class QWBASE_TEST_EXPORT TabularFigures
{
public:
    explicit TabularFigures(const QFont &font);

    const QFont &font() const { return m_font; }

    /// False when all digits of the font are of one width already, as they mostly are.
    bool isNeeded() const { return m_isNeeded; }

    /// False for texts whose characters cannot be drawn one by one, as in scripts that join or combine them.
    static bool canDraw(const QString &text);

    double width(const QString &text) const;

    /// At the right end of @p place, in the painter's colour.
    void drawAtRight(QPainter &painter, const QRectF &place, const QString &text) const;

    using Advance = std::function<double(QChar)>;

    /// Where each character begins, then the end: digits in the middle of their room.
    static QList<double> positions(const QString &text, const Advance &advance);

    /// The width that each digit gets.
    static double digitWidth(const Advance &advance);

private:
    Advance _advance() const;

    QFont m_font;
    bool m_isNeeded;
};

} // namespace qw
