#include "CaptureSheetHost.h"
#include "fakes/QWTestMain.h"

/// What the capture sheet makes of keys and clicks: real key events, through dispatch.
class tst_KeyCaptureSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_host.reset(); }
    void sheetBeginsWithTheShortcutsKey();
    void returnStartsAnEditToo();
    void nothingStartsOutsideShortcutRows();
    void keysOperateNothing_data();
    void keysOperateNothing();
    void keyIsShownAndSet();
    void cancelSetsNothing();
    void reservedIsRefused_data();
    void reservedIsRefused();
    void keyInUseIsRefused();
    void ownKeyIsNoConflict();
    void optionTurnsClearIntoClearOther();
    void visibleButtonClearsTheOther();
    void clearingTheOtherIsToldBeforeAndAfter();
    void longNamesFitTheButton();
    void clearOtherWithoutAConflictIsDisabled();
    void clearOtherAsksAgainWhenAThirdHasTheKey();
    void clearOtherDoesNotAllowAReservedKey();
    void clearAndOKRemoveTheKey();
    void keyWithoutCharacterIsHeldByNobody();
    void okStaysAsTheLastEditLeftIt();
    void optionIsForgottenWithTheWindow();
    void firstShortcutKeepsItsKeyUntilOK();
    void reloadEndsTheEdit();
    void closingTheWindowEndsTheEdit();
    void shortcutsFireAgainAfterwards();

private:
    std::unique_ptr<CaptureSheetHost> m_host;
};

void tst_KeyCaptureSheet::init()
{
    m_host = std::make_unique<CaptureSheetHost>();
    QVERIFY(m_host->isOpen);
}

void tst_KeyCaptureSheet::sheetBeginsWithTheShortcutsKey()
{
    QVERIFY(m_host->edit(1, 1));
    QCOMPARE(m_host->intro->text(),
             QString("Enter the key combination you would like to use as a shortcut for “Paste Special>Mérge”..."));
    QCOMPARE(m_host->shown->text(), QString("⇧⌘M"));
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->clear->isEnabled());
    QCOMPARE(m_host->clear->text(), QString("Clear"));
    QCOMPARE(m_host->sheet()->parentWidget(), m_host->window());
    QCOMPARE(m_host->sheet()->windowModality(), Qt::WindowModal);
    m_host->click(m_host->cancel);
    QVERIFY(m_host->edit(0, 2));
    QCOMPARE(m_host->shown->text(), QString());
    QVERIFY(!m_host->clear->isEnabled());
}

void tst_KeyCaptureSheet::returnStartsAnEditToo()
{
    m_host->outline()->expandAll();
    m_host->outline()->setFocus();
    m_host->outline()->setCurrentIndex(m_host->shortcut(1, 0));
    m_host->type(Qt::Key_Return);
    QVERIFY(m_host->sheet()->isVisible());
    QVERIFY(m_host->intro->text().contains("“Cut”"));
}

void tst_KeyCaptureSheet::nothingStartsOutsideShortcutRows()
{
    auto *const viewport = m_host->outline()->viewport();
    const QPoint group = m_host->outline()->visualRect(m_host->group(0)).center();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, group);
    QVERIFY(!m_host->sheet()->isVisible());
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, viewport->rect().bottomRight() - QPoint(5, 5));
    QVERIFY(!m_host->sheet()->isVisible());
    m_host->outline()->expandAll();
    const QPoint box = m_host->outline()->visualRect(m_host->shortcut(0, 0, EditorHost::Column::Enabled)).center();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, box);
    QVERIFY(!m_host->sheet()->isVisible());
    m_host->outline()->setFocus();
    m_host->outline()->setCurrentIndex(m_host->group(0));
    m_host->type(Qt::Key_Return);
    QVERIFY(!m_host->sheet()->isVisible());
}

