// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DisplayCopyRequests.h"

#include "viewer/DisplayPreparation.h"

#include <QPointer>

#include <utility>

namespace tallowmere {

struct DisplayCopyRequests::Request
{
    ImagePtr image;
    PixelSize size;
    std::atomic<bool> cancelled{false};
};

DisplayCopyRequests::DisplayCopyRequests(std::shared_ptr<DisplayPreparation> preparation, Launcher &launcher,
                                         MainQueue &mainQueue)
    : m_preparation(std::move(preparation)), m_launcher(launcher), m_mainQueue(mainQueue)
{}

DisplayCopyRequests::~DisplayCopyRequests()
{
    if (m_current)
        m_current->cancelled = true;
}

void DisplayCopyRequests::want(const ImagePtr &image, PixelSize size)
{
    if (image->isPreview())
        return; // the whole picture will be there sooner
    // Painting asks again after every answer; where there was no room, that would never end.
    if (m_failed && m_failed->image == image && m_failed->size == size)
        return;
    if (m_current) {
        if (m_current->image == image && m_current->size == size)
            return;
        m_current->cancelled = true;
    }
    m_current = std::make_shared<Request>();
    m_current->image = image;
    m_current->size = size;
    // The launcher's thread may outlive this object: it works on what it was handed alone.
    m_launcher.launch("com.tallowmere.displayCopy", QualityOfService::userInitiated,
                      [request = m_current, preparation = m_preparation, &mainQueue = m_mainQueue,
                       self = QPointer<DisplayCopyRequests>(this)] {
        const bool made = static_cast<bool>(
            preparation->copies().make(request->image, request->size, [&] { return request->cancelled.load(); }));
        mainQueue.async([self, request, made] {
            if (auto *requests = self.data())
                requests->finished(request, made);
        });
    });
}

void DisplayCopyRequests::finished(const std::shared_ptr<Request> &request, bool made)
{
    if (m_current != request)
        return;
    m_failed = made ? nullptr : std::exchange(m_current, nullptr);
    m_current.reset();
    Q_EMIT done();
}

} // namespace tallowmere
