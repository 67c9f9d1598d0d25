// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/Diagnostics.h"

#include "tests/doubles/CapturedOutput.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <thread>

namespace tallowmere {
namespace {

using test::CapturedOutput;

QByteArray printed(QByteArrayView line)
{
    const CapturedOutput output;
    printDiagnostic(line);
    return output.text();
}

TEST(Diagnostics, writeUtf8BytesWhateverTheLocale)
{
    EXPECT_EQ(printed("⚠️ Failed: /Bücher/日本.jpg"), "⚠️ Failed: /Bücher/日本.jpg\n");
}

TEST(Diagnostics, keepBytesThatAreNotUtf8)
{
    EXPECT_EQ(printed("gr\xFC\xDF.jpg"), "gr\xFC\xDF.jpg\n");
}

TEST(Diagnostics, aNameWithALineFeedStaysOnOneLine)
{
    EXPECT_EQ(printed("a\nb\rc\td\x1B[31me\x7F.jpg"), "a?b?c?d?[31me?.jpg\n");
}

TEST(Diagnostics, controlCharactersBeyondAsciiAreMaskedToo)
{
    EXPECT_EQ(printed("a\u0085b\u009Bc\u00A0d"), "a?b?c\u00A0d\n");
    EXPECT_EQ(printed("ends in \xC2"), "ends in \xC2\n");
}

TEST(Diagnostics, errorsGoToStandardErrorUnderTheProgramsName)
{
    const CapturedOutput output;
    const CapturedOutput errors(STDERR_FILENO);
    printError("no display\n");
    EXPECT_EQ(errors.text(), "tallowmere: no display?\n");
    EXPECT_EQ(output.text(), "");
}

/// Standard output turned into one end of a pipe.
class PipedOutput
{
public:
    PipedOutput() : m_original(::dup(STDOUT_FILENO))
    {
        EXPECT_EQ(::pipe2(m_ends.data(), O_CLOEXEC), 0);
        ::dup2(m_ends[1], STDOUT_FILENO);
    }
    ~PipedOutput()
    {
        ::dup2(m_original, STDOUT_FILENO);
        ::close(m_original);
        closeReader();
        ::close(m_ends[1]);
    }
    PipedOutput(const PipedOutput &) = delete;
    PipedOutput &operator=(const PipedOutput &) = delete;

    [[nodiscard]] int reader() const { return m_ends[0]; }
    void closeReader()
    {
        if (m_ends[0] >= 0)
            ::close(m_ends[0]);
        m_ends[0] = -1;
    }

private:
    const int m_original;
    std::array<int, 2> m_ends{-1, -1};
};

TEST(Diagnostics, aClosedPipeIsIgnored)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN); // as main() does
    {
        PipedOutput output;
        output.closeReader();
        printDiagnostic("nobody reads this");
    }
    std::signal(SIGPIPE, before);
}

TEST(Diagnostics, aLineLargerThanThePipeArrivesWhole)
{
    for (const bool blocking : {true, false}) {
        PipedOutput output;
        if (!blocking)
            ::fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK);
        const QByteArray line(300'000, 'x');
        QByteArray received;
        std::thread reader([&] {
            std::array<char, 4096> buffer{};
            while (received.size() <= line.size()) {
                const ssize_t got = ::read(output.reader(), buffer.data(), buffer.size());
                if (got <= 0)
                    break;
                received.append(buffer.data(), got);
            }
        });
        printDiagnostic(line);
        reader.join();
        EXPECT_EQ(received, line + "\n");
    }
}

} // namespace
} // namespace tallowmere
