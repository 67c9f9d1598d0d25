// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/Diagnostics.h"

#include <QByteArray>

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace tallowmere {
namespace {

// Long enough for a slow terminal; a reader that has stalled for good must not stall the program.
constexpr int kFullPipeMilliseconds = 1000;

QByteArray onOneLine(QByteArrayView prefix, QByteArrayView line)
{
    QByteArray text;
    text.reserve(prefix.size() + line.size() + 1);
    text.append(prefix);
    for (qsizetype i = 0; i < line.size(); ++i) {
        const auto byte = static_cast<unsigned char>(line[i]);
        const auto next = i + 1 < line.size() ? static_cast<unsigned char>(line[i + 1]) : 0U;
        if (byte == 0xC2 && next >= 0x80 && next <= 0x9F) {
            // U+0080 to U+009F: U+0085 breaks lines and terminals obey the others.
            text.append('?');
            ++i;
        } else {
            text.append(byte < 0x20 || byte == 0x7F ? '?' : line[i]);
        }
    }
    return text.append('\n');
}

void writeAll(int descriptor, const QByteArray &text)
{
    QByteArrayView rest(text);
    while (!rest.isEmpty()) {
        const ssize_t written = ::write(descriptor, rest.data(), static_cast<std::size_t>(rest.size()));
        if (written >= 0) {
            rest = rest.sliced(written);
        } else if (errno == EAGAIN) {
            pollfd full{descriptor, POLLOUT, 0};
            if (::poll(&full, 1, kFullPipeMilliseconds) <= 0)
                return;
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace

void printDiagnostic(QByteArrayView line)
{
    writeAll(STDOUT_FILENO, onOneLine({}, line));
}

void printError(QByteArrayView line)
{
    writeAll(STDERR_FILENO, onOneLine("tallowmere: ", line));
}

} // namespace tallowmere