void tst_KeyCaptureSheet::keysOperateNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("shown");
    QTest::newRow("Return") << int(Qt::Key_Return) << "⏎";
    QTest::newRow("Enter") << int(Qt::Key_Enter) << "⌤";
    QTest::newRow("Space") << int(Qt::Key_Space) << "[space]";
    QTest::newRow("Tab") << int(Qt::Key_Tab) << "⇥";
    QTest::newRow("Escape") << int(Qt::Key_Escape) << "⎋";
    QTest::newRow("Down") << int(Qt::Key_Down) << "↓";
    QTest::newRow("Delete") << int(Qt::Key_Delete) << "⌦";
    QTest::newRow("assigned") << int(Qt::Key_P) << "P";
}

void tst_KeyCaptureSheet::keysOperateNothing()
{
    QFETCH(int, key);
    QVERIFY(m_host->edit(1, 0));
    m_host->type(Qt::Key(key));
    QVERIFY(m_host->sheet()->isVisible());
    QTEST(m_host->shown->text(), "shown");
    QVERIFY(m_host->shown->hasFocus());
    QCOMPARE(m_host->receiver.sent, QStringList());
}

void tst_KeyCaptureSheet::keyIsShownAndSet()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(m_host->shown->text(), QString("⌥⌘K"));
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled());
    m_host->click(m_host->ok);
    QVERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', EditorHost::option | EditorHost::command));
    QCOMPARE(m_host->system.current().first().toMap().value("character").toInt(), int('k'));
    QCOMPARE(m_host->shortcut(0, 0, EditorHost::Column::Shortcut).data().toString(), QString("⌥⌘K"));
    QVERIFY(m_host->outline()->isExpanded(m_host->group(0)));
}

void tst_KeyCaptureSheet::cancelSetsNothing()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    m_host->click(m_host->cancel);
    QVERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    QCOMPARE(m_host->system.current(), QVariantList());
}

void tst_KeyCaptureSheet::reservedIsRefused_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Command-Space") << int(Qt::Key_Space) << int(Qt::ControlModifier);
    QTest::newRow("Option-Command-Space") << int(Qt::Key_Space) << int(Qt::ControlModifier | Qt::AltModifier);
    QTest::newRow("Escape") << int(Qt::Key_Escape) << 0;
    QTest::newRow("Shift-Tab") << int(Qt::Key_Backtab) << int(Qt::ShiftModifier);
    QTest::newRow("Shift-Command-Tab") << int(Qt::Key_Backtab) << int(Qt::ShiftModifier | Qt::ControlModifier);
    QTest::newRow("Control-F2") << int(Qt::Key_F2) << int(Qt::MetaModifier);
    QTest::newRow("Command-H") << int(Qt::Key_H) << int(Qt::ControlModifier);
}

void tst_KeyCaptureSheet::reservedIsRefused()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(m_host->outro->text(), m_host->reserved);
    QVERIFY(!m_host->ok->isEnabled());
    m_host->type(Qt::Key_K);
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled());
}

void tst_KeyCaptureSheet::keyInUseIsRefused()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Cut"));
    QVERIFY(!m_host->ok->isEnabled());
    QCOMPARE(m_host->receiver.sent, QStringList());
    m_host->click(m_host->ok);
    QVERIFY(m_host->sheet()->isVisible());
    m_host->type(Qt::Key_S);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Stop")); // a shortcut that is off has its key all the same
}

void tst_KeyCaptureSheet::ownKeyIsNoConflict()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    m_host->type(Qt::Key_P);
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled());
}

