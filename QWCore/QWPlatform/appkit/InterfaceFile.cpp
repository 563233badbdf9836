#include "InterfaceFile.h"

#include "Panel.h"
#include "QWPlatform/System.h"
#include "QWPlatform/appkit/responders/ControlActions.h"
#include "QWPlatform/foundation/Bundle.h"
#include "QWPlatform/foundation/Localization.h"
#include "Selector.h"

#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QScopeGuard>
#include <QUiLoader>

#include <array>
#include <vector>

namespace platform
{

namespace
{
/// Properties whose texts are for the user.
constexpr std::array textProperties{"text", "title", "windowTitle", "toolTip", "placeholderText", "accessibleName"};

QHash<QString, InterfaceFile::Factory> &factories()
{
    static QHash<QString, InterfaceFile::Factory> table{
        {"platform::Panel", [](QWidget *parent) -> QWidget * { return new Panel(parent); }},
    };
    return table;
}

class Loader : public QUiLoader
{
public:
    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        const InterfaceFile::Factory factory = factories().value(className);
        if (!factory)
            return QUiLoader::createWidget(className, parent, name);
        QWidget *const widget = factory(parent);
        widget->setObjectName(name);
        return widget;
    }
};

/// A loader that knows no designer plug-ins: its constructor would load them all, and the web engine with them.
std::unique_ptr<Loader> makeLoader()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    const auto restore = qScopeGuard([&] { QCoreApplication::setLibraryPaths(paths); });
    return std::make_unique<Loader>();
}

void localizeTexts(QObject &object)
{
    for (const char *const property : textProperties) {
        const QVariant value = object.property(property);
        if (value.typeId() == QMetaType::QString && !value.toString().isEmpty())
            object.setProperty(property, localized(value.toString()));
    }
}
} // namespace

class Q_DECL_HIDDEN InterfaceFile::Private
{
public:
    explicit Private(const QString &name)
        : m_name(name)
    {
    }

    QString _path(const Bundle &bundle);
    void _load(const QString &path, QWidget *parent);
    void _connectActions(QObject &owner);
    void _connectAction(QObject &control, QObject &owner);
    QObject *_find(const QString &name, const QMetaObject &type);
    void _fail(const QString &error);

    const QString m_name;
    std::unique_ptr<QWidget> m_widget;
    QStringList m_errors;
    std::vector<std::function<void()>> m_outlets; ///< Each makes one null.
};

InterfaceFile::InterfaceFile(const QString &name, const Bundle &bundle, QObject &owner, QWidget *parent)
    : d(std::make_unique<Private>(name))
{
    const QString path = d->_path(bundle);
    if (!path.isEmpty())
        d->_load(path, parent);
    if (d->m_widget)
        d->_connectActions(owner);
}

InterfaceFile::~InterfaceFile()
{
    if (d->m_widget && d->m_widget->parentWidget())
        d->m_widget.release(); // its parent owns it
}

QWidget *InterfaceFile::widget() const
{
    return d->m_widget.get();
}

std::unique_ptr<QWidget> InterfaceFile::takeWidget()
{
    d->m_outlets.clear();
    return std::move(d->m_widget);
}

bool InterfaceFile::isComplete() const
{
    if (d->m_errors.isEmpty())
        return true;
    for (const auto &clear : d->m_outlets)
        clear();
    return false;
}

const QStringList &InterfaceFile::errors() const
{
    return d->m_errors;
}

void InterfaceFile::registerClass(const QString &className, Factory factory)
{
    factories().insert(className, std::move(factory));
}

QObject *InterfaceFile::_find(const QString &name, const QMetaObject &type)
{
    return d->_find(name, type);
}

void InterfaceFile::_clearIfIncomplete(std::function<void()> clear)
{
    d->m_outlets.push_back(std::move(clear));
}

QString InterfaceFile::Private::_path(const Bundle &bundle)
{
    QString path = System::current().mainBundle().pathForResource(m_name, "ui");
    if (path.isEmpty())
        path = bundle.pathForResource(m_name, "ui");
    if (path.isEmpty())
        _fail("there is no such file in the host's resources or in " + bundle.resourcesPath());
    return path;
}

void InterfaceFile::Private::_load(const QString &path, QWidget *parent)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return _fail(file.errorString());
    const auto loader = makeLoader();
    m_widget.reset(loader->load(&file, parent));
    if (!m_widget)
        _fail(loader->errorString());
}

void InterfaceFile::Private::_connectActions(QObject &owner)
{
    QObjectList objects = m_widget->findChildren<QObject *>();
    objects.prepend(m_widget.get());
    for (QObject *const object : std::as_const(objects)) {
        localizeTexts(*object);
        _connectAction(*object, owner);
    }
}

void InterfaceFile::Private::_connectAction(QObject &control, QObject &owner)
{
    const QString name =
        control.dynamicPropertyNames().contains("action") ? control.property("action").toString() : QString();
    if (name.isEmpty())
        return;
    if (!respondsTo(&owner, name))
        _fail(QString("the owner, a %1, has no method for the action \"%2\" of \"%3\"")
                  .arg(owner.metaObject()->className(), name, control.objectName()));
    else if (!connectControl(control, name, owner))
        _fail(QString("\"%1\", a %2, sends no action").arg(control.objectName(), control.metaObject()->className()));
}

QObject *InterfaceFile::Private::_find(const QString &name, const QMetaObject &type)
{
    if (!m_widget)
        return nullptr;
    QObject *const found = m_widget->objectName() == name ? m_widget.get() : m_widget->findChild<QObject *>(name);
    if (!found)
        _fail(QString("there is no outlet \"%1\"").arg(name));
    else if (!type.cast(found))
        _fail(QString("the outlet \"%1\" is a %2, not a %3")
                  .arg(name, found->metaObject()->className(), type.className()));
    return found;
}

void InterfaceFile::Private::_fail(const QString &error)
{
    m_errors.append("Interface file \"" + m_name + "\": " + error);
    qWarning("%s", qPrintable(m_errors.last()));
}

} // namespace platform
