// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"
#include "support/Queues.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace tallowmere {

class DisplayPreparation;

/// Has missing display copies made in the background, one at a time: a newer wish ends the older one.
///
/// Main thread.
class DisplayCopyRequests final : public QObject
{
    Q_OBJECT

public:
    /// The queues outlive this.
    DisplayCopyRequests(std::shared_ptr<DisplayPreparation> preparation, Launcher &launcher, MainQueue &mainQueue);
    ~DisplayCopyRequests() override;

    /// Repeating a wish that is being fulfilled costs nothing.
    void want(const ImagePtr &image, PixelSize size);

Q_SIGNALS:
    /// The copy last wanted is there, or could not be made.
    void done();

private:
    struct Request;

    void finished(const std::shared_ptr<Request> &request, bool made);

    const std::shared_ptr<DisplayPreparation> m_preparation;
    Launcher &m_launcher;
    MainQueue &m_mainQueue;
    std::shared_ptr<Request> m_current;
    std::shared_ptr<Request> m_failed; ///< the last, if there was no room for it
};

} // namespace tallowmere
