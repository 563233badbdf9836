#include "HostUnderTest.h"

#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QDir>
#include <QFile>

#include <cmath>

HostUnderTest *HostUnderTest::s_host = nullptr;

HostUnderTest::HostUnderTest(int &argc, char **argv)
    : m_isFurnished(_furnish())
    , application(argc, argv, {})
{
    s_host = this;
    if (!m_isFurnished)
        qFatal("the host's bundle cannot be read");
    application.finishLaunching();
}

HostUnderTest::~HostUnderTest()
{
    s_host = nullptr;
}

bool HostUnderTest::_furnish()
{
    const QDir bundle(QW_DEMO_BUNDLE);
    QStringList files{"shortcuts.plist"};
    for (const QString &preset : QDir(bundle.filePath("Keyboard Shortcuts")).entryList(QDir::Files))
        files.append("Keyboard Shortcuts/" + preset);
    for (const QString &name : files) {
        QFile file(bundle.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        system.addHostResource(name, file.readAll());
    }
    constexpr auto documents = "CFBundleDocumentTypes";
    const auto published = platform::PropertyList::dictionaryFromFile(bundle.filePath("Info.plist.in"));
    QVariantMap info = FakeSystem::defaultHostInfo();
    info.insert(documents, published.value_or(QVariantMap()).value(documents));
    system.writePropertyList(system.mainBundle().path() + "/Contents/Info.plist", info);
    return files.size() > 1 && published;
}

std::shared_ptr<QWShortcut> HostUnderTest::shortcut(const QString &name)
{
    for (const auto &group : registry().groups()) {
        for (const auto &shortcut : group->shortcuts()) {
            if (shortcut->name() == name)
                return shortcut;
        }
    }
    return nullptr;
}

void HostUnderTest::openSound()
{
    constexpr qint64 rate = 8000;
    demo::Sound sound = sounds::constant({0, 0}, 4 * rate);
    sound.sampleRate = rate;
    for (size_t frame = rate / 2; frame < 7 * rate / 2; ++frame) {
        const auto time = static_cast<float>(frame) / rate;
        sound.channels[0][frame] = 0.3f * std::sin(400 * time) + 0.1f;
        sound.channels[1][frame] = 0.4f * std::sin(700 * time) * time / 4 + 0.05f;
    }
    document().setSource("Sample", "Test", std::make_shared<const demo::Clip>(sound));
    viewport().showAll();
    viewport().setSelection({});
    viewport().setPosition(0);
}

bool HostUnderTest::press(const QString &name)
{
    const auto pressed = shortcut(name);
    if (!pressed)
        return false;
    platform::KeyEvent event;
    event.type = platform::KeyEvent::KeyDown;
    event.character = pressed->key().character();
    event.modifierFlags = pressed->key().modifiers();
    return pressed->key().isClear() ? pressed->perform(event) : registry().doShortcut(event);
}

bool HostUnderTest::pressAndWait(const QString &name)
{
    return press(name) && QTest::qWaitFor([this] { return !application.actions().work().isRunning(); }, patience);
}
