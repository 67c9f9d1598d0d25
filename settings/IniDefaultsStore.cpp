// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/IniDefaultsStore.h"

#include "support/BaseDirectories.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QSettings>
#include <QVariant>

#include <sys/stat.h>

#include <mutex>
#include <optional>
#include <tuple>

namespace tallowmere {
namespace {

/// QSettings that is written by sync() alone. Its own deferred write would come from the event loop, past our lock.
class UndeferredSettings final : public QSettings
{
public:
    explicit UndeferredSettings(const QString &path) : QSettings(path, QSettings::IniFormat) {}

protected:
    bool event(QEvent *event) override
    {
        return event->type() == QEvent::UpdateRequest ? true : QSettings::event(event);
    }
};

} // namespace

/// The file under its lock.
class IniDefaultsStore::File
{
public:
    explicit File(const QByteArray &path) : m_bytePath(path), m_path(QFile::decodeName(path))
    {
        if (m_path.isEmpty() || !isFileOrNothing())
            return;
        m_stamp = currentStamp();
        m_settings.emplace(m_path);
    }

    QVariant read(QByteArrayView key)
    {
        const QString name = QString::fromLatin1(key);
        const std::lock_guard lock(m_mutex);
        if (const auto unsaved = m_unsaved.constFind(name); unsaved != m_unsaved.constEnd())
            return *unsaved;
        if (!m_settings)
            return {};
        hearOfOthers();
        return m_settings->value(name);
    }

    void write(QByteArrayView key, const QVariant &value)
    {
        const QString name = QString::fromLatin1(key);
        const std::lock_guard lock(m_mutex);
        // A write waits for the disk, and some keys are written again and again with the same value.
        if (isStored(name, value))
            return;
        m_unsaved.insert(name, value);
        if (!m_settings)
            return;
        if (!isFileOrNothing() || !lockIsFree())
            return;
        makeFolder();
        for (auto unsaved = m_unsaved.constBegin(); unsaved != m_unsaved.constEnd(); ++unsaved)
            m_settings->setValue(unsaved.key(), *unsaved);
        m_settings->sync();
        if (m_settings->status() != QSettings::AccessError)
            m_unsaved.clear();
        else
            m_settings.emplace(m_path); // its error would stay with it for good
    }

private:
    bool isStored(const QString &name, const QVariant &value)
    {
        if (!m_settings || !m_unsaved.isEmpty())
            return false;
        hearOfOthers();
        return m_settings->contains(name) && m_settings->value(name).toString() == value.toString();
    }

    /// Opening a FIFO would wait for somebody to write to it.
    [[nodiscard]] bool isFileOrNothing() const
    {
        struct stat found = {};
        return ::stat(m_bytePath.constData(), &found) != 0 || S_ISREG(found.st_mode);
    }

    /// sync() would wait half a minute for a lock that a crash on another machine left behind.
    [[nodiscard]] bool lockIsFree() const
    {
        constexpr int kPatience = 500; // ms
        QLockFile lock(m_path + QStringLiteral(".lock"));
        // Where no lock can be made, sync() fails at once, and says so.
        return lock.tryLock(kPatience) || lock.error() != QLockFile::LockFailedError;
    }

    /// Which state of the file this is; a write replaces it or changes its time.
    using Stamp = std::tuple<dev_t, ino_t, off_t, time_t, long>;

    [[nodiscard]] Stamp currentStamp() const
    {
        struct stat status = {}; // all zero stands for no file
        ::stat(m_bytePath.constData(), &status);
        return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
    }

    // sync() finds out by itself whether the file has changed, but takes 40 us for it and start-up reads many values.
    void hearOfOthers()
    {
        // With unsaved values sync() would try to write them again; that is left to the next write.
        const Stamp now = currentStamp();
        if (!m_unsaved.isEmpty() || now == m_stamp || !isFileOrNothing())
            return;
        m_settings->sync();
        m_stamp = now;
    }

    void makeFolder()
    {
        const QString folder = QFileInfo(m_path).absolutePath();
        if (QFileInfo::exists(folder))
            return;
        // The XDG Base Directory Specification asks for 0700 where a folder is missing.
        const QString parent = QFileInfo(folder).absolutePath();
        QDir().mkpath(parent);
        QDir(parent).mkdir(QFileInfo(folder).fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    const QByteArray m_bytePath;
    const QString m_path;
    Stamp m_stamp; ///< of what m_settings has read, or older
    std::mutex m_mutex;
    std::optional<UndeferredSettings> m_settings;
    QHash<QString, QVariant> m_unsaved; ///< what the disk would not take
};

IniDefaultsStore::IniDefaultsStore(const QByteArray &path) : m_file(std::make_unique<File>(path)) {}

IniDefaultsStore::~IniDefaultsStore() = default;

QByteArray IniDefaultsStore::userPath()
{
    const QByteArray folder = BaseDirectories::fromEnvironment().config;
    return folder.isEmpty() ? QByteArray() : folder + "/tallowmere/tallowmere.ini";
}

bool IniDefaultsStore::contains(QByteArrayView key) const
{
    return m_file->read(key).isValid();
}

bool IniDefaultsStore::boolForKey(QByteArrayView key) const
{
    return readsTrue(m_file->read(key).toString());
}

QString IniDefaultsStore::stringForKey(QByteArrayView key) const
{
    return m_file->read(key).toString();
}

void IniDefaultsStore::setBool(QByteArrayView key, bool value)
{
    m_file->write(key, value);
}

void IniDefaultsStore::setString(QByteArrayView key, const QString &value)
{
    m_file->write(key, value);
}

// QVariant's own reading takes every text but "false" and "0" for true.
bool readsTrue(const QString &text)
{
    using namespace Qt::Literals::StringLiterals;
    const QString plain = text.trimmed();
    return plain.compare("true"_L1, Qt::CaseInsensitive) == 0 || plain.compare("yes"_L1, Qt::CaseInsensitive) == 0 ||
           plain == "1"_L1;
}

} // namespace tallowmere
