#include "PluginValidation.h"

#include "../shell/QWSplashScreen.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWCatalogRecord.h>
#include <QWBase/QWFile.h>
#include <QWBase/QWPathStrings.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/devices/KeyboardState.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/ChildProcesses.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

using platform::formatted;
using platform::localized;
using platform::System;

namespace
{
/// First byte of the key map while the key with code 1 ("S") is down and its seven neighbours there are not.
constexpr quint8 skipKeyAlone = 0x02;

const char anchor = 0; ///< Lies in this framework, and so tells where that is.

void setExceptionsHandled(bool handled)
{
    if (auto *application = QWApplication::sharedApplication())
        application->setHandleExceptions(handled);
}
} // namespace

PluginValidation::Scan::Scan(const PluginFormat &format)
{
    QWSplashScreen::setAction(localized(format.locatingText));
    setExceptionsHandled(false);
}

PluginValidation::Scan::~Scan()
{
    setExceptionsHandled(true);
}

PluginValidation::PluginValidation(const PluginFormat &format)
    : m_format(format)
    , m_databasePath(QWFile::conformPath(format.databasePath))
    , m_validatedInfoPath(QWFile::conformPath(format.validatedInfoPath))
{
}

bool PluginValidation::userIgnores(const QString &name) const
{
    constexpr int ignoreButton = 0;
    return platform::runAlert({formatted(localized(m_format.graylistText), {name}),
                               localized(m_format.graylistQuestion),
                               {localized("Ignore"), localized("Use")}}) == ignoreButton;
}

bool PluginValidation::isSkipped()
{
    m_skipValidation |= System::current().keyboardState().keyMap()[0] == skipKeyAlone;
    return m_skipValidation;
}

void PluginValidation::validate(QWCatalogRecord &record, const QStringList &arguments, const QString &shownName,
                                const QString &failureName)
{
    if (QWSplashScreen::isVisible())
        QWSplashScreen::setAction(formatted(localized("Validating '%@'"), {shownName}));
    System::current().childProcesses().run({_validatorPath(), arguments});
    if (_takeValidatedInfo(record))
        return;
    platform::runAlert({formatted(localized(m_format.failureText), {failureName}), {}, {}});
    record.setIgnore(true);
}

const QString &PluginValidation::_validatorPath()
{
    if (m_validatorPath.isEmpty()) {
        m_validatorPath = platform::Bundle::forAddress(&anchor).executablePath();
        QWPathStrings::replaceLastPathComponent(m_validatorPath, formatted("Versions/A/%@.app/Contents/MacOS/%@",
                                                                           {m_format.validator, m_format.validator}));
    }
    return m_validatorPath;
}

/// What the validator left for @p record, whole dictionary or not, counts as success; false when it left nothing.
bool PluginValidation::_takeValidatedInfo(QWCatalogRecord &record) const
{
    if (!QWFile::existsAtPath(m_validatedInfoPath))
        return false;
    const QString path = System::current().locations().mapped(m_validatedInfoPath);
    record.setState(platform::PropertyList::dictionaryFromFile(path).value_or(QVariantMap()));
    QWFile::deleteFileAtPath(m_validatedInfoPath);
    return true;
}
