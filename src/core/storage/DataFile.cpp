#include "storage/DataFile.h"

#include "storage/FileAccess.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>

#include <bit>
#include <cstring>

DataFile::DataFile(QString path, FileAccess &files, Category category)
    : m_path(std::move(path))
    , m_files(files)
    , m_category(category)
    , m_lock(m_path)
{
}

QString DataFile::name() const
{
    return QFileInfo(m_path).fileName();
}

namespace {

// A quick 64-bit hash: four multiply-rotate lanes over eight-byte words, then the tail. Every step
// is one-to-one in the lane's state, so a change within one word always shows; it runs at memory
// speed, several times faster than qHash over the megabytes of a large events file.
quint64 contentHash(QByteArrayView bytes)
{
    constexpr quint64 P1 = 0x9E3779B185EBCA87ULL;
    constexpr quint64 P2 = 0xC2B2AE3D27D4EB4FULL;
    quint64 lanes[4] = {P1, P2, P1 ^ P2, P1 + P2};
    const char *p = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= 32; p += 32, left -= 32) {
        for (int i = 0; i < 4; ++i) {
            quint64 word;
            std::memcpy(&word, p + 8 * i, sizeof word);
            lanes[i] = std::rotl(lanes[i] ^ (word * P2), 31) * P1;
        }
    }
    quint64 hash = quint64(bytes.size()) * P1;
    for (const quint64 lane : lanes)
        hash = std::rotl(hash ^ (lane * P2), 27) * P1;
    for (; left > 0; ++p, --left)
        hash = std::rotl(hash ^ (quint64(quint8(*p)) * P2), 11) * P1;
    return hash ^ (hash >> 29);
}

} // namespace

DataFile::Fingerprint DataFile::fingerprintOf(const QByteArray &bytes)
{
    return Fingerprint {true, bytes.size(), contentHash(bytes)};
}

DataFile::Read DataFile::readIfChanged()
{
    Read read;
    if (!m_files.exists(m_path)) {
        const bool wasMissing = m_known && !m_known->exists;
        m_known = Fingerprint {};
        m_unreadable = false;
        m_failure.clear();
        read.kind = wasMissing ? Read::Kind::unchanged : Read::Kind::missing;
        return read;
    }
    std::optional<QByteArray> bytes = m_files.read(m_path, &read.error);
    if (!bytes) {
        // Never the same as anything read: the next look tries again, and reports a new reason.
        const bool known = !m_known && m_unreadable && m_failure == read.error;
        m_known.reset();
        m_unreadable = true;
        m_failure = read.error;
        read.kind = known ? Read::Kind::unchanged : Read::Kind::failed;
        return read;
    }
    m_failure.clear();
    if (m_known && *m_known == fingerprintOf(*bytes)) {
        read.kind = Read::Kind::unchanged;
        return read;
    }
    read.kind = Read::Kind::changed;
    read.bytes = std::move(*bytes);
    return read;
}

void DataFile::accept(const QByteArray &bytes)
{
    m_known = fingerprintOf(bytes);
    m_unreadable = false;
}

void DataFile::reject(const QByteArray &bytes)
{
    m_known = fingerprintOf(bytes);
    m_unreadable = true;
}

bool DataFile::keepAside(QString *error)
{
    const QFileInfo original(m_path);
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    QString aside;
    for (int n = 1; aside.isEmpty() || m_files.exists(aside); ++n) {
        const QString suffix = n == 1 ? QString() : QStringLiteral(" %1").arg(n);
        aside = original.dir().filePath(
            QStringLiteral("%1 (unreadable %2%3).%4")
                .arg(original.completeBaseName(), stamp, suffix, original.suffix()));
    }
    if (!m_files.copy(m_path, aside, error))
        return false;
    qCWarning(m_category).noquote()
        << QStringLiteral("Kept the unreadable %1 as %2 before replacing it").arg(name(), aside);
    return true;
}

bool DataFile::write(const QByteArray &bytes, QString *error)
{
    if (m_unreadable && m_files.exists(m_path)) {
        QString reason;
        if (!keepAside(&reason)) {
            if (error)
                *error = QStringLiteral("Could not keep a copy of the unreadable %1: %2")
                             .arg(name(), reason);
            return false;
        }
    }
    if (!m_files.writeAtomically(m_path, bytes, error))
        return false;
    accept(bytes);
    return true;
}
