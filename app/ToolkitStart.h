// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <memory>
#include <vector>

class QApplication;

namespace tallowmere {

class SharedPipeline;

/// The desktop's leave to come forward that this process was started with; empty when there was none.
[[nodiscard]] QByteArray activationTokenOfThisStart();

/// The application object, set up so that nothing stands before the first picture that can come after it.
///
/// Main thread; once per process.
class ToolkitStart final
{
public:
    /// @p arguments: Qt's own options only.
    ToolkitStart(const QByteArray &program, const QList<QByteArray> &arguments);
    ~ToolkitStart();
    ToolkitStart(const ToolkitStart &) = delete;
    ToolkitStart &operator=(const ToolkitStart &) = delete;

    /// Runs the event loop, with the pipeline's main queue in it, and answers its exit status.
    [[nodiscard]] int run(SharedPipeline &pipeline);

private:
    QList<QByteArray> m_arguments; ///< Qt keeps pointers into them, as the next
    std::vector<char *> m_argv;
    int m_argc;
    std::unique_ptr<QApplication> m_application;
};

} // namespace tallowmere
