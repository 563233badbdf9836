#include "SoundActionsTest.h"

#include "Sounds.h"

#include <audio/SoundFile.h>
#include <audio/WorkProgress.h>

#include <QWPlatform/appkit/MenuItem.h>

using platform::SystemScope;

void SoundActionsTest::init()
{
    m_report = {};
    m_script = {};
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<SystemScope>(*m_system);
    m_document = std::make_unique<demo::AudioDocument>();
    m_window = std::make_unique<demo::MainWindow>(*m_document);
    m_actions = std::make_unique<demo::SoundActions>(*m_document, *m_window);
    m_system->pluginLoader.makeComponent = [this](const platform::AudioComponent &component) {
        return component == unit().component() ? std::make_unique<ScriptedPlugin>(m_script, m_report) : nullptr;
    };
}

void SoundActionsTest::cleanup()
{
    m_actions.reset();
    m_window.reset();
    m_document.reset();
    m_scope.reset();
    m_system.reset();
}

void SoundActionsTest::_open(const QString &name)
{
    const QString path = m_system->real("~/" + name);
    QString error;
    demo::WorkProgress progress;
    QVERIFY(demo::SoundFile::write(path, sounds::constant({0.5f, -0.5f}, 4800), demo::SoundFile::Format::WavFloat,
                                   progress, &error));
    m_actions->openFile(path);
    _waitForWork();
    QCOMPARE(m_document->title(), name);
}

void SoundActionsTest::_apply(const QVariant &plugIn)
{
    platform::MenuItem item("Echo & Co");
    item.setRepresentedObject(plugIn);
    m_actions->applyEffect(&item);
    _waitForWork();
}