void tst_KeyCaptureSheet::optionTurnsClearIntoClearOther()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    const int width = m_host->clear->width();
    m_host->press(Qt::Key_Alt);
    QCOMPARE(m_host->clear->text(), QString("Clear Other"));
    QVERIFY(m_host->clear->isEnabled());
    QCOMPARE(m_host->clear->width(), width);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Cut"));
    QVERIFY(!m_host->ok->isEnabled());
    m_host->release(Qt::Key_Alt, Qt::AltModifier);
    QCOMPARE(m_host->clear->text(), QString("Clear"));
    m_host->press(Qt::Key_Alt);
    m_host->click(m_host->clear, Qt::AltModifier);
    QVERIFY(m_host->at(1, 0)->key().isClear());
    QCOMPARE(m_host->system.current().size(), 1); // at once
    QCOMPARE(m_host->shortcut(1, 0, EditorHost::Column::Shortcut).data().toString(), QString());
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled());
    QVERIFY(!m_host->clear->isEnabled());
    QCOMPARE(m_host->shown->text(), QString("⌘X"));
    m_host->click(m_host->ok);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('x', EditorHost::command));
    QCOMPARE(m_host->system.current().size(), 2);
}

void tst_KeyCaptureSheet::visibleButtonClearsTheOther()
{
    QVERIFY(m_host->edit(0, 0));
    QVERIFY(!m_host->clearOther->isVisible());
    const int height = m_host->sheet()->height();
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(m_host->clearOther->isVisible() && m_host->clearOther->isEnabled());
    QCOMPARE(m_host->clearOther->text(), QString("Clear the Shortcut of “Cut”"));
    QCOMPARE(m_host->clear->text(), QString("Clear"));
    m_host->click(m_host->clearOther);
    QVERIFY(m_host->at(1, 0)->key().isClear());
    QCOMPARE(m_host->system.current().size(), 1); // at once
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled() && !m_host->clearOther->isVisible());
    QVERIFY(m_host->shown->hasFocus());
    QCOMPARE(m_host->shown->text(), QString("⌘X"));
    QCOMPARE(m_host->sheet()->height(), height); // nothing jumps
}

/// Cancel has no way back.
void tst_KeyCaptureSheet::clearingTheOtherIsToldBeforeAndAfter()
{
    QVERIFY(m_host->edit(0, 0));
    const QString usual = m_host->hint->text();
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(m_host->hint->text().contains("saved at once, and Cancel does not bring it back"));
    m_host->press(Qt::Key_Alt);
    m_host->click(m_host->clear, Qt::AltModifier);
    m_host->release(Qt::Key_Alt, Qt::AltModifier);
    QCOMPARE(m_host->hint->text(), "The shortcut of “Cut” was cleared. " + usual);
    m_host->type(Qt::Key_K);
    QCOMPARE(m_host->hint->text(), usual);
}

void tst_KeyCaptureSheet::longNamesFitTheButton()
{
    m_host->at(1, 0)->setName(QString("A & B ").repeated(40));
    QVERIFY(m_host->edit(0, 0));
    const int width = m_host->sheet()->width();
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(m_host->clearOther->text().startsWith("Clear the Shortcut of “A && B"));
    QVERIFY(m_host->clearOther->text().contains("…"));
    QVERIFY(m_host->clearOther->accessibleName().contains(m_host->at(1, 0)->name()));
    QCOMPARE(m_host->sheet()->width(), width);
}

void tst_KeyCaptureSheet::clearOtherWithoutAConflictIsDisabled()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    QVERIFY(m_host->clear->isEnabled());
    m_host->press(Qt::Key_Alt);
    QCOMPARE(m_host->clear->text(), QString("Clear Other"));
    QVERIFY(!m_host->clear->isEnabled());
    m_host->release(Qt::Key_Alt, Qt::AltModifier);
    QVERIFY(m_host->clear->isEnabled());
}

void tst_KeyCaptureSheet::clearOtherAsksAgainWhenAThirdHasTheKey()
{
    m_host->at(0, 2)->setKey(QWShortcutKey('x', EditorHost::command));
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Record"));
    m_host->press(Qt::Key_Alt);
    m_host->click(m_host->clear, Qt::AltModifier);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Cut"));
    QVERIFY(!m_host->ok->isEnabled());
    QVERIFY(m_host->clear->isEnabled());
    m_host->click(m_host->clear, Qt::AltModifier);
    QVERIFY(m_host->ok->isEnabled());
}

