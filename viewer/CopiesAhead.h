// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"

#include <memory>
#include <vector>

namespace tallowmere {

class DisplayPreparation;
class ImageLoader;
class Launcher;

/// Makes the display copies of images that may be shown next, in the background, one after the other.
///
/// Main thread.
class CopiesAhead final
{
public:
    /// @p launcher outlives this.
    CopiesAhead(std::shared_ptr<DisplayPreparation> preparation, std::shared_ptr<const ImageLoader> loader,
                Launcher &launcher);
    ~CopiesAhead();
    CopiesAhead(const CopiesAhead &) = delete;
    CopiesAhead &operator=(const CopiesAhead &) = delete;

    /// These from now on, in this order, and no others: a key that is held down moves on faster than copies are made.
    /// One that is being made goes on if it is still among them.
    void want(std::vector<ImagePtr> images);

private:
    struct Work;

    const std::shared_ptr<DisplayPreparation> m_preparation;
    const std::shared_ptr<const ImageLoader> m_loader;
    Launcher &m_launcher;
    const std::shared_ptr<Work> m_work;
};

} // namespace tallowmere
