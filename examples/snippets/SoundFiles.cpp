#include "SoundFiles.h"

#include <QWBase/QWApplicationLog.h>
#include <QWBase/QWError.h>
#include <QWBase/QWFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/foundation/Localization.h>

using platform::FilePanels;
using platform::localized;

SoundFiles::SoundFiles(QWidget *window)
    : m_window(window)
{
}

void SoundFiles::openSound(QObject *)
{
    platform::OpenPanelRequest request;
    request.window = m_window; // a sheet on it
    request.title = localized("Open");
    request.fileTypes = {"wav", "aiff"};
    platform::System::current().filePanels().beginOpenPanel(request, [this](int code, const QStringList &paths) {
        if (code == FilePanels::OK)
            m_path = QWFile::conformPath(paths.first());
    });
}

void SoundFiles::saveCopy(QObject *)
{
    platform::SavePanelRequest request;
    request.window = m_window;
    request.title = localized("Save a Copy");
    request.requiredFileType = "wav";
    platform::System::current().filePanels().beginSavePanel(request, [this](int code, const QString &path) {
        if (code == FilePanels::OK && QWFile::conformPath(path) != m_path)
            _saveTo(path);
    });
}

void SoundFiles::_saveTo(const QString &path)
{
    QWError error;
    const bool isFree = !QWFile::existsAtPath(path) || QWFile::deleteFileAtPath(path, &error); // the panel has asked
    if (isFree && QWFile::copyPathToPath(m_path, path, &error))
        return;
    QWApplicationLog::sharedLog().warningMessage(QW_LOG_CONTEXT("SoundFiles"), error.message());
    error.alert();
}

bool SoundFiles::mayDiscardChanges() const
{
    const QStringList buttons{localized("Cancel"), localized("Discard")}; // Return and Escape choose "Cancel"
    return platform::runAlert({localized("Discard the changes?"), localized("They are not saved."), buttons}) == 1;
}
