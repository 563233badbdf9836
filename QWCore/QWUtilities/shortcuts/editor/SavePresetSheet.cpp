#include "SavePresetSheet.h"

#include "Announcement.h"

#include <QWPlatform/appkit/windows/Sheet.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace qw
{

SavePresetSheet::SavePresetSheet(const Outlets &outlets)
    : m_outlets(outlets)
{
    m_outlets.nameText->setValidator(&m_formatter);
    connect(m_outlets.nameText, &QLineEdit::textChanged, this, &SavePresetSheet::controlTextDidChange);
    connect(m_outlets.nameText, &QLineEdit::inputRejected, this, &SavePresetSheet::_sayRule);
}

SavePresetSheet::~SavePresetSheet() = default;

// saveShortcuts:
void SavePresetSheet::begin(QWidget &window, std::function<void(int)> didEnd)
{
    m_outlets.nameText->clear();
    m_outlets.saveButton->setEnabled(false);
    platform::beginSheet(*m_outlets.panel, &window, std::move(didEnd));
    m_outlets.panel->activateWindow();
    m_outlets.nameText->setFocus();
}

// closeSaveShortcutPanel:
void SavePresetSheet::close(const QObject *sender)
{
    platform::endSheet(*m_outlets.panel, sender->property("tag").toInt());
}

void SavePresetSheet::end()
{
    platform::endSheet(*m_outlets.panel);
}

QString SavePresetSheet::name() const
{
    return m_formatter.objectValueForString(m_outlets.nameText->text());
}

void SavePresetSheet::controlTextDidChange()
{
    m_outlets.saveButton->setEnabled(!m_outlets.nameText->text().isEmpty());
}

void SavePresetSheet::_sayRule()
{
    if (m_outlets.ruleText)
        announce(*m_outlets.ruleText, m_outlets.ruleText->text());
}

} // namespace qw
