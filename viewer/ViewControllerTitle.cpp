// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ViewController.h"
#include "viewer/WindowTitle.h"

#include <QWidget>

namespace tallowmere {

void ViewController::updateWindowTitle(const FileURL &file)
{
    if (QWidget *titled = window())
        titled->setWindowTitle(windowTitleFor(file, m_with.settings.fileNameDisplayLocation()));
}

} // namespace tallowmere
