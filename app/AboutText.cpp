// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AboutText.h"

#include "app/BundleInformation.h"

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

AboutText AboutText::of(const BundleInformation &bundle, int year)
{
    AboutText text;
    text.name = bundle.string(u"CFBundleName"_s).value_or(u"Tallowmere"_s);
    text.version = u"Version "_s + bundle.string(u"CFBundleShortVersionString"_s).value_or(u"1.0"_s) + u" ("_s +
                   bundle.string(u"CFBundleVersion"_s).value_or(u"1"_s) + u")"_s;
    text.rights = bundle.string(u"NSHumanReadableCopyright"_s).value_or(QString());
    if (text.rights.isEmpty())
        text.rights = u"Copyright © "_s + QString::number(year) + u" Tallowmere. All rights reserved."_s;
    return text;
}

} // namespace tallowmere
