// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsManager.h"
#include "settings/SettingsViewController.h"
#include "tests/doubles/MemoryDefaultsStore.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tallowmere::test {

/// A store in memory that writes down each write as "Key=value".
class JournalStore final : public DefaultsStore
{
public:
    explicit JournalStore(std::vector<std::string> &journal) : m_journal(journal) {}

    [[nodiscard]] bool contains(QByteArrayView key) const override { return m_store.contains(key); }
    [[nodiscard]] bool boolForKey(QByteArrayView key) const override { return m_store.boolForKey(key); }
    [[nodiscard]] QString stringForKey(QByteArrayView key) const override { return m_store.stringForKey(key); }
    void setBool(QByteArrayView key, bool value) override
    {
        m_journal.push_back(key.toByteArray().toStdString() + (value ? "=true" : "=false"));
        m_store.setBool(key, value);
    }
    void setString(QByteArrayView key, const QString &value) override
    {
        m_journal.push_back(key.toByteArray().toStdString() + '=' + value.toStdString());
        m_store.setString(key, value);
    }

private:
    std::vector<std::string> &m_journal;
    MemoryDefaultsStore m_store;
};

/// The Settings window's contents in a window of its own, with counts of 2 and 20.
class SettingsWindowFixture : public testing::Test
{
protected:
    ~SettingsWindowFixture() override;

    /// Visible, active and laid out; made by the first call.
    void show();
    template <typename Widget>
    [[nodiscard]] Widget *widget(const char *name) const
    {
        return controller->findChild<Widget *>(QLatin1StringView(name));
    }
    [[nodiscard]] QCheckBox *checkbox(const char *name) const { return widget<QCheckBox>(name); }
    [[nodiscard]] QLineEdit *before() const { return widget<QLineEdit>("prefetchBeforeField"); }
    [[nodiscard]] QLineEdit *after() const { return widget<QLineEdit>("prefetchAfterField"); }
    /// The groups from the top to the bottom.
    [[nodiscard]] QList<QGroupBox *> groups() const;
    /// What carries a text or takes input, from the top to the bottom, each row in the direction of reading.
    [[nodiscard]] static QList<QWidget *> controlsOf(const QGroupBox *group);

    /// Every write to the store and every signal, in the order they came.
    std::vector<std::string> journal;

private:
    std::unique_ptr<JournalStore> m_owned = std::make_unique<JournalStore>(journal);

protected:
    JournalStore &store = *m_owned;
    SettingsManager settings{std::move(m_owned)};
    std::unique_ptr<SettingsViewController> controller;

private:
    void keepJournal();
};

} // namespace tallowmere::test
