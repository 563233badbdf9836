#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace platform
{

/// What a save panel asks for, texts already localized. A value that hosts fill in, so it stays open.
struct SavePanelRequest
{
    QWidget *window = nullptr;    ///< The panel is a sheet on it; null: a panel of its own. Not owned.
    QString title;                ///< Of the panel.
    QString suggestedName;        ///< Without extension.
    QString requiredFileType;     ///< Extension that the chosen path is made to have; "" for any.
    QStringList otherFileTypes{}; ///< Extensions that a path which the user gave one of them keeps instead.
};

/// What an open panel asks for, texts already localized. A value that hosts fill in, so it stays open.
struct OpenPanelRequest
{
    QWidget *window = nullptr; ///< The panel is a sheet on it; null: a panel of its own. Not owned.
    QString title;             ///< Of the panel.
    QStringList fileTypes;     ///< Extensions that can be chosen; none: all.
    bool directories = false;  ///< Choose a folder instead of a file.
    bool multiple = false;     ///< Choose one or more instead of one.
    QString fileTypesTitle{};  ///< What files of these types are called; "": the panel names their extensions.
    QString confirmTitle{};    ///< Of the button that confirms; "": the desktop's word.
};

/// Save and open panels. Main thread.
class QWPLATFORM_EXPORT FilePanels
{
public:
    static constexpr int Cancel = 0; ///< Code of a panel that the user left.
    static constexpr int OK = 1;     ///< Code of a panel in which the user chose.

    virtual ~FilePanels();

    /// Shows the panel and returns; @p didEnd is called once, later, with OK and the path, or Cancel and "". It is not
    /// called when the window goes first.
    virtual void beginSavePanel(const SavePanelRequest &request,
                                std::function<void(int code, const QString &path)> didEnd) = 0;

    /// As beginSavePanel(), with the paths chosen.
    virtual void beginOpenPanel(const OpenPanelRequest &request,
                                std::function<void(int code, const QStringList &paths)> didEnd) = 0;
};

} // namespace platform