void tst_KeyCaptureSheet::clearOtherDoesNotAllowAReservedKey()
{
    m_host->at(1, 0)->setKey(QWShortcutKey('h', EditorHost::command));
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_H, Qt::ControlModifier);
    m_host->press(Qt::Key_Alt);
    m_host->click(m_host->clear, Qt::AltModifier);
    QVERIFY(m_host->at(1, 0)->key().isClear());
    QCOMPARE(m_host->outro->text(), m_host->reserved);
    QVERIFY(!m_host->ok->isEnabled());
}

void tst_KeyCaptureSheet::clearAndOKRemoveTheKey()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    m_host->click(m_host->clear);
    QCOMPARE(m_host->shown->text(), QString());
    QCOMPARE(m_host->outro->text(), QString());
    QVERIFY(m_host->ok->isEnabled());
    QVERIFY(!m_host->clear->isEnabled());
    QVERIFY(!m_host->at(1, 0)->key().isClear());
    m_host->click(m_host->ok);
    QVERIFY(m_host->at(0, 0)->key().isClear());
    QCOMPARE(m_host->system.current().size(), 1);
}

void tst_KeyCaptureSheet::keyWithoutCharacterIsHeldByNobody()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_VolumeUp); // Record has no key either
    QCOMPARE(m_host->shown->text(), QString());
    QCOMPARE(m_host->outro->text(), QString());
}

void tst_KeyCaptureSheet::okStaysAsTheLastEditLeftIt()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_H, Qt::ControlModifier);
    m_host->click(m_host->cancel);
    QVERIFY(m_host->edit(1, 0));
    QVERIFY(!m_host->ok->isEnabled());
    m_host->type(Qt::Key_K);
    QVERIFY(m_host->ok->isEnabled());
}

void tst_KeyCaptureSheet::optionIsForgottenWithTheWindow()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_Alt);
    QCOMPARE(m_host->clear->text(), QString("Clear Other"));
    QEvent elsewhere(QEvent::WindowDeactivate); // Alt and Tab: nobody hears of the Alt that goes up
    QCoreApplication::sendEvent(m_host->sheet(), &elsewhere);
    QCOMPARE(m_host->clear->text(), QString("Clear"));
    m_host->press(Qt::Key_Alt);
    m_host->click(m_host->cancel);
    QVERIFY(m_host->edit(0, 0));
    QCOMPARE(m_host->clear->text(), QString("Clear"));
}

void tst_KeyCaptureSheet::firstShortcutKeepsItsKeyUntilOK()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->editor()->open(); // a second edit cannot begin meanwhile
    QTest::mouseDClick(m_host->outline()->viewport(), Qt::LeftButton, {},
                       m_host->outline()->visualRect(m_host->shortcut(1, 0)).center());
    QVERIFY(m_host->intro->text().contains("“Play”"));
}

void tst_KeyCaptureSheet::reloadEndsTheEdit()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    m_host->registry().loadCurrentShortcuts();
    QVERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
}

void tst_KeyCaptureSheet::closingTheWindowEndsTheEdit()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->window()->close();
    QVERIFY(!m_host->sheet()->isVisible());
    QVERIFY(m_host->open());
    QVERIFY(!m_host->sheet()->isVisible());
    QVERIFY(m_host->edit(1, 0));
}

void tst_KeyCaptureSheet::shortcutsFireAgainAfterwards()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_P);
    QCOMPARE(m_host->receiver.sent, QStringList());
    m_host->click(m_host->cancel);
    QVERIFY(EditorHost::becomesKey(*m_host->window()));
    m_host->outline()->setFocus();
    m_host->type(Qt::Key_P);
    QCOMPARE(m_host->receiver.sent, QStringList{"play 1"});
}

QW_TEST_MAIN(tst_KeyCaptureSheet)
#include "tst_KeyCaptureSheet.moc"
