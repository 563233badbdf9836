#include "PluginValidation.h"

#include "QWUtilities/shell/QWSplashScreen.h"
#include "TrialLock.h"
#include "TrialLog.h"
#include "TrialPlace.h"
#include "TrialTrouble.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWCatalogRecord.h>
#include <QWBase/QWFile.h>
#include <QWBase/files/QWPathStrings.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/devices/input/KeyboardState.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QFileInfo>

using platform::formatted;
using platform::localized;
using platform::System;
using platform::SystemServices;

namespace qw
{

namespace
{
/// First byte of the key map while the key with code 1 ("S") is down and its seven neighbours there are not.
constexpr quint8 skipKeyAlone = 0x02;

/// One for all formats: what a validator does to the machine, such as to a sound card, disturbs any other.
constexpr auto lockPath = "~/Library/Application Support/Quorwell/validation.lock";

/// Bytes of what a plug-in prints while it is tried; the log holds no more of it.
constexpr qsizetype longestOutput = 8192;

const char anchor = 0; ///< Lies in this framework, and so tells where that is.

void setExceptionsHandled(bool handled)
{
    if (auto *application = QWApplication::sharedApplication())
        application->setHandleExceptions(handled);
}
} // namespace

PluginValidation::Scan::Scan(PluginValidation &validation)
{
    validation.m_canTry = true;
    validation.m_hasTried = false;
    QWSplashScreen::setAction(localized(validation.m_format.locatingText));
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
    m_skipValidation |= SystemServices::current().keyboardState->keyMap()[0] == skipKeyAlone;
    return m_skipValidation;
}

bool PluginValidation::validate(QWCatalogRecord &record, const QStringList &arguments, const QString &shownName,
                                const QString &failureName)
{
    if (QWSplashScreen::isVisible())
        QWSplashScreen::setAction(formatted(localized("Validating '%@'"), {shownName}));
    const Trial trial = _try(record, arguments, failureName);
    m_canTry = trial != Trial::Impossible;
    if (trial == Trial::Failed) {
        platform::runAlert({formatted(localized(m_format.failureText), {failureName}), {}, {}});
        record.setIgnore(true);
    }
    if (m_canTry)
        TrialTrouble::sharedInstance().forget();
    else
        TrialTrouble::sharedInstance().tell(m_format, m_trouble);
    return m_canTry;
}

/// Whoever looks at the result must have the lock: others leave theirs at the same place.
PluginValidation::Trial PluginValidation::_try(QWCatalogRecord &record, const QStringList &arguments,
                                               const QString &name)
{
    if (!m_hasTried && !_handOffFits())
        return Trial::Impossible;
    const TrialLock lock(System::current().locations().mapped(lockPath), System::current().clock());
    if (lock.isHeldByAnother()) {
        m_trouble = localized("Another program is trying plug-ins and does not come to an end.");
        return Trial::Impossible;
    }
    m_hasTried = true;
    const auto result = SystemServices::current().childProcesses->run({.launchPath = _validatorPath(),
                                                                       .arguments = arguments,
                                                                       .captureErrors = true,
                                                                       .longestOutput = longestOutput});
    const bool hasPassed = _takeValidatedInfo(record);
    if (!hasPassed && !_handOffFits())
        return Trial::Impossible;
    TrialLog::note(name, result, hasPassed);
    return hasPassed ? Trial::Passed : Trial::Failed;
}

/// A result that nobody can write says nothing about a plug-in.
bool PluginValidation::_handOffFits()
{
    const QString why = whyNoHandOffFits(System::current().locations().mapped(m_validatedInfoPath));
    m_trouble = formatted(localized("The folder '%@' takes no files: %@. New plug-ins are left out, and tried "
                                    "once it does."),
                          {QFileInfo(m_validatedInfoPath).path(), why});
    return why.isEmpty();
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

} // namespace qw
