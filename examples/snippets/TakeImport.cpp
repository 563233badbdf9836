#include "TakeImport.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>

#include <QApplication>

TakeImport::TakeImport(QMenu &fileMenu, std::function<bool(const QString &path)> open)
    : m_open(std::move(open))
{
    platform::setDelegate(qApp, this); // or override QWApplication::openFile()
    platform::addMenuItem(fileMenu, platform::localized("Import from Recorder…"), "importFromRecorder:");
}

void TakeImport::importFromRecorder(QObject *)
{
    QWVeskBrowser::openWindow();
}

bool TakeImport::applicationOpenFile(const QString &path)
{
    return m_open(path);
}
