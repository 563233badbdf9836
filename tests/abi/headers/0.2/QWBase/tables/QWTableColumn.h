#pragma once

#include <QWPlatform/foundation/Formatter.h>

#include <QString>
#include <Qt>

#include <memory>

/// A column of a QWTableView. A value that is copied.
struct QWTableColumn
{
    /// Of a model's headers: the identifier of the column, a QString.
    static constexpr int IdentifierRole = Qt::UserRole + 0x5157;

    QString identifier{}; ///< Which of the model's columns it shows; "" is no column.
    QString title{};      ///< Its header, in the user's language.

    /// Makes the texts of its cells; without one the model's texts stand as they are.
    std::shared_ptr<const platform::Formatter> formatter{};

    double width = 0;                        ///< In points (1/72 inch), as sizes of text are; 0: what it holds fits.
    Qt::Alignment alignment = Qt::AlignLeft; ///< Of header and cells, to the sides.
};
