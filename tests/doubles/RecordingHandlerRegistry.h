// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DefaultHandlerRegistry.h"

#include <QHash>

#include <functional>

namespace tallowmere::test {

/// A registry that answers as told and remembers what it was asked.
class RecordingHandlerRegistry final : public DefaultHandlerRegistry
{
public:
    struct Request
    {
        QList<QByteArray> contentTypes;
        QByteArray handler;
    };

    [[nodiscard]] QList<Status> setDefaultHandler(const QList<QByteArray> &contentTypes,
                                                  const QByteArray &handler) override
    {
        requests.append({contentTypes, handler});
        onRequest();
        QList<Status> answers;
        for (const QByteArray &type : contentTypes) {
            answers.append(statuses.value(type, kSuccess));
            if (answers.last() == kSuccess && !others.contains(type))
                handlers.insert(type, handler);
        }
        return answers;
    }
    [[nodiscard]] std::optional<QByteArray> defaultHandler(const QByteArray &contentType) const override
    {
        asked.append(contentType);
        const QByteArray handler = others.value(contentType, handlers.value(contentType));
        return handler.isEmpty() ? std::nullopt : std::optional(handler);
    }

    QHash<QByteArray, Status> statuses;   ///< success for all others
    QHash<QByteArray, QByteArray> others; ///< handlers that registering does not displace
    std::function<void()> onRequest = [] {};

    QList<Request> requests;
    QHash<QByteArray, QByteArray> handlers;
    mutable QList<QByteArray> asked;
};

} // namespace tallowmere::test
