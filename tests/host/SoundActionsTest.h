#pragma once

#include "ScriptedPlugin.h"

#include <app/MainWindow.h>
#include <app/SoundActions.h>
#include <fakes/FakeSystem.h>

#include <QWBase/QWComponentDescription.h>

#include <QTest>

#include <memory>

/// Tests of the host's actions on the fake machine, with one effect.
class SoundActionsTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();

protected:
    /// Long for work of half a second at most, but machines that build meanwhile are slow.
    static constexpr int patience = 30'000; // milliseconds

    /// The one audio unit; it does what m_script says.
    static QWComponentDescription unit() { return {platform::fourCharCode("aufx"), 1, 2}; }

    void _open(const QString &name = "in.wav");
    void _apply(const QVariant &plugIn);
    void _waitForWork() { QTRY_VERIFY_WITH_TIMEOUT(!m_actions->work().isRunning(), patience); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<demo::AudioDocument> m_document;
    std::unique_ptr<demo::MainWindow> m_window;
    std::unique_ptr<demo::SoundActions> m_actions;
    ScriptedPlugin::Report m_report;
    ScriptedPlugin::Script m_script;
};
