#include "SoundTable.h"

#include <QWBase/tables/QWFileSizeFormatter.h>
#include <QWBase/tables/QWTimeFormatter.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>

using platform::localized;
using platform::System;

SoundTable::SoundTable(QWidget *parent)
    : QWTableView(parent)
{
    addCornerMenuItemForColumnIdentifier(localized("Length"), "length");
    addCornerMenuItemForColumnIdentifier(localized("Size"), "size");
}

void SoundTable::showSounds(QAbstractItemModel &sounds)
{
    addTableColumn(tableColumnForIdentifierWidth("title", 160));
    addTableColumn(tableColumnForIdentifierWidth("length", 60));
    setColumnState(System::current().userDefaults().object("Sound Columns")); // where there is one
    setModel(&sounds);
}

QWTableColumn SoundTable::tableColumnForIdentifierWidth(const QString &identifier, double width) const
{
    if (identifier == "title")
        return {identifier, localized("Title"), nullptr, width};
    if (identifier == "length")
        return {identifier, localized("Length"), std::make_shared<QWTimeFormatter>(), width, Qt::AlignRight};
    if (identifier == "size")
        return {identifier, localized("Size"), std::make_shared<QWFileSizeFormatter>(), width, Qt::AlignRight};
    return {};
}

SoundTable::~SoundTable()
{
    System::current().userDefaults().setObject("Sound Columns", columnState());
}
