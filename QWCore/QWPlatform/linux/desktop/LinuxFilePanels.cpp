#include "LinuxFilePanels.h"

#include "FileNameIcons.h"
#include "QWPlatform/System.h"
#include "QWPlatform/appkit/Alerts.h"
#include "QWPlatform/foundation/Localization.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/foundation/UserDefaults.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>

namespace platform
{

namespace
{
/// Outlives the panels, which ask it on a thread of their own.
FileNameIcons &fileIcons()
{
    static auto &icons = *new FileNameIcons;
    return icons;
}

constexpr auto lastFolderKey = "NSNavLastRootDirectory";

QString lastFolder()
{
    const System &system = System::current();
    const QString stored = system.locations().mapped(system.userDefaults().string(lastFolderKey));
    return QFileInfo(stored).isDir() ? stored : system.locations().home();
}

/// Kept with "~" for the home folder.
void rememberFolder(const QString &folder)
{
    const System &system = System::current();
    const QString &home = system.locations().home();
    const bool below = folder == home || folder.startsWith(home + '/');
    system.userDefaults().setObject(lastFolderKey, below ? '~' + folder.mid(home.size()) : folder);
}

QFileDialog *makePanel(QWidget *window, const QString &title)
{
    auto *const panel = new QFileDialog(window, title, lastFolder());
    panel->setIconProvider(&fileIcons());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    return panel;
}

QString withExtension(const QString &path, const QString &extension)
{
    const bool has = extension.isEmpty() || path.endsWith('.' + extension, Qt::CaseInsensitive);
    return has ? path : path + '.' + extension;
}

QString filterFor(const QStringList &extensions)
{
    QStringList patterns;
    for (const QString &extension : extensions)
        patterns.append("*." + extension);
    return patterns.join(' ');
}

/// Offers files with these @p extensions, under @p title where there is one.
void filterFiles(QFileDialog &panel, const QStringList &extensions, const QString &title)
{
    if (extensions.isEmpty())
        return;
    panel.setOption(QFileDialog::HideNameFilterDetails, !title.isEmpty());
    panel.setNameFilter(title.isEmpty() ? filterFor(extensions) : title + " (" + filterFor(extensions) + ')');
}

/// Devices, pipes and sockets may never end or never answer; the panel lists none, but takes their names.
bool isSpecial(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isFile() && !file.isDir();
}

bool hasSpecial(const QStringList &paths)
{
    const auto special = std::find_if(paths.begin(), paths.end(), isSpecial);
    if (special == paths.end())
        return false;
    runAlert({formatted(localized("“%@” cannot be used."), {QFileInfo(*special).fileName()}),
              localized("It is a device or a connection, not a file."),
              {}});
    return true;
}

/// The panel asks for the name that it was told itself; an extension added afterwards may name another file.
bool mayWrite(const QString &chosen, const QString &path)
{
    if (path == chosen || !QFileInfo::exists(path))
        return true;
    Alert alert;
    alert.messageText =
        formatted(localized("“%@” already exists. Do you want to replace it?"), {QFileInfo(path).fileName()});
    alert.informativeText = localized("Replacing it overwrites its current contents.");
    alert.buttons = QStringList{localized("Replace"), localized("Cancel")};
    return runAlert(alert) == 0;
}

QStringList typesOf(const SavePanelRequest &request)
{
    QStringList types{request.requiredFileType};
    types += request.otherFileTypes;
    types.removeDuplicates();
    return types;
}

void prepareSave(QFileDialog &panel, const SavePanelRequest &request)
{
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setDefaultSuffix(request.requiredFileType);
    if (!request.requiredFileType.isEmpty())
        filterFiles(panel, typesOf(request), {});
    if (!request.suggestedName.isEmpty())
        panel.selectFile(withExtension(QString(request.suggestedName).replace('/', '-'), request.requiredFileType));
}

void prepareOpen(QFileDialog &panel, const OpenPanelRequest &request)
{
    panel.setAcceptMode(QFileDialog::AcceptOpen);
    panel.setOption(QFileDialog::ShowDirsOnly, request.directories);
    panel.setFileMode(request.directories
                          ? QFileDialog::Directory
                          : (request.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile));
    filterFiles(panel, request.fileTypes, request.fileTypesTitle);
    if (!request.confirmTitle.isEmpty())
        panel.setLabelText(QFileDialog::Accept, request.confirmTitle);
}
} // namespace

void LinuxFilePanels::beginSavePanel(const SavePanelRequest &request, std::function<void(int, const QString &)> didEnd)
{
    QFileDialog *const panel = makePanel(request.window, request.title);
    prepareSave(*panel, request);
    QObject::connect(panel, &QDialog::finished, panel, [=](int result) {
        const QString chosen = result == QDialog::Accepted ? panel->selectedFiles().value(0) : QString();
        const bool keeps = request.otherFileTypes.contains(QFileInfo(chosen).suffix(), Qt::CaseInsensitive);
        const QString path = chosen.isEmpty() || keeps ? chosen : withExtension(chosen, request.requiredFileType);
        if (path.isEmpty() || hasSpecial({path}) || !mayWrite(chosen, path))
            return didEnd(Cancel, {});
        rememberFolder(QFileInfo(path).absolutePath());
        didEnd(OK, path);
    });
    panel->show();
}

void LinuxFilePanels::beginOpenPanel(const OpenPanelRequest &request,
                                     std::function<void(int, const QStringList &)> didEnd)
{
    QFileDialog *const panel = makePanel(request.window, request.title);
    prepareOpen(*panel, request);
    QObject::connect(panel, &QDialog::finished, panel, [=](int result) {
        const QStringList paths = result == QDialog::Accepted ? panel->selectedFiles() : QStringList();
        if (paths.isEmpty() || hasSpecial(paths))
            return didEnd(Cancel, {});
        rememberFolder(QFileInfo(paths.first()).absolutePath());
        didEnd(OK, paths);
    });
    panel->show();
}

} // namespace platform
